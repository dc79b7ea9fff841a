#include <contracts/NorlisCloudProtocol.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace Norlis::Test {

namespace {

using namespace Social;
using File = Ability::File<NorlisCloudSharingResult>;

TEST(AggregateTest, FileFieldDataIsWrittenAsFieldsAndExtra)
{
    const File::FileFieldData data = {{{"a", "1"}}, {{"b", "2"}}};
    EXPECT_EQ(data.fields["a"], "1");
    EXPECT_EQ(data.extra["b"], "2");
}

TEST(AggregateTest, FilesListEntryHasNineMembersInOrder)
{
    const File::FileInfo entry = {"id", "name", 5368709120, true, false, "type", "hash", "created", "modified"};
    EXPECT_EQ(entry.id, "id");
    EXPECT_EQ(entry.name, "name");
    EXPECT_EQ(entry.size, 5368709120);
    EXPECT_TRUE(entry.isFolder);
    EXPECT_FALSE(entry.isShared);
    EXPECT_EQ(entry.mimeType, "type");
    EXPECT_EQ(entry.md5Hash, "hash");
    EXPECT_EQ(entry.createdAt, "created");
    EXPECT_EQ(entry.modifiedAt, "modified");
    static_assert(std::is_same_v<decltype(entry.size), qint64>);
}

TEST(AggregateTest, SharingResultHasSevenMembersInOrder)
{
    const QDateTime created({2024, 2, 29}, {12, 30, 45}, Qt::UTC);
    const QDateTime modified = created.addSecs(1);
    const NorlisCloudSharingResult result = {false, "id", "name", QUrl("https://c/d"), created, modified, 9};
    EXPECT_FALSE(result.isPrivate);
    EXPECT_EQ(result.id, "id");
    EXPECT_EQ(result.fileName, "name");
    EXPECT_EQ(result.downloadUrl, QUrl("https://c/d"));
    EXPECT_EQ(result.createdAt, created);
    EXPECT_EQ(result.modifiedAt, modified);
    EXPECT_EQ(result.lifetime, 9);
}

TEST(AggregateTest, QuotaValueIsUsedAndTotal)
{
    const Ability::Quota::QuotaValue value = {1, 5368709120};
    EXPECT_EQ(value.used, 1);
    EXPECT_EQ(value.total, 5368709120);
    const Ability::Quota::QuotaValue none = {};
    EXPECT_EQ(none.used, 0);
    EXPECT_EQ(none.total, 0);
}

TEST(AggregateTest, AuthInfoBeginsWithTheServiceUrlAndDefaultsTheRest)
{
    const OAuth2::AuthInfo info = {QUrl("file:///cloud")};
    EXPECT_EQ(info.serviceUrl, QUrl("file:///cloud"));
    EXPECT_TRUE(info.cacheFolder.isEmpty());
    EXPECT_EQ(info.storageLimit, 0);
    EXPECT_FALSE(info.onFailure);
    EXPECT_FALSE(info.onTransferred);
}

TEST(RequestResultTest, ValuesAreFixedAndForeignOnesAreWellDefined)
{
    EXPECT_EQ(static_cast<int>(Success), 0);
    EXPECT_EQ(static_cast<int>(Error), 1);
    EXPECT_EQ(static_cast<int>(Canceled), 2);
    static_assert(std::is_convertible_v<RequestResult, int>, "a plain enumeration");
    static_assert(std::is_same_v<std::underlying_type_t<RequestResult>, int>);
    for (const int foreign : {-1, 3, 2147483647}) {
        EXPECT_EQ(static_cast<int>(static_cast<RequestResult>(foreign)), foreign);
    }
}

} // namespace

} // namespace Norlis::Test
