#include <tests/support/SessionTest.h>
#include <tests/support/Waiting.h>

#include <QDateTime>
#include <QPixmap>
#include <QTimer>

namespace Norlis::Test {

namespace {

using Connection = Host::CloudSession::Connection;
using Kind = Social::OAuth2::FailureKind;

/// A session that is to stay signed in to a service that is not always there.
class CloudSessionConnectionTest : public SessionTest {
protected:
    void Break(const std::string& operation)
    {
        AnswerError(operation, "the line is cut", Kind::Unavailable);
    }

    void StartSigningIn()
    {
        protocol->signedIn = false;
        session->StaySignedIn("token");
        ASSERT_EQ(protocol->CallsOf("auth").size(), 1U);
        EXPECT_EQ(session->ConnectionState(), Connection::Connecting);
    }

    void LetIn()
    {
        protocol->signedIn = true;
        Answer("auth", Social::Success);
    }

    void SignIn()
    {
        ASSERT_NO_FATAL_FAILURE(StartSigningIn());
        LetIn();
        ASSERT_EQ(session->ConnectionState(), Connection::Online);
        Refresh({EntryOf("1")});
        Events();
    }

    bool IsNextIn(int seconds) const
    {
        const auto wait = QDateTime::currentDateTime().msecsTo(session->NextAttempt());
        return wait > (seconds - 2) * 1000 && wait <= seconds * 1050; // Qt moves such a timer by up to a twentieth
    }

    /// Until the session asks by itself, which takes up to a minute otherwise.
    void LetTheWaitEnd(const std::string& operation)
    {
        const auto wait = session->findChild<QTimer*>();
        ASSERT_TRUE(wait && wait->isActive());
        const bool isAsking = session->ConnectionState() == Connection::Connecting;
        const auto calls = protocol->CallsOf(operation).size();
        wait->start(0);
        ASSERT_TRUE(WaitUntil([&] { return !wait->isActive(); }));
        EXPECT_EQ(protocol->CallsOf(operation).size(), calls + (isAsking ? 0 : 1));
    }

    void GoOffline()
    {
        ASSERT_NO_FATAL_FAILURE(SignIn());
        session->TryNow();
        Break("retriveFileList");
        ASSERT_EQ(session->ConnectionState(), Connection::Offline);
    }

    /// The service is asked for the list and answers.
    void ComeBack()
    {
        const auto refreshes = CountOf("ListRefreshed");
        const auto lists = protocol->CallsOf("retriveFileList").size();
        session->TryNow();
        ASSERT_EQ(protocol->CallsOf("retriveFileList").size(), lists + 1);
        Answer("retriveFileList", Social::Success, QList<CloudEntry>{EntryOf("1")});
        ASSERT_TRUE(WaitForEvent("ListRefreshed", refreshes + 1));
        EXPECT_EQ(session->ConnectionState(), Connection::Online);
    }
};

TEST_F(CloudSessionConnectionTest, SignsInAgainWhenTheServiceIsBack)
{
    ASSERT_NO_FATAL_FAILURE(StartSigningIn());
    Break("auth");
    EXPECT_THAT(Events(), Contains("Failed(SignIn, , Auth failed, the line is cut)"));
    EXPECT_EQ(session->ConnectionState(), Connection::Offline);
    EXPECT_TRUE(IsNextIn(5));
    ASSERT_TRUE(WaitForCalls("auth", 2)); // by itself, five seconds later
    EXPECT_EQ(session->ConnectionState(), Connection::Connecting);
    EXPECT_FALSE(session->NextAttempt().isValid());
    LetIn();
    EXPECT_EQ(session->ConnectionState(), Connection::Online);
    EXPECT_FALSE(session->NextAttempt().isValid());
}

TEST_F(CloudSessionConnectionTest, WaitsLongerEachTimeUpToAMinute)
{
    ASSERT_NO_FATAL_FAILURE(StartSigningIn());
    for (const int seconds : {5, 15, 60, 60}) {
        Break("auth");
        EXPECT_TRUE(IsNextIn(seconds));
        ASSERT_NO_FATAL_FAILURE(LetTheWaitEnd("auth"));
    }
}

TEST_F(CloudSessionConnectionTest, WhatTheUserTriesLeavesTheNextAttemptWhereItIs)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->TryNow();
    Break("retriveFileList");
    const auto next = session->NextAttempt();
    for (std::size_t attempt = 0; attempt < 3; ++attempt) {
        session->TryNow();
        EXPECT_FALSE(session->NextAttempt().isValid()); // it is being asked
        Break("retriveFileList");
        session->Refresh();
        ASSERT_TRUE(WaitForCalls("retriveFileList", 4 + 2 * attempt));
        Break("retriveFileList");
        EXPECT_LT(qAbs(next.msecsTo(session->NextAttempt())), 1000);
    }
    ASSERT_NO_FATAL_FAILURE(LetTheWaitEnd("retriveFileList"));
    Break("retriveFileList");
    EXPECT_TRUE(IsNextIn(15)); // after the second that it has made by itself
}

TEST_F(CloudSessionConnectionTest, AWaitThatEndsWhileTheUserTriesIsFollowedByAnother)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->TryNow();
    Break("retriveFileList");
    session->TryNow();
    ASSERT_NO_FATAL_FAILURE(LetTheWaitEnd("retriveFileList")); // it is being asked already
    EXPECT_EQ(session->ConnectionState(), Connection::Connecting);
    Break("retriveFileList");
    EXPECT_TRUE(IsNextIn(15));
}

