#include <tests/support/Waiting.h>

#include <protocol/ServiceConnection.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Norlis::Social {

using namespace Norlis::Test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// What a test and its service share; the service runs on another thread.
class Script {
public:
    /// Runs on the worker thread when a request arrives, but for that of the user's name, which is answered at once.
    /// To be set before anything is sent.
    std::function<void(qint64, const Request::Any&, const CloudService::Listener&)> onStart =
        [](qint64, const Request::Any&, const CloudService::Listener&) {};

    void Write(const std::string& line)
    {
        const std::lock_guard guard(mutex);
        lines.push_back(line);
    }

    std::vector<std::string> Lines() const
    {
        const std::lock_guard guard(mutex);
        return lines;
    }

    bool Has(const std::string& line) const
    {
        const auto seen = Lines();
        return std::find(seen.begin(), seen.end(), line) != seen.end();
    }

private:
    mutable std::mutex mutex;
    std::vector<std::string> lines;
};

/// Writes down what reaches it.
class ScriptedService : public CloudService {
public:
    ScriptedService(Script& script, const Listener& listener) : script(script), listener(listener) {}

    ~ScriptedService() override
    {
        script.Write(QThread::currentThread() == thread ? "destroyed" : "destroyed elsewhere");
    }

    void Start(qint64 id, const Request::Any& request) override
    {
        const auto remove = std::get_if<Request::Remove>(&request);
        script.Write(remove ? "remove " + remove->document.toStdString() : "start " + std::to_string(id));
        if (std::holds_alternative<Request::UserName>(request)) {
            listener.reply(id, {});
        } else {
            script.onStart(id, request, listener);
        }
    }

    void Cancel(qint64 id) override
    {
        script.Write("cancel " + std::to_string(id));
    }

private:
    Script& script;
    const Listener listener;
    QThread* const thread = QThread::currentThread();
};

Request::Upload UploadRequest()
{
    Request::Upload request;
    request.token = std::make_shared<TransferToken>();
    return request;
}

} // namespace

class ServiceConnectionTest : public testing::Test {
protected:
    void SetUp() override
    {
        connection = std::make_unique<ServiceConnection>([this](const CloudService::Listener& listener) {
            return std::make_unique<ScriptedService>(script, listener);
        });
    }

    ServiceConnection::ReplyHandler Note()
    {
        return [this](qint64 id, Reply&& reply) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            answers.push_back(std::to_string(id) + (reply.result == Success ? " done" : " failed"));
        };
    }

    ServiceConnection::ProgressHandler NoteProgress()
    {
        return [this](qint64 id, int percent) {
            answers.push_back(std::to_string(id) + " at " + std::to_string(percent));
        };
    }

    /// Waits for a request that was sent last to come back.
    void LetThingsSettle()
    {
        bool isBack = false;
        connection->Send(Request::UserName{}, [&](qint64, Reply&&) { isBack = true; });
        ASSERT_TRUE(WaitUntil([&] { return isBack; }));
    }

    Script script;
    std::vector<std::string> answers;
    std::unique_ptr<ServiceConnection> connection;
};

TEST_F(ServiceConnectionTest, RequestsArriveInTheOrderOfAskingAndReturnOnTheOwnThread)
{
    script.onStart = [](qint64 id, const Request::Any&, const CloudService::Listener& listener) {
        listener.reply(id, {});
    };
    for (int count = 0; count < 3; ++count) {
        connection->Send(Request::UserName{}, Note());
    }
    EXPECT_THAT(answers, IsEmpty());
    ASSERT_TRUE(WaitUntil([&] { return answers.size() == 3; }));
    EXPECT_THAT(answers, ElementsAre("1 done", "2 done", "3 done"));
    EXPECT_THAT(script.Lines(), ElementsAre("start 1", "start 2", "start 3"));
}

TEST_F(ServiceConnectionTest, ARequestCanceledBeforeItTravelledNeverReachesTheService)
{
    const qint64 id = connection->Send(UploadRequest(), Note());
    connection->Cancel(id);
    LetThingsSettle();
    EXPECT_THAT(script.Lines(), ElementsAre("start 2"));
    EXPECT_THAT(answers, IsEmpty());
}

