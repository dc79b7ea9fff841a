#include "CloudManagerBench.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QFile>
#include <QSignalSpy>

namespace Norlis::Test {

namespace {

using Social::NorlisCloudProtocol;
using ConstRecord = std::shared_ptr<const FileInfo>;

class DownloadTest : public CloudManagerTest {
protected:
    void ExpectPlainException(const std::function<void()>& action)
    {
        try {
            action();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::exception& error) {
            EXPECT_EQ(typeid(error), typeid(std::exception));
        }
    }
};

TEST_F(DownloadTest, RequestCarriesIdTargetAndSize)
{
    file = std::make_shared<FileInfo>(
        FileInfo::CloudInfo("ид", "Ü 1.pdf", 18446744073709551615u, false, {}, {}, {}, 0, "h"));

    manager->Download(file, QStringLiteral("/home/me/Wölke"));

    const QMap<QString, QString> expected = {
        {NorlisCloudProtocol::ID, QStringLiteral("ид")},
        {NorlisCloudProtocol::FILE_NAME, QStringLiteral("/home/me/Wölke/Ü 1.pdf")},
        {NorlisCloudProtocol::FILE_SIZE, "18446744073709551615"},
    };
    EXPECT_EQ(protocol->LastCall("downloadFile").fields, expected);
    EXPECT_TRUE(protocol->LastCall("downloadFile").extra.isEmpty());
    EXPECT_THAT(Events(), ElementsAre("DownloadingStarted(ид)", "-> downloadFile 1"));
}

TEST_F(DownloadTest, SlashIsAlwaysAddedAndOnlyTheRecordsPathIsNormalized)
{
    fileSystem->normalize = [](const std::string&) { return "C:/docs/a.pdf"; };
    file = std::make_shared<FileInfo>(FileInfo::CloudInfo("a", "a.pdf", 1, false, {}, {}, {}, 0, "h"));

    manager->Download(file, "C:/docs/");

    EXPECT_EQ(protocol->LastCall("downloadFile").fields[NorlisCloudProtocol::FILE_NAME], "C:/docs//a.pdf");
    EXPECT_THAT(fileSystem->calls, ElementsAre("NormalizePath(C:/docs//a.pdf)"));
    EXPECT_EQ(file->GetPath(), ioPath("C:/docs/a.pdf"));
}

TEST_F(DownloadTest, AcceptedRequestGivesTheRecordItsTargetAndItsHashAtOnce)
{
    hashes->hashes["/n/doc.pdf"] = "older copy";
    fileSystem->normalize = [](const std::string&) { return "/n/doc.pdf"; };
    file->SetPath(ioPath("/elsewhere.pdf"), "old", "last sync");
    file->SetIsSyncingInProgress(true);

    StartDownload();

    EXPECT_EQ(file->GetPath(), ioPath("/n/doc.pdf"));
    EXPECT_EQ(file->GetMd5Hash(), "older copy");
    EXPECT_EQ(file->GetCloudHashBeforeChange(), "last sync");
    EXPECT_TRUE(file->IsSyncingInProgress());
    EXPECT_THAT(hashes->asked, ElementsAre("/n/doc.pdf"));
}

TEST_F(DownloadTest, RecordIsUnchangedWhileTheStartIsAnnouncedAndTheRequestIsSent)
{
    std::vector<std::string> pathsSeen;
    QObject::connect(manager.get(), &NorlisCloudManager::DownloadingStarted, manager.get(),
                     [&](const std::shared_ptr<FileInfo>& started) {
                         EXPECT_EQ(started, file);
                         pathsSeen.push_back(started->GetPath().utf8string());
                     });
    protocol->inside["downloadFile"] = [&](qint64) { pathsSeen.push_back(file->GetPath().utf8string()); };

    StartDownload();

    EXPECT_THAT(pathsSeen, ElementsAre("", ""));
}

TEST_F(DownloadTest, NullRecordThrowsAPlainExceptionAfterTheLoginTest)
{
    file.reset();
    ExpectPlainException([&] { manager->Download(file, directory); });
    ExpectPlainException([&] { manager->CancelDownloading(file); });
    EXPECT_THAT(Events(), IsEmpty());

    protocol->signedIn = false;
    manager->Download(file, directory);
    manager->CancelDownloading(file);
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()", "AuthorizationRequired()"));
}

TEST_F(DownloadTest, NullRecordInAListThrowsWhenItsTurnComes)
{
    ExpectPlainException([&] { manager->Download({file, nullptr, RecordOf("never reached")}, directory); });
    EXPECT_THAT(Events(), ElementsAre("DownloadingStarted(doc)", "-> downloadFile 1"));
}

TEST_F(DownloadTest, RecordWithoutCloudPartIsReportedLikeARefusal)
{
    file->GetRedactableCloudInfo().reset();
    manager->Download(file, directory);
    EXPECT_THAT(Events(), ElementsAre("DownloadingStarted(doc)", "ERROR Download file failed",
                                      "DownloadingFileRequestError(doc, Download file failed)"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
    EXPECT_TRUE(file->GetPath().empty());
}

TEST_F(DownloadTest, RecordWithoutCloudPartDoesNotKeepTheOthersOfItsListBack)
{
    const auto local = std::make_shared<FileInfo>(ioPath("/local.pdf"), "hash");
    manager->Download({RecordOf("doc1"), local, RecordOf("doc2")}, directory);
    EXPECT_THAT(Events(),
                ElementsAre("DownloadingStarted(doc1)", "-> downloadFile 1", "DownloadingStarted()",
                            "ERROR Download file failed", "DownloadingFileRequestError(, Download file failed)",
                            "DownloadingStarted(doc2)", "-> downloadFile 2"));
    EXPECT_EQ(local->GetPath(), ioPath("/local.pdf"));
}

TEST_F(DownloadTest, ManagerMayBeDeletedWhenARecordWithoutCloudPartIsStarted)
{
    file->GetRedactableCloudInfo().reset();
    QObject::connect(manager.get(), &NorlisCloudManager::DownloadingStarted, manager.get(),
                     [this] { manager.reset(); });
    manager->Download({file, RecordOf("doc2")}, directory);
    EXPECT_THAT(Events(), ElementsAre("DownloadingStarted(doc)"));
}

TEST_F(DownloadTest, SignedOutEveryFormAsksForAuthorizationOnce)
{
    protocol->signedIn = false;
    manager->Download(file, directory);
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
    manager->Download(files, directory);
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
    manager->Download(QList<std::shared_ptr<FileInfo>>(), directory);
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
    manager->CancelDownloading(file);
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
}

TEST_F(DownloadTest, ListStartsOneDownloadPerRecordInOrder)
{
    manager->Download(files, directory);

    EXPECT_THAT(Events(), ElementsAre("DownloadingStarted(doc1)", "-> downloadFile 1", "DownloadingStarted(doc2)",
                                      "-> downloadFile 2"));
    EXPECT_EQ(protocol->LastCall("downloadFile").fields[NorlisCloudProtocol::FILE_NAME],
              QStringLiteral("/home/me/cloud/doc2.pdf"));
    manager->Download(QList<std::shared_ptr<FileInfo>>(), directory);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(DownloadTest, EachDownloadOfAListMakesItsOwnLoginTest)
{
    protocol->inside["downloadFile"] = [this](qint64) { protocol->signedIn = false; };
    manager->Download(files, directory);
    EXPECT_THAT(Events(), ElementsAre("DownloadingStarted(doc1)", "-> downloadFile 1", "AuthorizationRequired()"));
}

TEST_F(DownloadTest, RefusedRequestIsReportedWithTheUnchangedRecord)
{
    protocol->refused = {"downloadFile"};
    QSignalSpy errors(manager.get(), &NorlisCloudManager::DownloadingFileRequestError);

    manager->Download(file, directory);

    EXPECT_THAT(Events(),
                ElementsAre("DownloadingStarted(doc)", "-> downloadFile refused", "ERROR Download file failed",
                            "DownloadingFileRequestError(doc, Download file failed)"));
    EXPECT_EQ(errors[0][0].value<ConstRecord>(), file);
    EXPECT_TRUE(file->GetPath().empty());
    EXPECT_THAT(hashes->asked, IsEmpty());
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(DownloadTest, ProgressIsPassedOnWithTheRecordItself)
{
    QSignalSpy progress(manager.get(), &NorlisCloudManager::DownloadingProgressValueChanged);
    const auto id = StartDownload();
    Forget();

    protocol->Progress(id, 1);
    protocol->Progress(id, -7);

    EXPECT_THAT(Events(),
                ElementsAre("DownloadingProgressValueChanged(doc, 1)", "DownloadingProgressValueChanged(doc, -7)"));
    EXPECT_EQ(progress[0][0].value<ConstRecord>(), file);
    protocol->Answer(id, Social::Success);
    Forget();
    protocol->Progress(id, 100);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(DownloadTest, DownloadCountsAsTransferUntilItEnds)
{
    for (const auto result : {Social::Success, Social::Error, Social::Canceled, foreignResult}) {
        EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
        const auto id = StartDownload();
        EXPECT_TRUE(manager->IsSyncInProgressWithCloud());
        protocol->Answer(id, result);
        EXPECT_FALSE(manager->IsSyncInProgressWithCloud()) << result;
    }
}

TEST_F(DownloadTest, CancelStopsTheRequestDeletesTheFileAndReportsTheCallersRecord)
{
    directory = folder.path();
    file->SetIsSyncingInProgress(true);
    const auto id = StartDownload();
    const auto partial = Write("doc.pdf");
    QSignalSpy canceled(manager.get(), &NorlisCloudManager::DownloadingCanceled);
    protocol->inside["cancelOperation"] = [&](qint64) { EXPECT_TRUE(QFile::exists(partial)); };
    bool existedAtSignal = true;
    QObject::connect(manager.get(), &NorlisCloudManager::DownloadingCanceled, manager.get(),
                     [&] { existedAtSignal = QFile::exists(partial); });
    Forget();

    manager->CancelDownloading(file);

    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "DownloadingCanceled(doc)"));
    EXPECT_FALSE(existedAtSignal);
    EXPECT_EQ(canceled[0][0].value<ConstRecord>(), file);
    EXPECT_TRUE(file->IsSyncingInProgress());
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());

    protocol->Progress(id, 5);
    protocol->Answer(id, Social::Canceled);
    manager->CancelDownloading(file);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(DownloadTest, CancelFindsTheDownloadByIdAndDeletesTheFileOfTheGivenRecord)
{
    StartDownload();
    const auto other = RecordOf("doc");
    const auto otherPath = Write("other.pdf");
    other->SetPath(ioPath(otherPath.toStdString()), "hash");
    QSignalSpy canceled(manager.get(), &NorlisCloudManager::DownloadingCanceled);

    manager->CancelDownloading(other);

    EXPECT_EQ(canceled[0][0].value<ConstRecord>(), other);
    EXPECT_FALSE(QFile::exists(otherPath));
}

TEST_F(DownloadTest, CancelOfARecordThatIsNotDownloadedDeletesNothing)
{
    const auto kept = Write("kept.pdf");
    file->SetPath(ioPath(kept.toStdString()), "hash");

    manager->CancelDownloading(file);

    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_TRUE(QFile::exists(kept));
}

TEST_F(DownloadTest, CancelOfARecordDownloadedTwiceTakesTheSmallerId)
{
    StartDownload();
    StartDownload();
    Forget();
    manager->CancelDownloading(file);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "DownloadingCanceled(doc)"));
    EXPECT_TRUE(manager->IsSyncInProgressWithCloud());
    manager->CancelDownloading(file);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 2", "DownloadingCanceled(doc)"));
}

} // namespace

} // namespace Norlis::Test
