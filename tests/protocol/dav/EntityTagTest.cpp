#include <protocol/dav/EntityTag.h>

#include <gtest/gtest.h>

namespace Norlis::Social {

TEST(EntityTagTest, AValidTagIsQuoted)
{
    for (const char* text : {R"("abc")", R"(W/"abc")", R"("")", R"("3e8-60a24181e4000")", "\"\xe9\"", R"("a'b\c")"}) {
        EXPECT_TRUE(EntityTag{text}.IsValid()) << text;
    }
    for (const char* text : {"", "abc", "\"", "W/", "W/abc", R"("a"b")", R"("a b")", "\"a\nb\"", "\"a\x7f\"", R"("abc)",
                             R"(w/"abc")", R"( "abc")"}) {
        EXPECT_FALSE(EntityTag{text}.IsValid()) << text;
    }
}

TEST(EntityTagTest, AStrongTagIsValidAndNotMarkedAsWeak)
{
    EXPECT_TRUE(EntityTag{R"("abc")"}.IsStrong());
    EXPECT_FALSE(EntityTag{R"(W/"abc")"}.IsStrong());
    EXPECT_FALSE(EntityTag{"abc"}.IsStrong());
    EXPECT_FALSE(EntityTag{}.IsStrong());
}

TEST(EntityTagTest, WhatFrontEndsDoToATagDoesNotMakeItAnother)
{
    const EntityTag tag{R"("abc")"};
    for (const char* text : {R"("abc")", R"(W/"abc")", R"("abc-gzip")", R"("abc;gzip")", R"(W/"abc-gzip")", "abc"}) {
        EXPECT_TRUE(tag.SameIgnoringWeakness({text})) << text;
        EXPECT_TRUE(EntityTag{text}.SameIgnoringWeakness(tag)) << text;
    }
    for (const char* text : {R"("abcd")", R"("ABC")", R"("abc-br")", R"("")", ""}) {
        EXPECT_FALSE(tag.SameIgnoringWeakness({text})) << text;
    }
}

TEST(EntityTagTest, EmptyTagsProveNothing)
{
    for (const char* text : {"", R"("")", R"(W/"")", "W/", R"("-gzip")"}) {
        EXPECT_FALSE(EntityTag{text}.SameIgnoringWeakness({text})) << text;
    }
}

} // namespace Norlis::Social
