#include <tests/support/TransferFaultTest.h>

#include <QElapsedTimer>

namespace Norlis::Test {

using testing::AnyOf;
using testing::HasSubstr;

/// Files that are being sent.
class UploadFaultTest : public TransferFaultTest<> {
protected:
    using TransferFaultTest::TransferFaultTest;
};

TEST_F(UploadFaultTest, AnUploadThatIsKeptInPartIsAnErrorAndNothingStays)
{
    LearnTheServer();
    server.Misbehave("PUT", KeepsOnly(1000));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_THAT(Reason(), HasSubstr("kept 1000 of 5000 bytes"));
    ExpectOnServer({});
}

TEST_F(UploadFaultTest, AReplacementThatIsKeptInPartLeavesTheOldDocument)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave("PUT", KeepsOnly(0));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000)), id));
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("old"));
}

TEST_F(UploadFaultTest, AnUploadThatIsNotKeptAtAllIsAnError)
{
    server.Misbehave("PUT", OnlyClaimsToDoIt(201));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    ExpectOnServer({});
}

TEST_F(UploadFaultTest, AnUploadIsComparedBeforeItGetsItsName)
{
    LearnTheServer();
    for (const auto& misbehaviour : {AnswersWith(500), ShowsAPage(200), AnswersWith(404), AnswersWith(403)}) {
        client.failures.clear();
        server.Misbehave("GET", misbehaviour);
        ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
        ExpectOnServer({});
    }
    EXPECT_EQ(server.Count("MOVE"), 0);
}

TEST_F(UploadFaultTest, OtherBytesOfTheSameLengthAreAnError)
{
    LearnTheServer();
    const QString id = Put("old.pdf", "old");
    for (const int size : {1, 5000, 3'000'000}) {
        const Misbehaviour storesOtherBytes = {[](Wire& wire) {
            ServerRequest other = wire.Request();
            other.body[other.body.size() / 2] = static_cast<char>(other.body[other.body.size() / 2] ^ 1);
            wire.Send(wire.Do(other).Bytes());
            wire.Finish();
        }};
        for (const QString& replaced : {QString(), id}) {
            client.failures.clear();
            server.Misbehave("PUT", storesOtherBytes);
            ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(size)), replaced));
            EXPECT_THAT(Reason(), HasSubstr("stored other bytes than were sent")) << size;
            ExpectOnServer({"old.pdf"});
            EXPECT_EQ(server.Get("old.pdf"), QByteArray("old"));
        }
    }
}

TEST_F(UploadFaultTest, OfALargeUploadOnlyPartsAreFetched)
{
    LearnTheServer();
    server.Misbehave(When("GET").Always(), {[](Wire& wire) {
                         const ServerResponse answer = wire.Do(wire.Request());
                         EXPECT_EQ(answer.status, 206);
                         EXPECT_LE(answer.body.size(), 64 * 1024);
                         wire.Send(answer.Bytes());
                         wire.Finish();
                     }});
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", Pattern(3'000'000)))->Succeeds());
    EXPECT_EQ(server.Count("GET"), 3);
}

TEST_F(UploadFaultTest, OfALargeUploadToAServerWithoutRangesTheBeginningIsFetched)
{
    LearnTheServer();
    server.Misbehave(When("GET").Always(), IgnoresTheRange());
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", Pattern(3'000'000)))->Succeeds());
    server.Misbehave("PUT", {[](Wire& wire) {
                         ServerRequest other = wire.Request();
                         other.body[0] = static_cast<char>(other.body[0] ^ 1);
                         wire.Send(wire.Do(other).Bytes());
                         wire.Finish();
                     }});
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(3'000'000))));
    ExpectOnServer({"report.pdf"});
}

TEST_F(UploadFaultTest, AStatusInsideOfAnAnswerIsWhatThePersonReads)
{
    LearnTheServer();
    server.Misbehave("PUT", HasInnerStatus(423));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_THAT(Reason(), HasSubstr("locked by somebody (423)"));
    ExpectOnServer({});
}

TEST_F(UploadFaultTest, AnAnswerThatIsAPageIsNoSuccess)
{
    LearnTheServer();
    server.Misbehave("PUT", ShowsAPage(200));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_EQ(server.Count("GET"), 0);
    ExpectOnServer({});
}

