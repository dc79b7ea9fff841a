#include "CloudManagerBench.h"

#include <contracts/NorlisCloudProtocol.h>

namespace Norlis::Test {

namespace {

/// What comes out when a slot changes the arguments, or the state, that an operation works with.
class ReentranceTest : public CloudManagerTest {
protected:
    template <typename Signal, typename Action>
    void On(Signal signal, Action action)
    {
        QObject::connect(manager.get(), signal, manager.get(), action);
    }
};

TEST_F(ReentranceTest, UploadSendsThePathThatItWasGiven)
{
    On(&NorlisCloudManager::UploadingStarted, [this] { path = QStringLiteral("/other.pdf"); });

    manager->Upload(path);

    EXPECT_EQ(protocol->LastCall("uploadFile").localPath, QStringLiteral("/home/me/report.pdf"));
    Forget();
    manager->CancelUploading(QStringLiteral("/home/me/report.pdf"));
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingCanceled(/home/me/report.pdf)"));
}

TEST_F(ReentranceTest, UploadOfARecordGoesOnWithoutTheCallersPointer)
{
    file->SetPath(ioPath("/a.pdf"), "hash");
    On(&NorlisCloudManager::UploadingStarted, [this] { file.reset(); });
    manager->Upload(file);
    EXPECT_EQ(protocol->LastCall("uploadFile").fields[Social::NorlisCloudProtocol::ID], "doc");
}

TEST_F(ReentranceTest, UploadOfAListSendsEveryPathThatItWasGiven)
{
    On(&NorlisCloudManager::UploadingStarted, [this] { paths.clear(); });
    manager->Upload(paths);
    EXPECT_EQ(protocol->CallsOf("uploadFile").size(), 2u);
    EXPECT_EQ(protocol->LastCall("uploadFile").localPath, QStringLiteral("/home/me/2.pdf"));
}

TEST_F(ReentranceTest, DownloadOfAListFetchesEveryRecordIntoTheDirectoryThatItWasGiven)
{
    On(&NorlisCloudManager::DownloadingStarted, [this] {
        files.clear();
        directory = QStringLiteral("/other");
    });
    manager->Download(files, directory);
    EXPECT_EQ(protocol->CallsOf("downloadFile").size(), 2u);
    EXPECT_EQ(protocol->LastCall("downloadFile").fields[Social::NorlisCloudProtocol::FILE_NAME],
              QStringLiteral("/home/me/cloud/doc2.pdf"));
}

TEST_F(ReentranceTest, DownloadGoesOnWithoutTheCallersPointer)
{
    On(&NorlisCloudManager::DownloadingStarted, [this] { file.reset(); });
    manager->Download(file, directory);
    Forget();
    protocol->Answer(1, Social::Success);
    EXPECT_THAT(Events(), ElementsAre("DownloadingFinished(doc)"));
}

TEST_F(ReentranceTest, RefusedDownloadReportsTheRecordThatItWasGiven)
{
    protocol->refused = {"downloadFile"};
    On(&NorlisCloudManager::DownloadingStarted, [this] { file.reset(); });
    manager->Download(file, directory);
    EXPECT_THAT(Events(), Contains("DownloadingFileRequestError(doc, Download file failed)"));
}

TEST_F(ReentranceTest, PreviewGoesOnWithoutTheCallersPointer)
{
    On(&NorlisCloudManager::RetrieveFilePreviewStarted, [this] { file.reset(); });
    manager->RetrieveFilePreview(file, FileInfo::PreviewSize::Small, {40, 40});
    EXPECT_EQ(protocol->LastCall("retrievePreview").fields[Social::NorlisCloudProtocol::ID], "doc");
    Forget();
    protocol->Answer(1, Social::Error);
    EXPECT_THAT(Events(), Contains("RetrieveFilePreviewError(doc, 0, Retrieving file preview error)"));
}

TEST_F(ReentranceTest, FilesListGoesOnWhenASlotStartsATransfer)
{
    On(&NorlisCloudManager::RetrievingFilesListStarted, [this] { manager->Upload(path); });
    manager->RetrieveFilesList();
    EXPECT_THAT(Events(), ElementsAre("RetrievingFilesListStarted()", "UploadingStarted(/home/me/report.pdf)",
                                      "-> uploadFile 1", "-> retriveFileList 2"));
}

TEST_F(ReentranceTest, UploadMayBeRepeatedFromItsOwnError)
{
    int attempts = 0;
    On(&NorlisCloudManager::UploadingFileRequestError, [&] {
        if (++attempts < 3) {
            manager->Upload(path);
        }
    });
    protocol->refused = {"uploadFile"};
    manager->Upload(path);
    EXPECT_EQ(attempts, 3);
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(ReentranceTest, LogoutSurvivesAManagerDeletedInsideTheProtocol)
{
    protocol->inside["logout"] = [this](qint64) { manager.reset(); };
    manager->Logout();
    EXPECT_THAT(Events(), ElementsAre("-> logout"));
}

} // namespace

} // namespace Norlis::Test
