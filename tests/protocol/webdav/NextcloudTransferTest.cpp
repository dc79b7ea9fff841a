#include <tests/support/TransferFaultTest.h>

#include <NorlisTestKit/NextcloudLikeServer.h>

namespace Norlis::Test {

using testing::HasSubstr;

/// Transfers with servers like Nextcloud and ownCloud.
class NextcloudTransferTest : public TransferFaultTest<NextcloudLikeServer> {
protected:
    void SetUp() override
    {
        TransferFaultTest::SetUp();
        id = Put("report.pdf", "old");
    }

    AnswerPtr<Social::NorlisCloudSharingResult> Replace(const QByteArray& content)
    {
        return client.Upload(LocalFile("new.pdf", content), id, Md5Of(content));
    }

    QString FileId(const QString& name)
    {
        return QString::number(server.FileId(name));
    }

    QString id;
};

TEST_F(NextcloudTransferTest, IdsAreTheServersFileIds)
{
    EXPECT_EQ(id, FileId("report.pdf"));
    const auto upload = client.Upload(LocalFile("other.pdf", "content"));
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.id, FileId("other.pdf"));
    EXPECT_EQ(client.Entry("other.pdf").id, FileId("other.pdf"));
}

TEST_F(NextcloudTransferTest, AReplacementGoesStraightToTheDocumentAndKeepsItsId)
{
    const auto upload = Replace("new content");
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.id, id);
    EXPECT_EQ(FileId("report.pdf"), id);
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("new content"));
    EXPECT_EQ(server.Count("MOVE"), 0);
    ASSERT_EQ(server.Count("PUT"), 1);
    const SeenRequest put = server.Requests("PUT").front();
    EXPECT_EQ(put.Path(), server.CollectionPath() + "report.pdf");
    EXPECT_TRUE(put.headers.Value("If-Match").startsWith("\"e"));
    EXPECT_EQ(put.headers.Value("X-Hash"), QByteArray("md5"));
    EXPECT_EQ(put.headers.Value("OC-Checksum"), "MD5:" + Md5Of("new content").toLatin1());
}

TEST_F(NextcloudTransferTest, ANewDocumentComesByATemporaryName)
{
    ASSERT_TRUE(client.Upload(LocalFile("other.pdf", "content"))->Succeeds());
    for (const SeenRequest& put : server.Requests("PUT")) {
        EXPECT_TRUE(put.target.endsWith(".part"));
    }
    ExpectOnServer({"other.pdf", "report.pdf"});
}

TEST_F(NextcloudTransferTest, OtherBytesThanWereSentAreAnError)
{
    const Misbehaviour hashesOtherBytes = {[](Wire& wire) {
        ServerResponse answer = wire.Do(wire.Request());
        answer.headers.Set("X-Hash-MD5", Md5Of("other bytes").toLatin1());
        wire.Send(answer.Bytes());
        wire.Finish();
    }};
    server.Misbehave("PUT", hashesOtherBytes);
    ExpectFailure(client.Upload(LocalFile("other.pdf", "content")));
    EXPECT_THAT(Reason(), HasSubstr("The server received other bytes than were sent"));
    ExpectOnServer({"report.pdf"});
}

TEST_F(NextcloudTransferTest, ADocumentThatSomebodyElseHasChangedIsNotReplaced)
{
    server.Misbehave("PUT", RunsFirst([this] { server.Put("report.pdf", "somebody else's"); }));
    ExpectFailure(Replace("new content"));
    EXPECT_THAT(Reason(), HasSubstr("changed by somebody else in the meantime"));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("somebody else's"));
}

TEST_F(NextcloudTransferTest, TheListHasTheChecksums)
{
    ASSERT_TRUE(Replace("new content")->Succeeds());
    EXPECT_EQ(client.Entry("report.pdf").md5Hash, Md5Of("new content"));
    Client other(Settings(), server.Password());
    ASSERT_TRUE(other.SignIn());
    EXPECT_EQ(other.Entry("report.pdf").md5Hash, Md5Of("new content"));
    EXPECT_EQ(server.Count("PROPPATCH"), 0);
}

TEST_F(NextcloudTransferTest, AWrongChecksumRefusesADownload)
{
    ASSERT_TRUE(Replace("new content")->Succeeds());
    server.With(
        [this](MemoryTree& tree) { tree.Find(server.CollectionPath() + "report.pdf")->content = "New content"; });
    LocalFile("target.pdf", "old");
    EXPECT_TRUE(client.Download(id, Local("target.pdf"))->Fails());
    EXPECT_THAT(Reason(), HasSubstr("does not have the hash"));
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("old"));
}

TEST_F(NextcloudTransferTest, ALostAnswerToAReplacementIsMadeUpForByLooking)
{
    server.Misbehave("PUT", DoesItAndCloses());
    const auto upload = Replace("new content");
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.id, id);
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("new content"));
}

TEST_F(NextcloudTransferTest, AReplacementThatIsSentTwiceIsNotTakenForSomebodyElses)
{
    server.Misbehave("PUT", DoesItAndAnswers(412));
    ASSERT_TRUE(Replace("new content")->Succeeds());
    EXPECT_EQ(client.Entry("report.pdf").md5Hash, Md5Of("new content"));
}

TEST_F(NextcloudTransferTest, ALostReplacementIsAnError)
{
    server.Misbehave(When("PUT").Always(), ClosesWithoutAnswer());
    ExpectFailure(Replace("new content"));
    EXPECT_THAT(Reason(), HasSubstr("The connection broke"));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("old"));
}

TEST_F(NextcloudTransferTest, ABrokenReplacementIsNotTakenForSomebodyElsesOfTheSameSize)
{
    const Misbehaviour breaks = {[this](Wire& wire) {
                                     server.Put("report.pdf", Pattern(5'000'000, 7));
                                     wire.Reset();
                                 },
                                 100'000};
    server.Misbehave(When("PUT").Always(), breaks);
    ExpectFailure(Replace(Pattern(5'000'000)));
    EXPECT_EQ(server.Get("report.pdf"), Pattern(5'000'000, 7));
}

TEST_F(NextcloudTransferTest, ARefusedReplacementLeavesTheOldDocument)
{
    for (const int status : {403, 413, 500, 507}) {
        server.Misbehave("PUT", AnswersWith(status));
        ExpectFailure(Replace("new content"));
        EXPECT_EQ(server.Get("report.pdf"), QByteArray("old"));
    }
    EXPECT_EQ(server.Count("DELETE"), 0);
}

TEST_F(NextcloudTransferTest, ACanceledReplacementNeverTakesTheDocumentAway)
{
    server.Misbehave("PUT", HangsInTheRequest(100'000));
    const auto upload = Replace(Pattern(5'000'000));
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == 1; }));
    client.Cancel(upload->operation);
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("old"));
    EXPECT_EQ(server.Count("DELETE"), 0);
}

TEST_F(NextcloudTransferTest, ARenamedDocumentKeepsItsId)
{
    server.With([this](MemoryTree& tree) {
        const QByteArray folder = server.CollectionPath();
        tree.Answer({"MOVE", folder + "report.pdf", {{"Destination", folder + "renamed.pdf"}}, {}});
    });
    EXPECT_EQ(client.Entry("renamed.pdf").id, id);
    ASSERT_TRUE(client.Remove(id)->Succeeds());
    ExpectOnServer({});
}

} // namespace Norlis::Test
