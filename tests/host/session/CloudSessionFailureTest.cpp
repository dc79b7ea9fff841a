#include <tests/support/SessionTest.h>

#include <QSignalSpy>

namespace Norlis::Test {

namespace {

using PDF::Cloud::AbstractCloudManager;

class CloudSessionFailureTest : public SessionTest {
protected:
    void Note(const QString& reason)
    {
        Social::OAuth2::Failure failure;
        failure.reason = reason;
        protocol->TellFailure(failure);
    }
};

TEST_F(CloudSessionFailureTest, SignedOutEveryRequestEndsInFailedAndAsksForTheSignIn)
{
    Refresh({EntryOf("1")});
    Upload(Write("2.pdf", "text"), "2");
    Events();
    protocol->calls.clear();
    protocol->signedIn = false;
    QSignalSpy asked(&session->Cloud(), &AbstractCloudManager::AuthorizationRequired);
    const auto expectFailure = [&](const char* request, const std::string& subject) {
        const auto line =
            std::string("Failed(") + request + ", " + subject + ", Not signed in, Nobody is signed in to the cloud)";
        EXPECT_THAT(Events(), IsEmpty()) << request;
        ASSERT_TRUE(WaitForEvent("Failed")) << request;
        EXPECT_THAT(Events(), ElementsAre(line));
        EXPECT_EQ(asked.count(), 1) << request;
        EXPECT_FALSE(problem.cause.advice.isEmpty());
        asked.clear();
    };

    session->Refresh();
    expectFailure("List", "");
    session->Upload({PathOf("2.pdf")});
    expectFailure("Upload", "2.pdf");
    session->UploadChanges("2");
    expectFailure("Upload", "2.pdf");
    session->Download("1", folder);
    expectFailure("Download", "1");
    session->Remove("1");
    expectFailure("Remove", "1");
    EXPECT_THAT(protocol->calls, IsEmpty());
    EXPECT_EQ(FilesIn(folder), QStringList("2.pdf"));

    session->FetchPreviews("1");
    ASSERT_TRUE(WaitForEvent("Failed(Preview, 1, Not signed in", 3));
    EXPECT_EQ(Events().size(), 3u);
}

TEST(CloudProblemTest, TextHasWhatIsKnownInSentences)
{
    Host::CloudProblem problem;
    problem.message = "Auth failed";
    EXPECT_EQ(problem.Text(), "Auth failed.");
    problem.cause.reason = "The server has no room left (507)";
    EXPECT_EQ(problem.Text(), "Auth failed: The server has no room left (507).");
    problem.cause.advice = "Free some space.";
    problem.message += '.'; // as it comes from elsewhere
    EXPECT_EQ(problem.Text(), "Auth failed: The server has no room left (507). Free some space.");
}

TEST_F(CloudSessionFailureTest, SignedOutSeveralUploadsAskForTheSignInOnce)
{
    protocol->signedIn = false;
    QSignalSpy asked(&session->Cloud(), &AbstractCloudManager::AuthorizationRequired);
    session->Upload({Write("a.pdf", "a"), Write("b.pdf", "b")});
    ASSERT_TRUE(WaitForEvent("Failed(Upload, b.pdf"));
    EXPECT_EQ(Events().size(), 2u);
    EXPECT_EQ(asked.count(), 1);
}

TEST_F(CloudSessionFailureTest, SignOutBetweenHashingAndSendingFailsTheTransfer)
{
    Refresh({EntryOf("1")});
    Upload(Write("1.pdf", "content"), "1");
    Events();
    QSignalSpy asked(&session->Cloud(), &AbstractCloudManager::AuthorizationRequired);
    session->UploadChanges("1");
    session->Download("1", folder);
    QMetaObject::invokeMethod(
        session.get(), [this] { protocol->signedIn = false; }, Qt::QueuedConnection);
    ASSERT_TRUE(WaitForEvent("Failed(Upload"));
    ASSERT_TRUE(WaitForEvent("Failed(Download"));
    EXPECT_EQ(Events().size(), 2u);
    EXPECT_EQ(asked.count(), 2);
}

TEST_F(CloudSessionFailureTest, SignInAndQuotaRequestsReportTheirReason)
{
    session->Cloud().Authorization("token");
    AnswerError("auth", "the token is no longer valid");
    session->Cloud().UserQuota();
    AnswerError("userQuota", "no figures today");
    EXPECT_THAT(Events(), ElementsAre("Failed(SignIn, , Auth failed, the token is no longer valid)",
                                      "Failed(Quota, , User quota request error, no figures today)"));
}

TEST_F(CloudSessionFailureTest, ReasonThatNobodyTookDoesNotStickToALaterFailure)
{
    Note("of a request without an error signal");
    LetWorkFinish();
    session->Cloud().UserQuota();
    Answer("userQuota", Social::Error);
    EXPECT_THAT(Events(), ElementsAre("Failed(Quota, , User quota request error, )"));

    session->Cloud().UserQuota();
    AnswerError("userQuota", "no figures today"); // and the next one is noted again
    EXPECT_THAT(Events(), ElementsAre("Failed(Quota, , User quota request error, no figures today)"));
}

TEST_F(CloudSessionFailureTest, EveryFailureHasItsOwnReasonEvenWithinOneTurnOfTheEventLoop)
{
    session->Cloud().UserQuota();
    AnswerError("userQuota", "first");
    session->Cloud().UserQuota();
    AnswerError("userQuota", "second");
    session->Cloud().UserQuota();
    Answer("userQuota", Social::Error);
    EXPECT_THAT(Events(), ElementsAre("Failed(Quota, , User quota request error, first)",
                                      "Failed(Quota, , User quota request error, second)",
                                      "Failed(Quota, , User quota request error, )"));
}

TEST_F(CloudSessionFailureTest, ProblemsTravelThroughQueuedConnections)
{
    QSignalSpy failures(session.get(), &Host::CloudSession::Failed);
    QString subject;
    QObject::connect(
        session.get(), &Host::CloudSession::Failed, session.get(),
        [&](const Host::CloudProblem& queued) { subject = queued.subject; }, Qt::QueuedConnection);
    session->Remove("unknown");
    ASSERT_TRUE(failures.wait());
    EXPECT_EQ(qvariant_cast<Host::CloudProblem>(failures[0][0]).subject, "unknown");
    LetWorkFinish();
    EXPECT_EQ(subject, "unknown");
}

} // namespace

} // namespace Norlis::Test
