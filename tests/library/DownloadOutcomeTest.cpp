#include "CloudManagerBench.h"

#include <QFile>
#include <QSignalSpy>

namespace Norlis::Test {

namespace {

using ConstRecord = std::shared_ptr<const FileInfo>;

class DownloadOutcomeTest : public CloudManagerTest {};

TEST_F(DownloadOutcomeTest, EveryEndReportsACopyWhoseSyncingFlagIsClear)
{
    QSignalSpy finished(manager.get(), &NorlisCloudManager::DownloadingFinished);
    QSignalSpy errors(manager.get(), &NorlisCloudManager::DownloadingFileRequestError);
    QSignalSpy canceled(manager.get(), &NorlisCloudManager::DownloadingCanceled);
    file->SetIsSyncingInProgress(true);
    hashes->hashes["/home/me/cloud/doc.pdf"] = "at the start";

    for (const auto& [result, spy] :
         {std::pair(Social::Success, &finished), {Social::Error, &errors}, {Social::Canceled, &canceled}}) {
        const auto id = StartDownload();
        hashes->asked.clear();
        protocol->Answer(id, result);

        ASSERT_EQ(spy->count(), 1);
        const auto copy = std::const_pointer_cast<FileInfo>((*spy)[0][0].value<ConstRecord>());
        EXPECT_NE(copy, file);
        EXPECT_FALSE(copy->IsSyncingInProgress());
        EXPECT_EQ(copy->GetId(), "doc");
        EXPECT_EQ(copy->GetPath(), ioPath("/home/me/cloud/doc.pdf"));
        EXPECT_EQ(copy->GetMd5Hash(), "at the start");
        EXPECT_TRUE(file->IsSyncingInProgress());
        EXPECT_THAT(hashes->asked, IsEmpty());
    }
}

TEST_F(DownloadOutcomeTest, CopyIsMadeOfTheRecordAsItStandsAtTheEnd)
{
    QSignalSpy finished(manager.get(), &NorlisCloudManager::DownloadingFinished);
    const auto id = StartDownload();
    file->SetPath(ioPath("/moved.pdf"), "moved");
    protocol->Answer(id, Social::Success);
    EXPECT_EQ(std::const_pointer_cast<FileInfo>(finished[0][0].value<ConstRecord>())->GetPath(), ioPath("/moved.pdf"));
}

TEST_F(DownloadOutcomeTest, SuccessIsReportedWithoutLogOrQuota)
{
    const auto id = StartDownload();
    Forget();
    protocol->Answer(id, Social::Success);
    EXPECT_THAT(Events(), ElementsAre("DownloadingFinished(doc)"));
}

TEST_F(DownloadOutcomeTest, ErrorIsReportedAndThePartialFileStays)
{
    directory = folder.path();
    const auto id = StartDownload();
    const auto partial = Write("doc.pdf");
    Forget();

    protocol->Answer(id, Social::Error);

    EXPECT_THAT(Events(),
                ElementsAre("ERROR Download file error", "DownloadingFileRequestError(doc, Download file error)"));
    EXPECT_TRUE(QFile::exists(partial));
    EXPECT_FALSE(file->GetPath().empty());
}

TEST_F(DownloadOutcomeTest, CancellationByTheServiceDeletesTheFileBeforeItIsReported)
{
    directory = folder.path();
    const auto id = StartDownload();
    const auto partial = Write("doc.pdf");
    bool existedAtSignal = true;
    QObject::connect(manager.get(), &NorlisCloudManager::DownloadingCanceled, manager.get(),
                     [&] { existedAtSignal = QFile::exists(partial); });
    Forget();

    protocol->Answer(id, Social::Canceled);

    EXPECT_THAT(Events(), ElementsAre("INFO Download file canceled", "DownloadingCanceled(doc)"));
    EXPECT_FALSE(existedAtSignal);
}

TEST_F(DownloadOutcomeTest, CancellationWithoutAnyFileIsReportedAllTheSame)
{
    directory = folder.path();
    const auto id = StartDownload();
    Forget();
    protocol->Answer(id, Social::Canceled);
    EXPECT_THAT(Events(), ElementsAre("INFO Download file canceled", "DownloadingCanceled(doc)"));
}

TEST_F(DownloadOutcomeTest, ForeignResultEndsTheDownloadInSilence)
{
    directory = folder.path();
    for (const auto result : {foreignResult, negativeResult}) {
        const auto id = StartDownload();
        const auto partial = Write("doc.pdf");
        Forget();
        protocol->Answer(id, result);
        EXPECT_THAT(Events(), IsEmpty());
        EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
        EXPECT_TRUE(QFile::exists(partial));
    }
}

TEST_F(DownloadOutcomeTest, CallbacksKeepTheRecordAliveUntilTheEnd)
{
    const auto id = StartDownload();
    const std::weak_ptr<FileInfo> watched = file;
    file.reset();
    EXPECT_FALSE(watched.expired());
    Forget();
    protocol->Answer(id, Social::Success);
    EXPECT_THAT(Events(), ElementsAre("DownloadingFinished(doc)"));
    protocol->Drop(id);
    EXPECT_TRUE(watched.expired());
}

} // namespace

} // namespace Norlis::Test
