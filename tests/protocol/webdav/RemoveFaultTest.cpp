#include <tests/support/TransferFaultTest.h>

namespace Norlis::Test {

using testing::HasSubstr;

class RemoveFaultTest : public TransferFaultTest<> {
protected:
    explicit RemoveFaultTest(int timeout = usualTimeout) : TransferFaultTest(timeout) {}

    void SetUp() override
    {
        TransferFaultTest::SetUp();
        id = Put("report.pdf", "content");
    }

    QString id;
};

TEST_F(RemoveFaultTest, ADocumentThatIsGoneAlreadyIsRemoved)
{
    server.Remove("report.pdf");
    EXPECT_TRUE(client.Remove(id)->Succeeds());
    id = Put("report.pdf", "content");
    server.Misbehave("DELETE", DoesItAndAnswers(410));
    EXPECT_TRUE(client.Remove(id)->Succeeds());
    ExpectOnServer({});
}

TEST_F(RemoveFaultTest, ADocumentThatIsOnlySaidToBeGoneIsNot)
{
    for (const char* const method : {"DELETE", "LOCK"}) { // a proxy that knows no LOCK may answer so
        server.Misbehave(When(method).Always(), AnswersWith(404));
        server.Misbehave(When("DELETE").Always(), AnswersWith(404));
        EXPECT_TRUE(client.Remove(id)->Fails());
        ExpectOnServer({"report.pdf"});
        server.BehaveAgain();
    }
    server.Misbehave(When("LOCK").Always(), AnswersWith(404));
    EXPECT_TRUE(client.Remove(id)->Succeeds());
    ExpectOnServer({});
}

TEST_F(RemoveFaultTest, WhatSomebodyPutThereAfterALostAnswerIsNotRemoved)
{
    server.Misbehave("DELETE", {[this](Wire& wire) {
                         wire.Do(wire.Request());
                         server.Put("report.pdf", "somebody's new document");
                         wire.Send(ServerResponse{504, {}, {}}.Bytes());
                         wire.Finish();
                     }});
    (void)client.Remove(id)->Succeeds();
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("somebody's new document"));
}

TEST_F(RemoveFaultTest, AVersionThatNobodyWasToldOfIsNotRemoved)
{
    Client other(Settings(), server.Password());
    ASSERT_TRUE(other.SignIn());
    EXPECT_TRUE(other.Remove(id)->Fails()); // it has seen no list
    ExpectOnServer({"report.pdf"});
    ASSERT_TRUE(other.List()->Succeeds());
    EXPECT_TRUE(other.Remove(id)->Succeeds());
}

TEST_F(RemoveFaultTest, EverySuccessIsOne)
{
    for (const int status : {200, 202, 204}) {
        id = Put("report.pdf", "content");
        server.Misbehave("DELETE", DoesItAndAnswers(status));
        EXPECT_TRUE(client.Remove(id)->Succeeds()) << status;
    }
}

TEST_F(RemoveFaultTest, AStatusInsideOfAnAnswerIsWhatThePersonReads)
{
    server.Misbehave("DELETE", HasInnerStatus(423));
    EXPECT_TRUE(client.Remove(id)->Fails());
    EXPECT_THAT(Reason(), HasSubstr("locked by somebody (423)"));
    EXPECT_TRUE(client.Remove(id)->Succeeds());
}

TEST_F(RemoveFaultTest, ARemovalThatIsOnlyClaimedIsNotBelieved)
{
    for (const auto& claim : {OnlyClaimsToDoIt(204), OnlyClaimsToDoIt(200), HasInnerStatus(204), ShowsAPage(200)}) {
        server.Misbehave("DELETE", claim);
        EXPECT_TRUE(client.Remove(id)->Fails());
        EXPECT_EQ(client.Entry("report.pdf").id, id);
    }
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("content"));
}

TEST_F(RemoveFaultTest, AGatewaysErrorIsLookedBehind)
{
    for (const int status : {500, 502, 504, 207}) {
        id = Put("report.pdf", "content");
        server.Misbehave("DELETE", DoesItAndAnswers(status));
        EXPECT_TRUE(client.Remove(id)->Succeeds()) << status;
    }
}

