#include <tests/support/TransferFaultTest.h>

#include <QThread>

#include <algorithm>
#include <atomic>

namespace Norlis::Test {

/// A server with locks, which it grants for a second only, so that the first one has run out when somebody has stood
/// still for a while.
class DocumentLockTest : public TransferFaultTest<> {
protected:
    void SetUp() override
    {
        TransferFaultTest::SetUp();
        id = Put("report.pdf", "old");
        server.ForgetRequests();
    }

    static Misbehaviour Locks(const QByteArray& token, const QByteArray& duration)
    {
        return AnswersWith(200, {{"Lock-Token", '<' + token + '>'}},
                           "<d:prop xmlns:d=\"DAV:\"><d:timeout>" + duration + "</d:timeout></d:prop>");
    }

    /// Tells how things are, but so late that it is no longer true.
    Misbehaviour TellsWhatWasTrue()
    {
        return {[this](Wire& wire) {
            const auto answer = wire.Do(wire.Request());
            QThread::msleep(600); // of the server: more than half of what the first lock is granted for
            server.Put("report.pdf", "what somebody else has put there");
            wire.Send(answer.Bytes());
            wire.Finish();
        }};
    }

    /// As servers do that no longer know a token of their own.
    static Misbehaviour TakesNoTokens()
    {
        return {[](Wire& wire) {
            if (wire.Request().headers.Value("If").isEmpty()) {
                wire.Send(wire.Do(wire.Request()).Bytes());
            } else {
                wire.Send(ServerResponse{412, {}, {}}.Bytes());
            }
            wire.Finish();
        }};
    }

    QString id;
};

TEST_F(DocumentLockTest, NothingIsReplacedUnderALockThatHasRunOut)
{
    server.Misbehave("LOCK", Locks("urn:1", "Second-1"));
    server.Misbehave("LOCK", Locks("urn:2", "Second-60"));
    server.Misbehave(When("PROPFIND").From(2), TellsWhatWasTrue());
    ExpectFailure(client.Upload(LocalFile("report.pdf", "new"), id));
    EXPECT_THAT(Reason(), testing::HasSubstr("Somebody has changed"));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("what somebody else has put there"));
    EXPECT_EQ(server.Count("MOVE"), 0);
    ASSERT_TRUE(WaitUntil([&] { return server.Count("UNLOCK") == 2; }));
}

TEST_F(DocumentLockTest, NothingIsRemovedUnderALockThatHasRunOut)
{
    server.Misbehave("LOCK", Locks("urn:1", "Second-1"));
    server.Misbehave("LOCK", Locks("urn:2", "Infinite"));
    server.Misbehave(When("PROPFIND").From(2), TellsWhatWasTrue());
    EXPECT_TRUE(client.Remove(id)->Fails());
    EXPECT_THAT(Reason(), testing::HasSubstr("Somebody has changed"));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("what somebody else has put there"));
    EXPECT_EQ(server.Count("DELETE"), 0);
}

TEST_F(DocumentLockTest, WhatIsLockedLongEnoughIsReplacedUnderThatLock)
{
    server.Misbehave("LOCK", Locks("urn:1", "Second-60"));
    EXPECT_TRUE(client.Upload(LocalFile("report.pdf", "new"), id)->Succeeds());
    EXPECT_EQ(server.Count("LOCK"), 1);
    EXPECT_THAT(server.Requests("MOVE").at(0).headers.Value("If").toStdString(), testing::HasSubstr("(<urn:1>)"));
}

TEST_F(DocumentLockTest, OneLockIsAskedForAtATime)
{
    server.Misbehave(When("LOCK").Always(), Hangs());
    const QStringList ids = {id, Put("a.pdf", "a"), Put("b.pdf", "b")};
    std::vector<AnswerPtr<>> removals;
    for (const QString& each : ids) {
        removals.push_back(client.Remove(each));
    }
    ASSERT_TRUE(WaitUntil([&] { return server.Count("LOCK") > 0; }));
    ASSERT_TRUE(client.List()->Succeeds()); // others do not wait
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_EQ(server.Count("LOCK"), 1);
}

TEST_F(DocumentLockTest, WhatIsLockedIsDoneBeforeMoreIsLocked)
{
    server.Misbehave(When("LOCK").Always(), Locks("urn:1", "Second-60"));
    QStringList ids;
    for (int number = 0; number < 12; ++number) {
        ids.append(Put(QString("%1.pdf").arg(number), "content"));
    }
    std::vector<AnswerPtr<>> removals;
    for (const QString& each : ids) {
        removals.push_back(client.Remove(each));
    }
    for (const auto& removal : removals) {
        EXPECT_TRUE(removal->Succeeds());
    }
    int held = 0;
    int mostHeld = 0;
    for (const auto& request : server.Requests()) {
        held += request.method == "LOCK" ? 1 : request.method == "DELETE" ? -1 : 0;
        mostHeld = std::max(mostHeld, held);
    }
    EXPECT_LE(mostHeld, ids.size() / 2); // some more while a look takes its time
}

