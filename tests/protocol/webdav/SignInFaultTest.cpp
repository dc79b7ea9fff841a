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

TEST_F(SignInFaultTest, UserAndPasswordAreProvenByALookAtTheCollectionOnceTheServerAsks)
{
    server.SetPassword(canary + ":pä:ss wörd/+?%");
    ASSERT_TRUE(SignsIn());
    const auto requests = server.Requests();
    ASSERT_EQ(requests.size(), 2U);
    for (const SeenRequest& request : requests) {
        EXPECT_EQ(request.method, "PROPFIND");
        EXPECT_EQ(request.target, server.CollectionPath());
        EXPECT_EQ(request.headers.Value("Depth"), "0");
    }
    EXPECT_FALSE(requests[0].headers.Has("Authorization"));
    EXPECT_EQ(requests[1].headers.Value("Authorization"), BasicAuthorization("norlis", server.Password().toUtf8()));
}

TEST_F(SignInFaultTest, PasswordIsNotSentInAFormThatTheServerDoesNotAskFor)
{
    const std::string unsupported = "not supported here: ";
    for (const auto& [challenge, reason] : std::vector<std::pair<QByteArray, std::string>>{
             {"", "does not say in which form (401)"},
             {"Negotiate, NTLM", unsupported + "negotiate, ntlm (401)"},
             {"Negotiate realm=\"Basic realm\"", unsupported + "negotiate (401)"},
             {"Bearer realm=\"a, Basic b\"", "asks for a token (401)"}}) {
        server.BehaveAgain();
        server.ForgetRequests();
        server.Misbehave(When("*").Always(), AnswersWith(401, {{"WWW-Authenticate", challenge}}));
        EXPECT_THAT(ReasonOfSignIn(), HasSubstr(reason));
        const auto requests = server.Requests();
        EXPECT_EQ(requests.size(), 1U);
        EXPECT_FALSE(requests[0].headers.Has("Authorization"));
    }
}

TEST_F(SignInFaultTest, ServerThatOffersDigestGetsNothingFromWhichThePasswordCouldBeRead)
{
    const QByteArray digest = "Digest realm=\"Norlis\", nonce=\"abc\", qop=\"auth\"";
    for (const QByteArray& challenge : {digest, digest + ", Basic realm=\"Norlis\"", "Basic realm=\"a\", " + digest}) {
        server.BehaveAgain();
        server.ForgetRequests();
        server.Misbehave(When("*").Always(), AnswersWith(401, {{"WWW-Authenticate", challenge}}));
        EXPECT_THAT(ReasonOfSignIn(), HasSubstr("does not accept"));
        for (const SeenRequest& request : server.Requests()) {
            const QByteArray authorization = request.headers.Value("Authorization");
            EXPECT_TRUE(authorization.isEmpty() || authorization.startsWith("Digest username=\"norlis\""));
            EXPECT_FALSE(HoldsSecret(authorization));
        }
        EXPECT_TRUE(server.Requests().back().headers.Has("Authorization"));
    }
}

TEST_F(SignInFaultTest, ServerThatChangesWhatItAsksForIsGivenThat)
{
    Client client(settings, server.Password());
    server.Misbehave(When("PROPFIND").Times(2),
                     AnswersWith(401, {{"WWW-Authenticate", "Digest realm=\"Norlis\", nonce=\"abc\""}}));
    EXPECT_TRUE(client.SignIn());
    EXPECT_LE(server.Count("PROPFIND"), 4);
}

TEST_F(SignInFaultTest, TwoThatAskForEachOthersFormDoNotKeepOnAsking)
{
    server.Misbehave(When("*").Always(), {[](Wire& wire) {
                         const bool isBasic = wire.Request().headers.Value("Authorization").startsWith("Basic");
                         wire.Send(ServerResponse{
                             401,
                             {{"WWW-Authenticate", isBasic ? "Digest realm=\"a\", nonce=\"b\"" : "Basic realm=\"a\""}},
                             {}}.Bytes());
                         wire.Finish();
                     }});
    EXPECT_THAT(ReasonOfSignIn(), HasSubstr("(401)"));
    EXPECT_LE(server.Count("PROPFIND"), 6);
}

TEST_F(SignInFaultTest, TokenWithoutAUserIsABearerToken)
{
    settings.serviceUrl.setUserName({});
    ASSERT_TRUE(SignsIn());
    EXPECT_EQ(server.Requests().back().headers.Value("Authorization"), "Bearer " + server.Password().toUtf8());
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
    EXPECT_EQ(server.Requests().size(), 2U);
    EXPECT_TRUE(client.Authorize(server.Password())->Succeeds());
    EXPECT_TRUE(client.Protocol()->loggedIn());
}

TEST_F(SignInFaultTest, WhatCannotBeAPasswordIsNotSent)
{
    for (const QString& token : {canary + "\nX-Header: value", canary + '\0'}) {
        Client client(settings, token);
        EXPECT_TRUE(client.Authorize()->Fails());
        EXPECT_EQ(LastReason(client), "That is not a password or token");
    }
    EXPECT_EQ(server.Connections(), 0);
}

/// A server that everybody may use.
class OpenServer : public FaultServer {
public:
    ~OpenServer() override
    {
        Stop();
    }

private:
    bool IsPublic(const ServerRequest&) const override
    {
        return true;
    }
};