TEST_F(RemoveFaultTest, ARefusalIsReportedInTheServersWords)
{
    for (const int status : {403, 409, 500}) {
        client.failures.clear();
        server.Misbehave("DELETE", Refuses(status, "Some", "Anna is editing it"));
        EXPECT_TRUE(client.Remove(id)->Fails());
        EXPECT_THAT(Reason(), HasSubstr('(' + std::to_string(status) + ": Anna is editing it)"));
        EXPECT_EQ(Failure().document, "report.pdf");
    }
    EXPECT_TRUE(client.Remove(id)->Succeeds());
}

TEST_F(RemoveFaultTest, ALockThatStaysIsReported)
{
    server.Misbehave(When("DELETE").Always(), Refuses(423, "Locked", "Anna is editing it"));
    EXPECT_TRUE(client.Remove(id)->Fails());
    EXPECT_THAT(Reason(), HasSubstr("(423: Anna is editing it)"));
    EXPECT_LT(server.Count("DELETE"), 10);
}

TEST_F(RemoveFaultTest, AnUnknownIdSendsNoRemoval)
{
    server.Put("..", "content"); // a name that must never become a part of an address
    for (const QString& unknown : {QString("unknown"), QString("."), QString(".."), QString("/"), QString("report.pdf"),
                                   QString("../documents"), QString("%2e%2e")}) {
        EXPECT_TRUE(client.Remove(unknown)->Fails()) << unknown.toStdString();
    }
    EXPECT_EQ(server.Count("DELETE"), 0);
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("content"));
}

TEST_F(RemoveFaultTest, ClearingUpAfterAnUploadThatMadeNoDocumentIsNoSecondFailure)
{
    server.Misbehave("PUT", AnswersWith(507));
    const auto upload = client.Upload(LocalFile("new.pdf", "content"));
    ASSERT_TRUE(upload->Fails());
    const auto requests = server.Requests().size();
    EXPECT_TRUE(client.Remove(upload->payload.id)->Fails());
    EXPECT_EQ(client.failures.size(), 1U);
    EXPECT_EQ(server.Requests().size(), requests);
}

TEST_F(RemoveFaultTest, OnlyTheDocumentsOwnAddressIsRemoved)
{
    const QStringList names = {"a b.pdf", "100%.pdf", "%2e%2e", "a#b?c.pdf", "\u00e4;+&.pdf", "..pdf", "..."};
    for (const QString& name : names) {
        const QString each = Put(name, "content");
        ASSERT_TRUE(client.Remove(each)->Succeeds()) << name.toStdString();
        EXPECT_EQ(server.Requests("DELETE").back().Path(), "/documents/" + name.toUtf8());
    }
    ExpectOnServer({"report.pdf"});
    EXPECT_EQ(server.Count("DELETE"), names.size());
}

TEST_F(RemoveFaultTest, ALostAnswerIsAskedForAgain)
{
    server.Misbehave("DELETE", DoesItAndCloses());
    EXPECT_TRUE(client.Remove(id)->Succeeds());
    ExpectOnServer({});
    EXPECT_EQ(server.Count("DELETE"), 1); // and then it is looked at
}

TEST_F(RemoveFaultTest, AConnectionThatAlwaysBreaksIsGivenUp)
{
    server.Misbehave(When("DELETE").Always(), ClosesWithoutAnswer());
    EXPECT_TRUE(client.Remove(id)->Fails());
    EXPECT_LT(server.Count("DELETE"), 10);
}

TEST_F(RemoveFaultTest, ARedirectToAnotherServerIsNotFollowed)
{
    const FaultServer other;
    server.Misbehave("DELETE", RedirectsTo(other.Origin() + "/documents/report.pdf", 307));
    EXPECT_TRUE(client.Remove(id)->Fails());
    EXPECT_EQ(other.Connections(), 0);
}

class RemoveHangTest : public RemoveFaultTest {
protected:
    RemoveHangTest() : RemoveFaultTest(shortTimeout) {}
};

TEST_F(RemoveHangTest, ACanceledRemovalReportsNothing)
{
    server.Misbehave("DELETE", Hangs());
    const auto removal = client.Remove(id);
    ASSERT_TRUE(WaitUntil([&] { return server.Count("DELETE") == 1; }));
    client.Cancel(removal->operation);
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_FALSE(removal->Came());
}

TEST_F(RemoveHangTest, ASilentServerIsGivenUp)
{
    server.Misbehave("DELETE", Hangs());
    EXPECT_TRUE(client.Remove(id)->Fails());
    EXPECT_EQ(Reason(), "The server has been silent for 0.6 seconds");
}

} // namespace Norlis::Test
