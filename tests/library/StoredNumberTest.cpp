#include <NorlisCloud/StoredNumber.h>

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace Norlis::Test {

namespace {

using PDF::Cloud::StoredInt;
using PDF::Cloud::StoredUnsigned;

template <typename Exception, typename Reader>
void ExpectThrows(Reader reader, const std::string& text, const std::string& what)
{
    try {
        reader(text);
        ADD_FAILURE() << "nothing was thrown for \"" << text << '"';
    } catch (const std::exception& error) {
        EXPECT_EQ(typeid(error), typeid(Exception)) << text;
        EXPECT_EQ(error.what(), what) << text;
    }
}

TEST(StoredNumberTest, PlainNumbersAreRead)
{
    EXPECT_EQ(StoredUnsigned("0"), 0u);
    EXPECT_EQ(StoredUnsigned("4294967295"), 4294967295u);
    EXPECT_EQ(StoredInt("2147483647"), 2147483647);
    EXPECT_EQ(StoredInt("-2147483648"), std::numeric_limits<std::int32_t>::min());
}

TEST(StoredNumberTest, BlanksAndASignMayLead)
{
    EXPECT_EQ(StoredUnsigned(" \t\n\v\f\r+7"), 7u);
    EXPECT_EQ(StoredInt(" \t\n\v\f\r-7"), -7);
    EXPECT_EQ(StoredInt("+7"), 7);
}

TEST(StoredNumberTest, LeadingZerosAreNoOctalSign)
{
    EXPECT_EQ(StoredUnsigned("010"), 10u);
    EXPECT_EQ(StoredInt("-0000000000000000000009"), -9);
}

TEST(StoredNumberTest, WhatFollowsTheDigitsIsIgnored)
{
    EXPECT_EQ(StoredUnsigned("12 34"), 12u);
    EXPECT_EQ(StoredUnsigned("0x1F"), 0u);
    EXPECT_EQ(StoredUnsigned("3,5"), 3u);
    EXPECT_EQ(StoredInt("5-1"), 5);
    EXPECT_EQ(StoredInt(std::string("6\0007", 3)), 6);
}

TEST(StoredNumberTest, NegativeUnsignedNumberWrapsIn32Bits)
{
    EXPECT_EQ(StoredUnsigned("-0"), 0u);
    EXPECT_EQ(StoredUnsigned("-1"), 4294967295u);
    EXPECT_EQ(StoredUnsigned("-2147483648"), 2147483648u);
    EXPECT_EQ(StoredUnsigned("-4294967295"), 1u);
}

TEST(StoredNumberTest, TextWithoutDigitsIsInvalid)
{
    for (const auto* text : {"", " ", "\n\t", "-", "+", "+-1", "--1", "- 1", "x1", ".5",
                             "\xC2\xA0"
                             "1",
                             "\x08"
                             "1"}) {
        ExpectThrows<std::invalid_argument>(StoredUnsigned, text, "invalid stoul argument");
        ExpectThrows<std::invalid_argument>(StoredInt, text, "invalid stoi argument");
    }
}

TEST(StoredNumberTest, UnsignedNumberBeyond32BitsIsOutOfRange)
{
    for (const auto* text : {"4294967296", "-4294967296", "5368709120", "18446744073709551615", "18446744073709551616",
                             "18446744073709551617", "184467440737095516160000000000000000000000"}) {
        ExpectThrows<std::out_of_range>(StoredUnsigned, text, "stoul argument out of range");
    }
}

TEST(StoredNumberTest, SignedNumberBeyond32BitsIsOutOfRange)
{
    for (const auto* text : {"2147483648", "-2147483649", "4294967295", "4294967296", "9223372036854775808",
                             "-18446744073709551616", "100000000000000000000000000000000000"}) {
        ExpectThrows<std::out_of_range>(StoredInt, text, "stoi argument out of range");
    }
}

} // namespace

} // namespace Norlis::Test
