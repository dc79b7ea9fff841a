#include "CloudManagerBench.h"

namespace Norlis::Test {

namespace {

using QuotaMap = QMap<QString, PDF::Cloud::ICloudProtocol::QuotaValue>;

class QuotaTest : public CloudManagerTest {
protected:
    std::vector<std::string> EventsOfAnswer(Social::RequestResult result, const QuotaMap& quota = {})
    {
        const auto id = StartQuota();
        Forget();
        protocol->Answer(id, result, quota);
        return Events();
    }
};

TEST_F(QuotaTest, RequestIsAnnouncedAndSent)
{
    manager->UserQuota();
    EXPECT_THAT(Events(), ElementsAre("RetrievingUserQuotaStarted()", "-> userQuota 1"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(QuotaTest, SignedOutOnlyAsksForAuthorization)
{
    protocol->signedIn = false;
    manager->UserQuota();
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
}

TEST_F(QuotaTest, NeitherATransferNorAnotherQuotaRequestHoldsItBack)
{
    StartUpload();
    StartQuota();
    Forget();
    manager->UserQuota();
    EXPECT_THAT(Events(), ElementsAre("RetrievingUserQuotaStarted()", "-> userQuota 3"));
}

TEST_F(QuotaTest, FiguresOfTheOwnApplicationAreReportedInTheirOrder)
{
    EXPECT_THAT(EventsOfAnswer(Social::Success, {{"a", {1, 2}}, {"pdf", {30, 40}}, {"z", {5, 6}}}),
                ElementsAre("RetrievingUserQuotaFinished(30, 40)"));
}

TEST_F(QuotaTest, AnswerWithoutTheOwnApplicationIsZero)
{
    EXPECT_THAT(EventsOfAnswer(Social::Success, {{"PDF", {1, 2}}, {"other", {3, 4}}}),
                ElementsAre("RetrievingUserQuotaFinished(0, 0)"));
    EXPECT_THAT(EventsOfAnswer(Social::Success), ElementsAre("RetrievingUserQuotaFinished(0, 0)"));
}

TEST_F(QuotaTest, FiguresKeepTheirLow32Bits)
{
    EXPECT_THAT(EventsOfAnswer(Social::Success, {{"pdf", {4294967396, 2147483648}}}),
                ElementsAre("RetrievingUserQuotaFinished(100, -2147483648)"));
    EXPECT_THAT(EventsOfAnswer(Social::Success, {{"pdf", {-1, -4294967297}}}),
                ElementsAre("RetrievingUserQuotaFinished(-1, -1)"));
}

TEST_F(QuotaTest, RefusedRequestIsReportedAfterItsStartAndNotRegistered)
{
    protocol->refused = {"userQuota"};
    manager->UserQuota();
    EXPECT_THAT(Events(), ElementsAre("RetrievingUserQuotaStarted()", "-> userQuota refused",
                                      "ERROR Retrieve user quota information failed",
                                      "RetrievingUserQuotaErrorRequested(Retrieve user quota information failed)"));
    manager.reset();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(QuotaTest, ErrorIsReported)
{
    EXPECT_THAT(
        EventsOfAnswer(Social::Error),
        ElementsAre("ERROR User quota request error", "RetrievingUserQuotaErrorRequested(User quota request error)"));
}

TEST_F(QuotaTest, CancellationIsReported)
{
    EXPECT_THAT(EventsOfAnswer(Social::Canceled),
                ElementsAre("INFO User quota request canceled", "RetrievingUserQuotaCanceled()"));
}

TEST_F(QuotaTest, ForeignResultIsIgnored)
{
    EXPECT_THAT(EventsOfAnswer(foreignResult, {{"pdf", {1, 2}}}), IsEmpty());
    EXPECT_THAT(EventsOfAnswer(negativeResult, {{"pdf", {1, 2}}}), IsEmpty());
}

TEST_F(QuotaTest, LateCallbackDoesNothing)
{
    const auto id = StartQuota();
    protocol->Answer(id, Social::Success);
    Forget();
    protocol->Answer(id, Social::Success, QuotaMap{{"pdf", {1, 2}}});
    EXPECT_THAT(Events(), IsEmpty());
}

} // namespace

} // namespace Norlis::Test
