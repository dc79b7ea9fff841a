#include "FaultServerTest.h"

#include <QSslConfiguration>
#include <QSslSocket>

namespace Norlis::Test {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST_F(FaultServerTest, DocumentsAreStoredListedFetchedMovedAndRemoved)
{
    EXPECT_THAT(Ask("PUT", "/documents/a%20b.pdf", {}, "content"), StartsWith("HTTP/1.1 201"));
    EXPECT_EQ(server.Get("a b.pdf"), QByteArray("content"));
    EXPECT_THAT(Ask("PUT", "/documents/a%20b.pdf", {}, "new content"), StartsWith("HTTP/1.1 204"));
    EXPECT_THAT(Ask("GET", "/documents/a%20b.pdf"), EndsWith("\r\n\r\nnew content"));
    const std::string head = Ask("HEAD", "/documents/a%20b.pdf");
    EXPECT_THAT(head, HasSubstr("Content-Length: 11\r\n"));
    EXPECT_THAT(head, EndsWith("\r\n\r\n"));
    const std::string listing = Ask("PROPFIND", "/documents/", "Depth: 1\r\n");
    EXPECT_THAT(listing, StartsWith("HTTP/1.1 207"));
    EXPECT_THAT(listing, HasSubstr("<d:href>/documents/</d:href>"));
    EXPECT_THAT(listing, HasSubstr("<d:href>/documents/a%20b.pdf</d:href>"));
    EXPECT_THAT(Ask("MOVE", "/documents/a%20b.pdf", "Destination: " + server.Origin() + "/documents/c.pdf\r\n"),
                StartsWith("HTTP/1.1 201"));
    EXPECT_EQ(server.Names(), QStringList("c.pdf"));
    EXPECT_THAT(Ask("DELETE", "/documents/c.pdf"), StartsWith("HTTP/1.1 204"));
    EXPECT_THAT(Ask("DELETE", "/documents/c.pdf"), StartsWith("HTTP/1.1 404"));
    EXPECT_THAT(Ask("PUT", "/nowhere/a.pdf", {}, "content"), StartsWith("HTTP/1.1 409"));
}

TEST_F(FaultServerTest, OnlyWhatIsAskedForIsListed)
{
    server.Put("a.pdf", "content");
    const std::string listing =
        Ask("PROPFIND", "/documents/a.pdf", "Depth: 0\r\n",
            "<propfind xmlns='DAV:'><prop><getcontentlength/><o:none xmlns:o='urn:o'/></prop></propfind>");
    EXPECT_THAT(listing, HasSubstr(">7</x:getcontentlength>"));
    EXPECT_THAT(listing, Not(HasSubstr("getetag")));
    EXPECT_THAT(listing, HasSubstr("<x:none xmlns:x=\"urn:o\"></x:none></d:prop><d:status>HTTP/1.1 404"));
    EXPECT_THAT(Ask("PROPFIND", "/documents/"), StartsWith("HTTP/1.1 403"));
    EXPECT_THAT(Ask("PROPFIND", "/documents/", "Depth: 1\r\n", "<no"), StartsWith("HTTP/1.1 400"));
}

TEST_F(FaultServerTest, PropertiesAreKeptThroughAMove)
{
    server.Put("a.pdf", "content");
    const QByteArray patch =
        "<propertyupdate xmlns='DAV:'><set><prop><m xmlns='urn:o'>value</m></prop></set></propertyupdate>";
    EXPECT_THAT(Ask("PROPPATCH", "/documents/a.pdf", {}, patch), HasSubstr("HTTP/1.1 200 OK"));
    Ask("MOVE", "/documents/a.pdf", "Destination: " + server.Origin() + "/documents/b.pdf\r\n");
    EXPECT_THAT(Ask("PROPFIND", "/documents/b.pdf", "Depth: 0\r\n",
                    "<propfind xmlns='DAV:'><prop><m xmlns='urn:o'/></prop></propfind>"),
                HasSubstr(">value</x:m>"));
}

TEST_F(FaultServerTest, ConditionsAreHonoured)
{
    server.Put("a.pdf", "content");
    server.Put("b.pdf", "content");
    QByteArray etag;
    server.With([&](MemoryTree& tree) { etag = tree.Find("/documents/a.pdf")->etag; });
    EXPECT_THAT(Ask("PUT", "/documents/a.pdf", "If-None-Match: *\r\n", "x"), StartsWith("HTTP/1.1 412"));
    EXPECT_THAT(Ask("PUT", "/documents/a.pdf", "If-Match: \"other\"\r\n", "x"), StartsWith("HTTP/1.1 412"));
    EXPECT_THAT(Ask("DELETE", "/documents/a.pdf", "If-Match: \"other\"\r\n"), StartsWith("HTTP/1.1 412"));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf", "If-None-Match: " + etag + "\r\n"), StartsWith("HTTP/1.1 304"));
    const QByteArray destination = "Destination: " + server.Origin() + "/documents/b.pdf\r\n";
    EXPECT_THAT(Ask("MOVE", "/documents/a.pdf", destination + "Overwrite: F\r\n"), StartsWith("HTTP/1.1 412"));
    EXPECT_THAT(Ask("MOVE", "/documents/a.pdf",
                    destination + "If: <" + server.Origin() + "/documents/b.pdf> ([\"other\"])\r\n"),
                StartsWith("HTTP/1.1 412"));
    EXPECT_EQ(server.Get("a.pdf"), QByteArray("content"));
    EXPECT_THAT(Ask("MOVE", "/documents/a.pdf", destination + "Overwrite: T\r\nIf-Match: " + etag + "\r\n"),
                StartsWith("HTTP/1.1 204"));
}

TEST_F(FaultServerTest, PartsAreSentIfTheDocumentIsTheSame)
{
    server.Put("a.pdf", "0123456789");
    const std::string part = Ask("GET", "/documents/a.pdf", "Range: bytes=4-\r\n");
    EXPECT_THAT(part, StartsWith("HTTP/1.1 206"));
    EXPECT_THAT(part, HasSubstr("Content-Range: bytes 4-9/10\r\n"));
    EXPECT_THAT(part, EndsWith("\r\n\r\n456789"));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf", "Range: bytes=-3\r\n"), EndsWith("\r\n\r\n789"));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf", "Range: bytes=10-\r\n"), StartsWith("HTTP/1.1 416"));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf", "Range: bytes=4-\r\nIf-Range: \"old\"\r\n"), StartsWith("HTTP/1.1 200"));
}

