#include <tests/support/TransferFaultTest.h>

namespace Norlis::Test {

using testing::ElementsAre;
using testing::HasSubstr;

/// Uploaded files that are to get their names.
class UploadPublishingTest : public TransferFaultTest<> {
protected:
    QString File() const
    {
        return LocalFile("report.pdf", "new");
    }

    /// As some servers put it.
    static Misbehaviour RefusesInsideOfAnAnswer(int status)
    {
        return {[status](Wire& wire) {
            ServerResponse answer = wire.Do(wire.Request());
            if (answer.status == 412) {
                answer = {207,
                          {{"Content-Type", "application/xml; charset=utf-8"}},
                          "<D:multistatus xmlns:D=\"DAV:\"><D:response><D:href>/x</D:href><D:status>HTTP/1.1 " +
                              QByteArray::number(status) + " No</D:status></D:response></D:multistatus>"};
            }
            wire.Send(answer.Bytes());
            wire.Finish();
        }};
    }

    /// Documents have a new tag once they are renamed.
    Misbehaviour RetagsAndAnswers(int status)
    {
        return {[this, status](Wire& wire) {
            const QByteArray to = DecodedPath(wire.Request().headers.Value("Destination"));
            wire.Do(wire.Request());
            server.With([&](MemoryTree& tree) { tree.Find(to)->etag = "\"renamed\""; });
            if (status == 0) {
                wire.Close();
            } else {
                wire.Send(ServerResponse{status, {}, {}}.Bytes());
                wire.Finish();
            }
        }};
    }

    /// Makes room for a document before it turns out that the new one cannot be put there.
    Misbehaviour LosesTheOldOne()
    {
        return {[this](Wire& wire) {
            server.Remove("report.pdf");
            wire.Send(ServerResponse{500, {}, {}}.Bytes());
            wire.Finish();
        }};
    }
};

TEST_F(UploadPublishingTest, ALostAnswerIsMadeUpForByLooking)
{
    LearnTheServer();
    server.Misbehave("MOVE", DoesItAndCloses());
    const auto upload = client.Upload(File());
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.id, client.Entry("report.pdf").id);
    ExpectOnServer({"report.pdf"});
}

TEST_F(UploadPublishingTest, ALostReplacementIsMadeUpForByLooking)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave("MOVE", DoesItAndCloses());
    ASSERT_TRUE(client.Upload(File(), id)->Succeeds());
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("new"));
}

TEST_F(UploadPublishingTest, AnotherDocumentOfTheNameIsNotTakenForTheUpload)
{
    LearnTheServer();
    const Misbehaviour losesIt = {[this](Wire& wire) {
        server.With([&](MemoryTree& tree) { tree.Remove(wire.Request().Path()); });
        server.Put("report.pdf", "somebody else's");
        wire.Close();
    }};
    server.Misbehave("MOVE", losesIt);
    ExpectFailure(client.Upload(File()));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("somebody else's"));
}

TEST_F(UploadPublishingTest, ALostRequestIsSentAgain)
{
    LearnTheServer();
    server.Misbehave("MOVE", ClosesWithoutAnswer());
    ASSERT_TRUE(client.Upload(File())->Succeeds());
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Count("MOVE"), 2);
}

TEST_F(UploadPublishingTest, ARequestThatIsAlwaysLostIsGivenUp)
{
    LearnTheServer();
    server.Misbehave(When("MOVE").Always(), ClosesWithoutAnswer());
    ExpectFailure(client.Upload(File()));
    EXPECT_THAT(Reason(), HasSubstr("The connection broke"));
    EXPECT_LT(server.Count("MOVE"), 20); // more than attempts: on kept connections, which may be closed by chance
    ExpectOnServer({});
}

TEST_F(UploadPublishingTest, AGatewaysErrorIsLookedBehind)
{
    LearnTheServer();
    for (const int status : {504, 502, 500, 207, 404}) {
        server.Misbehave("MOVE", DoesItAndAnswers(status));
        const auto upload = client.Upload(LocalFile(QString("%1.pdf").arg(status), "new"));
        EXPECT_TRUE(upload->Succeeds()) << status;
        EXPECT_EQ(server.Get(upload->payload.fileName), QByteArray("new"));
    }
    EXPECT_EQ(server.Count("MOVE"), 5);
    EXPECT_EQ(server.Names().size(), 5);
}

