#include <protocol/http/HttpDate.h>

#include <QLocale>

#include <gtest/gtest.h>

namespace Norlis::Social {

namespace {

const QDateTime moment(QDate(1994, 11, 6), QTime(8, 49, 37), Qt::UTC);

} // namespace

TEST(HttpDateTest, AllFormsOfADateAreRead)
{
    for (const char* text :
         {"Sun, 06 Nov 1994 08:49:37 GMT", "Sunday, 06-Nov-94 08:49:37 GMT", "Sun Nov  6 08:49:37 1994",
          "Sun, 6 Nov 1994 08:49:37 GMT", "sun, 06 nov 1994 08:49:37 gmt", "Sun, 06-Nov-1994 08:49:37 GMT",
          "Sun, 06 Nov 1994 08:49:37 UTC", "Sun, 06 Nov 1994 09:49:37 +0100", "Sun, 06 Nov 1994 00:49:37 -0800",
          "Mon, 06 Nov 1994 08:49:37 GMT", " Sun, 06 Nov 1994 08:49:37 GMT\n", "1994-11-06T08:49:37Z",
          "1994-11-06t08:49:37z", "1994-11-06 08:49:37Z", "1994-11-06T08:49:37+00:00", "1994-11-06T09:49:37+01:00",
          "1994-11-05T23:49:37-09:00"}) {
        EXPECT_EQ(ParseHttpDate(text), moment) << text;
        EXPECT_EQ(ParseHttpDate(text).timeSpec(), Qt::UTC) << text;
    }
}

TEST(HttpDateTest, FractionsOfASecondAreReadToTheMillisecond)
{
    EXPECT_EQ(ParseHttpDate("1994-11-06T08:49:37.5Z"), moment.addMSecs(500));
    EXPECT_EQ(ParseHttpDate("1994-11-06T08:49:37.123456789Z"), moment.addMSecs(123));
    EXPECT_EQ(ParseHttpDate("1994-11-06T08:49:37.04+00:00"), moment.addMSecs(40));
}

TEST(HttpDateTest, TwoDigitsMeanTheNearestCentury)
{
    EXPECT_EQ(ParseHttpDate("Sunday, 06-Nov-94 08:49:37 GMT").date().year(), 1994);
    EXPECT_EQ(ParseHttpDate("Friday, 06-Nov-26 08:49:37 GMT").date().year(), 2026);
}

TEST(HttpDateTest, ALeapSecondIsTheNextMinutesBegin)
{
    EXPECT_EQ(ParseHttpDate("Sat, 31 Dec 2016 23:59:60 GMT"), QDateTime(QDate(2017, 1, 1), QTime(0, 0), Qt::UTC));
}

TEST(HttpDateTest, WhatServersWriteForAnUnknownDateIsNoDate)
{
    for (const char* text : {"1970-01-01T00:00:00Z", "1970-01-01T00:00:00+00:00", "Thu, 01 Jan 1970 00:00:00 GMT",
                             "Thu Jan  1 00:00:00 1970", "1969-12-31T23:59:59Z", "0001-01-01T00:00:00Z",
                             "Mon, 01 Jan 0001 00:00:00 GMT", "1970-01-01T01:00:00+01:00"}) {
        EXPECT_FALSE(ParseHttpDate(text).isValid()) << text;
    }
    EXPECT_TRUE(ParseHttpDate("1970-01-01T00:00:01Z").isValid());
}

TEST(HttpDateTest, EverythingElseIsNoDate)
{
    for (const char* text : {"",
                             " ",
                             "yesterday",
                             "0",
                             "784111777",
                             "Sun, 06 Nov 1994",
                             "Sun, 06 Nov 1994 08:49:37",
                             "Sun, 06 Nov 1994 08:49:37 CEST",
                             "Sun, 06 Nov 1994 08:49:37 GMT x",
                             "Sun, 31 Feb 1994 08:49:37 GMT",
                             "Sun, 06 Nov 1994 24:00:00 GMT",
                             "Sun, 06 Nov 1994 08:60:00 GMT",
                             "Sun, 06 Nov 1994 08:49:61 GMT",
                             "Sun, 06 ovd 1994 08:49:37 GMT",
                             "Sun, 06 November 1994 08:49:37 GMT",
                             "Sun Nov 6 1994",
                             "1994-11-06",
                             "1994-13-06T08:49:37Z",
                             "1994-00-06T08:49:37Z",
                             "1994-11-06T08:49:37",
                             "1994-11-06T08:49:37.Z",
                             "1994-11-06T08:49:37+25:00",
                             "19941-11-06T08:49:37Z",
                             "So, 06 Nov 1994 08:49:37 Uhr",
                             "Sun, ",
                             "Sun",
                             ","}) {
        EXPECT_FALSE(ParseHttpDate(text).isValid()) << text;
    }
}

TEST(HttpDateTest, TheLocaleDoesNotMatter)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    EXPECT_EQ(ParseHttpDate("Sun, 06 Nov 1994 08:49:37 GMT"), moment);
    QLocale::setDefault(before);
}

} // namespace Norlis::Social
