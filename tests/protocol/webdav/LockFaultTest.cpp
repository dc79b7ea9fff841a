#include <tests/support/TransferFaultTest.h>

namespace Norlis::Test {

/// Servers that have locks, and ways of their own with them.
class LockFaultTest : public TransferFaultTest<> {
protected:
    static Misbehaviour LocksAndAnswers(int status)
    {
        return AnswersWith(status, {{"Lock-Token", "<urn:uuid:0>"}});
    }

    /// As RFC 4918, 9.10.4 has it for a name that is free.
    Misbehaviour MakesAnEmptyFile()
    {
        return {[this](Wire& wire) {
            server.With([&](MemoryTree& tree) { tree.Put(wire.Request().Path(), {}); });
            wire.Send(ServerResponse{201, {{"Lock-Token", "<urn:uuid:0>"}}, {}}.Bytes());
            wire.Finish();
        }};
    }

    /// Just before a request.
    Misbehaviour RemovesTheDocument()
    {
        return RunsFirst([this] { server.Remove("report.pdf"); });
    }
};

TEST_F(LockFaultTest, ADocumentIsNotTakenForWhatALockHasMade)
{
    for (const int status : {200, 201}) {
        server.BehaveAgain();
        const QString id = Put("report.pdf", "old");
        server.Misbehave(When("LOCK").Always(), LocksAndAnswers(status));
        EXPECT_TRUE(client.Upload(LocalFile("report.pdf", "new"), id)->Succeeds()) << status;
        EXPECT_EQ(server.Get("report.pdf"), QByteArray("new"));
        EXPECT_EQ(server.Requests("MOVE").back().headers.Value("If"),
                  '<' + server.Origin() + "/documents/report.pdf> (<urn:uuid:0>)");
        EXPECT_TRUE(client.Remove(id)->Succeeds());
        ExpectOnServer({});
    }
}

TEST_F(LockFaultTest, WhatALockHasMadeIsTakenAway)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave("LOCK", MakesAnEmptyFile());
    server.Misbehave("PUT", RemovesTheDocument());
    ExpectFailure(client.Upload(LocalFile("report.pdf", "new"), id));
    ExpectOnServer({});
}

TEST_F(LockFaultTest, WhatCannotBeLookedAtIsKept)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave(When("LOCK").Always(), LocksAndAnswers(201));
    server.Misbehave(When("PROPFIND", "report.pdf").From(2).Always(), AnswersWith(403));
    ExpectFailure(client.Upload(LocalFile("report.pdf", "new"), id));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("old"));
}

} // namespace Norlis::Test
