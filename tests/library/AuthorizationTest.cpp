#include "CloudManagerBench.h"

#include <contracts/NorlisCloudProtocol.h>

namespace Norlis::Test {

namespace {

using Social::NorlisCloudProtocol;

class AuthorizationTest : public CloudManagerTest {};

TEST_F(AuthorizationTest, EmptyTokenFailsWithoutAskingTheProtocol)
{
    manager->Authorization(QString());
    manager->Authorization(QStringLiteral(""));

    const auto line = "ERROR Norlis::PDF::Cloud::NorlisCloudManager::Authorization: invalid token";
    EXPECT_THAT(Events(), ElementsAre(line, "AuthorizationFailed()", line, "AuthorizationFailed()"));
    EXPECT_THAT(protocol->calls, IsEmpty());
    EXPECT_EQ(protocol->loggedInCalls, 0);
}

TEST_F(AuthorizationTest, TokenIsSentWithVersionAndApplication)
{
    protocol->signedIn = false;

    manager->Authorization(QStringLiteral("gültig 1"));

    const QMap<QString, QString> expected = {
        {NorlisCloudProtocol::API_VERSION, "2"},
        {NorlisCloudProtocol::SSO_TOKEN, QStringLiteral("gültig 1")},
        {NorlisCloudProtocol::APP_ID_ON_CLOUD, "pdf"},
    };
    EXPECT_EQ(protocol->LastCall("auth").fields, expected);
    EXPECT_EQ(protocol->loggedInCalls, 0);
    EXPECT_THAT(Events(), ElementsAre("-> auth 1"));
}

TEST_F(AuthorizationTest, SuccessIsLoggedAndThenReported)
{
    const auto id = StartAuthorization();
    Forget();

    protocol->Answer(id, Social::Success);

    EXPECT_THAT(Events(), ElementsAre("INFO Auth completed", "AuthorizationCompleted()"));
}

TEST_F(AuthorizationTest, EveryOtherResultIsAFailure)
{
    for (const auto result : {Social::Error, Social::Canceled, foreignResult, negativeResult}) {
        const auto id = StartAuthorization();
        Forget();

        protocol->Answer(id, result);

        EXPECT_THAT(Events(), ElementsAre("ERROR Auth failed", "AuthorizationFailed()")) << result;
    }
}

TEST_F(AuthorizationTest, RefusedRequestFailsAndIsNotRegistered)
{
    protocol->refused = {"auth"};

    manager->Authorization(token);
    EXPECT_THAT(Events(), ElementsAre("-> auth refused", "ERROR Auth failed", "AuthorizationFailed()"));

    manager.reset();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(AuthorizationTest, SecondCallbackDoesNothing)
{
    const auto id = StartAuthorization();
    protocol->Answer(id, Social::Success);
    Forget();

    protocol->Answer(id, Social::Error);
    protocol->Answer(id, Social::Success);

    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(AuthorizationTest, SigningInAgainSendsANewRequest)
{
    const auto first = StartAuthorization();
    const auto second = StartAuthorization();
    EXPECT_NE(first, second);
    Forget();

    protocol->Answer(second, Social::Success);
    protocol->Answer(first, Social::Error);

    EXPECT_THAT(Events(), ElementsAre("INFO Auth completed", "AuthorizationCompleted()", "ERROR Auth failed",
                                      "AuthorizationFailed()"));
}

TEST_F(AuthorizationTest, AuthorizationIsNoTransfer)
{
    StartAuthorization();
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(AuthorizationTest, LogoutIsReportedAfterTheProtocolLoggedOut)
{
    manager->Logout();
    EXPECT_THAT(Events(), ElementsAre("-> logout", "LoggedOut()"));
}

TEST_F(AuthorizationTest, LogoutWhileSignedOutDoesNothing)
{
    protocol->signedIn = false;
    manager->Logout();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(AuthorizationTest, LogoutLeavesRunningRequestsAlone)
{
    const auto upload = StartUpload();
    const auto quota = StartQuota();
    Forget();

    manager->Logout();
    EXPECT_TRUE(manager->IsSyncInProgressWithCloud());
    protocol->Progress(upload, 10);
    protocol->Answer(quota, Social::Canceled);

    EXPECT_THAT(Events(),
                ElementsAre("-> logout", "LoggedOut()", "UploadingProgressValueChanged(/home/me/report.pdf, 10)",
                            "INFO User quota request canceled", "RetrievingUserQuotaCanceled()"));
}

} // namespace

} // namespace Norlis::Test
