#include <protocol/dav/DavPath.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Social {

using testing::Optional;

TEST(DavPathTest, ASegmentIsDecodedOnce)
{
    EXPECT_THAT(DecodeSegment("a%20b.pdf"), Optional(QByteArray("a b.pdf")));
    EXPECT_THAT(DecodeSegment("a%2520b.pdf"), Optional(QByteArray("a%20b.pdf")));
    EXPECT_THAT(DecodeSegment("r%c3%A9sum%C3%a9"), Optional(QByteArray("r\xc3\xa9sum\xc3\xa9")));
    EXPECT_THAT(DecodeSegment("a%ffb"), Optional(QByteArray("a\xff"
                                                            "b")));
    EXPECT_THAT(DecodeSegment("a+b"), Optional(QByteArray("a+b")));
}

TEST(DavPathTest, APercentSignThatEscapesNothingStandsForItself)
{
    for (const char* text : {"100%", "100%.pdf", "%", "%%", "%2", "%g0", "%0g"}) {
        EXPECT_THAT(DecodeSegment(text), Optional(QByteArray(text))) << text;
    }
    EXPECT_THAT(DecodeSegment("%%20"), Optional(QByteArray("% ")));
}

TEST(DavPathTest, WhatWouldAddressAnotherPlaceIsNoSegment)
{
    for (const char* text : {"", ".", "..", "%2e", "%2E%2e", ".%2e", "a%2fb", "%2F", "a/b", "a%00b", "%00"}) {
        EXPECT_EQ(DecodeSegment(text), std::nullopt) << text;
    }
    EXPECT_EQ(DecodeSegment(QByteArray("a\0b", 3)), std::nullopt);
    EXPECT_THAT(DecodeSegment("..."), Optional(QByteArray("...")));
}

TEST(DavPathTest, EveryByteSurvivesEncodingAndDecoding)
{
    for (int byte = 1; byte < 256; ++byte) {
        if (byte == '/') {
            continue;
        }
        const QByteArray segment = QByteArray("a") + static_cast<char>(byte) + "%41";
        EXPECT_THAT(DecodeSegment(EncodeSegment(segment)), Optional(segment)) << byte;
    }
}

TEST(DavPathTest, EverythingButUnreservedCharactersIsEscaped)
{
    EXPECT_EQ(EncodeSegment("AZaz09-._~"), "AZaz09-._~");
    EXPECT_EQ(EncodeSegment("a b?#[]@!$&'()*+,;=:%"), "a%20b%3F%23%5B%5D%40%21%24%26%27%28%29%2A%2B%2C%3B%3D%3A%25");
    EXPECT_EQ(EncodeSegment("\xc3\xa9\xff"), "%C3%A9%FF");
}

TEST(DavPathTest, APathIsEncodedSegmentBySegment)
{
    EXPECT_EQ(EncodePath({}, false), "/");
    EXPECT_EQ(EncodePath({}, true), "/");
    EXPECT_EQ(EncodePath({"dav", "a b"}, false), "/dav/a%20b");
    EXPECT_EQ(EncodePath({"dav", "a b"}, true), "/dav/a%20b/");
}

TEST(DavPathTest, AHrefIsAPathOrAnAddress)
{
    const DavPath path = {"dav", "my files", "a.pdf"};
    for (const char* href :
         {"/dav/my%20files/a.pdf", "/dav/my files/a.pdf", "/dav/my%20files/a.pdf/", "\n  /dav/my%20files/a.pdf \n",
          "http://host/dav/my%20files/a.pdf", "HTTPS://user@host:8443/dav/my%20files/a.pdf/"}) {
        EXPECT_THAT(SegmentsOfHref(href), Optional(path)) << href;
    }
}

TEST(DavPathTest, TheRootHasNoSegments)
{
    for (const char* href : {"/", "http://host", "http://host/"}) {
        EXPECT_THAT(SegmentsOfHref(href), Optional(DavPath())) << href;
    }
}

TEST(DavPathTest, RelativeAndUnsafeHrefsAreRefused)
{
    for (const char* href : {"", " ", "a.pdf", "./a", "../a", "/a/../b", "/a/%2e%2e/b", "/a//b", "//host/a", "//",
                             "/a//", "/a/%2f/b", "/a/b%00", "://host/a", "http:/a", "mailto:a@b", "/a?b/../c"}) {
        EXPECT_EQ(SegmentsOfHref(href), std::nullopt) << href;
    }
    EXPECT_EQ(SegmentsOfHref(QByteArray("/a\0b", 4)), std::nullopt);
}

TEST(DavPathTest, QuestionMarksAndHashSignsBelongToTheNamesOfAListing)
{
    EXPECT_THAT(SegmentsOfHref("/dav/a?b.pdf"), Optional(DavPath{"dav", "a?b.pdf"}));
    EXPECT_THAT(SegmentsOfHref("http://host/dav/#1 a.pdf"), Optional(DavPath{"dav", "#1 a.pdf"}));
    EXPECT_EQ(SegmentsOfHref("http://host?query"), std::nullopt);
}

TEST(DavPathTest, QueryAndFragmentOfAnAddressAreNoPartOfItsPath)
{
    EXPECT_THAT(SegmentsOfUrl("https://host/dav/docs/?token=a/b#top"), Optional(DavPath{"dav", "docs"}));
    EXPECT_THAT(SegmentsOfUrl("https://host/dav/docs#a?b"), Optional(DavPath{"dav", "docs"}));
    EXPECT_THAT(SegmentsOfUrl("https://host?query"), Optional(DavPath()));
    EXPECT_THAT(SegmentsOfUrl("https://host/a%3Fb"), Optional(DavPath{"a?b"}));
}

TEST(DavPathTest, OnlyDirectMembersHaveAName)
{
    const DavPath collection = {"dav", "docs"};
    EXPECT_THAT(MemberName(collection, {"dav", "docs", "a.pdf"}), Optional(QByteArray("a.pdf")));
    EXPECT_THAT(MemberName(collection, collection), Optional(QByteArray()));
    EXPECT_THAT(MemberName({}, {"a.pdf"}), Optional(QByteArray("a.pdf")));
    EXPECT_EQ(MemberName(collection, {"dav", "docs", "sub", "a.pdf"}), std::nullopt);
    EXPECT_EQ(MemberName(collection, {"dav"}), std::nullopt);
    EXPECT_EQ(MemberName(collection, {"dav", "docs2", "a.pdf"}), std::nullopt);
    EXPECT_EQ(MemberName(collection, {"dav", "Docs", "a.pdf"}), std::nullopt);
}

} // namespace Norlis::Social
