#include <apps/common/TransferMeter.h>

#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using Apps::TransferMeter;

TEST(TransferMeterTest, SaysNothingBeforeItCanKnow)
{
    TransferMeter meter;
    EXPECT_EQ(meter.Rate(0), std::nullopt);
    meter.Note(0, 0);
    EXPECT_EQ(meter.Rate(5000), std::nullopt);
    meter.Note(100, 500);
    EXPECT_EQ(meter.Rate(900), std::nullopt);
    EXPECT_EQ(meter.TimeLeft(100, 900), std::nullopt);
    EXPECT_EQ(meter.Rate(1000), 100);
}

TEST(TransferMeterTest, SaysTheRateOfTheLastSecondsAndTheTimeLeft)
{
    TransferMeter meter;
    for (qint64 second = 0; second <= 20; ++second) {
        meter.Note(second * 1'000'000, second * 1000); // fast
    }
    EXPECT_EQ(meter.Rate(20'000), 1'000'000);
    EXPECT_EQ(meter.TimeLeft(5'500'000, 20'000), 6);
    for (qint64 second = 21; second <= 60; ++second) {
        meter.Note(20'000'000 + (second - 20) * 1000, second * 1000); // slow: the fast time is forgotten
    }
    EXPECT_EQ(meter.Rate(60'000), 1000);
    EXPECT_EQ(meter.TimeLeft(0, 60'000), 0);
}

TEST(TransferMeterTest, GetsSlowerWhileNothingComesAndThenCannotTell)
{
    TransferMeter meter;
    meter.Note(0, 0);
    meter.Note(1'000'000, 1000);
    EXPECT_EQ(meter.Rate(1000), 1'000'000);
    meter.Note(1'000'000, 5'000);
    EXPECT_EQ(meter.Rate(5'000), 200'000);
    EXPECT_EQ(meter.Rate(10'000), std::nullopt);
    EXPECT_EQ(meter.TimeLeft(1'000'000, 10'000), std::nullopt);
}

TEST(TransferMeterTest, BeginsAnewAfterAHalt)
{
    TransferMeter meter;
    meter.Note(0, 0);
    meter.Note(1'000'000, 1000);
    meter.Note(1'000'100, 60'000);
    EXPECT_EQ(meter.Rate(61'000), std::nullopt);
    meter.Note(3'000'100, 62'000);
    EXPECT_EQ(meter.Rate(62'000), 1'000'000);
}

TEST(TransferMeterTest, WaitsLongerForWhatComesInLargeSteps)
{
    TransferMeter meter;
    for (qint64 step = 0; step <= 4; ++step) {
        meter.Note(step * 10'000'000, step * 8'000); // one per cent of a large document at a time
    }
    EXPECT_TRUE(meter.Rate(50'000).has_value());
    EXPECT_EQ(meter.Rate(80'000), std::nullopt);
}

TEST(TransferMeterTest, BeginsAnewWithATransferThatBeginsAnew)
{
    TransferMeter meter;
    meter.Note(0, 0);
    meter.Note(1'000'000, 2000);
    meter.Note(0, 3000);
    EXPECT_EQ(meter.Rate(4000), std::nullopt);
    meter.Note(2000, 5000);
    EXPECT_EQ(meter.Rate(5000), 1000);
}

} // namespace

} // namespace Norlis::Test
