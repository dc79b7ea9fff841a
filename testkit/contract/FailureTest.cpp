#include "ContractTest.h"

#include <QPixmap>

namespace Norlis::TestKit {

using testing::IsEmpty;

class FailureTest : public SignedInContractTest {
protected:
    void SetUp() override
    {
        if (!client.TellsFailures()) {
            GTEST_SKIP() << "The protocol is no IFailureSource";
        }
        SignedInContractTest::SetUp();
        client.journal.clear();
    }
};
NORLIS_FOR_EVERY_CLOUD(FailureTest);

TEST_P(FailureTest, TheReasonComesJustBeforeTheCallback)
{
    const auto first = client.Remove("unknown");
    const auto second = client.List();
    const auto third = client.Upload(Local("missing.pdf"));
    ASSERT_TRUE(first->Fails());
    ASSERT_TRUE(second->Succeeds());
    ASSERT_TRUE(third->Fails());

    const auto place = [this](const std::string& line) {
        return std::find(client.journal.begin(), client.journal.end(), line) - client.journal.begin();
    };
    for (const qint64 id : {first->operation, third->operation}) {
        EXPECT_EQ(place("failure " + std::to_string(id)) + 1, place("done " + std::to_string(id)));
    }
    EXPECT_EQ(client.failures.size(), 2U);
}

TEST_P(FailureTest, TheReasonSaysWhatAndWhichAndWhatToDo)
{
    const auto upload = client.Upload(Local("missing.pdf"));
    ASSERT_TRUE(upload->Fails());
    ASSERT_EQ(client.failures.size(), 1U);
    EXPECT_NE(client.failures[0].what, QString());
    EXPECT_EQ(client.failures[0].operation, upload->operation);
    EXPECT_EQ(client.failures[0].document, "missing.pdf");
    EXPECT_NE(client.failures[0].reason, QString());
    EXPECT_NE(client.failures[0].advice, QString());

    cloud->Put("there.pdf", "content");
    const QString id = client.Entry("there.pdf").id;
    ASSERT_TRUE(client.Download(id, Local("no such folder/there.pdf"))->Fails());
    ASSERT_EQ(client.failures.size(), 2U);
    EXPECT_NE(client.failures[1].what, client.failures[0].what);
    EXPECT_EQ(client.failures[1].document, "there.pdf");
    EXPECT_NE(client.failures[1].reason, QString());
    EXPECT_NE(client.failures[1].advice, QString());
}

TEST_P(FailureTest, NoReasonIsGivenForSuccessOrCancellation)
{
    const auto canceled = client.Remove("unknown");
    client.Cancel(canceled->operation);
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_THAT(client.failures, IsEmpty());
}

TEST_P(FailureTest, TheObjectMayBeDestroyedInsideTheObserver)
{
    const auto answer = client.Remove("unknown");
    const auto other = client.List();
    client.onFailure = [this, &other](const Social::OAuth2::Failure& failure) {
        client.Destroy();
        EXPECT_NE(failure.reason, QString()); // it is still there
        EXPECT_EQ(other->count, 0);           // and so is what the observer holds
    };
    ASSERT_TRUE(WaitUntil([&] { return client.Protocol() == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(answer->count, 0);
    EXPECT_EQ(other->count, 0);
}

TEST_P(FailureTest, TheObserverMayCancelTheRequestThatFailed)
{
    const auto answer = client.Remove("unknown");
    client.onFailure = [this](const Social::OAuth2::Failure& failure) { client.Cancel(failure.operation); };
    ASSERT_TRUE(WaitUntil([&] { return !client.failures.empty(); }));
    EXPECT_TRUE(client.List()->Succeeds());
    EXPECT_LE(answer->count, 1);
}

} // namespace Norlis::TestKit
