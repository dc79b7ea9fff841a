#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/Loopback.h>

namespace Norlis::Test {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// A server that is reached by way of a proxy: the test's own server plays both.
class ProxyTest : public ServiceTest<> {
protected:
    ProxyTest()
    {
        settings.serviceUrl = QUrl("http://norlis@cloud.example/documents/");
        settings.allowPlainHttp = true;
    }

    ~ProxyTest() override
    {
        for (const char* variable : variables) {
            qunsetenv(variable);
        }
    }

    void Use(const QByteArray& proxy) const
    {
        for (const char* variable : variables) {
            qputenv(variable, proxy);
        }
    }

    std::string ReasonOfSignIn()
    {
        Client client(settings, server.Password());
        EXPECT_TRUE(client.Authorize()->Fails());
        EXPECT_THAT(LastAdvice(client), HasSubstr("https_proxy"));
        return LastReason(client);
    }

    static constexpr std::array variables = {"http_proxy", "https_proxy"};
    const QByteArray place = "127.0.0.1:" + QByteArray::number(server.Port());
};

TEST_F(ProxyTest, ServerIsReachedThroughIt)
{
    Use("http://" + place);
    EXPECT_TRUE(Client(settings, server.Password()).SignIn());
    EXPECT_EQ(server.Requests().front().target, "http://cloud.example/documents/");
}

TEST_F(ProxyTest, ThePasswordInAnAddressThatIsNoneIsNotRepeated)
{
    const QByteArray user = "someone:" + QByteArray(FaultServer::canary);
    for (const QByteArray& proxy :
         {QByteArray("http://" + user + "@127.0.0.1:99999"), QByteArray("http://" + user + " word@127.0.0.1:1"),
          QByteArray("http://" + user + "/@127.0.0.1:99999")}) {
        Use(proxy);
        Client client(settings, server.Password());
        EXPECT_TRUE(client.Authorize()->Fails());
        EXPECT_THAT(LastReason(client), Not(HasSubstr(FaultServer::canary))) << proxy.constData();
    }
}

TEST_F(ProxyTest, OneThatAsksForAPasswordIsNamed)
{
    Use("http://someone:" + QByteArray(FaultServer::canary) + '@' + place);
    for (const char* address : {"http://norlis@cloud.example/documents/", "https://norlis@cloud.example/documents/"}) {
        settings.serviceUrl = QUrl(address);
        server.Misbehave(When("*").Always(), AnswersWith(407, {{"Proxy-Authenticate", "Basic realm=\"proxy\""}}));
        EXPECT_EQ(ReasonOfSignIn(), "The proxy " + place.toStdString() + " asks for a password (407)");
        server.BehaveAgain();
    }
}

TEST_F(ProxyTest, OneThatIsNotThereIsNamed)
{
    server.Stop();
    for (const QByteArray& proxy : {"http://" + place, place, QByteArray("http://proxy.invalid:3128")}) {
        Use(proxy);
        for (const char* address :
             {"http://norlis@cloud.example/documents/", "https://norlis@cloud.example/documents/"}) {
            settings.serviceUrl = QUrl(address);
            EXPECT_THAT(ReasonOfSignIn(), AllOf(HasSubstr("The proxy " + proxy.split('/').last().toStdString()),
                                                HasSubstr("cannot be used"), Not(HasSubstr("connection broke"))));
        }
    }
}

TEST_F(ProxyTest, OneThatLetsNobodyThroughIsNamed)
{
    Use("http://" + place);
    settings.serviceUrl = QUrl("https://norlis@cloud.example/documents/");
    server.Misbehave(When("CONNECT").Always(), AnswersWith(403));
    EXPECT_THAT(ReasonOfSignIn(), AllOf(HasSubstr("The proxy " + place.toStdString()), HasSubstr("403")));
}

} // namespace

} // namespace Norlis::Test
