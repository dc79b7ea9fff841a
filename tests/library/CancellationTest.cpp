#include "CloudManagerBench.h"

#include <stdexcept>

namespace Norlis::Test {

namespace {

/// A protocol that calls back, and callers that act, while the manager asks it to cancel a transfer.
class CancellationTest : public CloudManagerTest {};

TEST_F(CancellationTest, CallbacksOfACancelledUploadFromInsideAreIgnored)
{
    for (const auto result : {Social::Success, Social::Error, Social::Canceled, foreignResult}) {
        const auto upload = StartUpload();
        protocol->inside["cancelOperation"] = [&](qint64 id) {
            protocol->Progress(id, 99);
            protocol->Answer(id, result);
            protocol->Answer(id, result);
        };
        Forget();

        manager->CancelUploading(path);

        EXPECT_THAT(Events(), ElementsAre("-> cancelOperation " + std::to_string(upload),
                                          "UploadingCanceled(/home/me/report.pdf)"));
        EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
    }
}

TEST_F(CancellationTest, CallbacksOfACancelledDownloadFromInsideAreIgnored)
{
    for (const auto result : {Social::Success, Social::Error, Social::Canceled, foreignResult}) {
        const auto download = StartDownload();
        protocol->inside["cancelOperation"] = [&](qint64 id) {
            protocol->Progress(id, 99);
            protocol->Answer(id, result);
        };
        Forget();

        manager->CancelDownloading(file);

        EXPECT_THAT(Events(),
                    ElementsAre("-> cancelOperation " + std::to_string(download), "DownloadingCanceled(doc)"));
        EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
    }
}

TEST_F(CancellationTest, RequestIsStillRegisteredWhileTheProtocolIsAsked)
{
    StartUpload();
    bool inProgress = false;
    protocol->inside["cancelOperation"] = [&](qint64) { inProgress = manager->IsSyncInProgressWithCloud(); };
    manager->CancelUploading(path);
    EXPECT_TRUE(inProgress);
}

TEST_F(CancellationTest, RequestHasEndedWhenTheSignalIsEmitted)
{
    StartUpload();
    bool inProgress = true;
    QObject::connect(manager.get(), &NorlisCloudManager::UploadingCanceled, manager.get(),
                     [&] { inProgress = manager->IsSyncInProgressWithCloud(); });
    manager->CancelUploading(path);
    EXPECT_FALSE(inProgress);
}

TEST_F(CancellationTest, NestedCancelOfTheSamePathFindsNothing)
{
    StartUpload();
    protocol->inside["cancelOperation"] = [&](qint64) { manager->CancelUploading(path); };
    Forget();
    manager->CancelUploading(path);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingCanceled(/home/me/report.pdf)"));
}

TEST_F(CancellationTest, NestedCancelOfTheSameRecordFindsNothing)
{
    StartDownload();
    protocol->inside["cancelOperation"] = [&](qint64) { manager->CancelDownloading(file); };
    Forget();
    manager->CancelDownloading(file);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "DownloadingCanceled(doc)"));
}

TEST_F(CancellationTest, NestedCancelTakesTheNextUploadOfThePath)
{
    StartUpload();
    StartUpload();
    protocol->inside["cancelOperation"] = [&](qint64 id) {
        if (id == 1) {
            manager->CancelUploading(path);
        }
    };
    Forget();

    manager->CancelUploading(path);

    EXPECT_THAT(Events(),
                ElementsAre("-> cancelOperation 1", "-> cancelOperation 2", "UploadingCanceled(/home/me/report.pdf)",
                            "UploadingCanceled(/home/me/report.pdf)"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(CancellationTest, UploadStartedFromInsideGoesOn)
{
    StartUpload();
    protocol->inside["cancelOperation"] = [&](qint64) { manager->Upload(path); };
    Forget();

    manager->CancelUploading(path);

    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingStarted(/home/me/report.pdf)",
                                      "-> uploadFile 2", "UploadingCanceled(/home/me/report.pdf)"));
    EXPECT_TRUE(manager->IsSyncInProgressWithCloud());
    protocol->Progress(2, 1);
    EXPECT_THAT(Events(), ElementsAre("UploadingProgressValueChanged(/home/me/report.pdf, 1)"));
}

TEST_F(CancellationTest, OtherRequestsAnsweredFromInsideEndAsUsual)
{
    StartUpload();
    const auto quota = StartQuota();
    protocol->inside["cancelOperation"] = [&](qint64) { protocol->Answer(quota, Social::Canceled); };
    Forget();

    manager->CancelUploading(path);

    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "INFO User quota request canceled",
                                      "RetrievingUserQuotaCanceled()", "UploadingCanceled(/home/me/report.pdf)"));
}

