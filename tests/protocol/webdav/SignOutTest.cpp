#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/NextcloudLikeServer.h>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

const QString newPassword = QString(FaultServer::canary) + "new";

/// Every kind of request that one makes once one is signed in; each returns the id.
std::vector<std::function<qint64(Client&)>> AllRequests(const QString& document, const QString& local)
{
    const QString target = local + ".fetched";
    return {[](Client& client) { return client.List()->operation; },
            [=](Client& client) { return client.Info(document)->operation; },
            [](Client& client) { return client.Quota()->operation; },
            [](Client& client) { return client.UserName()->operation; },
            [](Client& client) { return client.UserPicAddress()->operation; },
            [](Client& client) { return client.UserPic()->operation; },
            [=](Client& client) {
                return client.Preview(document, {64, 64})->operation;
            },
            [](Client& client) { return client.Probe()->operation; },
            [=](Client& client) { return client.Download(document, target)->operation; },
            [=](Client& client) { return client.Upload(local)->operation; },
            [=](Client& client) { return client.Remove(document)->operation; }};
}

class SignOutTest : public SignedInServiceTest<NextcloudLikeServer> {};

TEST_F(SignOutTest, NothingIsAskedBeforeTheSignIn)
{
    Client other(settings, server.Password());
    const int connections = server.Connections();
    for (const auto& request : AllRequests("1", LocalFile("a.pdf", "content"))) {
        EXPECT_EQ(request(other), -1);
        EXPECT_EQ(LastReason(other), "Nobody is signed in");
    }
    other.Protocol()->logout();
    QCoreApplication::processEvents();
    EXPECT_EQ(server.Connections(), connections);
}

TEST_F(SignOutTest, WhateverTheServerRefusesThePasswordForSignsOut)
{
    const QString document = Put("a.pdf", "content");
    const QString local = LocalFile("b.pdf", "content");
    int number = 0;
    for (const auto& request : AllRequests(document, local)) {
        for (const bool isDocumentKnown : {false, true}) {
            Client user(settings, server.Password());
            ASSERT_TRUE(user.SignIn());
            if (isDocumentKnown) {
                ASSERT_TRUE(user.List()->Succeeds());
            }
            const QString password = server.Password();
            server.SetPassword(newPassword);
            request(user);
            ASSERT_TRUE(WaitUntil([&] { return !user.failures.empty(); }, 10'000)) << number;
            EXPECT_FALSE(user.Protocol()->loggedIn()) << number;
            EXPECT_THAT(LastReason(user), HasSubstr("(401")) << number;
            EXPECT_EQ(LastAdvice(user), "Sign in again.") << number;
            const std::size_t asked = server.Requests().size();
            EXPECT_EQ(user.List()->operation, -1) << number;
            EXPECT_EQ(server.Requests().size(), asked) << number;
            EXPECT_TRUE(user.Authorize(newPassword)->Succeeds()) << number;
            EXPECT_TRUE(user.List()->Succeeds()) << number;
            server.SetPassword(password);
        }
        ++number;
    }
}

TEST_F(SignOutTest, RefusalOfAnEarlierSignInDoesNotEndANewerOne)
{
    server.SetPassword(newPassword);
    server.Misbehave("PROPFIND", Drips(10, 10)); // a refusal that takes its time
    const auto list = client.List();
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PROPFIND") == 1; }));
    ASSERT_TRUE(client.Authorize(newPassword)->Succeeds());
    ASSERT_FALSE(list->Came());
    EXPECT_TRUE(list->Fails());
    EXPECT_TRUE(client.Protocol()->loggedIn());
    EXPECT_TRUE(client.List()->Succeeds());
}

TEST_F(SignOutTest, RefusalOfAnEarlierSignInDoesNotEndOneThatIsUnderWay)
{
    server.SetPassword(newPassword);
    const auto list = client.List();
    server.Misbehave(When("PROPFIND").From(2), Drips(10, 5));
    const auto signIn = client.Authorize(newPassword);
    ASSERT_TRUE(list->Fails());
    ASSERT_FALSE(signIn->Came());
    EXPECT_TRUE(signIn->Succeeds());
    EXPECT_TRUE(client.Protocol()->loggedIn());
    EXPECT_TRUE(client.List()->Succeeds());
}

TEST_F(SignOutTest, SignOutClosesConnections)
{
    ASSERT_TRUE(client.List()->Succeeds());
    ASSERT_GT(server.OpenConnections(), 0);
    client.Protocol()->logout();
    EXPECT_TRUE(WaitUntil([&] { return server.OpenConnections() == 0; }, 10'000));
}

TEST_F(SignOutTest, SignInThatIsOvertakenBySignOutLeavesNothing)
{
    server.Misbehave("PROPFIND", Drips(20, 5));
    const auto signIn = client.Authorize();
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PROPFIND") == 1; }));
    client.Protocol()->logout();
    ASSERT_TRUE(WaitUntil([&] { return signIn->Came(); }));
    EXPECT_EQ(signIn->result, Social::Canceled);
    EXPECT_FALSE(client.Protocol()->loggedIn());
    EXPECT_TRUE(WaitUntil([&] { return server.OpenConnections() == 0; }, 10'000));
}

TEST_F(SignOutTest, CookiesAreNotSentBack)
{
    server.Misbehave(When("*").Always(), SetsACookie());
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(client.SignIn());
        ASSERT_TRUE(client.List()->Succeeds());
        ASSERT_TRUE(client.UserName()->Succeeds());
        client.Protocol()->logout();
    }
    EXPECT_GE(server.Requests().size(), 6U);
    for (const SeenRequest& request : server.Requests()) {
        EXPECT_FALSE(request.headers.Has("Cookie"));
    }
}

} // namespace

} // namespace Norlis::Test
