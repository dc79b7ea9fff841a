#include <tests/support/Rounds.h>
#include <tests/support/ServiceTest.h>

#include <QElapsedTimer>
#include <QLocale>

#include <algorithm>
#include <atomic>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;
using testing::Not;

class RetryTest : public SignedInServiceTest<> {
protected:
    void SetUp() override
    {
        SignedInServiceTest<>::SetUp();
        id = Put("a.pdf", "content");
        server.ForgetRequests();
    }

    static Misbehaviour IsBusy(int status, const QByteArray& retryAfter = "0")
    {
        return AnswersWith(status, {{"Retry-After", retryAfter}});
    }

    /// How long something takes that is answered only after that.
    qint64 TimeWithRetryAfter(const QByteArray& retryAfter)
    {
        server.BehaveAgain();
        server.Misbehave("PROPFIND", IsBusy(503, retryAfter));
        QElapsedTimer sinceStart;
        sinceStart.start();
        EXPECT_TRUE(client.Info(id)->Succeeds());
        return sinceStart.elapsed();
    }

    /// Of several attempts: the machine may do something else meanwhile.
    qint64 ShortestTimeWithRetryAfter(const QByteArray& retryAfter)
    {
        qint64 shortest = TimeWithRetryAfter(retryAfter);
        for (int attempt = 0; attempt < 4; ++attempt) {
            shortest = std::min(shortest, TimeWithRetryAfter(retryAfter));
        }
        return shortest;
    }

    static QByteArray DateIn(int seconds)
    {
        return QLocale::c()
            .toString(QDateTime::currentDateTimeUtc().addSecs(seconds), "ddd, dd MMM yyyy hh:mm:ss 'GMT'")
            .toLatin1();
    }

    QString id;
};

TEST_F(RetryTest, BusyServerIsAskedAgain)
{
    for (const int status : {423, 429, 502, 503, 504}) {
        server.BehaveAgain();
        server.ForgetRequests();
        for (const char* method : {"PROPFIND", "GET"}) {
            server.Misbehave(method, IsBusy(status));
        }
        EXPECT_TRUE(client.Info(id)->Succeeds()) << status;
        EXPECT_EQ(server.Count("PROPFIND"), 2);
        EXPECT_TRUE(client.Download(id, Local("target"))->Succeeds()) << status;
        EXPECT_EQ(server.Count("GET"), 2);
    }
    server.Misbehave("DELETE", IsBusy(503));
    EXPECT_TRUE(client.Remove(id)->Succeeds());
    EXPECT_EQ(server.Count("DELETE"), 2);
}

TEST_F(RetryTest, BrokenConnectionIsTriedAgain)
{
    server.Misbehave("PROPFIND", ResetsTheConnection());
    EXPECT_TRUE(client.Info(id)->Succeeds());
    server.Misbehave("DELETE", DoesItAndCloses());
    EXPECT_TRUE(client.Remove(id)->Succeeds());
    EXPECT_EQ(server.Count("DELETE"), 1); // the second one might meet somebody's new document
}

TEST_F(RetryTest, TriesAreBounded)
{
    server.Misbehave(When("*").Always(), IsBusy(503));
    EXPECT_TRUE(client.Info(id)->Fails());
    EXPECT_EQ(server.Count("PROPFIND"), 3);
    EXPECT_TRUE(client.List()->Fails());
    EXPECT_EQ(server.Count("PROPFIND"), 6);
    server.BehaveAgain();
    server.ForgetRequests();
    server.Misbehave(When("*").Always(), ClosesWithoutAnswer());
    EXPECT_TRUE(client.Info(id)->Fails());
    EXPECT_GE(server.Count("PROPFIND"), 3);
    EXPECT_LE(server.Count("PROPFIND"), 4); // one of them for a kept connection that turned out to be closed
}

TEST_F(RetryTest, WhatAnotherTryWouldNotChangeIsNotTried)
{
    for (const int status : {400, 403, 404, 409, 500, 501, 507}) {
        server.BehaveAgain();
        server.ForgetRequests();
        server.Misbehave(When("DELETE").Always(), IsBusy(status));
        client.Remove(client.Entry("a.pdf").id)->Fails();
        EXPECT_EQ(server.Count("DELETE"), 1) << status;
    }
}

TEST_F(RetryTest, ServerSaysWhenToComeAgain)
{
    EXPECT_LT(ShortestTimeWithRetryAfter("0"), 150);
    EXPECT_GE(TimeWithRetryAfter("1"), 990);
    EXPECT_GE(TimeWithRetryAfter(DateIn(2)), 900);
    EXPECT_LT(ShortestTimeWithRetryAfter(DateIn(-1000)), 150);
    for (const QByteArray& senseless : {QByteArray(), QByteArray("soon"), QByteArray("-5")}) {
        EXPECT_GE(TimeWithRetryAfter(senseless), 190);
    }
}

TEST_F(RetryTest, WhatAnInterimAnswerSaysDoesNotCount)
{
    server.Misbehave("PROPFIND", SendsRawBytes("HTTP/1.1 103 Early Hints\r\nRetry-After: 3600\r\n\r\n"
                                               "HTTP/1.1 503 Busy\r\nRetry-After: 0\r\nContent-Length: 0\r\n\r\n"));
    EXPECT_TRUE(client.Info(id)->Succeeds());
}

