#include <tests/support/TransferFaultTest.h>

namespace Norlis::Test {

using testing::HasSubstr;

/// Documents whose connection breaks while they are being fetched.
class DownloadResumeTest : public TransferFaultTest<> {
protected:
    explicit DownloadResumeTest(int timeout = usualTimeout) : TransferFaultTest(timeout) {}

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

    void ExpectFetched(const QByteArray& expected) const
    {
        EXPECT_EQ(ReadFile(Local("target.pdf")), expected);
        EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
    }

    QByteArray RangeOf(int number) const
    {
        return server.Requests("GET").at(static_cast<std::size_t>(number - 1)).headers.Value("Range");
    }

    /// The ordinary answer with another ETag, or without one, cut off.
    static Misbehaviour CutsWithTag(const QByteArray& etag)
    {
        return {[etag](Wire& wire) {
            ServerResponse answer = wire.Do(wire.Request());
            answer.headers.Set(etag.isEmpty() ? "X-No-Tag" : "ETag", etag);
            QByteArray head = answer.Head();
            if (etag.isEmpty()) {
                head.replace("\r\nETag:", "\r\nX-Former-Tag:");
            }
            wire.Send(head + answer.body.left(1'000'000));
            wire.Close();
        }};
    }

    const QByteArray content = Pattern(3'000'000);
    QString id;
};

TEST_F(DownloadResumeTest, ItIsTakenUpWhereItBroke)
{
    server.Misbehave("GET", CutsAfterBytes(1'000'000));
    ASSERT_TRUE(Download()->Succeeds());
    ExpectFetched(content);
    ASSERT_EQ(server.Count("GET"), 2);
    const auto gets = server.Requests("GET");
    EXPECT_FALSE(gets[0].headers.Has("Range"));
    EXPECT_EQ(gets[1].headers.Value("Range"), QByteArray("bytes=1000000-"));
    server.With([&](MemoryTree& tree) {
        EXPECT_EQ(gets[1].headers.Value("If-Range"), tree.Find("/documents/report.pdf")->etag);
    });
    for (const SeenRequest& get : gets) {
        EXPECT_EQ(get.headers.Value("Accept-Encoding"), QByteArray("identity"));
    }
}

TEST_F(DownloadResumeTest, BrokenChunksAreNoEnd)
{
    server.Misbehave("GET", CutsInChunks(1'000'000));
    ASSERT_TRUE(Download()->Succeeds());
    ExpectFetched(content);
    EXPECT_EQ(RangeOf(2), QByteArray("bytes=1000000-"));
}

TEST_F(DownloadResumeTest, ItIsTakenUpAsOftenAsSomethingComes)
{
    server.Misbehave(When("GET").Times(9), CutsAfterBytes(300'000));
    ASSERT_TRUE(Download()->Succeeds());
    ExpectFetched(content);
    EXPECT_EQ(server.Count("GET"), 10);
    EXPECT_EQ(RangeOf(10), QByteArray("bytes=2700000-"));
}

TEST_F(DownloadResumeTest, ProgressNeverFallsBack)
{
    server.Misbehave("GET", CutsWithTag("W/\"1\""));
    server.Misbehave("GET", CutsAfterBytes(500'000));
    const auto download = Download();
    ASSERT_TRUE(download->Succeeds());
    EXPECT_TRUE(std::is_sorted(download->percents.begin(), download->percents.end()));
    EXPECT_EQ(std::count(download->percents.begin(), download->percents.end(), 100), 1);
}

TEST_F(DownloadResumeTest, AServerThatSendsAllOfItAgainIsTakenAtItsWord)
{
    server.Misbehave("GET", CutsAfterBytes(1'000'000));
    server.Misbehave("GET", IgnoresTheRange());
    ASSERT_TRUE(Download()->Succeeds());
    ExpectFetched(content);
    EXPECT_EQ(server.Count("GET"), 2);
}

TEST_F(DownloadResumeTest, AnotherPartThanTheOneAskedForIsNotTaken)
{
    for (const auto& wrong : {StartsElsewhere(999'999), StartsElsewhere(1'000'001), StartsElsewhere(0),
                              ClaimsRange("bytes 500-999/3000000"), ClaimsRange("bytes 1000000-2999999/4000000"),
                              ClaimsRange("nonsense"), ClaimsRange("")}) {
        server.ForgetRequests();
        server.Misbehave("GET", CutsAfterBytes(1'000'000));
        server.Misbehave("GET", wrong);
        ASSERT_TRUE(Download()->Succeeds());
        ExpectFetched(content);
        ASSERT_EQ(server.Count("GET"), 3);
        EXPECT_EQ(RangeOf(3), QByteArray());
    }
}

TEST_F(DownloadResumeTest, APartThatNobodyAskedForIsNotTaken)
{
    for (const int offset : {10, 0}) {
        server.ForgetRequests();
        server.Misbehave("GET", StartsElsewhere(offset));
        ASSERT_TRUE(Download()->Succeeds());
        ExpectFetched(content);
        EXPECT_EQ(server.Count("GET"), 2);
    }
    server.Misbehave(When("GET").Always(), StartsElsewhere(10));
    EXPECT_TRUE(Download()->Fails());
    EXPECT_THAT(Reason(), HasSubstr("another part of the document"));
    ExpectFetched(content);
}

TEST_F(DownloadResumeTest, ARangeThatTheServerRefusesStartsAnew)
{
    server.Misbehave("GET", CutsAfterBytes(1'000'000));
    server.Misbehave("GET", AnswersWith(416));
    ASSERT_TRUE(Download()->Succeeds());
    ExpectFetched(content);
    EXPECT_EQ(RangeOf(3), QByteArray());
    server.Misbehave(When("GET").Always(), AnswersWith(416));
    EXPECT_TRUE(Download()->Fails());
    EXPECT_THAT(Reason(), HasSubstr("(416)"));
}

TEST_F(DownloadResumeTest, ADocumentThatChangesMeanwhileIsFetchedAnew)
{
    const QByteArray changed = Pattern(2'000'000, 7);
    server.Misbehave("GET", CutsAfterBytes(1'000'000));
    server.Misbehave("GET", RunsFirst([&] { server.Put("report.pdf", changed); }));
    ASSERT_TRUE(Download()->Succeeds());
    ExpectFetched(changed);
}

TEST_F(DownloadResumeTest, AServerThatDoesNotCompareVersionsIsFoundOut)
{
    const QByteArray changed = Pattern(3'000'000, 7);
    const Misbehaviour ignoresIfRange = {[&](Wire& wire) {
        server.Put("report.pdf", changed);
        ServerRequest request = wire.Request();
        request.headers.Set("If-Range", {});
        wire.Send(wire.Do(request).Bytes());
        wire.Finish();
    }};
    server.Misbehave("GET", CutsAfterBytes(1'000'000));
    server.Misbehave("GET", ignoresIfRange);
    ASSERT_TRUE(Download()->Succeeds());
    ExpectFetched(changed);
    EXPECT_EQ(server.Count("GET"), 3);
}

TEST_F(DownloadResumeTest, WithoutAStrongTagItStartsAnew)
{
    for (const char* etag : {"W/\"1\"", "", "unquoted"}) {
        server.ForgetRequests();
        server.Misbehave("GET", CutsWithTag(etag));
        ASSERT_TRUE(Download()->Succeeds()) << etag;
        ExpectFetched(content);
        ASSERT_EQ(server.Count("GET"), 2);
        EXPECT_EQ(RangeOf(2), QByteArray()) << etag;
    }
}

TEST_F(DownloadResumeTest, StartingAnewIsBounded)
{
    server.Misbehave(When("GET").Always(), CutsWithTag("W/\"1\""));
    EXPECT_TRUE(Download()->Fails());
    EXPECT_THAT(Reason(), HasSubstr("The connection broke"));
    EXPECT_EQ(server.Count("GET"), 4);
    ExpectFetched("old");
}

TEST_F(DownloadResumeTest, AConnectionThatBreaksWithoutAnythingNewIsGivenUp)
{
    server.Misbehave("GET", CutsAfterBytes(1'000'000));
    server.Misbehave(When("GET").Always(), CutsAfterBytes(0));
    EXPECT_TRUE(Download()->Fails());
    EXPECT_THAT(Reason(), HasSubstr("The connection broke"));
    EXPECT_LE(server.Count("GET"), 20);
    ExpectFetched("old");
}

/// Servers that are silent.
class DownloadHangTest : public DownloadResumeTest {
protected:
    DownloadHangTest() : DownloadResumeTest(shortTimeout) {}
};

TEST_F(DownloadHangTest, AServerThatFallsSilentMidwayIsAskedForTheRest)
{
    server.Misbehave("GET", HangsInTheAnswer(1'000'000));
    ASSERT_TRUE(Download()->Succeeds());
    ExpectFetched(content);
    EXPECT_EQ(RangeOf(2), QByteArray("bytes=1000000-"));
}

TEST_F(DownloadHangTest, AServerThatStaysSilentIsGivenUp)
{
    server.Misbehave("GET", HangsInTheAnswer(1'000'000));
    server.Misbehave(When("GET").Always(), Hangs());
    EXPECT_TRUE(Download()->Fails());
    EXPECT_EQ(Reason(), "The server has been silent for 0.6 seconds");
    EXPECT_EQ(server.Count("GET"), 2);
    ExpectFetched("old");
}

TEST_F(DownloadHangTest, ASlowServerThatMovesOnIsNotGivenUp)
{
    const QByteArray small = Pattern(500);
    const QString smallId = Put("small.pdf", small);
    server.Misbehave("GET", Drips(10, 30)); // longer than the timeout in all
    EXPECT_TRUE(client.Download(smallId, Local("target.pdf"))->Succeeds());
    ExpectFetched(small);
    EXPECT_EQ(server.Count("GET"), 1);
}

} // namespace Norlis::Test