TEST_F(ServiceConnectionTest, AReplyAfterCancellationIsDropped)
{
    CloudService::Listener toLate;
    script.onStart = [&](qint64, const Request::Any&, const CloudService::Listener& listener) {
        toLate = listener;
        script.Write("listener kept");
    };
    const qint64 id = connection->Send(Request::List{}, Note(), NoteProgress());
    ASSERT_TRUE(WaitUntil([&] { return script.Has("listener kept"); }));
    connection->Cancel(id);
    toLate.progress(id, 50);
    toLate.reply(id, {});
    LetThingsSettle();
    EXPECT_TRUE(script.Has("cancel 1"));
    EXPECT_THAT(answers, IsEmpty());
}

TEST_F(ServiceConnectionTest, OnlyTheFirstReplyAndWhatCameBeforeItCount)
{
    script.onStart = [](qint64 id, const Request::Any&, const CloudService::Listener& listener) {
        listener.progress(id, 0);
        listener.progress(id, 100);
        listener.reply(id, {});
        listener.progress(id, 100);
        listener.reply(id, FailureReply("again", {}, {}));
        listener.reply(id + 1000, {});
    };
    connection->Send(Request::List{}, Note(), NoteProgress());
    ASSERT_TRUE(WaitUntil([&] { return answers.size() >= 3; }));
    LetThingsSettle();
    EXPECT_THAT(answers, ElementsAre("1 at 0", "1 at 100", "1 done"));
}

TEST_F(ServiceConnectionTest, CancellationsArriveBeforeRequestsOfTheSameTurn)
{
    const qint64 first = connection->Send(Request::List{}, Note());
    ASSERT_TRUE(WaitUntil([&] { return script.Has("start 1"); }));
    connection->Send(Request::List{}, Note());
    connection->Cancel(first);
    connection->Cancel(first);
    LetThingsSettle();
    EXPECT_THAT(script.Lines(), ElementsAre("start 1", "cancel 1", "start 2", "start 3"));
}

TEST_F(ServiceConnectionTest, ADocumentThatACanceledUploadHasMadeIsRemoved)
{
    bool isPublished = false;
    script.onStart = [&](qint64, const Request::Any& request, const CloudService::Listener&) {
        if (const auto upload = std::get_if<Request::Upload>(&request)) {
            isPublished = upload->token->Commit([] { return QString("made"); });
            script.Write("published");
        }
    };
    const qint64 id = connection->Send(UploadRequest(), Note());
    ASSERT_TRUE(WaitUntil([&] { return script.Has("published"); }));
    EXPECT_TRUE(isPublished);
    connection->Cancel(id);
    EXPECT_TRUE(WaitUntil([&] { return script.Has("remove made"); }));
    LetThingsSettle();
    EXPECT_THAT(answers, IsEmpty());
}

TEST_F(ServiceConnectionTest, AnUploadThatIsCanceledCannotBePublishedAnyMore)
{
    std::atomic<bool> mayGoOn{false};
    bool isPublished = true;
    script.onStart = [&](qint64, const Request::Any& request, const CloudService::Listener&) {
        script.Write("begun");
        BlockUntil([&] { return mayGoOn.load(); });
        isPublished = std::get<Request::Upload>(request).token->Commit([&] {
            script.Write("published");
            return QString("made");
        });
        script.Write("over");
    };
    const qint64 id = connection->Send(UploadRequest(), Note());
    ASSERT_TRUE(WaitUntil([&] { return script.Has("begun"); }));
    connection->Cancel(id);
    mayGoOn = true;
    ASSERT_TRUE(WaitUntil([&] { return script.Has("over"); }));
    EXPECT_FALSE(isPublished);
    LetThingsSettle();
    EXPECT_FALSE(script.Has("published"));
    EXPECT_FALSE(script.Has("remove made"));
}