TEST_F(RetryTest, NobodyWaitsForHours)
{
    for (const QByteArray& late : {QByteArray("3600"), QByteArray("99999999999"), DateIn(3600)}) {
        server.BehaveAgain();
        server.ForgetRequests();
        server.Misbehave(When("PROPFIND").Always(), IsBusy(503, late));
        EXPECT_TRUE(client.Info(id)->Fails());
        EXPECT_THAT(LastReason(client), HasSubstr("not available"));
        EXPECT_EQ(server.Count("PROPFIND"), 1) << late.constData();
    }
}

TEST_F(RetryTest, OthersDoNotWaitForOneThatPauses)
{
    server.Misbehave("PROPFIND", IsBusy(503, "20"));
    const auto list = client.List();
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PROPFIND") == 1; }));
    EXPECT_TRUE(client.List()->Succeeds());
    EXPECT_FALSE(list->Came());
    client.Cancel(list->operation);
    EXPECT_TRUE(client.List()->Succeeds());
    EXPECT_FALSE(list->Came());
}

/// A server that takes one request in so many milliseconds.
class RateLimitTest : public RetryTest {
protected:
    void Limit(int interval, int status)
    {
        server.Misbehave(When("*").Always(), {[=](Wire& wire) {
                             const bool isTooSoon = sinceAccepted.isValid() && sinceAccepted.elapsed() < interval;
                             if (isTooSoon) {
                                 ++refused;
                                 wire.Send(ServerResponse{status, {}, {}}.Bytes());
                             } else {
                                 sinceAccepted.start();
                                 wire.Send(wire.Do(wire.Request()).Bytes());
                             }
                             wire.Finish();
                         }});
    }

    QElapsedTimer sinceAccepted; ///< touched by the server only
    std::atomic<int> refused = 0;
};

TEST_F(RateLimitTest, UploadsBecomeAsSlowAsTheServerWants)
{
    for (const int status : IsThorough() ? std::vector<int>{429, 503} : std::vector<int>{429}) {
        server.BehaveAgain();
        Client other(settings, server.Password());
        ASSERT_TRUE(other.SignIn());
        ASSERT_TRUE(other.Upload(LocalFile("b.pdf", "content"))->Succeeds()); // the server is known now
        Limit(400, status);
        refused = 0;
        EXPECT_TRUE(other.Upload(LocalFile("c.pdf", "content"))->Succeeds()) << LastReason(other);
        EXPECT_LE(refused, 3); // what was under way when it was first said, and one
    }
}

TEST_F(RateLimitTest, WhatMayNotEvenBeRemovedIsSweptLater)
{
    server.Misbehave("PUT", {[this](Wire& wire) {
                         wire.Send(wire.Do(wire.Request()).Bytes());
                         wire.Finish();
                         server.Misbehave(When("*").Always(), IsBusy(429, "60"));
                     }});
    EXPECT_TRUE(client.Upload(LocalFile("b.pdf", "content"))->Fails());
    EXPECT_THAT(LastReason(client), HasSubstr("too many requests"));
    server.BehaveAgain();
    ASSERT_EQ(server.Names().size(), 2);
    const QByteArray leftover = "/documents/" + server.Names().constFirst().toUtf8();
    server.With(
        [&](MemoryTree& tree) { tree.Find(leftover)->modifiedAt = QDateTime::currentDateTimeUtc().addDays(-2); });
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_TRUE(WaitUntil([&] { return server.Names() == QStringList("a.pdf"); }));
}

TEST_F(RateLimitTest, PauseThatTheServerAsksForHoldsForAll)
{
    server.Misbehave("PROPFIND", IsBusy(429, "1"));
    QElapsedTimer sinceStart;
    sinceStart.start();
    const auto info = client.Info(id);
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PROPFIND") == 1; }));
    EXPECT_TRUE(client.Download(id, Local("target"))->Succeeds());
    EXPECT_GE(sinceStart.elapsed(), 990);
    EXPECT_TRUE(info->Succeeds());
}

TEST_F(RetryTest, RenamingIsNeverRepeatedWithoutALook)
{
    ASSERT_TRUE(client.Upload(LocalFile("b.pdf", "content"))->Succeeds()); // the server is known now
    for (const Misbehaviour& loss : {ClosesWithoutAnswer(), DoesItAndCloses(), ResetsTheConnection(), IsBusy(503)}) {
        server.BehaveAgain();
        server.ForgetRequests();
        server.Misbehave(When("MOVE").Always(), loss);
        client.Upload(LocalFile("c.pdf", "content"))->Succeeds();
        QByteArray before;
        for (const SeenRequest& request : server.Requests()) {
            EXPECT_FALSE(before == "MOVE" && request.method == "MOVE");
            before = request.method;
        }
        EXPECT_LE(server.Count("MOVE"), 4);
        EXPECT_THAT(LastReason(client), Not(HasSubstr("callback")));
    }
}

} // namespace

} // namespace Norlis::Test
