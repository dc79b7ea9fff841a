#include <host/session/ProtocolAdapter.h>
#include <tests/support/TransferFaultTest.h>

namespace Norlis::Test {

namespace {

using Host::ProtocolAdapter;

/// Somebody who waits for a server that has fallen silent.
class ProtocolAdapterTest : public TransferFaultTest<> {
protected:
    void SetUp() override
    {
        ASSERT_NO_FATAL_FAILURE(TransferFaultTest::SetUp());
        server.Misbehave(When("*").Always(), Hangs());
    }

    void StopWaiting() const
    {
        dynamic_cast<ProtocolAdapter&>(*client.TestKit::Client::Protocol()).StopWaiting();
    }
};

TEST_F(ProtocolAdapterTest, ListsAndSignInsFailOnceWaitingStops)
{
    const auto list = client.List();
    const auto signIn = client.Authorize();
    client.journal.clear();
    StopWaiting();
    EXPECT_TRUE(list->Fails());
    EXPECT_TRUE(signIn->Fails());
    ASSERT_EQ(client.failures.size(), 2U);
    EXPECT_EQ(client.failures[0].operation, list->operation);
    EXPECT_EQ(client.failures[0].kind, Social::OAuth2::FailureKind::Unavailable);
    EXPECT_EQ(client.failures[1].operation, signIn->operation);
    StopWaiting();
    server.Stop();
    QCoreApplication::processEvents();
    EXPECT_EQ(list->count, 1);
    EXPECT_EQ(signIn->count, 1);
    EXPECT_EQ(client.failures.size(), 2U);
}

TEST_F(ProtocolAdapterTest, TransfersGoOnWaiting)
{
    const auto upload = client.Upload(LocalFile("a.pdf", "content"));
    StopWaiting();
    QCoreApplication::processEvents();
    EXPECT_FALSE(upload->Came());
}

TEST_F(ProtocolAdapterTest, ARequestThatIsCanceledByTheCallbackBeforeItIsNotCalledBack)
{
    const auto first = client.List();
    const auto second = client.List();
    first->onDone = [&] { client.Cancel(second->operation); };
    StopWaiting();
    EXPECT_TRUE(first->Came());
    EXPECT_FALSE(second->Came());
    EXPECT_EQ(client.failures.size(), 1U);
}

TEST_F(ProtocolAdapterTest, ARequestThatACallbackStartsIsWaitedFor)
{
    const auto first = client.List();
    AnswerPtr<QList<CloudFile>> next;
    first->onDone = [&] { next = client.List(); };
    StopWaiting();
    ASSERT_TRUE(next);
    EXPECT_FALSE(next->Came());
}

TEST_F(ProtocolAdapterTest, ACallbackMayDestroyIt)
{
    const auto first = client.List();
    const auto second = client.List();
    first->onDone = [&] { client.Destroy(); };
    StopWaiting();
    EXPECT_TRUE(first->Came());
    EXPECT_FALSE(second->Came());
}

} // namespace

} // namespace Norlis::Test
