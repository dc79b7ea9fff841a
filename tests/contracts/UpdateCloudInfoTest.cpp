#include <NorlisTestKit/Records.h>

#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;

namespace {

using PDF::FileInfo;
using PreviewSize = FileInfo::PreviewSize;
using Previews = std::map<PreviewSize, ioPath>;

TEST(UpdateCloudInfoTest, EqualCloudPartIsNoChange)
{
    FileInfo file(CloudInfoOf("a"));
    EXPECT_FALSE(file.UpdateCloudInfo(CloudInfoOf("a")));
}

TEST(UpdateCloudInfoTest, EveryFieldCounts)
{
    const QUrl url("https://c/d");
    const QDateTime time({2024, 2, 29}, {12, 30, 45}, Qt::UTC);
    const QDateTime later = time.addSecs(1);
    const FileInfo::CloudInfo base("a", "n", 1, true, url, time, time, 5, "h");
    const FileInfo::CloudInfo variants[] = {
        {"b", "n", 1, true, url, time, time, 5, "h"},    {"a", "N", 1, true, url, time, time, 5, "h"},
        {"a", "n", 2, true, url, time, time, 5, "h"},    {"a", "n", 1, false, url, time, time, 5, "h"},
        {"a", "n", 1, true, QUrl(), time, time, 5, "h"}, {"a", "n", 1, true, url, later, time, 5, "h"},
        {"a", "n", 1, true, url, time, later, 5, "h"},   {"a", "n", 1, true, url, time, time, 6, "h"},
        {"a", "n", 1, true, url, time, time, 5, "H"},
    };
    for (const auto& variant : variants) {
        FileInfo file(base);
        EXPECT_TRUE(file.UpdateCloudInfo(variant));
        EXPECT_TRUE(*file.GetCloudInfo() == variant);
        EXPECT_FALSE(file.UpdateCloudInfo(variant));
    }
}

TEST(UpdateCloudInfoTest, HeldPreviewsOfOtherSizesAreKept)
{
    FileInfo file(CloudInfoOf("a"));
    file.GetRedactableCloudInfo()->SetPreviewsSet(
        {{PreviewSize::Small, ioPath("/s")}, {PreviewSize::Medium, ioPath("/m")}});
    EXPECT_FALSE(file.UpdateCloudInfo(CloudInfoOf("a")));

    auto newer = CloudInfoOf("a");
    newer.SetPreviewsSet({{PreviewSize::Medium, ioPath("/m2")}, {PreviewSize::Large, ioPath("/l")}});
    EXPECT_TRUE(file.UpdateCloudInfo(newer));

    EXPECT_EQ(file.GetRedactableCloudInfo()->GetPreviewsSet(), (Previews{{PreviewSize::Small, ioPath("/s")},
                                                                         {PreviewSize::Medium, ioPath("/m2")},
                                                                         {PreviewSize::Large, ioPath("/l")}}));
    EXPECT_FALSE(file.UpdateCloudInfo(newer));
}

TEST(UpdateCloudInfoTest, FirstCloudPartIsAChange)
{
    FileInfo file(CloudInfoOf("a"));
    file.GetRedactableCloudInfo().reset();
    EXPECT_TRUE(file.UpdateCloudInfo(CloudInfoOf("a")));
    EXPECT_FALSE(file.UpdateCloudInfo(CloudInfoOf("a")));
}

TEST(UpdateCloudInfoTest, LocalDocumentTakesTheIdOfItsFirstCloudPartAndKeepsIt)
{
    FileInfo file(ioPath("/a"), "md5");
    EXPECT_TRUE(file.UpdateCloudInfo(CloudInfoOf("a")));
    EXPECT_EQ(file.GetId(), "a");
    file.UpdateCloudInfo(CloudInfoOf("b"));
    EXPECT_EQ(file.GetId(), "a");
}

TEST(UpdateCloudInfoTest, LocalSideStaysAsItIs)
{
    FileInfo file(CloudInfoOf("a"));
    file.SetPath(ioPath("/a"), "local", "sync");
    file.SetPreviewsSet({{PreviewSize::Small, ioPath("/own")}});
    file.UpdateCloudInfo(CloudInfoOf("b"));
    EXPECT_EQ(file.GetPath(), ioPath("/a"));
    EXPECT_EQ(file.GetMd5Hash(), "local");
    EXPECT_EQ(file.GetCloudHashBeforeChange(), "sync");
    EXPECT_EQ(file.GetPreviewsSet().size(), 1u);
}

} // namespace

} // namespace Norlis::Test