TEST_F(UploadFaultTest, AnAnnouncementThatIsTakenForTheFileIsLeftOut)
{
    LearnTheServer();
    const QByteArray content = Pattern(3'000'000);
    const Misbehaviour takesItForTheFile = {[](Wire& wire) {
                                                wire.Do(wire.Request());
                                                wire.Send(ServerResponse{201, {}, {}}.Bytes());
                                                wire.Close();
                                            },
                                            0};
    server.Misbehave("PUT", takesItForTheFile);
    for (int count = 0; count < 2; ++count) {
        const auto upload = client.Upload(LocalFile("report.pdf", content));
        ASSERT_TRUE(upload->Succeeds());
        EXPECT_EQ(server.Get(upload->payload.fileName), content);
        EXPECT_FALSE(server.Requests("PUT").back().headers.Has("Expect"));
    }
    EXPECT_EQ(server.Count("PUT"), 3);
}

TEST_F(UploadFaultTest, AServerThatForbidsHiddenNamesIsGivenOthers)
{
    const Misbehaviour forbidsThem = {[](Wire& wire) {
        const bool isHidden = wire.Request().target.contains("/.");
        wire.Send((isHidden ? ServerResponse{403, {}, {}} : wire.Do(wire.Request())).Bytes());
        wire.Finish();
    }};
    server.Misbehave(When("*").Always(), forbidsThem);
    for (const char* name : {"a.pdf", "b.pdf"}) {
        ASSERT_TRUE(client.Upload(LocalFile(name, name))->Succeeds());
        EXPECT_EQ(server.Get(name), QByteArray(name));
    }
    EXPECT_EQ(server.Count("PUT"), 4); // one refused, one to find out whether the server overwrites
    ExpectOnServer({"a.pdf", "b.pdf"});
    server.With([](MemoryTree& tree) { tree.Put("/documents/norlis-0123456789abcdef.part", "half"); });
    EXPECT_EQ(client.List()->Succeeds(), true);
    EXPECT_EQ(client.Entry("norlis-0123456789abcdef.part").id, QString());
}

TEST_F(UploadFaultTest, NamesOfUnfinishedFilesAreRefused)
{
    for (const char* name :
         {".norlis-something.part", ".norlis-0123456789abcdef.part", "norlis-0123456789abcdef.part"}) {
        client.failures.clear();
        ExpectFailure(client.Upload(LocalFile(name, "mine")));
        EXPECT_THAT(Reason(), HasSubstr("kept for unfinished files"));
    }
    EXPECT_TRUE(client.Upload(LocalFile("norlis-plan.part", "mine"))->Succeeds());
    ExpectOnServer({"norlis-plan.part"});
}

TEST_F(UploadFaultTest, ABrokenConnectionIsTriedAgain)
{
    LearnTheServer();
    const QByteArray content = Pattern(3'000'000);
    server.Misbehave("PUT", ClosesInTheRequest(1'000'000));
    EXPECT_TRUE(client.Upload(LocalFile("report.pdf", content))->Succeeds());
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Get("report.pdf"), content);
    EXPECT_EQ(server.Count("PUT"), 2);
}

TEST_F(UploadFaultTest, AConnectionThatAlwaysBreaksIsGivenUp)
{
    LearnTheServer();
    server.Misbehave(When("PUT").Always(), ClosesWithoutAnswer());
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_THAT(Reason(), HasSubstr("The connection broke"));
    EXPECT_LT(server.Count("PUT"), 10); // more than attempts: on kept connections, which may be closed by chance
    ExpectOnServer({});
}

TEST_F(UploadFaultTest, WhatIsLeftOfABrokenUploadIsRemoved)
{
    LearnTheServer();
    const Misbehaviour keepsTheTruncatedFile = {[](Wire& wire) {
                                                    wire.Do(wire.Request());
                                                    wire.Reset();
                                                },
                                                100'000};
    server.Misbehave(When("PUT").Always(), keepsTheTruncatedFile);
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(3'000'000))));
    ExpectOnServer({});
}

TEST_F(UploadFaultTest, ABusyServerIsGivenTheTimeItAsksFor)
{
    LearnTheServer();
    server.Misbehave("PUT", IsInMaintenance(1));
    QElapsedTimer time;
    time.start();
    EXPECT_TRUE(client.Upload(LocalFile("report.pdf", Pattern(5000)))->Succeeds());
    EXPECT_GE(time.elapsed(), 950);
    EXPECT_EQ(server.Get("report.pdf"), Pattern(5000));
}

