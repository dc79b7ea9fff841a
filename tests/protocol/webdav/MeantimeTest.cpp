#include <tests/support/TransferFaultTest.h>

#include <NorlisTestKit/NextcloudLikeServer.h>

#include <atomic>

namespace Norlis::Test {

/// What somebody else does while a document is replaced, removed or given its name.
class MeantimeTest : public TransferFaultTest<> {
protected:
    /// Somebody else comes first, and the request is lost.
    Misbehaviour IsLostWhileSomebodyPuts(const QByteArray& content)
    {
        return {[this, content](Wire& wire) {
            server.Put("report.pdf", content);
            wire.Close();
        }};
    }
};

TEST_F(MeantimeTest, AReplacementThatWasLostIsNotRepeatedOverSomebodysVersion)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave("MOVE", IsLostWhileSomebodyPuts("hers"));
    ExpectFailure(client.Upload(LocalFile("report.pdf", "mine"), id));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("hers"));
    ExpectOnServer({"report.pdf"});
}

TEST_F(MeantimeTest, ANewDocumentWhoseNamingWasLostDoesNotTakeSomebodysPlace)
{
    server.Misbehave("MOVE", OverwritesAnyway());
    LearnTheServer();
    server.Misbehave("MOVE", IsLostWhileSomebodyPuts("hers"));
    server.Misbehave(When("MOVE").Always(), OverwritesAnyway());
    const auto upload = client.Upload(LocalFile("report.pdf", "mine"));
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.fileName, "report (2).pdf");
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("hers"));
    ExpectOnServer({"report (2).pdf", "report.pdf"});
}

TEST_F(MeantimeTest, AListThatNobodyWasShownAcceptsNoVersion)
{
    const QString id = Put("report.pdf", "seen");
    server.Put("report.pdf", "not seen");
    EXPECT_TRUE(client.Info("unknown")->Fails()); // which the service looks for in a new list
    EXPECT_TRUE(client.Remove(id)->Fails());
    ExpectFailure(client.Upload(LocalFile("other.pdf", "mine"), id));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("not seen"));
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_TRUE(client.Remove(id)->Succeeds());
}

TEST_F(MeantimeTest, AListThatWasBegunBeforeAnUploadShowsNobodyWhatHasReplacedIt)
{
    const QString id = Put("report.pdf", "seen");
    std::atomic<Wire*> held = nullptr;
    server.Misbehave("PROPFIND", {[&](Wire& wire) { held = &wire; }});
    const auto list = client.List();
    ASSERT_TRUE(WaitUntil([&] { return held.load() != nullptr; }));
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", "mine"), id)->Succeeds());
    server.Put("report.pdf", "hers, not seen");
    const auto answer = [](Wire& wire) {
        wire.Send(wire.Do(wire.Request()).Bytes());
        wire.Finish();
    };
    server.Misbehave("PROPFIND", {[&](Wire& wire) {
                         answer(*held);
                         answer(wire);
                     }});
    EXPECT_TRUE(client.Remove(id)->Fails());
    ASSERT_TRUE(
        list->Succeeds()); // whoever gets it knows of the upload, and does not take this version for a newer one
    EXPECT_TRUE(client.Remove(id)->Fails());
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("hers, not seen"));
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_TRUE(client.Remove(id)->Succeeds());
}

class NextcloudMeantimeTest : public TransferFaultTest<NextcloudLikeServer> {};

TEST_F(NextcloudMeantimeTest, WithoutATagToCompareADocumentIsNotReplacedDirectly)
{
    for (const char* const etag : {"unquoted", "W/\"weak\""}) {
        const QString id = Put("report.pdf", "old");
        server.With([&](MemoryTree& tree) { tree.Find(server.CollectionPath() + "report.pdf")->etag = etag; });
        ASSERT_TRUE(client.List()->Succeeds());
        server.Misbehave("PUT", RunsFirst([this] { server.Put("report.pdf", "hers"); }));
        ExpectFailure(client.Upload(LocalFile("report.pdf", "mine"), id));
        EXPECT_EQ(server.Get("report.pdf"), QByteArray("hers")) << etag;
    }
}

} // namespace Norlis::Test
