#include <tests/support/FileSizeLimit.h>
#include <tests/support/TransferFaultTest.h>

#include <NorlisTestKit/MisbehaviourTools.h>

#include <QElapsedTimer>

#include <atomic>

namespace Norlis::Test {

using testing::HasSubstr;

/// Answers that are not the document.
class DownloadFaultTest : public TransferFaultTest<> {
protected:
    void SetUp() override
    {
        TransferFaultTest::SetUp();
        id = Put("report.pdf", content);
        LocalFile("target.pdf", "old");
    }

    AnswerPtr<> Download()
    {
        return client.Download(id, Local("target.pdf"));
    }

    /// The only download fails for that reason, and nothing becomes of it.
    void ExpectFailure(const std::string& reason)
    {
        const auto download = Download();
        EXPECT_TRUE(download->Fails());
        EXPECT_THAT(Reason(), HasSubstr(reason));
        EXPECT_THAT(download->percents, testing::Not(testing::Contains(100)));
        EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("old"));
        EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
        client.failures.clear();
    }

    const QByteArray content = Pattern(3'000'000);
    QString id;
};

TEST_F(DownloadFaultTest, AnAnswerThatEndsWithItsConnectionIsComparedWithTheDocumentsSize)
{
    server.Misbehave("GET", CutsWithoutLength(1'000'000));
    ExpectFailure("1000000 of 3000000 bytes arrived");
    server.Misbehave("GET", CutsWithoutLength(1'000'000));
    server.Misbehave("PROPFIND", AnswersWith(403));
    ExpectFailure("does not report the size of the document");
    server.Misbehave("GET", SendsUntilClose());
    ASSERT_TRUE(Download()->Succeeds());
    EXPECT_EQ(ReadFile(Local("target.pdf")), content);
}

TEST_F(DownloadFaultTest, ADocumentWhoseSizeNobodyTellsIsNotFetchedWithoutEnd)
{
    const auto listsSize = [this](const QByteArray& size) {
        const auto entry = [](const QByteArray& path, const QByteArray& properties) {
            return "<d:response><d:href>" + path + "</d:href><d:propstat><d:prop>" + properties +
                   "</d:prop><d:status>HTTP/1.1 200 OK</d:status></d:propstat></d:response>";
        };
        server.BehaveAgain();
        server.Misbehave(When("PROPFIND").Always(),
                         SendsXml("<d:multistatus xmlns:d=\"DAV:\">" +
                                  entry("/documents/", "<d:resourcetype><d:collection/></d:resourcetype>") +
                                  entry("/documents/report.pdf", "<d:resourcetype/>" + size) + "</d:multistatus>"));
        EXPECT_TRUE(client.List()->Succeeds());
    };
    listsSize({});
    server.Misbehave("GET", {[](Wire& wire) {
                         wire.Send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n");
                         wire.SendWithoutEnd([](int) { return "10000\r\n" + QByteArray(0x10000, ' ') + "\r\n"; });
                     }});
    ExpectFailure("does not report the size of the document");
    ASSERT_TRUE(Download()->Succeeds()); // the answer tells it
    EXPECT_EQ(ReadFile(Local("target.pdf")), content);
    WriteFile(Local("target.pdf"), "old");
    listsSize("<d:getcontentlength>9223372036854775807</d:getcontentlength>");
    ExpectFailure("3000000 of 9223372036854775807 bytes arrived");
}

TEST_F(DownloadFaultTest, ALengthThatIsNotTheDocumentsIsFoundOut)
{
    server.Misbehave("GET", ClaimsLength(1'000'000));
    ExpectFailure("1000000 of 3000000 bytes");
}