TEST_F(UploadPublishingTest, ARefusalIsAnErrorAndNothingStays)
{
    LearnTheServer();
    for (const int status : {403, 405, 409, 500, 501, 503, 504, 507}) {
        client.failures.clear();
        server.Misbehave("MOVE", AnswersWith(status));
        ExpectFailure(client.Upload(File()));
        EXPECT_THAT(Reason(), HasSubstr('(' + std::to_string(status) + ')'));
        ExpectOnServer({});
    }
    EXPECT_EQ(server.Count("MOVE"), 8);
}

TEST_F(UploadPublishingTest, WhatSomebodyElsePutsThereDuringTheUploadIsNotReplaced)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave("PUT", {[this](Wire& wire) {
                         const ServerResponse answer = wire.Do(wire.Request());
                         server.Put("report.pdf", "somebody else's");
                         wire.Send(answer.Bytes());
                         wire.Finish();
                     }});
    ExpectFailure(client.Upload(File(), id));
    EXPECT_THAT(Reason(), HasSubstr("Somebody has changed or removed the document"));
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("somebody else's"));
}

TEST_F(UploadPublishingTest, ALockThatIsShortIsWaitedFor)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave(When("MOVE").Times(2), AnswersWith(423));
    ASSERT_TRUE(client.Upload(File(), id)->Succeeds());
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("new"));
    EXPECT_EQ(server.Count("MOVE"), 3);
}

TEST_F(UploadPublishingTest, ALockedDocumentOfTheSameContentIsNotTheNewOne)
{
    LearnTheServer();
    server.Put("report.pdf", "new");
    server.Misbehave("MOVE", AnswersWith(423));
    const auto upload = client.Upload(File());
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.fileName, "report (2).pdf");
    ExpectOnServer({"report (2).pdf", "report.pdf"});
}

TEST_F(UploadPublishingTest, AShortLockOfANameThatIsFreeIsWaitedFor)
{
    LearnTheServer();
    server.Misbehave(When("MOVE").Times(2), AnswersWith(423));
    ASSERT_TRUE(client.Upload(File())->Succeeds());
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Count("MOVE"), 3);
}

TEST_F(UploadPublishingTest, ALockThatStaysIsReported)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave(When("MOVE").Always(), Refuses(423, "Locked", "Anna is editing it"));
    ExpectFailure(client.Upload(File(), id));
    EXPECT_THAT(Reason(), HasSubstr("(423: Anna is editing it)"));
    EXPECT_LT(server.Count("MOVE"), 10);
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("old"));
}

TEST_F(UploadPublishingTest, AServerThatCannotMoveIsReported)
{
    for (const int status : {405, 501}) {
        client.failures.clear();
        server.Misbehave(When("MOVE").Always(), AnswersWith(status));
        ExpectFailure(client.Upload(File()));
        EXPECT_THAT(Reason(), HasSubstr("The server cannot do this"));
        ExpectOnServer({});
        server.BehaveAgain();
    }
}

TEST_F(UploadPublishingTest, AMultiStatusOfFailuresIsNoSuccess)
{
    LearnTheServer();
    server.Misbehave("MOVE", HasInnerStatus(423));
    ExpectFailure(client.Upload(File()));
    ExpectOnServer({});
}

TEST_F(UploadPublishingTest, ARefusalInsideOfAnAnswerIsOne)
{
    server.Put("report.pdf", "somebody else's");
    server.Misbehave(When("MOVE").Always(), RefusesInsideOfAnAnswer(412));
    const auto upload = client.Upload(File());
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.fileName, "report (2).pdf");
    EXPECT_EQ(server.Get("report (2).pdf"), QByteArray("new"));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("somebody else's"));
    ExpectOnServer({"report (2).pdf", "report.pdf"});
}

TEST_F(UploadPublishingTest, AMoveThatIsOnlyClaimedIsNotBelieved)
{
    for (const bool isFirst : {true, false}) {
        for (const auto& claim : {OnlyClaimsToDoIt(201), OnlyClaimsToDoIt(204), ShowsAPage(200)}) {
            client.failures.clear();
            if (!isFirst) {
                LearnTheServer();
            }
            server.Misbehave(When("MOVE").Always(), claim);
            ExpectFailure(client.Upload(File()));
            ExpectOnServer({});
            server.BehaveAgain();
        }
    }
}

