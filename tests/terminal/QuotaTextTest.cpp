#include <apps/terminal/QuotaText.h>

#include <contracts/NorlisCloudProtocol.h>

#include <gtest/gtest.h>

#include <limits>

namespace Norlis::Test {

namespace {

using namespace Terminal;

constexpr int unknown = static_cast<int>(Social::NorlisCloudProtocol::unknownQuota);
constexpr int unlimited = static_cast<int>(Social::NorlisCloudProtocol::unlimitedQuota);

TEST(QuotaTextTest, BothFiguresAreShown)
{
    EXPECT_EQ(QuotaText(3, 1024), "3.0 MiB of 1.0 GiB used");
    EXPECT_EQ(QuotaText(0, 0), "0 B of 0 B used");
    EXPECT_EQ(QuotaText(5, std::numeric_limits<int>::max()), "5.0 MiB of 2.0 PiB used");
}

TEST(QuotaTextTest, WhatIsUnknownIsSaidAndNoNumber)
{
    EXPECT_EQ(QuotaText(3, unlimited), "3.0 MiB used; the service sets no limit");
    EXPECT_EQ(QuotaText(3, unknown), "3.0 MiB used; the service does not report a limit");
    EXPECT_EQ(QuotaText(unknown, unknown), "The service does not report how much storage is used");
    EXPECT_EQ(QuotaText(unknown, unlimited), "The service does not report how much storage is used, and sets no limit");
    EXPECT_EQ(QuotaText(unknown, 1024), "The service does not report how much storage is used; the limit is 1.0 GiB");
}

TEST(QuotaTextTest, JsonHasBytesOrNull)
{
    const QJsonObject known = QuotaJson(3, 4096);
    EXPECT_EQ(known["used"], QJsonValue(3.0 * 1024 * 1024));
    EXPECT_EQ(known["total"], QJsonValue(4096.0 * 1024 * 1024));
    EXPECT_EQ(known["unlimited"], QJsonValue(false));
    EXPECT_EQ(QuotaJson(3, unlimited)["total"], QJsonValue());
    EXPECT_EQ(QuotaJson(3, unlimited)["unlimited"], QJsonValue(true));
    EXPECT_EQ(QuotaJson(unknown, unknown)["used"], QJsonValue());
    EXPECT_EQ(QuotaJson(unknown, unknown)["total"], QJsonValue());
    EXPECT_EQ(QuotaJson(unknown, unknown)["unlimited"], QJsonValue(false));
}

} // namespace

} // namespace Norlis::Test
