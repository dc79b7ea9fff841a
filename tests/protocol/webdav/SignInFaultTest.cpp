#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/Loopback.h>

#include <stdexcept>

namespace Norlis::Test {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const QString canary = FaultServer::canary;

class SignInFaultTest : public ServiceTest<> {
protected:
    /// Somebody fails to sign in, and is told why in words.
    Social::OAuth2::Failure FailureOfSignIn()
    {
        Client client(settings, server.Password());
        EXPECT_TRUE(client.Authorize()->Fails());
        EXPECT_FALSE(client.Protocol()->loggedIn());
        EXPECT_EQ(client.failures.size(), 1U);
        EXPECT_EQ(LastFailure(client).what, "Sign-in");
        EXPECT_NE(LastFailure(client).advice, QString());
        return LastFailure(client);
    }

    std::string ReasonOfSignIn()
    {
        return FailureOfSignIn().reason.toStdString();
    }

    bool SignsIn()
    {
        return Client(settings, server.Password()).SignIn();
    }
};

/// Why nobody can be constructed who uses an address; empty when somebody can.
std::string WhyNotConstructed(const QString& address, bool allowPlainHttp = false)
{
    Social::OAuth2::AuthInfo settings;
    settings.serviceUrl = QUrl(address);
    settings.allowPlainHttp = allowPlainHttp;
    try {
        const Client client(settings);
    } catch (const std::invalid_argument& problem) {
        return problem.what();
    }
    return {};
}

TEST_F(SignInFaultTest, UserAndPasswordAreProvenByOneLookAtTheCollection)
{
    server.SetPassword(canary + ":pä:ss wörd/+?%");
    ASSERT_TRUE(SignsIn());
    const auto requests = server.Requests();
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].method, "PROPFIND");
    EXPECT_EQ(requests[0].target, server.CollectionPath());
    EXPECT_EQ(requests[0].headers.Value("Depth"), "0");
    EXPECT_EQ(requests[0].headers.Value("Authorization"), BasicAuthorization("norlis", server.Password().toUtf8()));
}

TEST_F(SignInFaultTest, TokenWithoutAUserIsABearerToken)
{
    settings.serviceUrl.setUserName({});
    ASSERT_TRUE(SignsIn());
    EXPECT_EQ(server.Requests()[0].headers.Value("Authorization"), "Bearer " + server.Password().toUtf8());
}

TEST_F(SignInFaultTest, UserOfTheSettingsGoesBeforeTheOneInTheAddress)
{
    settings.serviceUrl.setUserName("somebody else");
    settings.userName = "norlis";
    EXPECT_TRUE(SignsIn());
}

TEST_F(SignInFaultTest, PasswordInTheAddressIsIgnored)
{
    settings.serviceUrl.setPassword(canary + "another");
    ASSERT_TRUE(SignsIn());
    settings.serviceUrl.setPassword(server.Password());
    Client client(settings, "wrong");
    EXPECT_FALSE(client.SignIn());
}

TEST_F(SignInFaultTest, WrongPasswordIsSaidOnce)
{
    Client client(settings, canary + "wrong");
    ASSERT_TRUE(client.Authorize()->Fails());
    EXPECT_FALSE(client.Protocol()->loggedIn());
    EXPECT_THAT(LastReason(client), AllOf(HasSubstr("does not accept"), HasSubstr("(401)")));
    EXPECT_EQ(LastAdvice(client), "Sign in again.");
    EXPECT_EQ(server.Requests().size(), 1U);
    EXPECT_TRUE(client.Authorize(server.Password())->Succeeds());
    EXPECT_TRUE(client.Protocol()->loggedIn());
}

TEST_F(SignInFaultTest, WhatCannotBeAPasswordIsNotSent)
{
    for (const QString& token : {QString(), canary + "\nX-Header: value", canary + '\0'}) {
        Client client(settings, token);
        EXPECT_TRUE(client.Authorize()->Fails());
        EXPECT_EQ(LastReason(client), "That is not a password or token");
    }
    EXPECT_EQ(server.Connections(), 0);
}

TEST_F(SignInFaultTest, WhatIsNoCollectionIsRefused)
{
    const QByteArray elsewhere = "/elsewhere/";
    const std::vector<std::pair<Misbehaviour, std::string>> answers = {
        {AnswersWith(404), "There is no collection at that address (404)"},
        {AnswersWith(410), "There is no collection at that address (404)"},
        {AnswersWith(405), "(405)"},
        {AnswersWith(501), "(501)"},
        {AnswersWith(304), "(304)"},
        {ShowsAPage(200), "does not speak WebDAV"},
        {ShowsAPage(207), "does not speak WebDAV"},
        {AnswersWith(204), "does not speak WebDAV"},
        {AnswersWith(207), "does not speak WebDAV"},
        {SendsXml("<multistatus/>"), "does not speak WebDAV"},
        {SendsXml("<d:multistatus xmlns:d=\"DAV:\"/>"), "does not speak WebDAV"},
        {Lists({elsewhere}), "does not speak WebDAV"},
        {HasInnerStatus(403), "does not speak WebDAV"},
        {SendsAnXmlBomb(), "does not speak WebDAV"},
    };
    for (const auto& [answer, reason] : answers) {
        server.BehaveAgain();
        server.Misbehave("PROPFIND", answer);
        const auto failure = FailureOfSignIn();
        EXPECT_THAT(failure.reason.toStdString(), HasSubstr(reason.substr(0, reason.find(" (404)"))));
        EXPECT_THAT(failure.advice.toStdString(), HasSubstr("address"));
    }
    server.BehaveAgain();
    EXPECT_TRUE(SignsIn());
}