TEST_F(UploadPublishingTest, AReplacementThatIsOnlyClaimedIsNotBelieved)
{
    const QString id = Put("report.pdf", "old"); // as long as the new one
    for (const auto& claim : {OnlyClaimsToDoIt(201), OnlyClaimsToDoIt(204), ShowsAPage(200)}) {
        client.failures.clear();
        server.Misbehave(When("MOVE").Always(), claim);
        ExpectFailure(client.Upload(File(), id));
        ExpectOnServer({"report.pdf"});
        EXPECT_EQ(server.Get("report.pdf"), QByteArray("old"));
        server.BehaveAgain();
    }
}

TEST_F(UploadPublishingTest, ANewTagOfWhatWasRenamedIsNoOtherVersion)
{
    LearnTheServer();
    for (const int status : {0, 201, 500}) {
        server.Misbehave("MOVE", RetagsAndAnswers(status));
        const auto upload = client.Upload(LocalFile(QString("%1.pdf").arg(status), "new"));
        ASSERT_TRUE(upload->Succeeds()) << status;
        EXPECT_EQ(upload->payload.fileName, QString("%1.pdf").arg(status));
    }
    ExpectOnServer({"0.pdf", "201.pdf", "500.pdf"});
}

TEST_F(UploadPublishingTest, WhatTakesTheNameAtOnceIsNotTakenForTheUpload)
{
    LearnTheServer();
    server.Misbehave("MOVE", {[this](Wire& wire) {
                         const ServerResponse answer = wire.Do(wire.Request());
                         server.Put("report.pdf", "hers");
                         wire.Send(answer.Bytes());
                         wire.Finish();
                     }});
    ExpectFailure(client.Upload(LocalFile("report.pdf", "mine")));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("hers"));
    EXPECT_THAT(Failure().advice.toStdString(), HasSubstr("Refresh the list"));
}

TEST_F(UploadPublishingTest, ALookThatFailsIsTakenAgain)
{
    LearnTheServer();
    for (const auto& misbehaviour : {AnswersWith(500), ShowsAPage(200), SendsXml("<broken"), ResetsTheConnection()}) {
        server.Misbehave("PROPFIND", misbehaviour);
        const auto upload = client.Upload(File());
        ASSERT_TRUE(upload->Succeeds());
        ASSERT_TRUE(client.Remove(upload->payload.id)->Succeeds());
    }
}

TEST_F(UploadPublishingTest, WhatCannotBeLookedAtIsNotReportedAndNotDeleted)
{
    LearnTheServer();
    server.Misbehave(When("PROPFIND").Always(), AnswersWith(500));
    ExpectFailure(client.Upload(File()));
    EXPECT_THAT(Failure().advice.toStdString(), HasSubstr("may be in the cloud already, as report.pdf"));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("new"));
}

TEST_F(UploadPublishingTest, WhatIsSentAgainSinceNobodyCouldLookIsNoSecondDocument)
{
    LearnTheServer();
    server.Misbehave(When("PROPFIND").Always(), AnswersWith(500));
    ExpectFailure(client.Upload(File()));
    server.BehaveAgain();
    const auto again = client.Upload(File());
    ASSERT_TRUE(again->Succeeds());
    EXPECT_EQ(again->payload.fileName, "report.pdf");
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(client.Upload(File())->Succeeds(), true); // somebody wants it twice
    ExpectOnServer({"report (2).pdf", "report.pdf"});
}

TEST_F(UploadPublishingTest, WhatIsSentAgainByTheNextProgramIsNoSecondDocumentEither)
{
    Social::OAuth2::AuthInfo settings = Settings();
    settings.dataFolder = Local("data");
    {
        Client first(settings, server.Password());
        ASSERT_TRUE(first.SignIn());
        server.Misbehave("MOVE", {[this](Wire& wire) {
                             const ServerResponse answer = wire.Do(wire.Request());
                             server.Misbehave(When("PROPFIND").Always(), AnswersWith(500));
                             wire.Send(answer.Bytes());
                             wire.Finish();
                         }});
        ASSERT_TRUE(first.Upload(File())->Fails());
    }
    server.BehaveAgain();
    Client next(settings, server.Password());
    ASSERT_TRUE(next.SignIn());
    const auto again = next.Upload(File());
    ASSERT_TRUE(again->Succeeds());
    EXPECT_EQ(again->payload.fileName, "report.pdf");
    ExpectOnServer({"report.pdf"});
}

TEST_F(UploadPublishingTest, ASmallDocumentCostsAComparisonAMoveAndALook)
{
    LearnTheServer();
    ASSERT_TRUE(client.Upload(File())->Succeeds());
    std::vector<std::string> methods;
    for (const SeenRequest& request : server.Requests()) {
        methods.push_back(request.method.toStdString());
    }
    methods.resize(std::min<std::size_t>(methods.size(), 4)); // without what goes on behind it
    EXPECT_THAT(methods, ElementsAre("PUT", "GET", "MOVE", "PROPFIND"));
}