TEST_F(DownloadFaultTest, AnAnswerInChunksIsFine)
{
    server.Misbehave("GET", SendsInChunks(70'001));
    ASSERT_TRUE(Download()->Succeeds());
    EXPECT_EQ(ReadFile(Local("target.pdf")), content);
}

TEST_F(DownloadFaultTest, AnEmptyAnswerIsNotTheDocument)
{
    server.Misbehave("GET", AnswersWith(200));
    ExpectFailure("0 of 3000000 bytes");
}

TEST_F(DownloadFaultTest, ALoginPageIsNotTheDocument)
{
    server.Misbehave("GET", ShowsAPage(200));
    ExpectFailure("a web page instead of the document");
    for (const char* type : {"TEXT/HTML", "application/xhtml+xml"}) {
        server.Misbehave("GET", AnswersWith(200, {{"Content-Type", type}}, content));
        ExpectFailure("a web page instead of the document");
    }
}

TEST_F(DownloadFaultTest, AWebPageThatIsADocumentIsFetched)
{
    const QString page = Put("page.html", "<html></html>");
    const ServerResponse answer{200, {{"Content-Type", "text/html"}}, "<html></html>"};
    server.With([](MemoryTree& tree) {
        tree.moreProperties = [](const MemoryNode& node, const PropertyName& name) {
            return name.second == "getcontenttype" && node.content == "<html></html>"
                       ? std::optional<QByteArray>("text/html; charset=utf-8")
                       : std::nullopt;
        };
    });
    ASSERT_TRUE(client.List()->Succeeds());
    server.Misbehave("GET", AnswersWith(answer));
    ASSERT_TRUE(client.Download(page, Local("target.pdf"))->Succeeds());
    EXPECT_EQ(ReadFile(Local("target.pdf")), answer.body);
}

TEST_F(DownloadFaultTest, APackedAnswerThatWasNotAskedForIsRefused)
{
    server.Misbehave("GET", SendsGzip());
    ExpectFailure("compressed (gzip), although this was not requested");
}

TEST_F(DownloadFaultTest, AStatusThatIsNoContentIsAnError)
{
    for (const int status : {201, 202, 203, 204, 207}) {
        server.Misbehave("GET", AnswersWith(status, {}, status == 204 ? QByteArray() : content));
        ExpectFailure(std::to_string(status) + " instead of the document");
    }
}

TEST_F(DownloadFaultTest, AnErrorIsReportedInTheServersWords)
{
    server.Misbehave("GET", Refuses(403, "Forbidden", "This share cannot be downloaded"));
    ExpectFailure("(403: This share cannot be downloaded)");
    server.Misbehave("GET", AnswersWith(404));
    ExpectFailure("(404)");
    for (const auto& page : {ShowsAPage(403), ShowsAPage(500)}) {
        server.Misbehave("GET", page);
        ExpectFailure("The server");
    }
}

TEST_F(DownloadFaultTest, OtherBytesThanTheHashSaysAreRefused)
{
    ASSERT_TRUE(client.Upload(LocalFile("target.pdf", content), id)->Succeeds());
    LocalFile("target.pdf", "old");
    ASSERT_TRUE(WaitUntil([&] {
        Client other(Settings(), server.Password());
        return other.SignIn() && !other.Entry("report.pdf").md5Hash.isEmpty();
    }));
    server.With([&](MemoryTree& tree) { tree.Find("/documents/report.pdf")->content[2'999'999] = 'x'; });
    ExpectFailure("does not have the hash");
    ASSERT_TRUE(client.List()->Succeeds());
    ExpectFailure("does not have the hash");
}

TEST_F(DownloadFaultTest, AHashOfAnEarlierVersionDoesNotCount)
{
    ASSERT_TRUE(client.Upload(LocalFile("target.pdf", content), id)->Succeeds());
    server.Put("report.pdf", "somebody else's");
    ASSERT_TRUE(Download()->Succeeds());
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("somebody else's"));
}

TEST_F(DownloadFaultTest, NorDoesItWhereAServerGivesAnotherVersionTheOldTag)
{
    ASSERT_TRUE(client.Upload(LocalFile("target.pdf", content), id)->Succeeds());
    server.With([](MemoryTree& tree) { tree.Find("/documents/report.pdf")->content = "somebody else's"; });
    ASSERT_TRUE(Download()->Succeeds());
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("somebody else's"));
}

TEST_F(DownloadFaultTest, AFolderThatVanishesMeanwhileIsAnError)
{
    MakeFolder(Local("folder"));
    server.Misbehave("GET", RunsFirst([&] { RemoveFolder(Local("folder")); }));
    EXPECT_TRUE(client.Download(id, Local("folder/target.pdf"))->Fails());
    EXPECT_THAT(Reason(), HasSubstr("cannot be written"));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
}

