#include <protocol/http/Pace.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Social {

namespace {

using testing::AllOf;
using testing::Gt;
using testing::Le;

TEST(PaceTest, NothingIsLimitedUntilTheServerRefuses)
{
    Pace pace;
    pace.Started();
    EXPECT_FALSE(pace.IsLimited());
    EXPECT_EQ(pace.Wait(), 0);
    pace.Slow(0); // come again at once
    EXPECT_FALSE(pace.IsLimited());
}

TEST(PaceTest, RequestsFollowEachOtherAtADistance)
{
    Pace pace;
    pace.Slow(-1);
    EXPECT_TRUE(pace.IsLimited());
    EXPECT_EQ(pace.Wait(), 0);
    pace.Started();
    EXPECT_THAT(pace.Wait(), AllOf(Gt(300), Le(500)));
}

TEST(PaceTest, SeveralRefusalsAtOnceCountAsOne)
{
    Pace pace;
    for (int refusal = 0; refusal < 4; ++refusal) {
        pace.Slow(-1);
    }
    pace.Started();
    EXPECT_THAT(pace.Wait(), Le(500));
}

TEST(PaceTest, PauseThatTheServerWantsIsKept)
{
    Pace pace;
    pace.Slow(5'000);
    EXPECT_THAT(pace.Wait(), AllOf(Gt(4'500), Le(5'000)));
}

} // namespace

} // namespace Norlis::Social
