#include <tests/servers/ServerFront.h>
#include <tests/support/ServiceTest.h>
#include <tests/support/WebDavUnderTest.h>

#include <NorlisTestKit/Certificates.h>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

/// Servers as people set them up: with a setting that makes a difference to clients, or behind something else.
class ServerSetupTest : public testing::Test {
protected:
    /// A user's day: everything there is to do with a document, a small one and one that servers are asked about first.
    static void UseEverything(const Social::OAuth2::AuthInfo& settings, WebDavUnderTest& cloud)
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("report.pdf");
        Client client(settings, cloud.Token());
        ASSERT_TRUE(client.SignIn()) << LastReason(client);
        QString id;
        for (const QByteArray& content : {QByteArray("small"), QByteArray(3'000'000, 'x')}) {
            WriteFile(path, content);
            const auto upload = client.Upload(path, id);
            ASSERT_TRUE(upload->Succeeds()) << LastReason(client);
            id = upload->payload.id;
            EXPECT_EQ(cloud.Content(), QStringList("report.pdf"));
            EXPECT_EQ(client.Entry("report.pdf").size, content.size());
            ASSERT_TRUE(client.Download(id, folder.filePath("back.pdf"))->Succeeds()) << LastReason(client);
            EXPECT_EQ(ReadFile(folder.filePath("back.pdf")), content);
        }
        ASSERT_TRUE(client.Remove(id)->Succeeds()) << LastReason(client);
        EXPECT_EQ(cloud.Content(), QStringList());
    }

    /// The same through a front.
    static void Through(FrontKind kind, ServerKind behind = ServerKind::Apache)
    {
        const CertificateAuthority authority;
        const ServerCertificate certificate = authority.Issue();
        WebDavUnderTest cloud(SharedServer(behind));
        const ServerFront front(kind, cloud.Server(), certificate.certificate + certificate.key);
        Social::OAuth2::AuthInfo settings = cloud.Settings();
        settings.serviceUrl = front.Address(settings.serviceUrl);
        settings.certificateFile = authority.File();
        UseEverything(settings, cloud);
    }

    /// The same through a proxy for clients, which wants a password of its own.
    static void ThroughProxy(FrontKind kind)
    {
        WebDavUnderTest cloud(SharedServer(ServerKind::Apache));
        const ServerFront proxy(kind, cloud.Server());
        Social::OAuth2::AuthInfo settings = cloud.Settings();
        settings.serviceUrl.setHost("cloud.example"); // proxies are not for this computer
        settings.serviceUrl.setPort(-1);
        settings.allowPlainHttp = true;
        const QByteArray place = "127.0.0.1:" + QByteArray::number(proxy.Port());
        qputenv("http_proxy", "http://norlis:" + cloud.Token().toUtf8() + '@' + place);
        UseEverything(settings, cloud);
        qputenv("http_proxy", "http://" + place);
        Client stranger(settings, cloud.Token());
        EXPECT_TRUE(stranger.Authorize()->Fails());
        EXPECT_THAT(LastReason(stranger), HasSubstr("The proxy " + place.toStdString()));
        qunsetenv("http_proxy");
    }
};

TEST_F(ServerSetupTest, ApacheThatTakesDigestsOfPasswordsOnly)
{
    WebDavUnderTest cloud(SharedServer(ServerKind::ApacheDigest));
    UseEverything(cloud.Settings(), cloud);
    Client stranger(cloud.Settings(), "wrong");
    EXPECT_TRUE(stranger.Authorize()->Fails());
    EXPECT_THAT(LastReason(stranger), HasSubstr("does not accept the user name or the password (401)"));
}

TEST_F(ServerSetupTest, TlsThatEndsAtNginx)
{
    Through(FrontKind::NginxTls);
}

TEST_F(ServerSetupTest, TlsThatEndsAtHaproxy)
{
    Through(FrontKind::HaproxyTls);
}

TEST_F(ServerSetupTest, NginxThatCompressesAnswers)
{
    Through(FrontKind::NginxGzip);
}

TEST_F(ServerSetupTest, NginxThatTakesTwoRequestsInASecond)
{
    Through(FrontKind::NginxRateLimit);
}

TEST_F(ServerSetupTest, NginxThatPassesBodiesOnAsTheyCome)
{
    Through(FrontKind::NginxUnbuffered);
}

TEST_F(ServerSetupTest, NginxThatForbidsNamesWithALeadingDot)
{
    Through(FrontKind::NginxDotFiles);
}

TEST_F(ServerSetupTest, NginxThatLimitsTheSizeOfDocuments)
{
    WebDavUnderTest cloud(SharedServer(ServerKind::Apache));
    const ServerFront front(FrontKind::NginxBodyLimit, cloud.Server());
    Social::OAuth2::AuthInfo settings = cloud.Settings();
    settings.serviceUrl = front.Address(settings.serviceUrl);
    Client client(settings, cloud.Token());
    ASSERT_TRUE(client.SignIn()) << LastReason(client);
    const QTemporaryDir folder;
    WriteFile(folder.filePath("small.pdf"), QByteArray(1'000'000, 'x'));
    EXPECT_TRUE(client.Upload(folder.filePath("small.pdf"))->Succeeds()) << LastReason(client);
    WriteFile(folder.filePath("large.pdf"), QByteArray(20'000'000, 'x'));
    EXPECT_TRUE(client.Upload(folder.filePath("large.pdf"))->Fails());
    EXPECT_THAT(LastReason(client), HasSubstr("larger than the server accepts (413"));
    EXPECT_EQ(cloud.Content(), QStringList("small.pdf"));
}

TEST_F(ServerSetupTest, NginxThatKnowsTheServerByAnotherPath)
{
    WebDavUnderTest cloud(SharedServer(ServerKind::Apache));
    const ServerFront front(FrontKind::NginxSubPath, cloud.Server());
    Social::OAuth2::AuthInfo settings = cloud.Settings();
    settings.serviceUrl = front.Address(settings.serviceUrl);
    Client client(settings, cloud.Token());
    EXPECT_TRUE(client.Authorize()->Fails());
    EXPECT_THAT(LastReason(client), HasSubstr("The addresses in the server's answer begin with /Zo"));
    EXPECT_THAT(LastReason(client), HasSubstr("and not with /cloud/Zo"));
}

TEST_F(ServerSetupTest, ProxyWithAPassword)
{
    ThroughProxy(FrontKind::Tinyproxy);
}

/// What needs packages that only ./test --all installs.
class MoreServerSetupsTest : public ServerSetupTest {};

TEST_F(MoreServerSetupsTest, SquidWithAPassword)
{
    ThroughProxy(FrontKind::Squid);
}

TEST_F(MoreServerSetupsTest, TlsThatEndsBeforeAnyServer)
{
    for (const ServerKind behind : AllServerKinds()) {
        SCOPED_TRACE(NameOf(behind));
        Through(FrontKind::NginxTls, behind);
        Through(FrontKind::HaproxyTls, behind);
    }
}

TEST_F(MoreServerSetupsTest, NginxThatCompressesAnswersOfAnyServer)
{
    for (const ServerKind behind : AllServerKinds()) {
        SCOPED_TRACE(NameOf(behind));
        Through(FrontKind::NginxGzip, behind);
    }
}

} // namespace

} // namespace Norlis::Test
