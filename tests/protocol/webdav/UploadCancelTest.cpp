#include <tests/support/TransferFaultTest.h>

#include <functional>

#include <atomic>

namespace Norlis::Test {

namespace {

/// A request of an upload's that the server is slow to answer.
struct Stage {
    const char* name;
    const char* method;
    int number; ///< of the requests of that method that an upload sends, beginning with 1
};

void PrintTo(const Stage& stage, std::ostream* stream)
{
    *stream << stage.name;
}

const Stage stages[] = {
    {"Sending", "PUT", 1},
    {"Comparing", "GET", 1},
    {"AskingWhetherItOverwrites", "PUT", 2},
    {"TryingToOverwrite", "MOVE", 1},
    {"Publishing", "MOVE", 2},
    {"Looking", "PROPFIND", 1},
    {"CleaningUp", "DELETE", 1},
};

/// Does what it is asked, or not, and is silent then.
Misbehaviour HangsAfterDoingIt()
{
    return {[](Wire& wire) { wire.Do(wire.Request()); }};
}

} // namespace

/// Uploads that are given up while they wait for the server.
class UploadCancelTest : public TransferFaultTest<>, public testing::WithParamInterface<Stage> {
protected:
    UploadCancelTest() : TransferFaultTest(shortTimeout) {}