TEST_F(SignInFaultTest, NobodyNeedsAPasswordWhereNoneIsAskedFor)
{
    OpenServer open;
    open.Put("a.pdf", "content");
    settings.serviceUrl = open.Address();
    for (const QString& user : {QString(), QString("norlis")}) {
        settings.serviceUrl.setUserName(user);
        Client client(settings, {});
        ASSERT_TRUE(client.SignIn());
        EXPECT_TRUE(client.Download(client.Entry("a.pdf").id, Local(user + "a.pdf"))->Succeeds());
        EXPECT_TRUE(client.Upload(LocalFile("b.pdf", "content"))->Succeeds());
    }
    for (const SeenRequest& request : open.Requests()) {
        EXPECT_FALSE(request.headers.Has("Authorization"));
    }
}

TEST_F(SignInFaultTest, PasswordThatNobodyAskedForStaysHere)
{
    OpenServer open;
    settings.serviceUrl = open.Address();
    Client client(settings, canary);
    ASSERT_TRUE(client.SignIn());
    EXPECT_FALSE(open.Requests().back().headers.Has("Authorization"));
}

TEST_F(SignInFaultTest, MissingPasswordIsAskedFor)
{
    Client client(settings, {});
    EXPECT_TRUE(client.Authorize()->Fails());
    EXPECT_EQ(LastReason(client), "The server asks for a user name and a password (401)");
    EXPECT_EQ(server.Requests().size(), 1U);
}

TEST_F(SignInFaultTest, AnswerAboutAnotherPathNamesBoth)
{
    server.Misbehave("PROPFIND", Lists({"http://internal:8080/else%20where/"}));
    EXPECT_EQ(ReasonOfSignIn(),
              "The addresses in the server's answer begin with /else where/ and not with /documents/");
}

TEST_F(SignInFaultTest, WhatIsNoCollectionIsRefused)
{
    const std::vector<std::pair<Misbehaviour, std::string>> answers = {
        {AnswersWith(404), "There is no folder at that address (404)"},
        {AnswersWith(410), "There is no folder at that address (404)"},
        {AnswersWith(405), "does not speak WebDAV (405)"},
        {AnswersWith(501), "does not speak WebDAV (501)"},
        {AnswersWith(304), "(304)"},
        {ShowsAPage(200), "does not speak WebDAV"},
        {ShowsAPage(207), "does not speak WebDAV"},
        {AnswersWith(204), "does not speak WebDAV"},
        {AnswersWith(207), "does not speak WebDAV"},
        {SendsXml("<multistatus/>"), "does not speak WebDAV"},
        {SendsXml("<d:multistatus xmlns:d=\"DAV:\"/>"), "does not speak WebDAV"},
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
    EXPECT_EQ(failure.reason,
              "The server cannot be reached: it does not accept connections, or no network leads there");
    EXPECT_THAT(failure.details.toStdString(), HasSubstr("connect"));
    EXPECT_THAT(failure.advice.toStdString(), HasSubstr("network"));
    EXPECT_EQ(failure.kind, Social::OAuth2::FailureKind::Unavailable);
    server.Start();
    EXPECT_TRUE(SignsIn());
}

TEST_F(SignInFaultTest, SilentServerIsGivenUp)
{
    settings.silenceTimeout = shortTimeout;
    for (const Misbehaviour& silence : {Hangs(), HangsInTheAnswer(10), HangsInTheAnswer(0)}) {
        server.Misbehave("PROPFIND", silence);
        EXPECT_THAT(ReasonOfSignIn(), HasSubstr("silent for 0.6 seconds"));
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

TEST_F(SignInFaultTest, AnswerThatOnlySeemsToComeIsGivenUp)
{
    settings.silenceTimeout = shortTimeout;
    const QByteArray field = "X: y\r\n";
    const QByteArray interim = "HTTP/1.1 102 Processing\r\n\r\n";
    for (const auto& [beginning, piece] :
         std::vector<std::pair<QByteArray, QByteArray>>{{"HTTP/1.1 207 Multi-Status\r\n", field},
                                                        {"HTTP/1.1 207 Multi-Status\r\n\r\n", field},
                                                        {interim, interim}}) {
        server.Misbehave("PROPFIND", {[beginning = beginning, piece = piece](Wire& wire) {
                             wire.Send(beginning);
                             wire.SendSlowly(piece.repeated(100), piece.size(), shortTimeout / 10);
                         }});
        EXPECT_THAT(ReasonOfSignIn(), HasSubstr("has not finished its answer in 3.6 seconds"));
        server.BehaveAgain();
    }
}

TEST_F(SignInFaultTest, BodyWithoutEndIsGivenUp)
{
    for (const int status : {207, 403}) {
        server.Misbehave("PROPFIND", {[&](Wire& wire) {
                             wire.Send("HTTP/1.1 " + QByteArray::number(status) + " Status\r\n\r\n");
                             wire.SendWithoutEnd([](int) { return QByteArray(100'000, ' '); });
                         }});
        EXPECT_THAT(ReasonOfSignIn(), HasSubstr(status == 207 ? "does not end" : "(403)"));
        server.BehaveAgain();
    }
    EXPECT_EQ(server.Count("PROPFIND"), 2);
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
    for (const auto& [address, reason] :
         std::vector<std::pair<QString, std::string>>{{user + "cloud.example/dav/?path=a", "leave out"},
                                                      {user + "cloud.example/dav/#part", "leave out"},
                                                      {user + "cloud.example/a%2fb/", "not the address of a folder"},
                                                      {user + "cloud.example/a//b", "not the address of a folder"},
                                                      {"https:///dav/", "not the address of a folder"},
                                                      {"https://nor%3Alis@cloud.example/", "must not contain colons"},
                                                      {"ftp://norlis:" + canary + "@cloud.example/", "WebDAV"}}) {
        const std::string why = WhyNotConstructed(address);
        EXPECT_THAT(why, HasSubstr(reason)) << address.toStdString();
        EXPECT_FALSE(HoldsSecret(QByteArray::fromStdString(why)));
    }
}

} // namespace

} // namespace Norlis::Test
