#include "FaultServerTest.h"

#include <QTcpSocket>

namespace Norlis::Test {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class MisbehaviourTest : public FaultServerTest {};

TEST_F(MisbehaviourTest, MisbehaviourIsForTheRequestsThatItWasAskedFor)
{
    server.Put("a.pdf", "content");
    server.Misbehave(When("GET", "a.pdf").From(2).Times(2), AnswersWith(503));
    std::string statuses;
    for (int count = 0; count < 5; ++count) {
        Ask("PROPFIND", "/documents/", "Depth: 0\r\n");
        statuses += Ask("GET", "/documents/a.pdf").substr(9, 4);
    }
    EXPECT_EQ(statuses, "200 503 503 200 200 ");
    server.Misbehave(When("*").Always(), AnswersWith(500));
    EXPECT_THAT(Ask("HEAD", "/documents/a.pdf"), StartsWith("HTTP/1.1 500"));
    server.BehaveAgain();
    EXPECT_THAT(Ask("HEAD", "/documents/a.pdf"), StartsWith("HTTP/1.1 200"));
}

TEST_F(MisbehaviourTest, AnswersAreCutOff)
{
    server.Put("a.pdf", "0123456789");
    server.Misbehave("GET", CutsAfterBytes(3));
    server.Misbehave("GET", CutsWithoutLength(3));
    server.Misbehave("GET", CutsInChunks(3));
    server.Misbehave("GET", ClaimsLength(5));
    server.Misbehave("GET", ClosesWithoutAnswer());
    server.Misbehave("GET", ResetsTheConnection());
    const std::string cut = Ask("GET", "/documents/a.pdf");
    EXPECT_THAT(cut, HasSubstr("Content-Length: 10\r\n"));
    EXPECT_THAT(cut, EndsWith("\r\n\r\n012"));
    const std::string withoutLength = Ask("GET", "/documents/a.pdf");
    EXPECT_THAT(withoutLength, Not(HasSubstr("Content-Length")));
    EXPECT_THAT(withoutLength, EndsWith("\r\n\r\n012"));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf"), EndsWith("\r\n\r\n3\r\n012\r\n"));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf"), HasSubstr("Content-Length: 5\r\n"));
    EXPECT_EQ(Ask("GET", "/documents/a.pdf"), "");
    EXPECT_EQ(Ask("GET", "/documents/a.pdf"), "");
    EXPECT_THAT(Ask("GET", "/documents/a.pdf"), EndsWith("\r\n\r\n0123456789"));
}

TEST_F(MisbehaviourTest, AnswersHang)
{
    server.Put("a.pdf", "0123456789");
    server.Misbehave("GET", Hangs());
    server.Misbehave("GET", HangsInTheAnswer(3));
    EXPECT_EQ(AskBriefly(Request("GET", "/documents/a.pdf")), "");
    EXPECT_THAT(AskBriefly(Request("GET", "/documents/a.pdf")), EndsWith("\r\n\r\n012"));
    server.Misbehave("GET", Drips(40, 1));
    EXPECT_THAT(AskBriefly(Request("GET", "/documents/a.pdf")), EndsWith("\r\n\r\n0123456789"));
}

