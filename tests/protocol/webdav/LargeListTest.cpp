#include <tests/support/Rounds.h>
#include <tests/support/ServiceTest.h>
#include <tests/support/UsedHeap.h>

#include <QElapsedTimer>

#include <algorithm>

#include <ctime>

namespace Norlis::Test {

namespace {

const int many = IsThorough() ? 100'000 : 30'000;

QByteArray LargeListing(int many = ::Norlis::Test::many)
{
    QByteArray xml = "<d:multistatus xmlns:d=\"DAV:\">";
    xml.reserve(many * 400);
    for (int number = -1; number < many; ++number) {
        const QByteArray name = number < 0 ? QByteArray() : QByteArray::number(number) + ".pdf";
        xml += "<d:response><d:href>/documents/" + name +
               "</d:href><d:propstat><d:prop><d:resourcetype/><d:getcontentlength>12345</d:getcontentlength>"
               "<d:getlastmodified>Sun, 06 Nov 1994 08:49:37 GMT</d:getlastmodified><d:getetag>\"" +
               name + "\"</d:getetag></d:prop><d:status>HTTP/1.1 200 OK</d:status></d:propstat></d:response>";
    }
    return xml + "</d:multistatus>";
}

/// Milliseconds that this thread has worked, whatever else the machine does.
qint64 ThreadTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1000 + time.tv_nsec / 1'000'000;
}

class LargeListTest : public SignedInServiceTest<> {};

TEST_F(LargeListTest, LeavesTheEventLoopAndOtherRequestsRoom)
{
    server.Misbehave(When("PROPFIND").Times(2), SendsXml(LargeListing()));
    qint64 lastTick = ThreadTime();
    qint64 longest = 0;
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, [&] {
        longest = std::max(longest, ThreadTime() - lastTick);
        lastTick = ThreadTime();
    });
    ticks.start(1);
    QElapsedTimer sinceStart;
    sinceStart.start();
    const auto list = client.List();
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PROPFIND") == 1; }));
    const auto page = client.UserProfile();
    ASSERT_TRUE(page->Succeeds());
    EXPECT_FALSE(list->Came());
    ASSERT_TRUE(list->Succeeds());
    EXPECT_EQ(list->payload.size(), many);
    RecordProperty("milliseconds", static_cast<int>(sinceStart.elapsed()));
    RecordProperty("longest slice", static_cast<int>(longest));
    EXPECT_LT(longest, 200);
}

TEST_F(LargeListTest, TakesNoMoreMemoryEachTime)
{
    server.Misbehave(When("PROPFIND").Always(), SendsXml(LargeListing(20'000)));
    ASSERT_TRUE(client.List()->Succeeds());
    const qint64 before = UsedHeap();
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(client.List()->Succeeds());
    }
    EXPECT_LT(UsedHeap() - before, 8 * MiB);
}

TEST_F(LargeListTest, ListWithoutEndCanBeCanceledAtOnce)
{
    server.Misbehave("PROPFIND", ListsWithoutEnd());
    const auto list = client.List();
    ASSERT_TRUE(WaitUntil([&] { return server.Count("PROPFIND") == 1; }));
    QElapsedTimer sinceCancel;
    sinceCancel.start();
    client.Cancel(list->operation);
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_LT(sinceCancel.elapsed(), 5000); // else it would take for ever
    EXPECT_FALSE(list->Came());
}

} // namespace

} // namespace Norlis::Test
