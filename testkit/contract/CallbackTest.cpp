#include "ContractTest.h"
#include "Rounds.h"

#include <QPixmap>

#include <set>

namespace Norlis::TestKit {

namespace {

/// What the tests here need to know of a request, whatever its payload.
struct Started {
    qint64 operation;
    std::function<int()> count;
    std::function<bool()> isRight; ///< the callback came on this thread, outside of any call, with the id
};

template <typename Payload>
Started Seen(const AnswerPtr<Payload>& answer)
{
    return {answer->operation, [answer] { return answer->count; },
            [answer] {
                return answer->id == answer->operation && answer->thread == QThread::currentThread() &&
                       !answer->cameInsideACall;
            }};
}

} // namespace

class CallbackTest : public SignedInContractTest {
protected:
    void SetUp() override
    {
        SignedInContractTest::SetUp();
        cloud->Put("known.pdf", "content");
        id = client.Entry("known.pdf").id;
        LocalFile("new.pdf", "new content");
        client.journal.clear();
    }

    /// One request of each kind that succeeds, and of each that fails.
    std::vector<Started> StartOneOfEach()
    {
        return {
            Seen(client.Authorize()),
            Seen(client.UserName()),
            Seen(client.UserProfile()),
            Seen(client.UserPicAddress()),
            Seen(client.UserPic()),
            Seen(client.Info(id)),
            Seen(client.Info("unknown")),
            Seen(client.List()),
            Seen(client.Download(id, Local("target.pdf"))),
            Seen(client.Download("unknown", Local("none.pdf"))),
            Seen(client.Remove("unknown")),
            Seen(client.Remove("")),
            Seen(client.Upload(Local("new.pdf"))),
            Seen(client.Upload(Local("missing.pdf"))),
            Seen(client.Upload(Local("new.pdf"), "unknown")),
            Seen(client.Quota()),
            Seen(client.Preview(id, {100, 100})),
            Seen(client.Preview("unknown", {100, 100})),
        };
    }

    QString id;
};
NORLIS_FOR_EVERY_CLOUD(CallbackTest);

TEST_P(CallbackTest, EveryRequestIsAnsweredOnceOutsideOfAnyCallOnTheOwnThread)
{
    const auto requests = StartOneOfEach();
    std::set<qint64> ids;
    for (const Started& request : requests) {
        EXPECT_EQ(request.count(), 0);
        EXPECT_GE(request.operation, 0);
        ids.insert(request.operation);
    }
    EXPECT_EQ(ids.size(), requests.size());
    for (const Started& request : requests) {
        EXPECT_TRUE(WaitUntil([&] { return request.count() > 0; }));
        EXPECT_TRUE(request.isRight());
    }
    LetThingsSettle();
    for (const Started& request : requests) {
        EXPECT_EQ(request.count(), 1);
    }
}

TEST_P(CallbackTest, NothingIsAnsweredAfterCancellation)
{
    for (int turns = 0; turns < 4; ++turns) {
        const auto requests = StartOneOfEach();
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents();
        }
        std::vector<int> before;
        for (const Started& request : requests) {
            client.Cancel(request.operation);
            before.push_back(request.count());
        }
        LetThingsSettle();
        ASSERT_TRUE(client.List()->Succeeds());
        for (std::size_t index = 0; index < requests.size(); ++index) {
            EXPECT_EQ(requests[index].count(), before[index]);
        }
    }
}

TEST_P(CallbackTest, NothingIsAnsweredAfterDestruction)
{
    for (int turns = 0; turns < 4; ++turns) {
        const auto other = Another();
        ASSERT_TRUE(other->SignIn());
        const auto list = other->List();
        const auto upload = other->Upload(Local("new.pdf"));
        const auto preview = other->Preview(id, {100, 100});
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents();
        }
        other->Destroy();
        const int before = list->count + upload->count + preview->count;
        LetThingsSettle();
        EXPECT_EQ(list->count + upload->count + preview->count, before);
    }
}

TEST_P(CallbackTest, CancellingWhatIsOverOrNeverWasIsIgnored)
{
    const auto upload = client.Upload(Local("new.pdf"));
    ASSERT_TRUE(upload->Succeeds());
    client.Cancel(upload->operation);
    client.Cancel(upload->operation);
    client.Cancel(-1);
    client.Cancel(0);
    client.Cancel(1'000'000'000'000);
    LetThingsSettle();
    EXPECT_EQ(upload->count, 1);
    EXPECT_EQ(cloud->Get("new.pdf"), QByteArray("new content"));
}

TEST_P(CallbackTest, ACallbackMayStartAndCancelRequests)
{
    WriteSparseFile(Local("large.pdf"), Large(256 * 1024 * 1024));
    const auto upload = client.Upload(Local("large.pdf"));
    const auto first = client.Info(id);
    AnswerPtr<CloudFile> second;
    first->onDone = [&] {
        client.Cancel(upload->operation);
        client.Cancel(first->operation);
        second = client.Info(id);
    };
    ASSERT_TRUE(first->Succeeds());
    ASSERT_TRUE(second);
    EXPECT_TRUE(second->Succeeds());
    EXPECT_FALSE(second->cameInsideACall);
    LetThingsSettle();
    EXPECT_EQ(upload->count, 0);
}

TEST_P(CallbackTest, ACallbackMayRunAnEventLoopInWhichOthersArrive)
{
    const auto first = client.Info(id);
    const auto second = client.Info(id);
    bool cameMeanwhile = false;
    first->onDone = [&] {
        const auto third = client.List();
        cameMeanwhile = WaitUntil([&] { return second->Came() && third->Came(); }, 10'000);
    };
    ASSERT_TRUE(first->Succeeds());
    EXPECT_TRUE(cameMeanwhile);
    EXPECT_TRUE(client.List()->Succeeds());
}

TEST_P(CallbackTest, ThousandsOfAnswersLeaveTheEventLoopRoom)
{
    const int many = IsThorough() ? 5000 : 1000;
    int answered = 0;
    int turnsBetween = 0;
    QTimer other;
    other.start(0);
    QObject::connect(&other, &QTimer::timeout, [&] { turnsBetween += answered > 0 && answered < many ? 1 : 0; });
    std::vector<AnswerPtr<CloudFile>> requests;
    for (int count = 0; count < many; ++count) {
        requests.push_back(client.Info(id));
        requests.back()->onDone = [&] {
            ++answered;
            const QDeadlineTimer busy(1); // as a receiver that draws would be
            while (answered % 50 == 0 && !busy.hasExpired()) {
            }
        };
    }
    ASSERT_TRUE(WaitUntil([&] { return answered == many; }));
    EXPECT_GT(turnsBetween, 5);
}

} // namespace Norlis::TestKit