TEST_F(DocumentLockTest, LocksThatGoWithTheirDocumentsAreNotGivenBack)
{
    server.Misbehave(When("LOCK").Always(), Locks("urn:1", "Second-60"));
    server.Misbehave(When("UNLOCK").Always(), AnswersWith(409));
    for (const QString& each : {id, Put("a.pdf", "a"), Put("b.pdf", "b")}) {
        ASSERT_TRUE(client.Remove(each)->Succeeds());
        ASSERT_TRUE(WaitUntil([&] { return server.Count("UNLOCK") == 1; })); // this server shows it once
    }
    EXPECT_EQ(server.Count("LOCK"), 3);
    EXPECT_EQ(server.Count("UNLOCK"), 1);
}

TEST_F(DocumentLockTest, LocksThatOutliveTheirDocumentsAreGivenBack)
{
    server.Misbehave(When("LOCK").Always(), Locks("urn:1", "Second-60"));
    server.Misbehave(When("UNLOCK").Always(), AnswersWith(204));
    int removed = 0;
    for (const QString& each : {id, Put("a.pdf", "a"), Put("b.pdf", "b")}) {
        ASSERT_TRUE(client.Remove(each)->Succeeds());
        ++removed;
        EXPECT_TRUE(WaitUntil([&] { return server.Count("UNLOCK") == removed; }));
    }
}

TEST_F(DocumentLockTest, AServerThatHasLocksIsNotTakenForOneWithout)
{
    server.Misbehave("LOCK", Locks("urn:1", "Second-60"));
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", "new"), id)->Succeeds());
    server.Misbehave(When("LOCK").Always(), AnswersWith(500));
    ExpectFailure(client.Upload(LocalFile("report.pdf", "newer"), id));
    EXPECT_THAT(Reason(), testing::HasSubstr("(500)"));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("new"));
}

TEST_F(DocumentLockTest, WhereNoTokenIsTakenADocumentIsReplacedAndRemovedWithoutALock)
{
    server.Misbehave(When("LOCK").Always(), Locks("urn:1", "Second-60"));
    server.Misbehave(When("MOVE").Always(), TakesNoTokens());
    server.Misbehave(When("DELETE").Always(), TakesNoTokens());
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", "new"), id)->Succeeds());
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("new"));
    EXPECT_EQ(server.Count("LOCK"), server.Count("UNLOCK"));
    ASSERT_TRUE(client.Remove(id)->Succeeds());
    EXPECT_EQ(server.Get("report.pdf"), std::nullopt);
}

TEST_F(DocumentLockTest, WhereNoTokenIsTakenWhatSomebodyElseHasPutThereStays)
{
    server.Misbehave(When("LOCK").Always(), Locks("urn:1", "Second-60"));
    server.Misbehave(When("MOVE").Always(), TakesNoTokens());
    server.Misbehave("UNLOCK", RunsFirst([this] { server.Put("report.pdf", "what somebody else has put there"); }));
    ExpectFailure(client.Upload(LocalFile("report.pdf", "new"), id));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("what somebody else has put there"));
}

TEST_F(DocumentLockTest, WithoutLocksAMoveThatWasLostIsNotRepeatedOverWhatSomebodyElseHasPutThere)
{
    server.Misbehave("MOVE", {[this](Wire& wire) {
                         server.Put("report.pdf", "what somebody else has put there");
                         wire.Close();
                     }});
    ExpectFailure(client.Upload(LocalFile("report.pdf", "new"), id));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("what somebody else has put there"));
    EXPECT_EQ(server.Count("MOVE"), 1);
}

TEST_F(DocumentLockTest, AMoveThatHasLostTheOldDocumentIsNotRepeatedOverWhatComesNext)
{
    server.Misbehave("MOVE", {[this](Wire& wire) {
                         server.Remove("report.pdf");
                         wire.Close();
                     }});
    server.Misbehave("MOVE", RunsFirst([this] { server.Put("report.pdf", "what somebody else has put there"); }));
    ExpectFailure(client.Upload(LocalFile("report.pdf", "new"), id));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("what somebody else has put there"));
}

TEST_F(DocumentLockTest, ACancelledUploadIsNotUndoneWhenSomebodyElseHasReplacedItAlready)
{
    std::atomic<bool> isReplaced = false;
    // The last look, after which the upload would be reported.
    server.Misbehave(
        "PROPFIND", {[&](Wire& wire) {
            auto answer = wire.Do(wire.Request());
            answer.body.replace(">&quot;", ">W/&quot;").replace(">\"", ">W/\""); // as of a file just written
            server.Put("new.pdf", "what somebody else has put there");
            isReplaced = true;
            wire.SendSlowly(answer.Bytes(), answer.Bytes().size() - 1, 300);
        }});
    const auto upload = client.Upload(LocalFile("new.pdf", "new"));
    ASSERT_TRUE(WaitUntil([&] { return isReplaced.load(); }));
    client.Cancel(upload->operation);
    ASSERT_TRUE(WaitUntil([&] { return server.Count("LOCK") > 0; }));
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_EQ(server.Count("DELETE"), 1) << "of the file by which the server was tried";
    EXPECT_EQ(server.Get("new.pdf"), QByteArray("what somebody else has put there"));
}

} // namespace Norlis::Test
