#include "CloudManagerBench.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QSignalSpy>

namespace Norlis::Test {

namespace {

class UploadOutcomeTest : public CloudManagerTest {
protected:
    /// What the service reports of the upload.
    const Social::NorlisCloudSharingResult sharing = {false,
                                                      QStringLiteral("neue ид"),
                                                      QStringLiteral("Übersicht (2).pdf"),
                                                      QUrl("https://cloud.example/d?x=1"),
                                                      QDateTime({2024, 2, 29}, {12, 30, 45}, Qt::UTC),
                                                      QDateTime({2025, 3, 1}, {6, 7, 8}, Qt::UTC),
                                                      -5};

    void ExpectRecordOfTheUpload(FileInfo& record)
    {
        EXPECT_EQ(record.GetId(), "neue ид");
        EXPECT_EQ(record.GetPath(), ioPath("normalized " + path.toStdString()));
        EXPECT_EQ(record.GetMd5Hash(), "hash of normalized " + path.toStdString());
        EXPECT_EQ(record.GetCloudHashBeforeChange(), "");
        EXPECT_FALSE(record.IsSyncingInProgress());
        auto& cloud = record.GetRedactableCloudInfo().value();
        EXPECT_EQ(cloud.GetFileName(), "Übersicht (2).pdf");
        EXPECT_EQ(cloud.GetSize(), 12u);
        EXPECT_FALSE(cloud.IsPrivate());
        EXPECT_EQ(cloud.GetDownloadUrl(), QUrl("https://cloud.example/d?x=1"));
        EXPECT_EQ(cloud.GetCreatedAt(), sharing.createdAt);
        EXPECT_EQ(cloud.GetModifyTime(), sharing.modifiedAt);
        EXPECT_EQ(cloud.GetLifeTime(), -5);
        EXPECT_EQ(cloud.GetMd5Hash(), "hash of normalized " + path.toStdString());
    }