TEST_F(CloudSessionConnectionTest, ATokenThatIsRefusedIsNotTriedAgain)
{
    ASSERT_NO_FATAL_FAILURE(StartSigningIn());
    AnswerError("auth", "wrong password", Kind::NotSignedIn);
    EXPECT_EQ(session->ConnectionState(), Connection::SignedOut);
    session->TryNow();
    EXPECT_EQ(protocol->CallsOf("auth").size(), 1U);
}

TEST_F(CloudSessionConnectionTest, AListThatCannotBeFetchedIsAskedForAgain)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->Refresh();
    ASSERT_TRUE(WaitForCalls("retriveFileList", 2));
    Break("retriveFileList");
    EXPECT_EQ(session->ConnectionState(), Connection::Offline);
    ASSERT_NO_FATAL_FAILURE(ComeBack());
    EXPECT_EQ(protocol->CallsOf("auth").size(), 1U);
}

TEST_F(CloudSessionConnectionTest, ATransferThatSucceedsShowsThatTheServiceIsThere)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->Refresh();
    ASSERT_TRUE(WaitForCalls("retriveFileList", 2));
    Break("retriveFileList");
    ASSERT_EQ(session->ConnectionState(), Connection::Offline);
    Upload(Write("2.pdf", "text"), "2");
    EXPECT_EQ(session->ConnectionState(), Connection::Online);
    EXPECT_FALSE(session->NextAttempt().isValid());
}

TEST_F(CloudSessionConnectionTest, ARemovalThatSucceedsShowsThatTheServiceIsThere)
{
    ASSERT_NO_FATAL_FAILURE(GoOffline());
    session->Cloud().RemoveFile(Held("1"));
    Answer("deleteFile", Social::Success);
    EXPECT_EQ(session->ConnectionState(), Connection::Online);
}

TEST_F(CloudSessionConnectionTest, FiguresOfTheStorageShowThatTheServiceIsThere)
{
    ASSERT_NO_FATAL_FAILURE(GoOffline());
    session->Cloud().UserQuota();
    Answer("userQuota", Social::Success, QMap<QString, PDF::Cloud::ICloudProtocol::QuotaValue>());
    EXPECT_EQ(session->ConnectionState(), Connection::Online);
}

TEST_F(CloudSessionConnectionTest, APreviewHasTheServiceAskedAtOnce)
{
    ASSERT_NO_FATAL_FAILURE(GoOffline());
    session->FetchPreviews("1");
    ASSERT_TRUE(WaitForCalls("retrievePreview", 3));
    QPixmap picture(8, 8);
    picture.fill(Qt::red);
    Answer("retrievePreview", Social::Success, picture);
    EXPECT_EQ(session->ConnectionState(), Connection::Connecting);
    Answer("retriveFileList", Social::Success, QList<CloudEntry>{EntryOf("1")});
    ASSERT_TRUE(WaitForEvent("ListRefreshed"));
    EXPECT_EQ(session->ConnectionState(), Connection::Online);
}

