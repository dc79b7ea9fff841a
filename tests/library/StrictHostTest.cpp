// A host that is built without Qt's keywords, includes X11's macros before our headers and knows std::string as a
// meta-type already. Qt's own headers have to come before X11's.
#include <QCoreApplication>
#include <QDateTime>
#include <QImage>
#include <QList>
#include <QMap>
#include <QMetaMethod>
#include <QObject>
#include <QPair>
#include <QPixmap>
#include <QSet>
#include <QSignalSpy>
#include <QSize>
#include <QStringList>
#include <QUrl>
#include <QVariant>

#include <gtest/gtest.h>

#include <string>

Q_DECLARE_METATYPE(std::string)

#include <X11/X.h>

#include <contracts/Ability.h>
#include <contracts/AbstractCloudManager.h>
#include <contracts/AbstractFileManager.h>
#include <contracts/Export.h>
#include <contracts/FileInfo.h>
#include <contracts/ICloudAccountSettings.h>
#include <contracts/ICloudInfoStorage.h>
#include <contracts/ICloudProtocol.h>
#include <contracts/IFileSystem.h>
#include <contracts/IHashCalculator.h>
#include <contracts/ioPath.h>
#include <contracts/NorlisCloudProtocol.h>
#include <contracts/NorlisCloudSharingResult.h>
#include <contracts/OAuth2.h>
#include <contracts/RequestResult.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisCloud/NorlisCloudManager.h>
#include <NorlisCloud/NorlisCloudProtocolProxy.h>

#if !defined(QT_NO_KEYWORDS) || defined(signals)
#error The keywords of Qt are in force
#endif
#ifndef Success
#error The macro of X11 is gone
#endif
static_assert(Success == 0 && Success == Norlis::Social::RequestResult(0));

// For the doubles, which are for programs of tests alone.
#undef Always
#undef Success
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/FixedAccountSettings.h>
#include <NorlisTestKit/RecordingStore.h>
#include <NorlisTestKit/Records.h>
#include <NorlisTestKit/ScriptedProtocol.h>
#include <tests/support/TypeNamed.h>

namespace Norlis::Test {

using namespace TestKit;

namespace {

using Record = std::shared_ptr<PDF::FileInfo>;
using Documents = PDF::Cloud::NorlisCloudFilesManager;
using Cloud = PDF::Cloud::NorlisCloudManager;

class StrictHostTest : public testing::Test {
protected:
    std::shared_ptr<FakeFileSystem> fileSystem = std::make_shared<FakeFileSystem>();
    std::shared_ptr<CountingHashCalculator> hashes = std::make_shared<CountingHashCalculator>();
    Documents documents{std::make_shared<RecordingStore>(), fileSystem, hashes};
    Cloud cloud{std::make_shared<ScriptedProtocol>(), hashes, fileSystem, std::make_shared<FixedAccountSettings>()};
    Record record = RecordOf("a");
};

TEST_F(StrictHostTest, SpiesSeeWhatTheSignalsCarry)
{
    QSignalSpy added(&documents, qOverload<const Record&>(&Documents::FileAdded));
    QSignalSpy updated(&documents, qOverload<const std::string&>(&Documents::FileUpdated));
    QSignalSpy started(&cloud, &Cloud::RetrieveFilePreviewStarted);

    documents.Add(record);
    documents.Update(RecordOf("a"));
    cloud.RetrieveFilePreview(record, PDF::FileInfo::PreviewSize::Large, {191, 191});

    ASSERT_EQ(added.size(), 1);
    EXPECT_EQ(added[0][0].value<Record>(), record);
    ASSERT_EQ(updated.size(), 1);
    EXPECT_EQ(updated[0][0].value<std::string>(), "a");
    ASSERT_EQ(started.size(), 1);
    EXPECT_EQ(started[0][1].value<PDF::FileInfo::PreviewSize>(), PDF::FileInfo::PreviewSize::Large);
}

TEST_F(StrictHostTest, SpiesFindSignalsByTheirSignatures)
{
    QSignalSpy added(&documents, SIGNAL(FileAdded(std::shared_ptr<FileInfo>)));
    QSignalSpy updated(&documents, SIGNAL(FileUpdated(std::string)));
    ASSERT_TRUE(added.isValid());
    ASSERT_TRUE(updated.isValid());
    documents.Add(record);
    documents.Update(RecordOf("a"));
    EXPECT_EQ(added.value(0).value(0).value<Record>(), record);
    EXPECT_EQ(updated.value(0).value(0).value<std::string>(), "a");
}

TEST_F(StrictHostTest, QueuedSlotsAreDelivered)
{
    std::string received;
    QObject receiver;
    QObject::connect(
        &documents, qOverload<const std::string&>(&Documents::FileUpdated), &receiver,
        [&](const std::string& id) { received = id; }, Qt::QueuedConnection);
    documents.Add(record);
    documents.Update(RecordOf("a"));
    EXPECT_EQ(received, "");
    QCoreApplication::processEvents();
    EXPECT_EQ(received, "a");
}

TEST_F(StrictHostTest, TypesAreKnownByTheirQualifiedNamesAndByThoseThatTheSignalsUse)
{
    const auto expectSame = [](const char* qualified, const char* asInTheSignal, int type) {
        EXPECT_EQ(TypeNamed(qualified), type) << qualified;
        EXPECT_EQ(TypeNamed(asInTheSignal), type) << asInTheSignal;
    };
    expectSame("std::string", "std::string", qMetaTypeId<std::string>());
    expectSame("std::shared_ptr<Norlis::PDF::FileInfo>", "std::shared_ptr<FileInfo>", qMetaTypeId<Record>());
    expectSame("std::shared_ptr<const Norlis::PDF::FileInfo>", "std::shared_ptr<const FileInfo>",
               qMetaTypeId<std::shared_ptr<const PDF::FileInfo>>());
    expectSame("QList<std::shared_ptr<Norlis::PDF::FileInfo> >", "QList<std::shared_ptr<FileInfo> >",
               qMetaTypeId<QList<Record>>());
    expectSame("Norlis::PDF::FileInfo::PreviewSize", "FileInfo::PreviewSize",
               qMetaTypeId<PDF::FileInfo::PreviewSize>());
}

} // namespace

} // namespace Norlis::Test
