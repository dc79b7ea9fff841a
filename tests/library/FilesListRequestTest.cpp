#include "CloudManagerBench.h"

#include <QSignalSpy>

namespace Norlis::Test {

namespace {

using CloudFile = PDF::Cloud::ICloudProtocol::FileInfo;
using Records = QList<std::shared_ptr<FileInfo>>;

class FilesListRequestTest : public CloudManagerTest {
protected:
    /// Sends a request and answers it; gives the records that were reported.
    Records Retrieve(const QList<CloudFile>& cloudFiles)
    {
        QSignalSpy finished(manager.get(), &NorlisCloudManager::RetrievingFilesListFinished);
        protocol->Answer(StartFilesList(), Social::Success, cloudFiles);
        EXPECT_EQ(finished.count(), 1);
        return finished.value(0).value(0).value<Records>();
    }
};

CloudFile NamedFile(const QString& id)
{
    CloudFile entry;
    entry.id = id;
    return entry;
}

TEST_F(FilesListRequestTest, SignedOutOnlyAsksForAuthorization)
{
    protocol->signedIn = false;
    manager->RetrieveFilesList();
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
}

TEST_F(FilesListRequestTest, RequestIsAnnouncedAndSentWithoutFields)
{
    manager->RetrieveFilesList();

    EXPECT_THAT(Events(), ElementsAre("RetrievingFilesListStarted()", "-> retriveFileList 1"));
    EXPECT_TRUE(protocol->LastCall("retriveFileList").fields.isEmpty());
    EXPECT_TRUE(protocol->LastCall("retriveFileList").extra.isEmpty());
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(FilesListRequestTest, NothingHappensDuringAnUpload)
{
    StartUpload();
    Forget();
    manager->RetrieveFilesList();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(FilesListRequestTest, NothingHappensDuringADownload)
{
    StartDownload();
    Forget();
    manager->RetrieveFilesList();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(FilesListRequestTest, SignedOutDuringATransferAsksForAuthorization)
{
    StartUpload();
    protocol->signedIn = false;
    Forget();
    manager->RetrieveFilesList();
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
}

TEST_F(FilesListRequestTest, RunningRequestDoesNotStopAnother)
{
    const auto first = StartFilesList();
    const auto second = StartFilesList();
    Forget();

    protocol->Answer(second, Social::Success);
    protocol->Answer(first, Social::Error);

    EXPECT_THAT(Events(), ElementsAre("RetrievingFilesListFinished([])", "ERROR Files list request error",
                                      "RetrievingFilesListErrorRequested(Files list request error)"));
}

TEST_F(FilesListRequestTest, RefusedRequestIsReportedAfterItsStart)
{
    protocol->refused = {"retriveFileList"};
    manager->RetrieveFilesList();
    EXPECT_THAT(Events(), ElementsAre("RetrievingFilesListStarted()", "-> retriveFileList refused",
                                      "ERROR Retrieve files information failed",
                                      "RetrievingFilesListErrorRequested(Retrieve files information failed)"));
}

TEST_F(FilesListRequestTest, ErrorIsReported)
{
    const auto id = StartFilesList();
    Forget();
    protocol->Answer(id, Social::Error);
    EXPECT_THAT(Events(), ElementsAre("ERROR Files list request error",
                                      "RetrievingFilesListErrorRequested(Files list request error)"));
}

TEST_F(FilesListRequestTest, CancellationIsReported)
{
    const auto id = StartFilesList();
    Forget();
    protocol->Answer(id, Social::Canceled);
    EXPECT_THAT(Events(), ElementsAre("INFO Files list request canceled", "RetrievingFilesListCanceled()"));
}

TEST_F(FilesListRequestTest, ForeignResultIsIgnoredAndItsListDropped)
{
    for (const auto result : {foreignResult, negativeResult}) {
        const auto id = StartFilesList();
        Forget();
        protocol->Answer(id, result, QList<CloudFile>{NamedFile("a")});
        EXPECT_THAT(Events(), IsEmpty());
    }
}

TEST_F(FilesListRequestTest, EmptyListIsReportedWithoutPreviewRequests)
{
    const auto id = StartFilesList();
    Forget();
    protocol->Answer(id, Social::Success, QList<CloudFile>());
    EXPECT_THAT(Events(), ElementsAre("RetrievingFilesListFinished([])"));
}

TEST_F(FilesListRequestTest, ThreePreviewsOfEachFileAreRequestedInOrderBeforeTheListIsReported)
{
    const auto id = StartFilesList();
    Forget();
    protocol->Answer(id, Social::Success, QList<CloudFile>{NamedFile("b"), NamedFile("a")});

    EXPECT_THAT(Events(), ElementsAre("RetrieveFilePreviewStarted(b, 0)", "-> retrievePreview 2",
                                      "RetrieveFilePreviewStarted(b, 1)", "-> retrievePreview 3",
                                      "RetrieveFilePreviewStarted(b, 2)", "-> retrievePreview 4",
                                      "RetrieveFilePreviewStarted(a, 0)", "-> retrievePreview 5",
                                      "RetrieveFilePreviewStarted(a, 1)", "-> retrievePreview 6",
                                      "RetrieveFilePreviewStarted(a, 2)", "-> retrievePreview 7",
                                      "RetrievingFilesListFinished([b a])"));
}

TEST_F(FilesListRequestTest, RefusedPreviewsDoNotHoldTheListBack)
{
    protocol->refused = {"retrievePreview"};
    const auto id = StartFilesList();
    Forget();
    protocol->Answer(id, Social::Success, QList<CloudFile>{NamedFile("a")});
    const auto events = Events();
    EXPECT_EQ(events.size(), 3u * 4u + 1u);
    EXPECT_EQ(events.back(), "RetrievingFilesListFinished([a])");
}

TEST_F(FilesListRequestTest, PreviewsOfSignedOutUserAskForAuthorizationEachTime)
{
    const auto id = StartFilesList();
    Forget();
    protocol->signedIn = false;
    protocol->Answer(id, Social::Success, QList<CloudFile>{NamedFile("a")});
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()", "AuthorizationRequired()", "AuthorizationRequired()",
                                      "RetrievingFilesListFinished([a])"));
}

TEST_F(FilesListRequestTest, RecordCarriesWhatTheCloudSaid)
{
    const CloudFile cloudFile = {QStringLiteral("ид"),
                                 QStringLiteral("Bericht für alle.pdf"),
                                 5368709120,
                                 true,
                                 true,
                                 "text/plain",
                                 QStringLiteral("hash é"),
                                 "2024-02-29T12:30:45Z",
                                 "2025-03-01T06:07:08+02:00"};
    const auto records = Retrieve({cloudFile});

    ASSERT_EQ(records.size(), 1);
    FileInfo& record = *records.at(0);
    EXPECT_EQ(record.GetId(), "ид");
    EXPECT_TRUE(record.GetPath().empty());
    EXPECT_EQ(record.GetMd5Hash(), "");
    EXPECT_EQ(record.GetCloudHashBeforeChange(), "");
    EXPECT_EQ(record.GetSize(), 0u);
    EXPECT_FALSE(record.IsSyncingInProgress());
    auto& cloud = record.GetRedactableCloudInfo().value();
    EXPECT_EQ(cloud.GetFileName(), "Bericht für alle.pdf");
    EXPECT_EQ(cloud.GetSize(), 5368709120u);
    EXPECT_TRUE(cloud.IsPrivate());
    EXPECT_TRUE(cloud.GetDownloadUrl().isEmpty());
    EXPECT_EQ(cloud.GetCreatedAt(), QDateTime({2024, 2, 29}, {12, 30, 45}, Qt::UTC));
    EXPECT_EQ(cloud.GetModifyTime(), QDateTime({2025, 3, 1}, {4, 7, 8}, Qt::UTC));
    EXPECT_EQ(cloud.GetLifeTime(), 2147483647);
    EXPECT_EQ(cloud.GetMd5Hash(), "hash é");
    EXPECT_TRUE(cloud.GetPreviewsSet().empty());
}

TEST_F(FilesListRequestTest, RecordIsPrivateWhateverTheFlagsSay)
{
    CloudFile cloudFile = NamedFile("a");
    for (const bool flag : {false, true}) {
        cloudFile.isFolder = flag;
        cloudFile.isShared = flag;
        EXPECT_TRUE(Retrieve({cloudFile}).at(0)->GetRedactableCloudInfo()->IsPrivate());
    }
}

TEST_F(FilesListRequestTest, TimeThatIsNotIsoIsInvalid)
{
    CloudFile cloudFile = NamedFile("a");
    cloudFile.createdAt = "Wed May 20 03:40:13 1998";
    cloudFile.modifiedAt = "yesterday";
    const auto records = Retrieve({cloudFile});
    EXPECT_FALSE(records.at(0)->GetRedactableCloudInfo()->GetCreatedAt().isValid());
    EXPECT_FALSE(records.at(0)->GetRedactableCloudInfo()->GetModifyTime().isValid());
}

TEST_F(FilesListRequestTest, PreviewsOfALaterAnswerReachTheReportedRecord)
{
    const auto records = Retrieve({NamedFile("a")});
    QPixmap picture(4, 4);
    picture.fill(Qt::red);
    protocol->Answer(protocol->CallsOf("retrievePreview").at(1).id, Social::Success, picture);

    const auto previews = records.at(0)->GetRedactableCloudInfo()->GetPreviewsSet();
    ASSERT_EQ(previews.size(), 1u);
    EXPECT_EQ(previews.begin()->first, FileInfo::PreviewSize::Medium);
}

TEST_F(FilesListRequestTest, SameListTwiceGivesNewRecords)
{
    const auto first = Retrieve({NamedFile("a")});
    const auto second = Retrieve({NamedFile("a")});
    EXPECT_NE(first.at(0), second.at(0));
}

} // namespace

} // namespace Norlis::Test
