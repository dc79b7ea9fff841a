#include <NorlisTestKit/Records.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <type_traits>

namespace Norlis::Test {

using namespace TestKit;

namespace {

using PDF::FileInfo;
using CloudStatus = FileInfo::CloudStatus;
using PreviewSize = FileInfo::PreviewSize;

class FileInfoTest : public testing::Test {
protected:
    ioPath Written(const QString& name, const QByteArray& content) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return ioPath(file.fileName().toStdString());
    }

    QTemporaryDir folder;
};

TEST_F(FileInfoTest, CloudInfoKeepsItsFields)
{
    const QDateTime created({2024, 2, 29}, {12, 30, 45}, Qt::UTC);
    const QDateTime modified({2025, 3, 1}, {6, 7, 8}, Qt::UTC);
    FileInfo::CloudInfo cloud("ид", "Ü.pdf", 18446744073709551615u, true, QUrl("https://c/d"), created, modified, -3,
                              "md5");
    EXPECT_EQ(cloud.GetId(), "ид");
    EXPECT_EQ(cloud.GetFileName(), "Ü.pdf");
    EXPECT_EQ(cloud.GetSize(), 18446744073709551615u);
    EXPECT_TRUE(cloud.IsPrivate());
    EXPECT_EQ(cloud.GetDownloadUrl(), QUrl("https://c/d"));
    EXPECT_EQ(cloud.GetCreatedAt(), created);
    EXPECT_EQ(cloud.GetModifyTime(), modified);
    EXPECT_EQ(cloud.GetLifeTime(), -3);
    EXPECT_EQ(cloud.GetMd5Hash(), "md5");
    EXPECT_TRUE(cloud.GetPreviewsSet().empty());
}

TEST_F(FileInfoTest, CloudInfoKeepsPreviewsInAscendingOrderOfSize)
{
    auto cloud = CloudInfoOf("a");
    cloud.SetPreviewPathBySize(ioPath("/l"), PreviewSize::Large);
    cloud.SetPreviewPathBySize(ioPath("/s"), PreviewSize::Small);
    cloud.SetPreviewPathBySize(ioPath("/l2"), PreviewSize::Large);
    const std::map<PreviewSize, ioPath> expected = {{PreviewSize::Small, ioPath("/s")},
                                                    {PreviewSize::Large, ioPath("/l2")}};
    EXPECT_EQ(cloud.GetPreviewsSet(), expected);
    EXPECT_EQ(cloud.GetPreviewsSet().begin()->first, PreviewSize::Small);

    cloud.SetPreviewsSet({{PreviewSize::Medium, ioPath("/m")}});
    EXPECT_EQ(cloud.GetPreviewsSet().size(), 1u);
}

TEST_F(FileInfoTest, CloudInfosAreEqualWhenAllFieldsAre)
{
    const auto same = CloudInfoOf("a");
    EXPECT_TRUE(same == CloudInfoOf("a"));
    EXPECT_FALSE(same == CloudInfoOf("b"));
    auto withPreview = same;
    withPreview.SetPreviewPathBySize(ioPath("/p"), PreviewSize::Small);
    EXPECT_FALSE(same == withPreview);
}

TEST_F(FileInfoTest, CloudPartThatIsSetInPlaceBringsItsId)
{
    FileInfo file(ioPath("/a.pdf"), "hash");
    EXPECT_EQ(file.GetId(), "");
    file.GetRedactableCloudInfo().emplace(CloudInfoOf("a"));
    EXPECT_EQ(file.GetId(), "a");
    EXPECT_EQ(FileInfo(file).GetId(), "a");
}

TEST_F(FileInfoTest, RecordWithAnIdKeepsItWhateverIsSetInPlace)
{
    FileInfo file(CloudInfoOf("a"));
    file.GetRedactableCloudInfo().emplace(CloudInfoOf("b"));
    EXPECT_EQ(file.GetId(), "a");
}

TEST_F(FileInfoTest, IdOfACloudPartThatWasSetInPlaceStaysWhenTheCloudPartIsReplaced)
{
    FileInfo file(ioPath("/a.pdf"), "hash");
    file.GetRedactableCloudInfo().emplace(CloudInfoOf("a"));
    file.UpdateCloudInfo(CloudInfoOf("b"));
    EXPECT_EQ(file.GetId(), "a");
}

TEST_F(FileInfoTest, RecordFromTheCloudHasNoLocalSide)
{
    FileInfo file(CloudInfoOf("a"));
    EXPECT_EQ(file.GetId(), "a");
    EXPECT_TRUE(file.GetPath().empty());
    EXPECT_EQ(file.GetSize(), 0u);
    EXPECT_EQ(file.GetMd5Hash(), "");
    EXPECT_EQ(file.GetCloudHashBeforeChange(), "");
    EXPECT_FALSE(file.IsSyncingInProgress());
    EXPECT_TRUE(file.GetPreviewsSet().empty());
    EXPECT_TRUE(file.GetCloudInfo().has_value());
}

TEST_F(FileInfoTest, RecordOfALocalDocumentHasNoCloudSide)
{
    FileInfo file(Written("local.pdf", "12345"), "md5");
    EXPECT_EQ(file.GetId(), "");
    EXPECT_EQ(file.GetSize(), 5u);
    EXPECT_EQ(file.GetMd5Hash(), "md5");
    EXPECT_FALSE(file.GetCloudInfo().has_value());
    EXPECT_FALSE(file.GetRedactableCloudInfo().has_value());
}

TEST_F(FileInfoTest, IdStaysWhenTheCloudPartIsTakenAway)
{
    FileInfo file(CloudInfoOf("a"));
    file.GetRedactableCloudInfo().reset();
    EXPECT_EQ(file.GetId(), "a");
    EXPECT_FALSE(file.GetCloudInfo().has_value());
    EXPECT_EQ(FileInfo(file).GetId(), "a");
}

TEST_F(FileInfoTest, SetPathReadsTheSizeFromDisk)
{
    FileInfo file(CloudInfoOf("a"));
    file.SetPath(Written(QStringLiteral("Übersicht.pdf"), "12345678"), "md5");
    EXPECT_EQ(file.GetSize(), 8u);
    EXPECT_EQ(file.GetMd5Hash(), "md5");

    Written(QStringLiteral("Übersicht.pdf"), "1234");
    EXPECT_EQ(file.GetSize(), 8u);
    file.SetPath(file.GetPath(), "md5");
    EXPECT_EQ(file.GetSize(), 4u);
}

TEST_F(FileInfoTest, SetPathToNothingOrToAFolderGivesSizeZero)
{
    FileInfo file(CloudInfoOf("a"));
    file.SetPath(ioPath(folder.filePath("nothing").toStdString()), "md5");
    EXPECT_EQ(file.GetSize(), 0u);
    EXPECT_FALSE(file.GetPath().empty());
    EXPECT_EQ(file.GetMd5Hash(), "md5");
    file.SetPath(ioPath(folder.path().toStdString()), "md5");
    EXPECT_EQ(file.GetSize(), 0u);
}

TEST_F(FileInfoTest, LastSyncHashIsSetOnlyWhenGiven)
{
    FileInfo file(CloudInfoOf("a"));
    file.SetPath(ioPath("/a"), "local", "sync");
    EXPECT_EQ(file.GetCloudHashBeforeChange(), "sync");
    file.SetPath(ioPath("/b"), "local 2");
    EXPECT_EQ(file.GetCloudHashBeforeChange(), "sync");
    file.SetPath(ioPath("/b"), "local 2", "");
    EXPECT_EQ(file.GetCloudHashBeforeChange(), "");
}

TEST_F(FileInfoTest, EmptyPathClearsTheLocalSideButNotTheLastSyncHash)
{
    FileInfo file(CloudInfoOf("a"));
    file.SetPath(Written("local.pdf", "12345"), "local", "sync");
    file.SetPath(ioPath(), "hash of nothing");
    EXPECT_TRUE(file.GetPath().empty());
    EXPECT_EQ(file.GetSize(), 0u);
    EXPECT_EQ(file.GetMd5Hash(), "");
    EXPECT_EQ(file.GetCloudHashBeforeChange(), "sync");
}

TEST_F(FileInfoTest, CopyIsIndependent)
{
    FileInfo file(CloudInfoOf("a"));
    file.SetPath(Written("local.pdf", "12345"), "local", "sync");
    file.SetIsSyncingInProgress(true);
    file.SetPreviewsSet({{PreviewSize::Small, ioPath("/s")}});

    FileInfo copy(file);
    EXPECT_EQ(copy.GetSize(), 5u);
    EXPECT_EQ(copy.GetMd5Hash(), "local");
    EXPECT_EQ(copy.GetCloudHashBeforeChange(), "sync");
    EXPECT_TRUE(copy.IsSyncingInProgress());
    EXPECT_EQ(copy.GetPreviewsSet().size(), 1u);

    copy.GetRedactableCloudInfo()->SetPreviewPathBySize(ioPath("/p"), PreviewSize::Small);
    copy.SetPath(ioPath(), "");
    copy.SetPreviewsSet({});
    EXPECT_TRUE(file.GetRedactableCloudInfo()->GetPreviewsSet().empty());
    EXPECT_FALSE(file.GetPath().empty());
    EXPECT_EQ(file.GetPreviewsSet().size(), 1u);

    copy = file;
    EXPECT_EQ(copy.GetPath(), file.GetPath());
}

TEST_F(FileInfoTest, CloudInfoIsGivenAsACopyAndRedactableInPlace)
{
    FileInfo file(CloudInfoOf("a"));
    static_assert(std::is_same_v<decltype(file.GetCloudInfo()), std::optional<const FileInfo::CloudInfo>>);
    static_assert(std::is_same_v<decltype(file.GetRedactableCloudInfo()), std::optional<FileInfo::CloudInfo>&>);
    static_assert(std::has_virtual_destructor_v<FileInfo>);
    const auto before = file.GetCloudInfo();
    file.GetRedactableCloudInfo()->SetPreviewPathBySize(ioPath("/p"), PreviewSize::Small);
    EXPECT_FALSE(*before == *file.GetCloudInfo());
    EXPECT_EQ(FileInfo::CloudInfo(*file.GetCloudInfo()).GetPreviewsSet().size(), 1u);
}

TEST_F(FileInfoTest, PreviewSizesAreNumberedAndNamed)
{
    EXPECT_EQ(static_cast<int>(PreviewSize::Small), 0);
    EXPECT_EQ(static_cast<int>(PreviewSize::Medium), 1);
    EXPECT_EQ(static_cast<int>(PreviewSize::Large), 2);
    EXPECT_EQ(FileInfo::previewSizetoString(PreviewSize::Small), "small");
    EXPECT_EQ(FileInfo::previewSizetoString(PreviewSize::Medium), "medium");
    EXPECT_EQ(FileInfo::previewSizetoString(PreviewSize::Large), "large");
    EXPECT_EQ(FileInfo::previewSizetoString(static_cast<PreviewSize>(3)), "");
}

struct StatusCase {
    const char* name;
    const char* path;
    const char* local;
    const char* cloud;
    const char* lastSync;
    CloudStatus status;
};

class CloudStatusTest : public testing::TestWithParam<StatusCase> {};

TEST_P(CloudStatusTest, FollowsFromHashesAndPath)
{
    const auto& [name, path, local, cloud, lastSync, status] = GetParam();
    FileInfo file(FileInfo::CloudInfo("a", "a.pdf", 1, true, {}, {}, {}, 0, cloud));
    file.SetPath(ioPath(path), local, lastSync);
    EXPECT_EQ(file.GetCloudStatus(), status);
    EXPECT_NE(static_cast<int>(file.GetCloudStatus()), 4);
    EXPECT_NE(static_cast<int>(file.GetCloudStatus()), 5);
}

INSTANTIATE_TEST_SUITE_P(
    FileInfo, CloudStatusTest,
    testing::Values(StatusCase{"NoLocalCopy", "", "", "1", "", CloudStatus::OnlyInCloud},
                    StatusCase{"NoLocalCopyAnyMore", "", "", "1", "1", CloudStatus::OnlyInCloud},
                    StatusCase{"UnreadableLocalCopy", "/a", "", "1", "1", CloudStatus::OnlyInCloud},
                    StatusCase{"SameContent", "/a", "1", "1", "1", CloudStatus::InSync},
                    StatusCase{"SameContentNeverSynchronised", "/a", "1", "1", "", CloudStatus::InSync},
                    StatusCase{"SameContentAfterTheSameChange", "/a", "2", "2", "1", CloudStatus::InSync},
                    StatusCase{"LocalChange", "/a", "2", "1", "1", CloudStatus::ChangedLocally},
                    StatusCase{"CloudChange", "/a", "1", "2", "1", CloudStatus::ChangedInCloud},
                    StatusCase{"BothChanged", "/a", "2", "3", "1", CloudStatus::ChangedOnBothSides},
                    StatusCase{"DifferentAndNeverSynchronised", "/a", "2", "3", "", CloudStatus::ChangedOnBothSides},
                    StatusCase{"CloudWithoutHashAndNoLocalChange", "/a", "1", "", "1", CloudStatus::InSync},
                    StatusCase{"CloudWithoutHashAndLocalChange", "/a", "2", "", "1", CloudStatus::ChangedLocally}),
    [](const auto& info) { return info.param.name; });

TEST(CloudStatusNumbersTest, DocumentWithoutCloudPartIsNumberFive)
{
    FileInfo local(ioPath("/a"), "md5");
    EXPECT_EQ(static_cast<int>(local.GetCloudStatus()), 5);
    FileInfo formerly(CloudInfoOf("a"));
    formerly.GetRedactableCloudInfo().reset();
    EXPECT_EQ(formerly.GetCloudStatus(), CloudStatus::NotUploaded);
    EXPECT_EQ(static_cast<int>(CloudStatus::NoSuchDocument), 4);
}

} // namespace

} // namespace Norlis::Test
