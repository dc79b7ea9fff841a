#include <tests/support/ContractTest.h>

#include <QPixmap>

namespace Norlis::Test {

using testing::IsEmpty;

class FailureTest : public SignedInContractTest {
protected:
    void SetUp() override
    {
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
    ASSERT_TRUE(client.Upload(Local("missing.pdf"))->Fails());
    ASSERT_EQ(client.failures.size(), 1U);
    EXPECT_EQ(client.failures[0].what, "Upload");
    EXPECT_EQ(client.failures[0].document, "missing.pdf");
    EXPECT_NE(client.failures[0].reason, QString());
    EXPECT_NE(client.failures[0].advice, QString());

    cloud->Put("there.pdf", "content");
    const QString id = client.Entry("there.pdf").id;
    ASSERT_TRUE(client.Download(id, Local("no such folder/there.pdf"))->Fails());
    ASSERT_EQ(client.failures.size(), 2U);
    EXPECT_EQ(client.failures[1].what, "Download");
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
        EXPECT_EQ(failure.what, "Removal"); // the reason is still there
        EXPECT_EQ(other->count, 0);         // and so is what the observer holds
    };
    ASSERT_TRUE(WaitUntil([&] { return client.Protocol() == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(answer->count, 0);
    EXPECT_EQ(other->count, 0);
}

TEST_P(FailureTest, AnObserverThatHoldsTheLastReferenceSurvivesItsOwnCall)
{
    auto settings = cloud->Settings();
    std::shared_ptr<NorlisCloudProtocol> protocol;
    auto note = std::make_shared<std::string>("kept");
    std::string seen;
    settings.onFailure = [&protocol, &seen, note = std::move(note)](const Social::OAuth2::Failure&) {
        protocol.reset();
        seen = *note;
    };
    protocol = std::make_shared<NorlisCloudProtocol>(std::exchange(settings, {}), "tests");
    protocol->deleteFile({}, [](qint64, Social::RequestResult) {}); // nobody is signed in
    EXPECT_EQ(seen, "kept");
}

TEST_P(FailureTest, TheObjectMayBeDestroyedInsideACompletionCallback)
{
    const auto answer = client.UserName();
    const auto other = client.UserProfile();
    answer->onDone = [this] { client.Destroy(); };
    ASSERT_TRUE(WaitUntil([&] { return client.Protocol() == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(answer->count, 1);
    EXPECT_EQ(other->count, 0);
}

TEST_P(FailureTest, TheObjectMayBeDestroyedInsideTheCallbackOfAPicture)
{
    const auto answer = client.UserPic();
    answer->onDone = [this] { client.Destroy(); };
    ASSERT_TRUE(WaitUntil([&] { return client.Protocol() == nullptr; }));
    EXPECT_EQ(answer->count, 1);
}

TEST_P(FailureTest, TheObjectMayBeDestroyedInsideAProgressCallback)
{
    WriteSparseFile(Local("large.pdf"), 64 * 1024 * 1024);
    const auto answer = client.Upload(Local("large.pdf"));
    answer->onProgress = [this](int) { client.Destroy(); };
    ASSERT_TRUE(WaitUntil([&] { return client.Protocol() == nullptr; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(answer->count, 0);
    EXPECT_EQ(answer->percents.size(), 1U);
    ExpectNothingIsLeft();
}

TEST_P(FailureTest, TheObserverMayCancelTheRequestThatFailed)
{
    const auto answer = client.Remove("unknown");
    client.onFailure = [this](const Social::OAuth2::Failure& failure) { client.Cancel(failure.operation); };
    ASSERT_TRUE(WaitUntil([&] { return !client.failures.empty(); }));
    EXPECT_TRUE(client.List()->Succeeds());
    EXPECT_LE(answer->count, 1);
}

} // namespace Norlis::Test