TEST_F(UploadFaultTest, AServerThatAsksForTooMuchTimeIsReported)
{
    LearnTheServer();
    server.Misbehave("PUT", IsInMaintenance(3600));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_THAT(Reason(), HasSubstr("(503: System in maintenance mode.)"));
    EXPECT_EQ(server.Count("PUT"), 1);
    ExpectOnServer({});
}

TEST_F(UploadFaultTest, ARefusalIsReportedInTheServersWords)
{
    LearnTheServer();
    server.Misbehave("PUT", Refuses(403, "Forbidden", "This folder is for reading"));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_THAT(Reason(), HasSubstr("(403: This folder is for reading)"));
    EXPECT_EQ(server.Count("PUT"), 1);
}

TEST_F(UploadFaultTest, ARefusalWhoseTextIsCutOffIsOneAllTheSame)
{
    LearnTheServer();
    server.Misbehave("PUT", SendsRawBytes("HTTP/1.1 507 Insufficient Storage\r\nContent-Length: 1000\r\n\r\nThere is"));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_THAT(Reason(), HasSubstr("(507)"));
    EXPECT_EQ(server.Count("PUT"), 1);
}

TEST_F(UploadFaultTest, ItIsNotCompleteBeforeTheServerHasSaidSo)
{
    LearnTheServer();
    server.Misbehave("PUT", Hangs());
    const auto upload = client.Upload(LocalFile("report.pdf", Pattern(300'000)));
    ASSERT_TRUE(WaitUntil([&] {
        const auto puts = server.Requests("PUT");
        return !puts.empty() && puts.back().isComplete;
    }));
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_EQ(upload->percents.back(), 99);
    EXPECT_FALSE(upload->Came());
}

TEST_F(UploadFaultTest, ARedirectWithinTheServerIsFollowedWithTheWholeBody)
{
    LearnTheServer();
    const QByteArray content = Pattern(3'000'000);
    const Misbehaviour redirects = {[](Wire& wire) {
        const ServerResponse answer{307, {{"Location", wire.Request().target + "?here"}}, {}};
        wire.Send(answer.Bytes());
        wire.Finish();
    }};
    server.Misbehave("PUT", redirects);
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", content))->Succeeds());
    EXPECT_EQ(server.Get("report.pdf"), content);
    EXPECT_THAT(server.Requests("PUT").back().target.toStdString(), testing::EndsWith(".part?here"));
}

TEST_F(UploadFaultTest, ARedirectToAnotherServerIsNotFollowed)
{
    const FaultServer other;
    server.Misbehave(When("PUT").Always(), RedirectsTo(other.Origin() + "/documents/report.pdf", 307));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_THAT(Reason(), HasSubstr("The server redirects to another address: " + other.Origin().toStdString()));
    EXPECT_EQ(other.Connections(), 0);
    ExpectOnServer({});
}

/// Servers that are silent.
class UploadHangTest : public UploadFaultTest {
protected:
    UploadHangTest() : UploadFaultTest(shortTimeout) {}
};

TEST_F(UploadHangTest, AServerThatStopsReadingIsGivenUp)
{
    LearnTheServer();
    server.Misbehave("PUT", HangsInTheRequest(100'000));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(20'000'000))));
    EXPECT_EQ(Reason(), "The server has been silent for 0.6 seconds");
    EXPECT_EQ(server.Count("PUT"), 1);
    ExpectOnServer({});
}

TEST_F(UploadHangTest, AServerThatDoesNotAnswerIsGivenUp)
{
    LearnTheServer();
    server.Misbehave("PUT", Hangs());
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_EQ(Reason(), "The server has been silent for 3 seconds"); // it may have work to do with what it has got
    ExpectOnServer({});
}

TEST_F(UploadHangTest, AServerThatTakesLongToAnswerIsWaitedFor)
{
    LearnTheServer();
    server.Misbehave("PUT", Drips(1000, 2 * shortTimeout));
    EXPECT_TRUE(client.Upload(LocalFile("report.pdf", Pattern(3'000'000)))->Succeeds());
    EXPECT_EQ(server.Count("PUT"), 1);
}

TEST_F(UploadHangTest, WhatArrivedCountsWhenTheAnswerNeverComes)
{
    LearnTheServer();
    const Misbehaviour doesItAndHangs = {[](Wire& wire) { wire.Do(wire.Request()); }};
    server.Misbehave("PUT", doesItAndHangs);
    EXPECT_TRUE(client.Upload(LocalFile("report.pdf", Pattern(5000)))->Succeeds());
    EXPECT_EQ(server.Count("PUT"), 1);
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Get("report.pdf"), Pattern(5000));
}

TEST_F(UploadHangTest, ASlowServerThatMovesOnIsNotGivenUp)
{
    LearnTheServer();
    server.Misbehave("PUT", Drips(2, 20)); // longer than the timeout in all
    EXPECT_TRUE(client.Upload(LocalFile("report.pdf", Pattern(5000)))->Succeeds());
}

TEST_F(UploadHangTest, AnAnswerOfNothingButHeadersIsGivenUp)
{
    LearnTheServer();
    const QByteArray headers = "HTTP/1.1 201 Created\r\n" + QByteArray("X-Field: 1\r\n").repeated(6'000);
    server.Misbehave("PUT", {[headers](Wire& wire) { wire.SendSlowly(headers, 12, 10); }});
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(5000))));
    EXPECT_EQ(Reason(), "The server has not finished its answer in 3.6 seconds");
}

/// Servers that do not know that a client which expects `100 Continue` has not sent anything yet.
TEST_F(UploadFaultTest, AServerThatReportsSuccessBeforeTheBodyCameIsSentItWithoutBeingAsked)
{
    LearnTheServer();
    const QByteArray content = Pattern(3'000'000);
    const Misbehaviour answersTheHead = {[](Wire& wire) {
                                             wire.Send(ServerResponse{201, {}, {}}.Bytes());
                                             wire.Finish();
                                         },
                                         0};
    server.Misbehave("PUT", answersTheHead);
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", content))->Succeeds());
    EXPECT_EQ(server.Get("report.pdf"), content);
    const auto puts = server.Requests("PUT");
    ASSERT_EQ(puts.size(), 2U);
    EXPECT_EQ(puts[0].headers.Value("Expect"), "100-continue");
    EXPECT_FALSE(puts[1].headers.Has("Expect"));
}

/// Servers that answer before they have read what they were sent.
struct EarlyAnswer {
    int status;
    int size; ///< of the file
    qint64 afterBodyBytes;
    Rest rest;
};

void PrintTo(const EarlyAnswer& early, std::ostream* stream)
{
    *stream << early.status << " after " << early.afterBodyBytes << " of " << early.size << " bytes, the rest "
            << (early.rest == Rest::IsRead ? "read" : "cut off");
}

class EarlyAnswerTest : public UploadFaultTest, public testing::WithParamInterface<EarlyAnswer> {};

constexpr int small = 500'000;
constexpr int large = 20'000'000; // more than what is on its way at any moment

INSTANTIATE_TEST_SUITE_P(Uploads, EarlyAnswerTest,
                         testing::Values(EarlyAnswer{413, small, 0, Rest::IsRead},
                                         EarlyAnswer{507, small, 0, Rest::IsCutOff},
                                         EarlyAnswer{413, large, 0, Rest::IsCutOff},
                                         EarlyAnswer{401, large, 0, Rest::IsRead},
                                         EarlyAnswer{507, large, 1'000'000, Rest::IsRead},
                                         EarlyAnswer{413, large, 1'000'000, Rest::IsCutOff},
                                         EarlyAnswer{401, large, 1'000'000, Rest::IsCutOff}));

TEST_P(EarlyAnswerTest, ItsStatusIsWhatThePersonReads)
{
    LearnTheServer();
    const EarlyAnswer& early = GetParam();
    server.Misbehave(When("PUT").Always(), AnswersEarly(early.status, early.afterBodyBytes, early.rest));
    ExpectFailure(client.Upload(LocalFile("report.pdf", Pattern(early.size))));
    ExpectOnServer({});
    const auto status = HasSubstr('(' + std::to_string(early.status) + ')');
    if (early.rest == Rest::IsCutOff) {
        // What a server has said is lost on the way when it cuts off what is still being sent. It is asked again, a few
        // times.
        EXPECT_THAT(Reason(), AnyOf(status, HasSubstr("The connection broke")));
        EXPECT_LE(server.Count("PUT"), 3);
        return;
    }
    EXPECT_THAT(Reason(), status);
    EXPECT_EQ(server.Count("PUT"), 1);
    EXPECT_EQ(client.Protocol()->loggedIn(), early.status != 401);
}

} // namespace Norlis::Test