TEST_F(UploadPublishingTest, AServerThatCutsNamesOffIsNotAskedForEveryNumber)
{
    LearnTheServer();
    server.Put("a", "somebody else's");
    const Misbehaviour cuts = {[](Wire& wire) {
        ServerRequest request = wire.Request();
        request.headers.Set("Destination", request.headers.Value("Destination").split('%').first());
        request.target = request.target.split('%').first();
        wire.Send(wire.Do(request).Bytes());
        wire.Finish();
    }};
    server.Misbehave(When("MOVE").Always(), cuts);
    server.Misbehave(When("PROPFIND").Always(), cuts);
    ExpectFailure(client.Upload(LocalFile("a#b.pdf", "new")));
    EXPECT_THAT(Failure().advice.toStdString(), HasSubstr("another name"));
    EXPECT_LT(server.Count("MOVE"), 10);
    server.BehaveAgain();
    ExpectOnServer({"a"});
    EXPECT_EQ(server.Get("a"), QByteArray("somebody else's"));
}

TEST_F(UploadPublishingTest, ANameThatIsTakenMeanwhileGetsANumber)
{
    LearnTheServer();
    server.Misbehave("MOVE", RunsFirst([this] { server.Put("report.pdf", "somebody else's"); }));
    const auto upload = client.Upload(File());
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.fileName, "report (2).pdf");
    ExpectOnServer({"report (2).pdf", "report.pdf"});
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("somebody else's"));
}

TEST_F(UploadPublishingTest, OnAServerThatOverwritesAnywayNamesAreLookedAtFirst)
{
    server.Put("report.pdf", "somebody else's");
    server.Put("report (2).pdf", "somebody else's too");
    server.Misbehave(When("MOVE").Always(), OverwritesAnyway());
    for (const char* name : {"report (3).pdf", "report (4).pdf"}) {
        const auto upload = client.Upload(File());
        ASSERT_TRUE(upload->Succeeds());
        EXPECT_EQ(upload->payload.fileName, name);
        EXPECT_EQ(server.Get(name), QByteArray("new"));
    }
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("somebody else's"));
    EXPECT_EQ(server.Get("report (2).pdf"), QByteArray("somebody else's too"));
    EXPECT_EQ(server.Names().size(), 4);
}

TEST_F(UploadPublishingTest, AServerThatCannotBeTriedIsNotTrusted)
{
    server.Put("report.pdf", "somebody else's");
    server.Misbehave("MOVE", AnswersWith(403));
    server.Misbehave(When("MOVE").Always(), OverwritesAnyway());
    ASSERT_TRUE(client.Upload(File())->Succeeds());
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("somebody else's"));
    ExpectOnServer({"report (2).pdf", "report.pdf"});
}

TEST_F(UploadPublishingTest, WhetherAServerOverwritesIsFoundOutOnce)
{
    ASSERT_TRUE(client.Upload(File())->Succeeds());
    EXPECT_EQ(server.Count("PUT"), 2);
    ExpectOnServer({"report.pdf"});
    ASSERT_TRUE(client.Upload(File())->Succeeds());
    EXPECT_EQ(server.Count("PUT"), 3);
    EXPECT_EQ(server.Count("MOVE"), 4); // one to find out, one that meets the first document
}

TEST_F(UploadPublishingTest, EveryMoveSaysWhetherItMayOverwriteAndWhereToInFull)
{
    const QString id = Put("r\u00e9 1.pdf", "old");
    ASSERT_TRUE(client.Upload(File(), id)->Succeeds());
    ASSERT_TRUE(client.Upload(File())->Succeeds());
    std::vector<std::string> overwrites;
    for (const SeenRequest& request : server.Requests("MOVE")) {
        EXPECT_TRUE(request.headers.Value("Destination").startsWith(server.Origin() + "/documents/"));
        overwrites.push_back(request.headers.Value("Overwrite").toStdString());
    }
    EXPECT_THAT(overwrites, ElementsAre("T", "F", "F"));
    EXPECT_THAT(server.Requests("MOVE").front().headers.Value("Destination").toStdString(),
                testing::EndsWith("/documents/r%C3%A9%201.pdf"));
}