    /// Begins an upload, which the server lets hang at the stage.
    AnswerPtr<Social::NorlisCloudSharingResult> Begin(const Misbehaviour& hang)
    {
        server.ForgetRequests();
        const Stage& stage = GetParam();
        server.Misbehave(When(stage.method).From(stage.number), hang);
        const auto upload = client.Upload(LocalFile("report.pdf", Pattern(300'000)));
        EXPECT_TRUE(WaitUntil([&] {
            const auto requests = server.Requests(stage.method);
            return static_cast<int>(requests.size()) == stage.number && requests.back().isComplete;
        }));
        return upload;
    }

    /// Gives it up there.
    void GiveUp(const Misbehaviour& hang, const std::function<void(qint64 operation)>& giveUp)
    {
        const auto upload = Begin(hang);
        giveUp(upload->operation);
        ExpectOnServer({});
        EXPECT_FALSE(upload->Came());
    }

    /// Destroys the protocol object there, which does not wait for the server; then somebody signs in again.
    /// \param left what is on the server then
    void DestroyAndSignInAgain(const Misbehaviour& hang, const QStringList& left)
    {
        const auto upload = Begin(hang);
        client.Destroy();
        EXPECT_FALSE(upload->Came());
        server.BehaveAgain();
        Client next(Settings(), server.Password());
        ASSERT_TRUE(next.SignIn());
        ExpectOnServer(left);
    }

    bool IsAt(const std::string& stage) const
    {
        return GetParam().name == stage;
    }
};

INSTANTIATE_TEST_SUITE_P(Stages, UploadCancelTest, testing::ValuesIn(stages),
                         [](const auto& info) { return info.param.name; });

TEST_P(UploadCancelTest, NothingStaysWhenTheServerHasDoneIt)
{
    GiveUp(HangsAfterDoingIt(), [this](qint64 operation) { client.Cancel(operation); });
}

TEST_P(UploadCancelTest, AfterDestructionNothingButAWholeDocumentOutlastsTheNextSignIn)
{
    const bool isWhole = IsAt("Publishing") || IsAt("Looking");
    DestroyAndSignInAgain(HangsAfterDoingIt(), isWhole ? QStringList("report.pdf") : QStringList());
}

TEST_P(UploadCancelTest, NothingStaysWhenSomebodyElseHasSignedInMeanwhile)
{
    GiveUp(HangsAfterDoingIt(), [this](qint64 operation) {
        ASSERT_TRUE(client.SignIn());
        client.Cancel(operation);
    });
}

TEST_P(UploadCancelTest, NothingStaysAfterSigningOut)
{
    GiveUp(HangsAfterDoingIt(), [this](qint64 operation) {
        client.Protocol()->logout();
        client.Cancel(operation);
    });
}

/// The same while it does not even do what it is asked.
class SilentUploadCancelTest : public UploadCancelTest {};

INSTANTIATE_TEST_SUITE_P(Stages, SilentUploadCancelTest,
                         testing::ValuesIn(std::begin(stages), std::end(stages) - 1), // but to remove it
                         [](const auto& info) { return info.param.name; });

TEST_P(SilentUploadCancelTest, NothingStays)
{
    GiveUp(Hangs(), [this](qint64 operation) { client.Cancel(operation); });
}

TEST_P(SilentUploadCancelTest, AfterDestructionNothingButAWholeDocumentOutlastsTheNextSignIn)
{
    DestroyAndSignInAgain(Hangs(), IsAt("Looking") ? QStringList("report.pdf") : QStringList());
}

/// Uploads that are given up while they send.
class UploadCutTest : public TransferFaultTest<> {};

TEST_F(UploadCutTest, AnUploadCanceledWhileTheServerReadsLeavesNothing)
{
    LearnTheServer();
    const Misbehaviour keepsTheTruncatedFile = {[](Wire& wire) { wire.Do(wire.Request()); }, 1'000'000};
    server.Misbehave("PUT", keepsTheTruncatedFile);
    const auto upload = client.Upload(LocalFile("report.pdf", Pattern(20'000'000)));
    ASSERT_TRUE(WaitUntil([&] { return server.Names().size() == 1; }));
    client.Cancel(upload->operation);
    ExpectOnServer({});
    EXPECT_FALSE(upload->Came());
}

TEST_F(UploadCutTest, WhatWasLeftIsDeletedOnce)
{
    LearnTheServer();
    server.Misbehave("GET", Hangs());
    server.Misbehave("DELETE", Hangs());
    client.Upload(LocalFile("report.pdf", Pattern(300'000)));
    ASSERT_TRUE(WaitUntil([&] { return server.Count("GET") == 1; }));
    client.Destroy();
    ASSERT_EQ(server.Names().size(), 1);
    server.BehaveAgain();
    for (int times = 0; times < 2; ++times) {
        Client next(Settings(), server.Password());
        server.ForgetRequests();
        ASSERT_TRUE(next.SignIn());
        ExpectOnServer({});
        ASSERT_TRUE(next.List()->Succeeds());
        EXPECT_EQ(server.Count("DELETE"), times == 0 ? 1 : 0);
    }
}

TEST_F(UploadCutTest, WhatMayBeAllThatThereIsOfADocumentIsNotDeleted)
{
    const QString id = Put("report.pdf", "old");
    const Misbehaviour losesTheOldOne = {[](Wire& wire) {
        ServerRequest remove = wire.Request();
        remove.target = QUrl::fromEncoded(remove.headers.Value("Destination")).path(QUrl::FullyEncoded).toLatin1();
        remove.method = "DELETE";
        wire.Do(remove);
    }};
    server.Misbehave("MOVE", losesTheOldOne);
    client.Upload(LocalFile("report.pdf", Pattern(300'000)), id);
    ASSERT_TRUE(WaitUntil([&] { return server.Names().filter(".pdf").isEmpty(); }));
    client.Destroy();
    server.BehaveAgain();
    Client next(Settings(), server.Password());
    ASSERT_TRUE(next.SignIn());
    ASSERT_TRUE(next.List()->Succeeds());
    ASSERT_EQ(server.Names().size(), 1);
    EXPECT_EQ(server.Get(server.Names().first()), Pattern(300'000));
}

TEST_F(UploadCutTest, WhatAServerKeepsOfACanceledUploadOnlyThenIsRemovedToo)
{
    struct Seen {
        QByteArray target;
        std::atomic<bool> hasCome = false;
    };
    for (const bool isSignedOut : {false, true}) {
        LearnTheServer();
        const auto seen = std::make_shared<Seen>(); // used on the server's thread, also when this function is over
        const auto keepForLater = [seen](const Wire& wire) {
            if (!seen->hasCome) {
                seen->target = wire.Request().Path();
                seen->hasCome = true;
            }
        };
        server.Misbehave("PUT", {keepForLater, 1'000'000});
        const auto upload = client.Upload(LocalFile("report.pdf", Pattern(20'000'000)));
        ASSERT_TRUE(WaitUntil([&] { return seen->hasCome.load(); }));
        if (isSignedOut) {
            client.Protocol()->logout();
        }
        client.Cancel(upload->operation);
        ASSERT_TRUE(WaitUntil([&] { return server.Count("DELETE") == 1; }));
        server.With([&](MemoryTree& tree) { tree.Put(seen->target, "what had come"); });
        ExpectOnServer({});
    }
}

TEST_F(UploadCutTest, ACanceledReplacementReportsNothingAndLeavesTheOldDocument)
{
    const QString id = Put("report.pdf", "old");
    server.Misbehave("PUT", HangsInTheRequest(1'000'000));
    const auto upload = client.Upload(LocalFile("report.pdf", Pattern(20'000'000)), id);
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == 1; }));
    client.Cancel(upload->operation);
    ExpectOnServer({"report.pdf"});
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_FALSE(upload->Came());
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("old"));
}

TEST_F(UploadCutTest, AnUploadCanceledWhileItWaitsForItsTurnSendsNothing)
{
    LearnTheServer();
    server.Misbehave(When("PUT").Times(4), Hangs());
    const QString path = LocalFile("report.pdf", "content");
    std::vector<qint64> operations;
    for (int count = 0; count < 5; ++count) {
        operations.push_back(client.Upload(path)->operation);
    }
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PUT") == 4; }));
    for (auto operation = operations.rbegin(); operation != operations.rend(); ++operation) {
        client.Cancel(*operation);
    }
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_EQ(server.Count("PUT"), 4);
    ExpectOnServer({});
}

} // namespace Norlis::Test
