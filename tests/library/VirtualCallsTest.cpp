#include "CloudManagerBench.h"

#include <QSignalSpy>

namespace Norlis::Test {

namespace {

/// Sees the calls that the manager makes to its own virtual operations.
class WatchedManager : public NorlisCloudManager {
public:
    using NorlisCloudManager::Download;
    using NorlisCloudManager::NorlisCloudManager;
    using NorlisCloudManager::Upload;

    std::vector<std::string> seen;

    void Upload(const QString& path) override
    {
        seen.push_back("Upload " + path.toStdString());
    }

    void Download(const std::shared_ptr<FileInfo>& file, const QString& directory) override
    {
        seen.push_back("Download " + file->GetId() + " to " + directory.toStdString());
    }

    void RetrieveFilesList() override
    {
        seen.emplace_back("RetrieveFilesList");
        emit RetrievingFilesListStarted();
    }

    void RemoveFile(const std::shared_ptr<FileInfo>& file) override
    {
        seen.push_back("RemoveFile " + file->GetId());
    }

    void UserQuota() override
    {
        seen.emplace_back("UserQuota");
    }

    void RetrieveFilePreview(const std::shared_ptr<FileInfo>& file, FileInfo::PreviewSize previewSize,
                             const QSize& size) override
    {
        seen.push_back("RetrieveFilePreview " + file->GetId() + ' ' + std::to_string(static_cast<int>(previewSize)) +
                       ' ' + std::to_string(size.width()) + 'x' + std::to_string(size.height()));
    }
};

class VirtualCallsTest : public CloudManagerTest {
protected:
    /// Starts an upload through the base and answers it.
    std::vector<std::string> SeenAfterUpload(Social::RequestResult result)
    {
        auto& watched = Use<WatchedManager>();
        watched.NorlisCloudManager::Upload(path);
        Social::NorlisCloudSharingResult sharing;
        sharing.id = "left behind";
        protocol->Answer(1, result, sharing);
        return watched.seen;
    }
};

TEST_F(VirtualCallsTest, TimerTicksReachTheOverride)
{
    settings->autoRefresh = true;
    settings->interval = 1;
    auto& watched = Use<WatchedManager>();
    QSignalSpy ticks(&watched, &NorlisCloudManager::RetrievingFilesListStarted);
    ASSERT_TRUE(ticks.wait());
    EXPECT_THAT(watched.seen, Contains("RetrieveFilesList"));
    EXPECT_THAT(protocol->calls, IsEmpty());
}

TEST_F(VirtualCallsTest, UploadOfAListCallsTheOverridePerPath)
{
    auto& watched = Use<WatchedManager>();
    watched.Upload(QList<QString>{"/2.pdf", "/1.pdf"});
    EXPECT_THAT(watched.seen, ElementsAre("Upload /2.pdf", "Upload /1.pdf"));
}

TEST_F(VirtualCallsTest, DownloadOfAListCallsTheOverridePerRecord)
{
    auto& watched = Use<WatchedManager>();
    watched.Download(files, directory);
    EXPECT_THAT(watched.seen, ElementsAre("Download doc1 to /home/me/cloud", "Download doc2 to /home/me/cloud"));
}

TEST_F(VirtualCallsTest, FilesListCallsTheOverrideForEachFileAndSize)
{
    auto& watched = Use<WatchedManager>();
    watched.NorlisCloudManager::RetrieveFilesList();
    PDF::Cloud::ICloudProtocol::FileInfo one;
    one.id = "one";
    auto two = one;
    two.id = "two";
    Forget();

    protocol->Answer(1, Social::Success, QList{one, two});

    EXPECT_THAT(watched.seen, ElementsAre("RetrieveFilePreview one 0 40x40", "RetrieveFilePreview one 1 100x100",
                                          "RetrieveFilePreview one 2 191x191", "RetrieveFilePreview two 0 40x40",
                                          "RetrieveFilePreview two 1 100x100", "RetrieveFilePreview two 2 191x191"));
    EXPECT_THAT(Events(), ElementsAre("RetrievingFilesListFinished([one two])"));
}

TEST_F(VirtualCallsTest, FinishedUploadCallsTheOverrideOfTheQuota)
{
    EXPECT_THAT(SeenAfterUpload(Social::Success), ElementsAre("UserQuota"));
}

TEST_F(VirtualCallsTest, FailedUploadCallsTheOverrideOfTheRemoval)
{
    EXPECT_THAT(SeenAfterUpload(Social::Error), ElementsAre("RemoveFile left behind"));
}

TEST_F(VirtualCallsTest, CancelledUploadCallsTheOverrideOfTheRemoval)
{
    EXPECT_THAT(SeenAfterUpload(Social::Canceled), ElementsAre("RemoveFile left behind"));
}

TEST_F(VirtualCallsTest, FinishedRemovalCallsTheOverrideOfTheQuotaOnce)
{
    auto& watched = Use<WatchedManager>();
    watched.NorlisCloudManager::RemoveFile(file);
    protocol->Answer(1, Social::Success);
    EXPECT_THAT(watched.seen, ElementsAre("UserQuota"));
}

} // namespace

} // namespace Norlis::Test