TEST_F(DownloadFaultTest, AnAnswerWithoutEndIsLeftSoonAfterTheDocumentsSize)
{
    std::atomic<int> sent = 0; // megabytes
    for (const ServerHeaders& headers : {ServerHeaders(), ServerHeaders{{"Content-Length", "100000000000"}}}) {
        server.Misbehave("GET", {[&](Wire& wire) {
                             QByteArray head = "HTTP/1.1 200 OK\r\n";
                             for (const auto& [name, value] : headers) {
                                 head += name + ": " + value + "\r\n";
                             }
                             wire.Send(head + "\r\n");
                             wire.SendWithoutEnd([&](int number) {
                                 sent = number;
                                 return QByteArray(1'000'000, 'x');
                             });
                         }});
        ExpectFailure("sends more than the 3000000 bytes of the document");
        EXPECT_LT(sent, 30); // with what is on its way
    }
    EXPECT_EQ(server.Count("GET"), 2);
}

TEST_F(DownloadFaultTest, ADocumentThatHasBecomeLargerSinceTheListIsFetchedWhole)
{
    for (const int size : {3'000'001, 12'000'000}) {
        server.Put("report.pdf", Pattern(size, 2));
        ASSERT_TRUE(Download()->Succeeds());
        EXPECT_EQ(ReadFile(Local("target.pdf")), Pattern(size, 2));
        server.Put("report.pdf", content);
        ASSERT_TRUE(client.List()->Succeeds());
    }
}

TEST_F(DownloadFaultTest, AFullDiskEndsTheTransferAtOnce)
{
    server.With([](MemoryTree& tree) {
        tree.moreProperties = [](const MemoryNode&, const PropertyName& name) {
            return name.second == "getcontentlength" ? std::optional<QByteArray>("100000000000") : std::nullopt;
        };
    });
    ASSERT_TRUE(client.List()->Succeeds());
    server.Misbehave("GET", [&] {
        return Misbehaviour{[](Wire& wire) {
            wire.Send(ServerResponse{200, {{"Content-Length", "100000000000"}}, {}}.Head());
            wire.SendWithoutEnd([](int) { return QByteArray(1'000'000, 'x'); });
        }};
    }());
    const FileSizeLimit full(5'000'000);
    QElapsedTimer time;
    time.start();
    ExpectFailure("File too large");
    EXPECT_LT(time.elapsed(), 5'000);
}

TEST_F(DownloadFaultTest, ADiskThatTheLastBytesDoNotFitOnToIsFullToo)
{
    const FileSizeLimit full(content.size() - 1);
    ExpectFailure("File too large");
}

TEST_F(DownloadFaultTest, ARedirectWithinTheServerIsFollowed)
{
    server.Put("elsewhere.pdf", content);
    for (const int status : {301, 302, 303, 307, 308}) {
        server.ForgetRequests();
        server.Misbehave("GET", RedirectsTo("elsewhere.pdf", status));
        ASSERT_TRUE(Download()->Succeeds()) << status;
        EXPECT_EQ(ReadFile(Local("target.pdf")), content);
        EXPECT_EQ(server.Requests("GET").back().Path(), QByteArray("/documents/elsewhere.pdf"));
    }
}

TEST_F(DownloadFaultTest, ARedirectToAnotherServerIsNotFollowed)
{
    const FaultServer other;
    server.Misbehave("GET", RedirectsTo(other.Origin() + "/documents/report.pdf"));
    ExpectFailure("The server redirects to another address: " + other.Origin().toStdString());
    EXPECT_EQ(other.Connections(), 0);
}

TEST_F(DownloadFaultTest, ARedirectWithoutEndIsGivenUp)
{
    server.Misbehave(When("GET").Always(), RedirectsToItself());
    ExpectFailure("in circles");
    EXPECT_LE(server.Count("GET"), 10);
}

TEST_F(DownloadFaultTest, InterimAnswersAreNotTheDocument)
{
    const Misbehaviour hintsAtSomethingElse = {[](Wire& wire) {
        wire.Send("HTTP/1.1 103 Early Hints\r\nContent-Type: text/html\r\nContent-Encoding: gzip\r\n\r\n");
        wire.Send(wire.Do(wire.Request()).Bytes());
        wire.Finish();
    }};
    for (const auto& interim : {AnswersAfter(102, 3), AnswersAfter(103), hintsAtSomethingElse}) {
        server.Misbehave("GET", interim);
        ASSERT_TRUE(Download()->Succeeds());
        EXPECT_EQ(ReadFile(Local("target.pdf")), content);
    }
}

} // namespace Norlis::Test
