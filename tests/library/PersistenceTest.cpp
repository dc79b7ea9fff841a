#include "FilesManagerBench.h"

namespace Norlis::Test {

namespace {

using Previews = std::map<FileInfo::PreviewSize, ioPath>;

/// What a list looks like after it was saved and loaded again.
class PersistenceTest : public FilesManagerTest {
protected:
    std::shared_ptr<FileInfo> SavedAndLoaded(const std::shared_ptr<FileInfo>& record)
    {
        manager->Add(record);
        manager.reset();
        Open();
        return manager->GetFileInfo(QString::fromStdString(record->GetId()));
    }

    Previews PreviewsSavedAndLoaded(const Previews& previews)
    {
        const auto record = RecordOf("a");
        record->SetPath(ioPath("/a.pdf"), "h");
        record->GetRedactableCloudInfo()->SetPreviewsSet(previews);
        fileSystem->existing = {"/a.pdf"};
        return SavedAndLoaded(record)->GetRedactableCloudInfo()->GetPreviewsSet();
    }
};

TEST_F(PersistenceTest, CloudPartSurvivesButForLifetimeAndModifiedTime)
{
    const auto loaded = SavedAndLoaded(RecordOf("a"));
    auto& cloud = loaded->GetRedactableCloudInfo().value();
    EXPECT_EQ(cloud.GetFileName(), "a.pdf");
    EXPECT_EQ(cloud.GetSize(), 1234u);
    EXPECT_TRUE(cloud.IsPrivate());
    EXPECT_EQ(cloud.GetDownloadUrl(), QUrl("https://cloud.example/files/a"));
    EXPECT_EQ(cloud.GetCreatedAt(), QDateTime({2024, 2, 29}, {12, 30, 45}, Qt::UTC));
    EXPECT_EQ(cloud.GetMd5Hash(), "cloud hash of a");
    EXPECT_FALSE(cloud.GetModifyTime().isValid());
    EXPECT_EQ(cloud.GetLifeTime(), 1);
}

TEST_F(PersistenceTest, CreationTimeLosesItsMilliseconds)
{
    const QDateTime created({2024, 2, 29}, {12, 30, 45, 678}, Qt::UTC);
    const auto loaded =
        SavedAndLoaded(std::make_shared<FileInfo>(FileInfo::CloudInfo("a", "", 0, false, {}, created, created, 0, "")));
    EXPECT_EQ(loaded->GetRedactableCloudInfo()->GetCreatedAt(), QDateTime({2024, 2, 29}, {12, 30, 45}, Qt::UTC));
}

TEST_F(PersistenceTest, LifetimeAndSizeAtTheirLimitsCanBeReadAgain)
{
    for (const int lifetime : {2147483647, -2147483647 - 1, 0}) {
        const auto loaded = SavedAndLoaded(
            std::make_shared<FileInfo>(FileInfo::CloudInfo("a", "", 4294967295, false, {}, {}, {}, lifetime, "")));
        EXPECT_EQ(loaded->GetRedactableCloudInfo()->GetLifeTime(), lifetime != 0 ? 1 : 0);
        EXPECT_EQ(loaded->GetRedactableCloudInfo()->GetSize(), 4294967295u);
        manager->Remove(loaded);
    }
}

TEST_F(PersistenceTest, SizeBeyond32BitsIsSavedButCannotBeLoaded)
{
    manager->Add(std::make_shared<FileInfo>(FileInfo::CloudInfo("a", "", 5368709120, false, {}, {}, {}, 0, "")));
    manager.reset();
    EXPECT_EQ(store->records["a"]["cloud_size"], "5368709120");
    EXPECT_THROW(Open(), std::out_of_range);
}

TEST_F(PersistenceTest, ThreePreviewsAreNotRestored)
{
    using Size = FileInfo::PreviewSize;
    EXPECT_TRUE(
        PreviewsSavedAndLoaded({{Size::Small, ioPath("/A")}, {Size::Medium, ioPath("/B")}, {Size::Large, ioPath("/C")}})
            .empty());
    EXPECT_EQ(store->records["a"]["preview_path"], "/A;/B;/C;");
}

TEST_F(PersistenceTest, TwoPreviewsAreRestoredAsTheFirstTwoSizesAndAnEmptyThird)
{
    using Size = FileInfo::PreviewSize;
    EXPECT_EQ(PreviewsSavedAndLoaded({{Size::Medium, ioPath("/A")}, {Size::Large, ioPath("/B")}}),
              (Previews{{Size::Small, ioPath("/A")}, {Size::Medium, ioPath("/B")}, {Size::Large, ioPath()}}));
}

TEST_F(PersistenceTest, OnePreviewIsNotRestored)
{
    EXPECT_TRUE(PreviewsSavedAndLoaded({{FileInfo::PreviewSize::Small, ioPath("/A")}}).empty());
}

TEST_F(PersistenceTest, LocalCopyThatIsGoneLeavesItsStoredFieldsAsTheyWere)
{
    store->records = {{"a", {{"file_path", "/gone.pdf"}, {"local_file_hash", "old"}, {"preview_path", "/1;/2;/3"}}}};
    Open();

    const auto calls = Close();

    for (const auto& call : calls) {
        EXPECT_THAT(call, testing::Not(testing::HasSubstr("file_path")));
        EXPECT_THAT(call, testing::Not(testing::HasSubstr("local_file_hash")));
    }
    EXPECT_EQ(store->records["a"]["file_path"], "/gone.pdf");
    EXPECT_EQ(store->records["a"]["local_file_hash"], "old");
    EXPECT_EQ(store->records["a"]["preview_path"], "");
}

TEST_F(PersistenceTest, RemovedRecordStaysAway)
{
    Add({"a", "b"});
    manager.reset();
    Open();
    manager->Remove(RecordOf("a"));
    EXPECT_EQ(store->records.count("a"), 0u);
    manager.reset();
    Open();
    EXPECT_THAT(Ids(), ElementsAre("b"));
}

TEST_F(PersistenceTest, OrderOfAdditionGivesWayToTheOrderOfIds)
{
    Add({"b", "c", "a"});
    EXPECT_THAT(Ids(), ElementsAre("a", "c", "b"));
    manager.reset();
    Open();
    EXPECT_THAT(Ids(), ElementsAre("c", "b", "a"));
}

} // namespace

} // namespace Norlis::Test