TEST_F(FaultServerTest, NobodyIsLetInWithoutTheSecret)
{
    const QByteArray begin = "PROPFIND /documents/ HTTP/1.1\r\nDepth: 0\r\nConnection: close\r\n";
    EXPECT_THAT(Exchange(server.Port(), begin + "\r\n").toStdString(), HasSubstr("WWW-Authenticate: Basic"));
    const QByteArray bearer = "Authorization: Bearer " + server.Password().toUtf8() + "\r\n\r\n";
    EXPECT_THAT(Exchange(server.Port(), begin + bearer).toStdString(), StartsWith("HTTP/1.1 207"));
    server.SetPassword("another");
    EXPECT_THAT(Exchange(server.Port(), begin + bearer).toStdString(), StartsWith("HTTP/1.1 401"));
}

TEST_F(FaultServerTest, RequestsFollowEachOtherOnAConnection)
{
    server.Put("a.pdf", "content");
    const QByteArray chunked = "PUT /documents/b.pdf HTTP/1.1\r\nTransfer-Encoding: chunked\r\nAuthorization: Bearer " +
                               server.Password().toUtf8() +
                               "\r\n\r\n3\r\nabc\r\n4;x=y\r\ndefg\r\n0\r\nTrailer: t\r\n\r\n";
    const QByteArray answers = Exchange(server.Port(), Request("GET", "/documents/a.pdf") + chunked +
                                                           Request("GET", "/documents/b.pdf", "Connection: close\r\n"));
    EXPECT_EQ(answers.count("HTTP/1.1 20"), 3);
    EXPECT_EQ(server.Get("b.pdf"), QByteArray("abcdefg"));
    EXPECT_EQ(server.Connections(), 1);
    const auto requests = server.Requests();
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_EQ(requests[1].bodyBytes, 7);
    EXPECT_EQ(requests[1].status, 201);
    EXPECT_EQ(requests[2].Path(), "/documents/b.pdf");
}

TEST_F(FaultServerTest, WhatIsStoppedCanBeStartedAgain)
{
    server.Put("a.pdf", "content");
    server.Stop();
    EXPECT_EQ(Ask("GET", "/documents/a.pdf"), "");
    server.Start();
    EXPECT_THAT(Ask("GET", "/documents/a.pdf"), EndsWith("content"));
}

TEST_F(FaultServerTest, AnEncryptingServerShowsItsCertificate)
{
    const CertificateAuthority authority;
    FaultServer encrypting(authority.Issue());
    EXPECT_THAT(encrypting.Origin().toStdString(), StartsWith("https://127.0.0.1:"));
    const auto connect = [&](const QString& authorities) {
        QSslSocket socket;
        auto configuration = socket.sslConfiguration();
        configuration.setCaCertificates(QSslCertificate::fromPath(authorities));
        socket.setSslConfiguration(configuration);
        socket.connectToHostEncrypted("127.0.0.1", encrypting.Port());
        if (!socket.waitForEncrypted(5000)) {
            return std::string();
        }
        socket.write(Request("OPTIONS", "/", "Connection: close\r\n"));
        while (socket.waitForReadyRead(5000)) {
        }
        return socket.readAll().toStdString();
    };
    EXPECT_THAT(connect(authority.File()), StartsWith("HTTP/1.1 401")); // another server's password
    EXPECT_EQ(connect({}), "");
}

TEST_F(FaultServerTest, TheContinuationIsAnnouncedWhenItIsWanted)
{
    const QByteArray request = Request("PUT", "/documents/a.pdf", "Expect: 100-continue\r\n", "content");
    const QByteArray head = request.left(request.size() - 7);
    EXPECT_EQ(AskBriefly(head), "HTTP/1.1 100 Continue\r\n\r\n");
    server.Misbehave("PUT", AnswersEarly(507, 0, Rest::IsRead));
    EXPECT_THAT(AskBriefly(head), StartsWith("HTTP/1.1 507"));
}

} // namespace Norlis::Test