TEST_F(CloudSessionConnectionTest, PicturesThatCameFromNowhereHaveItAskedOnceInAWait)
{
    ASSERT_NO_FATAL_FAILURE(GoOffline());
    QPixmap picture(8, 8);
    picture.fill(Qt::red);
    const auto draw = [&] {
        session->DrawPreview("1", {100, 100});
        Answer("retrievePreview", Social::Success, picture);
    };
    draw();
    EXPECT_EQ(session->ConnectionState(), Connection::Connecting);
    Break("retriveFileList"); // a picture of the protocol's cache
    draw();
    EXPECT_EQ(session->ConnectionState(), Connection::Offline);
    ASSERT_NO_FATAL_FAILURE(LetTheWaitEnd("retriveFileList"));
    Break("retriveFileList");
    draw();
    EXPECT_EQ(session->ConnectionState(), Connection::Connecting);
}

TEST_F(CloudSessionConnectionTest, ABrokenUploadWaitsAndGoesOn)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    const auto path = Write("plan.pdf", "plan");
    session->Upload({path});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    Break("uploadFile");
    EXPECT_THAT(Events(), ElementsAre("UploadWaiting(plan.pdf)"));
    EXPECT_EQ(session->ConnectionState(), Connection::Offline);
    ASSERT_NO_FATAL_FAILURE(ComeBack());
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    Answer("uploadFile", Social::Success, SharingOf("2", "plan.pdf"));
    EXPECT_THAT(Events(), Contains("DocumentUploaded(plan.pdf, 2)"));
}

TEST_F(CloudSessionConnectionTest, ABrokenUpdateOfADocumentWaitsAndGoesOn)
{
    const auto path = Write("1.pdf", "first");
    Upload(path, "1");
    ASSERT_NO_FATAL_FAILURE(SignIn());
    Write("1.pdf", "second");
    session->ReplaceInCloud("1"); // the list shows another version
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    Break("uploadFile");
    EXPECT_THAT(Events(), ElementsAre("UploadWaiting(1.pdf)"));
    ASSERT_NO_FATAL_FAILURE(ComeBack());
    ASSERT_TRUE(WaitForCalls("uploadFile", 3));
    Answer("uploadFile", Social::Success, SharingOf("1", "1.pdf"));
    EXPECT_THAT(Events(), Contains("DocumentUploaded(1.pdf, 1)"));
}

TEST_F(CloudSessionConnectionTest, ABrokenDownloadWaitsAndGoesOn)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->Download("1", folder);
    ASSERT_TRUE(WaitForCalls("downloadFile", 1));
    Break("downloadFile");
    EXPECT_THAT(Events(), ElementsAre("DownloadWaiting(1)"));
    EXPECT_THAT(FilesIn(folder), IsEmpty());
    ASSERT_NO_FATAL_FAILURE(ComeBack());
    ASSERT_TRUE(WaitForCalls("downloadFile", 2));
    Deliver("content");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded(1"));
    EXPECT_EQ(Read(PathOf("1.pdf")), "content");
}

TEST_F(CloudSessionConnectionTest, ABrokenRemovalWaitsAndGoesOn)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->RemoveLater({"1"}, std::chrono::milliseconds(0));
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    Break("deleteFile");
    ASSERT_TRUE(WaitForCalls("retriveFileList", 2)); // whether the service is there
    Break("retriveFileList");
    EXPECT_EQ(session->ConnectionState(), Connection::Offline);
    EXPECT_TRUE(session->IsRemovalPending("1"));
    EXPECT_EQ(CountOf("Failed(Remove"), 0);
    ASSERT_NO_FATAL_FAILURE(ComeBack());
    ASSERT_TRUE(WaitForCalls("deleteFile", 2));
    Answer("deleteFile", Social::Success);
    EXPECT_TRUE(WaitForEvent("DocumentRemoved(1"));
    EXPECT_FALSE(session->IsRemovalPending("1"));
}

TEST_F(CloudSessionConnectionTest, TransfersCanBeBegunWhileTheServiceIsAway)
{
    Refresh({EntryOf("1")});
    ASSERT_NO_FATAL_FAILURE(StartSigningIn());
    Break("auth");
    Events();
    session->Upload({Write("plan.pdf", "plan")});
    session->Download("1", folder);
    ASSERT_TRUE(WaitForEvent("UploadWaiting") && WaitForEvent("DownloadWaiting"));
    EXPECT_EQ(CountOf("Failed"), 0);
    session->TryNow();
    LetIn();
    EXPECT_TRUE(WaitForCalls("uploadFile", 1));
    EXPECT_TRUE(WaitForCalls("downloadFile", 1));
}