TEST_F(CancellationTest, ManagerDeletedFromInsideCancelsOnceAndReportsNothing)
{
    StartUpload();
    protocol->inside["cancelOperation"] = [&](qint64) { manager.reset(); };
    Forget();
    manager->CancelUploading(path);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1"));
}

TEST_F(CancellationTest, ManagerDeletedFromInsideTheCancelOfADownloadLeavesTheFile)
{
    directory = folder.path();
    StartDownload();
    const auto partial = Write("doc.pdf");
    protocol->inside["cancelOperation"] = [&](qint64) { manager.reset(); };
    Forget();
    manager->CancelDownloading(file);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1"));
    EXPECT_TRUE(QFile::exists(partial));
}

TEST_F(CancellationTest, ManagerDeletedFromInsideStillCancelsItsOtherRequests)
{
    StartUpload();
    StartQuota();
    protocol->inside["cancelOperation"] = [&](qint64) {
        if (manager) {
            manager.reset();
        }
    };
    Forget();
    manager->CancelUploading(path);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "-> cancelOperation 2"));
}

TEST_F(CancellationTest, TransfersAreToldApartByPathOrIdAlone)
{
    const auto download = RecordOf(path.toStdString());
    manager->Download(download, directory);
    Forget();
    manager->CancelUploading(path);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingCanceled(/home/me/report.pdf)"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(CancellationTest, CallersArgumentsMayBeClearedFromInside)
{
    StartUpload();
    StartDownload();
    protocol->inside["cancelOperation"] = [&](qint64) {
        path.clear();
        file.reset();
    };
    Forget();

    auto record = file;
    manager->CancelUploading(path);
    file = std::move(record);
    manager->CancelDownloading(file);

    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingCanceled(/home/me/report.pdf)",
                                      "-> cancelOperation 2", "DownloadingCanceled(doc)"));
}

/// A protocol that throws when it is asked to cancel.
class FailedCancellationTest : public CloudManagerTest {
protected:
    void LetCancelThrow()
    {
        protocol->inside["cancelOperation"] = [](qint64) { throw std::runtime_error("no connection"); };
    }
};

TEST_F(FailedCancellationTest, UploadGoesOnAsIfNobodyHadAsked)
{
    const auto upload = StartUpload();
    LetCancelThrow();
    Forget();

    EXPECT_THROW(manager->CancelUploading(path), std::runtime_error);

    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1"));
    EXPECT_TRUE(manager->IsSyncInProgressWithCloud());
    protocol->Progress(upload, 50);
    protocol->Answer(upload, Social::Success);
    EXPECT_THAT(Events(), ElementsAre("UploadingProgressValueChanged(/home/me/report.pdf, 50)", "UploadingFinished()",
                                      "RetrievingUserQuotaStarted()", "-> userQuota 2"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(FailedCancellationTest, DownloadGoesOnAndItsFileStays)
{
    directory = folder.path();
    const auto download = StartDownload();
    const auto partial = Write("doc.pdf");
    LetCancelThrow();
    Forget();

    EXPECT_THROW(manager->CancelDownloading(file), std::runtime_error);

    EXPECT_TRUE(QFile::exists(partial));
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1"));
    protocol->Answer(download, Social::Success);
    EXPECT_THAT(Events(), ElementsAre("DownloadingFinished(doc)"));
}

TEST_F(FailedCancellationTest, MayBeTriedAgain)
{
    StartUpload();
    LetCancelThrow();
    EXPECT_THROW(manager->CancelUploading(path), std::runtime_error);
    protocol->inside.clear();
    Forget();
    manager->CancelUploading(path);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingCanceled(/home/me/report.pdf)"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(FailedCancellationTest, DestructorCancelsTheTransfer)
{
    StartUpload();
    LetCancelThrow();
    EXPECT_THROW(manager->CancelUploading(path), std::runtime_error);
    protocol->inside.clear();
    Forget();
    manager.reset();
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1"));
}

TEST_F(FailedCancellationTest, DestructorGoesOnWithTheOtherRequests)
{
    StartUpload();
    StartQuota();
    StartDownload();
    LetCancelThrow();
    protocol->calls.clear();
    manager.reset();
    EXPECT_EQ(protocol->CallsOf("cancelOperation").size(), 3u);
}

TEST_F(FailedCancellationTest, ManagerMayBeDeletedBefore)
{
    StartUpload();
    protocol->inside["cancelOperation"] = [this](qint64) {
        manager.reset();
        throw std::runtime_error("no connection");
    };
    Forget();
    EXPECT_THROW(manager->CancelUploading(path), std::runtime_error);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1"));
}

} // namespace

} // namespace Norlis::Test
