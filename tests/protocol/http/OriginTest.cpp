#include <protocol/http/Origin.h>

#include <gtest/gtest.h>

namespace Norlis::Social {

TEST(OriginTest, OriginsAreEqualHoweverTheyAreWritten)
{
    for (const char* url : {"https://host", "HTTPS://HOST/", "https://host:443/a", "https://host:/a?b",
                            "https://me@host#a", "https://a:b@host:443"}) {
        EXPECT_EQ(OriginOfUrl(url), "https://host") << url;
    }
    EXPECT_EQ(OriginOfUrl("http://host:8080/a"), "http://host:8080");
    EXPECT_EQ(OriginOfUrl("http://host:443"), "http://host:443");
    EXPECT_EQ(OriginOfUrl("http://[::1]:80/"), "http://[::1]");
    EXPECT_EQ(OriginOfUrl("http://[::80]"), "http://[::80]");
    EXPECT_EQ(OriginOfUrl("/a"), "");
    EXPECT_EQ(OriginOfUrl("/a://b"), "");
}

} // namespace Norlis::Social