TEST_F(CloudSessionConnectionTest, WhatWaitsCanBeCancelled)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    const auto path = Write("plan.pdf", "plan");
    session->Upload({path});
    session->Download("1", folder);
    ASSERT_TRUE(WaitForCalls("uploadFile", 1) && WaitForCalls("downloadFile", 1));
    Break("uploadFile");
    Break("downloadFile");
    session->CancelUpload(path);
    session->CancelDownload("1");
    ASSERT_TRUE(WaitForEvent("UploadCanceled") && WaitForEvent("DownloadCanceled"));
    Events();
    ASSERT_NO_FATAL_FAILURE(ComeBack());
    LetWorkFinish();
    EXPECT_EQ(protocol->CallsOf("downloadFile").size(), 1U);
    EXPECT_EQ(CountOf("DocumentUploaded"), 0);
}

TEST_F(CloudSessionConnectionTest, ATransferThatAloneBreaksOffFailsInTheEnd)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->Upload({Write("plan.pdf", "too much for this service")});
    for (std::size_t attempt = 1; attempt <= 3; ++attempt) {
        ASSERT_TRUE(WaitForCalls("uploadFile", attempt));
        Break("uploadFile");
        ASSERT_NO_FATAL_FAILURE(ComeBack());
    }
    ASSERT_TRUE(WaitForCalls("uploadFile", 4));
    Break("uploadFile");
    EXPECT_EQ(CountOf("UploadWaiting"), 3);
    EXPECT_EQ(CountOf("Failed(Upload"), 1);
}

TEST_F(CloudSessionConnectionTest, AnOutageIsNotTheTransfersFault)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->Upload({Write("plan.pdf", "plan")});
    for (std::size_t attempt = 1; attempt <= 5; ++attempt) {
        ASSERT_TRUE(WaitForCalls("uploadFile", attempt));
        Break("uploadFile");
        session->TryNow();
        Break("retriveFileList");
        ASSERT_NO_FATAL_FAILURE(ComeBack());
    }
    EXPECT_EQ(CountOf("UploadWaiting"), 5);
    EXPECT_EQ(CountOf("Failed(Upload"), 0);
}

TEST_F(CloudSessionConnectionTest, WhatFailsForAnotherReasonDoesNotWait)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->Upload({Write("plan.pdf", "plan")});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    AnswerError("uploadFile", "no room");
    EXPECT_EQ(CountOf("Failed(Upload"), 1);
    EXPECT_EQ(session->ConnectionState(), Connection::Online);
}

TEST_F(CloudSessionConnectionTest, WhoSignsOutStaysSignedOut)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->SignOut();
    EXPECT_EQ(session->ConnectionState(), Connection::SignedOut);
    EXPECT_EQ(protocol->CallsOf("logout").size(), 1U);
    session->TryNow();
    EXPECT_EQ(protocol->CallsOf("auth").size(), 1U);
}

TEST_F(CloudSessionConnectionTest, WhatWaitsFailsWhenNobodyIsToBeSignedInAnyMore)
{
    ASSERT_NO_FATAL_FAILURE(SignIn());
    session->Upload({Write("plan.pdf", "plan")});
    session->Download("1", folder);
    ASSERT_TRUE(WaitForCalls("uploadFile", 1) && WaitForCalls("downloadFile", 1));
    Break("uploadFile");
    Break("downloadFile");
    protocol->signedIn = false;
    session->SignOut();
    ASSERT_TRUE(WaitForEvent("Failed(Upload, plan.pdf, Not signed in"));
    ASSERT_TRUE(WaitForEvent("Failed(Download, 1, Not signed in"));
}

TEST_F(CloudSessionConnectionTest, WhoAsksForTheListMeanwhileDoesNotEndIt)
{
    ASSERT_NO_FATAL_FAILURE(StartSigningIn());
    Break("auth");
    Events();
    session->Refresh();
    ASSERT_TRUE(WaitForEvent("Failed(List, , Not signed in"));
    EXPECT_EQ(session->ConnectionState(), Connection::Offline);
    session->TryNow();
    LetIn();
    EXPECT_EQ(session->ConnectionState(), Connection::Online);
}

TEST_F(CloudSessionConnectionTest, WithoutItABrokenTransferFails)
{
    session->Upload({Write("plan.pdf", "plan")});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    Break("uploadFile");
    EXPECT_THAT(Events(), ElementsAre("Failed(Upload, plan.pdf, Upload file error, the line is cut)"));
    EXPECT_EQ(session->ConnectionState(), Connection::SignedOut);
}

} // namespace

} // namespace Norlis::Test