TEST_F(SignInFaultTest, DocumentIsNoCollection)
{
    server.Put("a.pdf", "content");
    settings.serviceUrl.setPath("/documents/a.pdf");
    EXPECT_THAT(ReasonOfSignIn(), HasSubstr("that of a document"));
}

TEST_F(SignInFaultTest, UnreachableServerIsSaid)
{
    server.Stop();
    const auto failure = FailureOfSignIn();
    EXPECT_THAT(failure.reason.toStdString(), HasSubstr("cannot be reached"));
    EXPECT_THAT(failure.advice.toStdString(), HasSubstr("network"));
    server.Start();
    EXPECT_TRUE(SignsIn());
}

TEST_F(SignInFaultTest, SilentServerIsGivenUp)
{
    settings.silenceTimeout = shortTimeout;
    for (const Misbehaviour& silence : {Hangs(), HangsInTheAnswer(10), HangsInTheAnswer(0)}) {
        server.Misbehave("PROPFIND", silence);
        EXPECT_THAT(ReasonOfSignIn(), HasSubstr("silent for 0.3 seconds"));
        server.BehaveAgain();
    }
    EXPECT_EQ(server.Count("PROPFIND"), 3);
}

TEST_F(SignInFaultTest, WhatIsNoHttpIsSaidInWords)
{
    for (const QByteArray& bytes :
         {QByteArray("SSH-2.0-OpenSSH_9.2\r\n"), QByteArray("HTTP/1.1 207 OK\r\nX: \0\r\n\r\n", 26)}) {
        server.Misbehave(When("PROPFIND").Always(), SendsRawBytes(bytes));
        EXPECT_THAT(ReasonOfSignIn(), AllOf(HasSubstr("is not HTTP"), Not(HasSubstr("0.9"))));
        server.BehaveAgain();
    }
}

TEST_F(SignInFaultTest, InterimAnswersAreNotTheAnswer)
{
    for (const int status : {100, 102, 103}) {
        server.Misbehave("PROPFIND", AnswersAfter(status, 3));
        EXPECT_TRUE(SignsIn()) << status;
    }
    server.Misbehave(When("PROPFIND").Always(), StopsAfter(102));
    EXPECT_THAT(ReasonOfSignIn(), HasSubstr("connection broke"));
}

TEST_F(SignInFaultTest, HeadWithoutEndIsGivenUp)
{
    server.Misbehave(When("PROPFIND").Always(), {[](Wire& wire) {
                         wire.Send("HTTP/1.1 207 Multi-Status\r\n");
                         wire.SendWithoutEnd([](int number) {
                             return "X-" + QByteArray::number(number) + ": " + QByteArray(1000, 'x') + "\r\n";
                         });
                     }});
    EXPECT_THAT(ReasonOfSignIn(), HasSubstr("connection broke"));
    server.BehaveAgain();
    server.Misbehave(When("PROPFIND").Always(), {[](Wire& wire) {
                         wire.SendWithoutEnd(
                             [](int) { return QByteArray("HTTP/1.1 102 Processing\r\n\r\n").repeated(40); });
                     }});
    EXPECT_THAT(ReasonOfSignIn(), HasSubstr("connection broke"));
    server.BehaveAgain();
    server.Misbehave(When("PROPFIND").Always(), Adds("X-Some", "value", 1000));
    EXPECT_TRUE(SignsIn());
}

TEST_F(SignInFaultTest, PlainHttpIsForLoopbackAlone)
{
    for (const char* address : {"http://cloud.example/dav/", "http://127.0.0.1.cloud.example/", "http://128.0.0.1/",
                                "http://localhost.example/", "http://[fe80::1]/"}) {
        EXPECT_THAT(WhyNotConstructed(address), AllOf(HasSubstr("unencrypted"), HasSubstr("https:"))) << address;
        EXPECT_EQ(WhyNotConstructed(address, true), "") << address;
    }
    for (const char* address : {"http://127.0.0.1/", "http://localhost:8080/dav", "http://[::1]:8080/"}) {
        EXPECT_EQ(WhyNotConstructed(address), "") << address;
    }
}

TEST_F(SignInFaultTest, AddressesThatNameNoCollectionAreRefused)
{
    const QString user = "https://norlis:" + canary + "@";
    for (const auto& [address, reason] : std::vector<std::pair<QString, std::string>>{
             {user + "cloud.example/dav/?path=a", "leave out"},
             {user + "cloud.example/dav/#part", "leave out"},
             {user + "cloud.example/a%2fb/", "not the address of a collection"},
             {user + "cloud.example/a//b", "not the address of a collection"},
             {"https:///dav/", "not the address of a collection"},
             {"https://nor%3Alis@cloud.example/", "must not contain colons"},
             {"ftp://norlis:" + canary + "@cloud.example/", "WebDAV"}}) {
        const std::string why = WhyNotConstructed(address);
        EXPECT_THAT(why, HasSubstr(reason)) << address.toStdString();
        EXPECT_FALSE(HoldsSecret(QByteArray::fromStdString(why)));
    }
}

} // namespace

} // namespace Norlis::Test
