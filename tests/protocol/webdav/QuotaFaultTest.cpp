#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/NextcloudLikeServer.h>

#include <limits>

namespace Norlis::Test {

namespace {

constexpr qint64 unknown = NorlisCloudProtocol::unknownQuota;
constexpr qint64 unlimited = NorlisCloudProtocol::unlimitedQuota;

void ExpectQuota(Client& client, qint64 used, qint64 total)
{
    const auto quota = client.Quota();
    ASSERT_TRUE(quota->Succeeds()) << LastReason(client);
    ASSERT_EQ(quota->payload.keys(), QStringList("pdf"));
    EXPECT_EQ(quota->payload["pdf"].used, used);
    EXPECT_EQ(quota->payload["pdf"].total, total);
}

class NextcloudQuotaTest : public SignedInServiceTest<NextcloudLikeServer> {};

TEST_F(NextcloudQuotaTest, FiguresAreMiB)
{
    server.SetQuota(10 * MiB, 90 * MiB);
    ExpectQuota(client, 10, 100);
    server.SetQuota(10 * MiB + 1, 90 * MiB - 2);
    ExpectQuota(client, 11, 99);
    server.SetQuota(0, 0);
    ExpectQuota(client, 0, 0);
}

TEST_F(NextcloudQuotaTest, NegativeFiguresHaveMeanings)
{
    server.SetQuota(10 * MiB, -1); // not computed
    ExpectQuota(client, 10, unknown);
    server.SetQuota(10 * MiB, -2); // not known
    ExpectQuota(client, 10, unknown);
    server.SetQuota(10 * MiB, -3); // no limit
    ExpectQuota(client, 10, unlimited);
    server.SetQuota(-1, 90 * MiB);
    ExpectQuota(client, unknown, unknown);
    server.SetQuota(std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::min());
    ExpectQuota(client, unknown, unknown);
}

TEST_F(NextcloudQuotaTest, HugeFiguresDoNotOverflow)
{
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    server.SetQuota(most, most);
    ExpectQuota(client, most / MiB + 1, most / MiB * 2 + 1);
    server.SetQuota(1, most);
    ExpectQuota(client, 1, most / MiB + 1);
}

class QuotaFaultTest : public SignedInServiceTest<> {
protected:
    /// Gives the collection these two properties; none for what is missing.
    void Tell(const std::optional<QByteArray>& used, const std::optional<QByteArray>& available)
    {
        server.With([=](MemoryTree& tree) {
            tree.moreProperties = [=](const MemoryNode&, const PropertyName& name) {
                return name.second == "quota-used-bytes"        ? used
                       : name.second == "quota-available-bytes" ? available
                                                                : std::nullopt;
            };
        });
    }
};

TEST_F(QuotaFaultTest, WhatIsNotToldIsUnknown)
{
    ExpectQuota(client, unknown, unknown);
    Tell(QByteArray("1048576"), {});
    ExpectQuota(client, 1, unknown);
    Tell({}, QByteArray("1048576"));
    ExpectQuota(client, unknown, unknown);
}

TEST_F(QuotaFaultTest, WhatIsNoNumberIsUnknown)
{
    for (const char* text : {"", "many", "1e6", "1048576.0", "0x100000", "99999999999999999999", "10 MB"}) {
        Tell(QByteArray(text), QByteArray(text));
        ExpectQuota(client, unknown, unknown);
    }
    Tell(QByteArray(" 1048576\n"), QByteArray("\t1048576 "));
    ExpectQuota(client, 1, 2);
}

TEST_F(QuotaFaultTest, AnswerThatIsNoneIsAnError)
{
    for (const Misbehaviour& answer : {ShowsAPage(200), AnswersWith(403), HasInnerStatus(403), Lists({"/elsewhere/"}),
                                       SendsXml("<d:multistatus xmlns:d=\"DAV:\">")}) {
        server.BehaveAgain();
        server.Misbehave("PROPFIND", answer);
        const auto quota = client.Quota();
        EXPECT_TRUE(quota->Fails());
        EXPECT_TRUE(quota->payload.isEmpty());
        EXPECT_NE(LastReason(client), "");
    }
}

} // namespace

} // namespace Norlis::Test