TEST_F(ServiceConnectionTest, AnAnsweredUploadIsNotUndone)
{
    script.onStart = [](qint64 id, const Request::Any& request, const CloudService::Listener& listener) {
        std::get<Request::Upload>(request).token->Commit([] { return QString("made"); });
        listener.reply(id, {});
    };
    const qint64 id = connection->Send(UploadRequest(), Note());
    ASSERT_TRUE(WaitUntil([&] { return !answers.empty(); }));
    connection->Cancel(id);
    LetThingsSettle();
    EXPECT_FALSE(script.Has("remove made"));
    EXPECT_FALSE(script.Has("cancel 1"));
}

TEST_F(ServiceConnectionTest, DestructionCancelsEverythingAndUndoesUploads)
{
    script.onStart = [&](qint64, const Request::Any& request, const CloudService::Listener&) {
        if (const auto upload = std::get_if<Request::Upload>(&request)) {
            upload->token->Commit([] { return QString("made"); });
            script.Write("published");
        }
    };
    connection->Send(UploadRequest(), Note());
    ASSERT_TRUE(WaitUntil([&] { return script.Has("published"); }));
    connection->Send(Request::List{}, Note()); // does not travel any more
    connection.reset();
    EXPECT_THAT(script.Lines(), ElementsAre("start 1", "published", "cancel 1", "remove made", "destroyed"));
    QCoreApplication::processEvents();
    EXPECT_THAT(answers, IsEmpty());
}

TEST_F(ServiceConnectionTest, WhatCallbacksHoldMayCancelRequestsWhenItIsReleased)
{
    const qint64 other = connection->Send(Request::List{}, Note());
    auto canceller = std::shared_ptr<void>(nullptr, [&](void*) { connection->Cancel(other); });
    const qint64 id = connection->Send(Request::List{}, [canceller](qint64, Reply&&) {});
    canceller.reset();
    connection->Cancel(id);
    LetThingsSettle();
    EXPECT_THAT(script.Lines(), ElementsAre("start 3"));
}

TEST_F(ServiceConnectionTest, ACallbackMayDestroyTheConnection)
{
    script.onStart = [](qint64 id, const Request::Any&, const CloudService::Listener& listener) {
        listener.progress(id, 1);
        listener.reply(id, {});
    };
    for (int count = 0; count < 100; ++count) {
        connection->Send(Request::List{}, Note(), [this](qint64 id, int) {
            if (id == 50) {
                connection.reset();
            }
        });
    }
    ASSERT_TRUE(WaitUntil([&] { return !connection; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(answers.size(), 49U);
    EXPECT_TRUE(script.Has("destroyed"));
}

TEST_F(ServiceConnectionTest, ManyRepliesAreDeliveredInSlices)
{
    script.onStart = [](qint64 id, const Request::Any&, const CloudService::Listener& listener) {
        listener.reply(id, {});
    };
    int answered = 0;
    int turnsBetween = 0;
    QTimer other;
    QObject::connect(&other, &QTimer::timeout, [&] { turnsBetween += answered > 0 && answered < 100 ? 1 : 0; });
    other.start(0);
    for (int count = 0; count < 100; ++count) {
        connection->Send(Request::List{}, [&](qint64, Reply&&) {
            ++answered;
            const QDeadlineTimer busy(1);
            BlockUntil([&] { return busy.hasExpired(); });
        });
    }
    ASSERT_TRUE(WaitUntil([&] { return answered == 100; }));
    EXPECT_GT(turnsBetween, 10);
}

TEST_F(ServiceConnectionTest, TheRestIsDeliveredInTheEventLoopOfACallback)
{
    script.onStart = [](qint64 id, const Request::Any&, const CloudService::Listener& listener) {
        listener.reply(id, {});
    };
    std::vector<qint64> order;
    bool cameMeanwhile = false;
    for (int count = 0; count < 10; ++count) {
        connection->Send(Request::List{}, [&](qint64 id, Reply&&) {
            order.push_back(id);
            if (id == 3) {
                connection->Send(Request::List{}, [&](qint64 late, Reply&&) { order.push_back(late); });
                cameMeanwhile = WaitUntil([&] { return order.size() == 11; }, 10'000);
            }
        });
    }
    ASSERT_TRUE(WaitUntil([&] { return order.size() == 11; }));
    EXPECT_TRUE(cameMeanwhile);
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
}

} // namespace Norlis::Social
