#include <tests/support/ServiceTest.h>

#include <QTcpSocket>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

/// Made once for all tests, since that takes a moment.
const CertificateAuthority& Authority()
{
    static const auto* const authority = new CertificateAuthority;
    return *authority;
}

class TlsTest : public testing::Test {
protected:
    /// Somebody who trusts those whom a file of certificates names.
    void Visit(const FaultServer& server, const QString& certificateFile)
    {
        Social::OAuth2::AuthInfo settings;
        settings.serviceUrl = server.Address();
        settings.certificateFile = certificateFile;
        client = std::make_unique<Client>(settings, server.Password());
        isSignedIn = client->SignIn();
    }

    /// He is not let in, nor heard.
    /// \param details what OpenSSL or libcurl says
    void ExpectNoTrust(const FaultServer& server, const std::string& reason, const std::string& details)
    {
        EXPECT_FALSE(isSignedIn);
        EXPECT_EQ(LastReason(*client), "The server's identity cannot be verified: its certificate " + reason);
        EXPECT_THAT(LastFailure(*client).details.toStdString(), HasSubstr(details));
        EXPECT_THAT(LastAdvice(*client), HasSubstr("authority of your own"));
        EXPECT_TRUE(server.Requests().empty());
    }

    std::unique_ptr<Client> client;
    bool isSignedIn = false;
};

TEST_F(TlsTest, AuthorityThatIsNamedIsTrusted)
{
    FaultServer server(Authority().Issue());
    server.Put("a.pdf", "content");
    Visit(server, Authority().File());
    ASSERT_TRUE(isSignedIn) << LastReason(*client);
    EXPECT_EQ(client->Entry("a.pdf").size, 7);
}

TEST_F(TlsTest, ServerBehindTheEndOfTlsIsGivenTheDestinationsThatItKnows)
{
    const QTemporaryDir folder;
    WriteFile(folder.filePath("a.pdf"), "content");
    for (const int status : {403, 502}) {
        FaultServer server(Authority().Issue());
        server.Misbehave(When("MOVE").Always(), {[status](Wire& wire) {
                             const bool isKnown = wire.Request().headers.Value("Destination").startsWith("http:");
                             wire.Send((isKnown ? wire.Do(wire.Request()) : ServerResponse{status, {}, {}}).Bytes());
                             wire.Finish();
                         }});
        Visit(server, Authority().File());
        ASSERT_TRUE(client->Upload(folder.filePath("a.pdf"))->Succeeds()) << LastReason(*client);
        EXPECT_EQ(server.Get("a.pdf"), QByteArray("content"));
        const auto upload = client->Upload(folder.filePath("a.pdf"), client->Entry("a.pdf").id);
        ASSERT_TRUE(upload->Succeeds()) << LastReason(*client);
        EXPECT_EQ(server.Count("MOVE"), 5); // two refused, one to find out whether the server overwrites
    }
}

TEST_F(TlsTest, UnknownAuthorityIsNotTrusted)
{
    FaultServer server(Authority().Issue());
    Visit(server, {});
    const std::string reason = "comes from an authority that this computer does not know";
    ExpectNoTrust(server, reason, "issuer certificate");
    const CertificateAuthority another;
    Visit(server, another.File());
    ExpectNoTrust(server, reason, "certificate");
}

TEST_F(TlsTest, ExpiredCertificateIsNotTrusted)
{
    FaultServer server(Authority().Issue("127.0.0.1", -1));
    Visit(server, Authority().File());
    ExpectNoTrust(server, "has expired", "expired");
}

TEST_F(TlsTest, CertificateOfAnotherHostIsNotTrusted)
{
    FaultServer server(Authority().Issue("127.0.0.2"));
    Visit(server, Authority().File());
    ExpectNoTrust(server, "is that of another server", "127.0.0.1");
}

TEST_F(TlsTest, MissingCertificateFileIsNamed)
{
    FaultServer server(Authority().Issue());
    Visit(server, "/nowhere/authorities.pem");
    EXPECT_FALSE(isSignedIn);
    EXPECT_THAT(LastReason(*client), HasSubstr("the certificate file cannot be read"));
    EXPECT_THAT(LastFailure(*client).details.toStdString(), HasSubstr("/nowhere/authorities.pem"));
    EXPECT_TRUE(server.Requests().empty());
}

TEST_F(TlsTest, ServerWithoutEncryptionGetsNothing)
{
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    QByteArray received;
    QObject::connect(&plain, &QTcpServer::newConnection, &plain, [&] {
        QTcpSocket* const socket = plain.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [&received, socket] {
            received += socket->readAll();
            socket->write("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
        });
    });
    Social::OAuth2::AuthInfo settings;
    settings.serviceUrl = QUrl(QString("https://norlis@127.0.0.1:%1/").arg(plain.serverPort()));
    Client other(settings, FaultServer::canary);
    EXPECT_TRUE(other.Authorize()->Fails());
    EXPECT_THAT(LastReason(other), HasSubstr("no secure connection could be established"));
    EXPECT_THAT(LastAdvice(other), HasSubstr("without encryption it begins with http://"));
    EXPECT_FALSE(received.contains("HTTP/1.1"));
}

TEST_F(TlsTest, RedirectionToAnUnencryptedPlaceIsRefused)
{
    FaultServer server(Authority().Issue());
    FaultServer plain;
    plain.SetPassword(server.Password());
    server.Misbehave("PROPFIND", RedirectsTo(plain.Origin() + "/documents/", 307));
    Visit(server, Authority().File());
    EXPECT_FALSE(isSignedIn);
    EXPECT_THAT(LastReason(*client), HasSubstr("another address: " + plain.Origin().toStdString()));
    EXPECT_EQ(plain.Connections(), 0);
}

} // namespace

} // namespace Norlis::Test