TEST_F(UploadPublishingTest, ADestinationThatIsNotUnderstoodIsWrittenInAnotherWay)
{
    for (const int status : {400, 502}) {
        Client user(Settings(), server.Password());
        ASSERT_TRUE(user.SignIn());
        server.ForgetRequests();
        server.Misbehave(When("MOVE").Always(), {[status](Wire& wire) {
                             const bool isPath = wire.Request().headers.Value("Destination").startsWith('/');
                             wire.Send((isPath ? wire.Do(wire.Request()) : ServerResponse{status, {}, {}}).Bytes());
                             wire.Finish();
                         }});
        for (int count = 0; count < 3; ++count) {
            const auto upload = user.Upload(File());
            ASSERT_TRUE(upload->Succeeds()) << status;
            ASSERT_TRUE(user.Remove(upload->payload.id)->Succeeds());
        }
        EXPECT_EQ(server.Count("MOVE"), 5); // one refused, one to find out whether it overwrites
        server.BehaveAgain();
    }
}

TEST_F(UploadPublishingTest, ADestinationThatIsNeverUnderstoodIsReportedWithWhatToDo)
{
    server.Misbehave(When("MOVE").Always(), AnswersWith(502));
    ExpectFailure(client.Upload(File()));
    EXPECT_THAT(Reason(), HasSubstr("(502)"));
    EXPECT_THAT(Failure().advice.toStdString(), HasSubstr("rewrite the Destination field"));
    ExpectOnServer({});
}

TEST_F(UploadPublishingTest, TheOnlyCopyIsKeptWhenTheServerLosesTheOldDocument)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave(When("MOVE").Always(), LosesTheOldOne());
    ExpectFailure(client.Upload(File(), id));
    ASSERT_EQ(server.Names().size(), 1);
    const QString kept = server.Names().constFirst();
    EXPECT_EQ(server.Get(kept), QByteArray("new"));
    EXPECT_THAT(Failure().advice.toStdString(), HasSubstr(kept.toStdString()));
}

TEST_F(UploadPublishingTest, ADocumentThatTheServerHasLostIsPutInPlaceAgain)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave("MOVE", LosesTheOldOne());
    const auto upload = client.Upload(File(), id);
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.id, id);
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("new"));
}

TEST_F(UploadPublishingTest, ARefusedReplacementLeavesTheOldDocument)
{
    const QString id = Put("report.pdf", "old");
    for (const int status : {403, 412, 500, 507}) {
        server.Misbehave("MOVE", AnswersWith(status));
        ExpectFailure(client.Upload(File(), id));
        ExpectOnServer({"report.pdf"});
        EXPECT_EQ(server.Get("report.pdf"), QByteArray("old")) << status;
    }
}

TEST_F(UploadPublishingTest, ADocumentThatIsGoneIsNotReplaced)
{
    const QString id = Put("report.pdf", "old");
    server.Remove("report.pdf");
    ExpectFailure(client.Upload(File(), id));
    EXPECT_THAT(Reason(), HasSubstr("no longer in the cloud"));
    EXPECT_EQ(server.Count("PUT"), 0);
    ExpectOnServer({});
}

TEST_F(UploadPublishingTest, ACollectionOfTheDocumentsNameIsNotReplaced)
{
    const QString id = Put("report.pdf", "old");
    server.Remove("report.pdf");
    server.With([](MemoryTree& tree) {
        tree.MakeCollection("/documents/report.pdf");
        tree.Put("/documents/report.pdf/inside.pdf", "precious");
    });
    ExpectFailure(client.Upload(File(), id));
    EXPECT_THAT(Reason(), HasSubstr("no longer in the cloud"));
    EXPECT_EQ(server.Count("PUT"), 0);
    EXPECT_EQ(server.Get("report.pdf/inside.pdf"), QByteArray("precious"));
}

TEST_F(UploadPublishingTest, AFailureStaysTheSameWhenTheTemporaryFileCannotBeRemoved)
{
    LearnTheServer();
    for (const auto& misbehaviour : {AnswersWith(403), ClosesWithoutAnswer()}) {
        client.failures.clear();
        server.Misbehave("MOVE", AnswersWith(507));
        server.Misbehave(When("DELETE").Always(), misbehaviour);
        ExpectFailure(client.Upload(File()));
        EXPECT_THAT(Reason(), HasSubstr("(507)"));
        server.BehaveAgain();
    }
    EXPECT_EQ(server.Names().filter(".part").size(), 2);
}

} // namespace Norlis::Test
