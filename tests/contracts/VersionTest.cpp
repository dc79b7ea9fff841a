#include <contracts/Version.h>

#include <gtest/gtest.h>

#include <string>

namespace Norlis::Test {

namespace {

static_assert(NORLIS_CLOUD_VERSION > NORLIS_CLOUD_VERSION_CHECK(NORLIS_CLOUD_VERSION_MAJOR - 1, 99, 99));
static_assert(NORLIS_CLOUD_VERSION < NORLIS_CLOUD_VERSION_CHECK(NORLIS_CLOUD_VERSION_MAJOR + 1, 0, 0));
static_assert(NORLIS_CLOUD_VERSION_CHECK(1, 2, 3) < NORLIS_CLOUD_VERSION_CHECK(1, 10, 0));

TEST(VersionTest, HeaderHasTheVersionOfTheProject)
{
    EXPECT_STREQ(NORLIS_CLOUD_VERSION_STR, NORLIS_VERSION);
    const auto numbers = std::to_string(NORLIS_CLOUD_VERSION_MAJOR) + '.' + std::to_string(NORLIS_CLOUD_VERSION_MINOR) +
                         '.' + std::to_string(NORLIS_CLOUD_VERSION_PATCH);
    EXPECT_EQ(numbers, NORLIS_VERSION);
}

} // namespace

} // namespace Norlis::Test