    void SetUp() override
    {
        path = Write("report.pdf", "twelve bytes");
        fileSystem->normalize = [](const std::string& given) { return "normalized " + given; };
    }
};

TEST_F(UploadOutcomeTest, SuccessReportsTheRecordAndThenAsksForTheQuota)
{
    const auto id = StartUpload();
    Forget();

    protocol->Answer(id, Social::Success, sharing);

    EXPECT_THAT(Events(), ElementsAre("UploadingFinished(neue ид)", "RetrievingUserQuotaStarted()", "-> userQuota 2"));
    EXPECT_THAT(protocol->CallsOf("deleteFile"), IsEmpty());
}

TEST_F(UploadOutcomeTest, RecordIsBuiltFromTheServicesAnswerAndTheLocalFile)
{
    QSignalSpy finished(manager.get(), &NorlisCloudManager::UploadingFinished);
    const auto id = StartUpload();
    hashes->asked.clear();
    fileSystem->calls.clear();

    protocol->Answer(id, Social::Success, sharing);

    ASSERT_EQ(finished.count(), 1);
    ExpectRecordOfTheUpload(*finished[0][0].value<std::shared_ptr<FileInfo>>());
    EXPECT_THAT(fileSystem->calls, ElementsAre("NormalizePath(" + path.toStdString() + ")"));
    EXPECT_THAT(hashes->asked, ElementsAre("normalized " + path.toStdString()));
}

TEST_F(UploadOutcomeTest, SizeIsThatOfTheFileAtTheEnd)
{
    QSignalSpy finished(manager.get(), &NorlisCloudManager::UploadingFinished);
    const auto id = StartUpload();
    Write("report.pdf", "more than twelve bytes");

    protocol->Answer(id, Social::Success, sharing);

    EXPECT_EQ(finished[0][0].value<std::shared_ptr<FileInfo>>()->GetRedactableCloudInfo()->GetSize(), 22u);
}

TEST_F(UploadOutcomeTest, FileThatIsGoneHasSizeZero)
{
    QSignalSpy finished(manager.get(), &NorlisCloudManager::UploadingFinished);
    path = folder.filePath("never written.pdf");
    protocol->Answer(StartUpload(), Social::Success, sharing);
    EXPECT_EQ(finished[0][0].value<std::shared_ptr<FileInfo>>()->GetRedactableCloudInfo()->GetSize(), 0u);
}

TEST_F(UploadOutcomeTest, UploadOfARecordEndsInANewRecord)
{
    QSignalSpy finished(manager.get(), &NorlisCloudManager::UploadingFinished);
    file->SetPath(ioPath(path.toStdString()), "old hash");
    manager->Upload(file);

    protocol->Answer(protocol->LastId("uploadFile"), Social::Success, sharing);

    const auto record = finished[0][0].value<std::shared_ptr<FileInfo>>();
    EXPECT_NE(record, file);
    ExpectRecordOfTheUpload(*record);
    EXPECT_EQ(file->GetId(), "doc");
    EXPECT_EQ(file->GetMd5Hash(), "old hash");
}

TEST_F(UploadOutcomeTest, ErrorCleansUpInTheCloudBeforeItIsReported)
{
    const auto id = StartUpload();
    Forget();

    protocol->Answer(id, Social::Error, sharing);

    const auto localPath = path.toStdString();
    EXPECT_THAT(Events(), ElementsAre("ERROR Upload file error", "-> deleteFile 2",
                                      "UploadingFileRequestError(" + localPath + ", Upload file error)"));
    const QMap<QString, QString> expected = {{Social::NorlisCloudProtocol::ID, QStringLiteral("neue ид")}};
    EXPECT_EQ(protocol->LastCall("deleteFile").fields, expected);
}

TEST_F(UploadOutcomeTest, CancellationCleansUpInTheCloudBeforeItIsReported)
{
    const auto id = StartUpload();
    Forget();

    protocol->Answer(id, Social::Canceled, sharing);

    EXPECT_THAT(Events(), ElementsAre("INFO Upload file canceled", "-> deleteFile 2",
                                      "UploadingCanceled(" + path.toStdString() + ")"));
    const QMap<QString, QString> expected = {{Social::NorlisCloudProtocol::ID, QStringLiteral("neue ид")}};
    EXPECT_EQ(protocol->LastCall("deleteFile").fields, expected);
}

TEST_F(UploadOutcomeTest, RecordFormEndsInErrorAndCancellationAsThePathFormDoes)
{
    file->SetPath(ioPath(path.toStdString()), "hash");
    manager->Upload(file);
    manager->Upload(file);
    Forget();

    protocol->Answer(1, Social::Error, sharing);
    protocol->Answer(2, Social::Canceled, sharing);

    const auto localPath = path.toStdString();
    EXPECT_THAT(Events(),
                ElementsAre("ERROR Upload file error", "-> deleteFile 3",
                            "UploadingFileRequestError(" + localPath + ", Upload file error)",
                            "INFO Upload file canceled", "-> deleteFile 4", "UploadingCanceled(" + localPath + ")"));
}

TEST_F(UploadOutcomeTest, CleanUpReportsItsOwnOutcome)
{
    QSignalSpy removed(manager.get(), &NorlisCloudManager::RemoveFileFinished);
    protocol->Answer(StartUpload(), Social::Error, sharing);
    Forget();

    protocol->Answer(protocol->LastId("deleteFile"), Social::Success);

    EXPECT_THAT(Events(), ElementsAre("RemoveFileFinished(neue ид)", "RetrievingUserQuotaStarted()", "-> userQuota 3"));
    ExpectRecordOfTheUpload(*removed[0][0].value<std::shared_ptr<FileInfo>>());
}

TEST_F(UploadOutcomeTest, RefusedCleanUpIsReportedBeforeTheUploadsError)
{
    protocol->refused = {"deleteFile"};
    const auto id = StartUpload();
    Forget();

    protocol->Answer(id, Social::Error, sharing);

    EXPECT_THAT(Events(), ElementsAre("ERROR Upload file error", "-> deleteFile refused", "ERROR Remove file failed",
                                      "RemovingFileError(neue ид, Remove file failed)",
                                      "UploadingFileRequestError(" + path.toStdString() + ", Upload file error)"));
}

TEST_F(UploadOutcomeTest, CleanUpMakesItsOwnLoginTest)
{
    const auto id = StartUpload();
    protocol->signedIn = false;
    Forget();

    protocol->Answer(id, Social::Canceled, sharing);

    EXPECT_THAT(Events(), ElementsAre("INFO Upload file canceled", "AuthorizationRequired()",
                                      "UploadingCanceled(" + path.toStdString() + ")"));
}

TEST_F(UploadOutcomeTest, QuotaAfterSuccessMakesItsOwnLoginTest)
{
    const auto id = StartUpload();
    protocol->signedIn = false;
    Forget();
    protocol->Answer(id, Social::Success, sharing);
    EXPECT_THAT(Events(), ElementsAre("UploadingFinished(neue ид)", "AuthorizationRequired()"));
}

TEST_F(UploadOutcomeTest, CleanUpOfAnEmptyIdIsStillSent)
{
    protocol->Answer(StartUpload(), Social::Error);
    const QMap<QString, QString> expected = {{Social::NorlisCloudProtocol::ID, QString()}};
    EXPECT_EQ(protocol->LastCall("deleteFile").fields, expected);
}

TEST_F(UploadOutcomeTest, ForeignResultEndsTheUploadInSilence)
{
    for (const auto result : {foreignResult, negativeResult}) {
        const auto id = StartUpload();
        Forget();
        protocol->Answer(id, result, sharing);
        EXPECT_THAT(Events(), IsEmpty());
        EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
    }
}

TEST_F(UploadOutcomeTest, SecondCallbackDoesNothing)
{
    const auto id = StartUpload();
    protocol->Answer(id, Social::Success, sharing);
    Forget();
    protocol->Answer(id, Social::Success, sharing);
    protocol->Answer(id, Social::Error, sharing);
    EXPECT_THAT(Events(), IsEmpty());
}

} // namespace

} // namespace Norlis::Test