TEST_F(MisbehaviourTest, UploadsAreBrokenOff)
{
    const QByteArray body(100'000, 'x');
    server.Misbehave("PUT", ClosesInTheRequest(1000));
    server.Misbehave("PUT", HangsInTheRequest(1000));
    server.Misbehave("PUT", KeepsOnly(10));
    EXPECT_EQ(Ask("PUT", "/documents/a.pdf", {}, body), "");
    EXPECT_EQ(AskBriefly(Request("PUT", "/documents/a.pdf", {}, body)), "");
    EXPECT_EQ(server.Names(), QStringList());
    for (const SeenRequest& request : server.Requests("PUT")) {
        EXPECT_GE(request.bodyBytes, 1000);
    }
    EXPECT_THAT(Ask("PUT", "/documents/a.pdf", {}, body), StartsWith("HTTP/1.1 201"));
    EXPECT_EQ(server.Get("a.pdf"), QByteArray(10, 'x'));
}

TEST_F(MisbehaviourTest, UploadsAreAnsweredBeforeTheyHaveCome)
{
    const QByteArray request = Request("PUT", "/documents/a.pdf", {}, QByteArray(100'000, 'x'));
    const QByteArray head = request.left(request.indexOf("\r\n\r\n") + 4);
    server.Misbehave("PUT", AnswersEarly(413, 0, Rest::IsRead));
    server.Misbehave("PUT", AnswersEarly(413, 1000, Rest::IsCutOff));
    EXPECT_THAT(AskBriefly(head), StartsWith("HTTP/1.1 413"));
    EXPECT_THAT(AskBriefly(head), Not(StartsWith("HTTP/1.1 413"))); // not before 1,000 bytes
    server.BehaveAgain();

    server.Misbehave("PUT", AnswersEarly(413, 0, Rest::IsRead));
    const QByteArray answers = Exchange(server.Port(), request + Request("OPTIONS", "/", "Connection: close\r\n"));
    EXPECT_EQ(answers.count("HTTP/1.1 413"), 1);
    EXPECT_EQ(answers.count("HTTP/1.1 200"), 1); // the rest of the body has been read
    EXPECT_EQ(server.Names(), QStringList());
}

TEST_F(MisbehaviourTest, WhatIsDoneMayBeOtherThanWhatIsSaid)
{
    const QByteArray destination = "Destination: " + server.Origin() + "/documents/b.pdf\r\n";
    server.Put("a.pdf", "a");
    server.Misbehave("MOVE", DoesItAndCloses());
    EXPECT_EQ(Ask("MOVE", "/documents/a.pdf", destination), "");
    EXPECT_EQ(server.Names(), QStringList("b.pdf"));
    server.Put("a.pdf", "a");
    server.Misbehave("MOVE", DoesItAndAnswers(412));
    EXPECT_THAT(Ask("MOVE", "/documents/a.pdf", destination), StartsWith("HTTP/1.1 412"));
    EXPECT_EQ(server.Names(), QStringList("b.pdf"));
    server.Misbehave("DELETE", OnlyClaimsToDoIt(204));
    EXPECT_THAT(Ask("DELETE", "/documents/b.pdf"), StartsWith("HTTP/1.1 204"));
    EXPECT_EQ(server.Names(), QStringList("b.pdf"));
    server.Misbehave("GET", RunsFirst([this] { server.Put("b.pdf", "changed"); }));
    EXPECT_THAT(Ask("GET", "/documents/b.pdf"), EndsWith("changed"));
}

TEST_F(MisbehaviourTest, PartsAreWrong)
{
    server.Put("a.pdf", "0123456789");
    server.Misbehave("GET", ClaimsRange("bytes 0-5/10"));
    server.Misbehave("GET", StartsElsewhere(6));
    server.Misbehave("GET", IgnoresTheRange());
    const QByteArray range = "Range: bytes=4-\r\n";
    EXPECT_THAT(Ask("GET", "/documents/a.pdf", range), HasSubstr("Content-Range: bytes 0-5/10\r\n"));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf", range), HasSubstr("Content-Range: bytes 6-9/10\r\n"));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf", range), StartsWith("HTTP/1.1 200"));
}

TEST_F(MisbehaviourTest, AnswersAreDressedUp)
{
    server.Put("a.pdf", "0123456789");
    server.Misbehave("GET", AnswersAfter(103, 2));
    server.Misbehave("GET", StopsAfter(102));
    server.Misbehave("GET", SendsGzip());
    server.Misbehave("GET", Adds("X-Long", QByteArray(1000, 'x'), 100));
    server.Misbehave("GET", SetsACookie());
    server.Misbehave("GET", RedirectsTo("http://127.0.0.1:1/", 307));
    server.Misbehave("GET", RedirectsToItself());
    const std::string interim = Ask("GET", "/documents/a.pdf");
    EXPECT_THAT(interim, StartsWith("HTTP/1.1 103 Early Hints\r\n\r\nHTTP/1.1 103 Early Hints\r\n\r\nHTTP/1.1 200"));
    EXPECT_EQ(Ask("GET", "/documents/a.pdf"), "HTTP/1.1 102 Processing\r\n\r\n");
    EXPECT_THAT(Ask("GET", "/documents/a.pdf"), HasSubstr("Content-Encoding: gzip\r\n"));
    EXPECT_GT(Ask("GET", "/documents/a.pdf").size(), 100'000U);
    EXPECT_THAT(Ask("GET", "/documents/a.pdf"), HasSubstr("Set-Cookie: session="));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf"), HasSubstr("Location: http://127.0.0.1:1/\r\n"));
    EXPECT_THAT(Ask("GET", "/documents/a.pdf"), HasSubstr("Location: /documents/a.pdf\r\n"));
}

TEST_F(MisbehaviourTest, ListingsAreWrong)
{
    server.Misbehave("PROPFIND", Lists({"/elsewhere/", "/elsewhere/..%2fa.pdf"}));
    server.Misbehave("PROPFIND", SendsAnXmlBomb());
    server.Misbehave("PROPFIND", HasInnerStatus(403));
    server.Misbehave("PROPFIND", ListsWithoutEnd());
    EXPECT_THAT(Ask("PROPFIND", "/documents/"), HasSubstr("<d:href>/elsewhere/..%2fa.pdf</d:href>"));
    EXPECT_THAT(Ask("PROPFIND", "/documents/"), HasSubstr("<!ENTITY a11"));
    EXPECT_THAT(Ask("PROPFIND", "/documents/"), HasSubstr("<d:status>HTTP/1.1 403</d:status>"));

    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), server.Port());
    socket.write(Request("PROPFIND", "/documents/"));
    qint64 size = 0;
    while (size < 10'000'000 && socket.waitForReadyRead(5000)) {
        size += socket.readAll().size();
    }
    EXPECT_GE(size, 10'000'000);
}

TEST_F(MisbehaviourTest, SecretsAreRepeated)
{
    server.Misbehave("GET", EchoesTheCredentials(401));
    const std::string answer = Ask("GET", "/documents/a.pdf");
    const std::string secret = server.Password().toStdString();
    const std::size_t body = answer.find("\r\n\r\n");
    EXPECT_LT(answer.find(secret), body);
    EXPECT_NE(answer.find(secret, body), std::string::npos);
    EXPECT_THAT(answer, HasSubstr("Location: http://norlis:" + secret));
}

} // namespace Norlis::Test
