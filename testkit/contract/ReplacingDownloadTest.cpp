#include "ContractTest.h"
#include "FileSizeLimit.h"

#include <QFileInfo>

namespace Norlis::TestKit {

/// Downloads onto a file that is at their target already, and what becomes of that file when they do not succeed.
class ReplacingDownloadTest : public SignedInContractTest {
protected:
    ReplacingDownloadTest() : SignedInContractTest(&CloudUnderTest::MakeReplacingProtocol) {}

    void SetUp() override
    {
        if (!client.Protocol()) {
            GTEST_SKIP() << "The protocol does not replace files at the target";
        }
        SignedInContractTest::SetUp();
    }
};
NORLIS_FOR_EVERY_CLOUD(ReplacingDownloadTest);

TEST_P(ReplacingDownloadTest, WhoHasTheOldFileOpenKeepsReadingIt)
{
    const QString id = Put("report.pdf", "new");
    QFile reader(LocalFile("target.pdf", "old"));
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    ASSERT_TRUE(client.Download(id, Local("target.pdf"))->Succeeds());
    EXPECT_EQ(reader.readAll(), QByteArray("old"));
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("new"));
}

TEST_P(ReplacingDownloadTest, AFileThatOthersMayNotReadStaysSo)
{
    const QString id = Put("report.pdf", "new");
    const auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    ASSERT_TRUE(QFile::setPermissions(LocalFile("target.pdf", "old"), ownerOnly));
    ASSERT_TRUE(client.Download(id, Local("target.pdf"))->Succeeds());
    const auto others = QFileDevice::ReadGroup | QFileDevice::ReadOther;
    EXPECT_EQ(QFileInfo(Local("target.pdf")).permissions() & others, QFileDevice::Permissions());
}

TEST_P(ReplacingDownloadTest, AnUnknownDocumentFailsAndLeavesTheOldFile)
{
    const QString id = Put("gone.pdf", "content");
    cloud->Take("gone.pdf");
    LocalFile("target.pdf", "old");
    for (const QString& unknown : {QString(), QString("unknown"), QString("../target.pdf"), id}) {
        EXPECT_TRUE(client.Download(unknown, Local("target.pdf"))->Fails()) << unknown.toStdString();
    }
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("old"));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
}

TEST_P(ReplacingDownloadTest, ADocumentThatVanishesMeanwhileLeavesNoHalfFile)
{
    cloud->PutLarge("large.pdf", Large(256 * 1024 * 1024));
    LocalFile("target.pdf", "old");
    const auto download = client.Download(client.Entry("large.pdf").id, Local("target.pdf"));
    ASSERT_TRUE(WaitUntil([&] { return download->percents.size() > 1; }));
    cloud->PutLarge("large.pdf", 10);
    ASSERT_TRUE(WaitUntil([&] { return download->Came(); }));
    EXPECT_TRUE(download->result == Social::Error || cloud->RestartsDownloadOnChange());
    EXPECT_EQ(ReadFile(Local("target.pdf")),
              download->result == Social::Success ? QByteArray(10, '\0') : QByteArray("old"));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
}

TEST_P(ReplacingDownloadTest, AFullDiskIsAnErrorAndLeavesTheOldFile)
{
    const QString id = Put("report.pdf", QByteArray(5'000'000, 'x'));
    LocalFile("target.pdf", "old");
    const FileSizeLimit full(2'500'000);
    EXPECT_TRUE(client.Download(id, Local("target.pdf"))->Fails());
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("old"));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
    EXPECT_EQ(client.failures.size(), client.TellsFailures() ? 1U : 0U);
}

TEST_P(ReplacingDownloadTest, ADownloadCanceledMidwayLeavesTheOldFile)
{
    cloud->PutLarge("large.pdf", Large(512 * 1024 * 1024));
    const auto canceled = client.List();
    client.Cancel(canceled->operation);
    const auto list = client.List();
    ASSERT_TRUE(list->Succeeds());
    LocalFile("target.pdf", "old");
    const auto download = client.Download(list->payload[0].id, Local("target.pdf"));
    ASSERT_TRUE(WaitUntil([&] { return download->percents.size() > 2; }));
    client.Cancel(download->operation);
    EXPECT_TRUE(WaitUntil([&] { return FilesBelow(folder.path()) == QStringList("target.pdf"); }));
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("old"));
    EXPECT_FALSE(download->Came());
}

TEST_P(ReplacingDownloadTest, ATargetNextToADownloadInProgressIsNotTouched)
{
    const QString first = Put("first.pdf", QByteArray(2'000'000, '1'));
    const QString second = Put("second.pdf", QByteArray(2'000'000, '2'));
    std::vector<AnswerPtr<>> downloads;
    for (int count = 0; count < 10; ++count) {
        downloads.push_back(client.Download(count % 2 == 0 ? first : second, Local("target.pdf")));
    }
    for (const auto& download : downloads) {
        EXPECT_TRUE(download->Succeeds());
    }
    const auto content = ReadFile(Local("target.pdf"));
    EXPECT_TRUE(content == QByteArray(2'000'000, '1') || content == QByteArray(2'000'000, '2'));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
}

} // namespace Norlis::TestKit
