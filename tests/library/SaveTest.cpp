#include "FilesManagerBench.h"

namespace Norlis::Test {

namespace {

class SaveTest : public FilesManagerTest {
protected:
    /// What is stored of a record.
    RecordingStore::Fields Stored(const std::shared_ptr<FileInfo>& record)
    {
        Open();
        manager->Add(record);
        manager.reset();
        return store->records[record->GetId()];
    }

    static std::shared_ptr<FileInfo> With(const FileInfo::CloudInfo& cloudInfo)
    {
        return std::make_shared<FileInfo>(cloudInfo);
    }
};

TEST_F(SaveTest, RecordWithLocalCopyIsWrittenInAFixedOrder)
{
    const auto record = RecordOf("a");
    record->SetPath(ioPath("/home/me/ä.pdf"), "local", "sync");
    record->GetRedactableCloudInfo()->SetPreviewsSet(
        {{FileInfo::PreviewSize::Large, ioPath("/l.png")}, {FileInfo::PreviewSize::Small, ioPath("/s.png")}});
    manager->Add(record);

    EXPECT_THAT(Close(),
                ElementsAre("SetValue(a, file_path, /home/me/ä.pdf)", "SetValue(a, local_file_hash, local)",
                            "SetValue(a, file_hash, cloud hash of a)", "SetValue(a, last_sync_file_hash, sync)",
                            "SetValue(a, file_name, a.pdf)", "SetValue(a, is_private, 1)",
                            "SetValue(a, download_url, https://cloud.example/files/a)",
                            "SetValue(a, created_at, Thu Feb 29 12:30:45 2024 GMT)",
                            "SetValue(a, lifetime_in_sec, 3600)", "SetValue(a, cloud_size, 1234)",
                            "SetValue(a, preview_path, /s.png;/l.png;)"));
}

TEST_F(SaveTest, RecordWithoutLocalCopyWritesNeitherPathNorLocalHash)
{
    Add({"a"});
    EXPECT_THAT(Close(), ElementsAre("SetValue(a, file_hash, cloud hash of a)", "SetValue(a, last_sync_file_hash, )",
                                     "SetValue(a, file_name, a.pdf)", "SetValue(a, is_private, 1)",
                                     "SetValue(a, download_url, https://cloud.example/files/a)",
                                     "SetValue(a, created_at, Thu Feb 29 12:30:45 2024 GMT)",
                                     "SetValue(a, lifetime_in_sec, 3600)", "SetValue(a, cloud_size, 1234)",
                                     "SetValue(a, preview_path, )"));
}

TEST_F(SaveTest, RemovedIdsAreDeletedFirstInAscendingOrderThenTheRecordsFromTheFront)
{
    Add({"c", "a", "b", "y", "x"});
    for (const auto* id : {"c", "a", "b"}) {
        manager->Remove(RecordOf(id));
    }
    auto calls = Close();
    ASSERT_EQ(calls.size(), 3u + 2u * 9u);
    EXPECT_EQ(calls[0], "RemoveRecord(a)");
    EXPECT_EQ(calls[1], "RemoveRecord(b)");
    EXPECT_EQ(calls[2], "RemoveRecord(c)");
    EXPECT_EQ(calls[3], "SetValue(x, file_hash, cloud hash of x)");
    EXPECT_EQ(calls[12], "SetValue(y, file_hash, cloud hash of y)");
}

TEST_F(SaveTest, RecordAddedAgainIsNotDeleted)
{
    Add({"a"});
    manager->Remove(RecordOf("a"));
    Add({"a"});
    EXPECT_THAT(Close(), testing::Not(Contains("RemoveRecord(a)")));
    EXPECT_EQ(store->records.count("a"), 1u);
}

TEST_F(SaveTest, RecordRemovedAddedAndRemovedAgainIsDeleted)
{
    Add({"a"});
    manager->Remove(RecordOf("a"));
    Add({"a"});
    manager->Remove(RecordOf("a"));
    EXPECT_THAT(Close(), ElementsAre("RemoveRecord(a)"));
}

TEST_F(SaveTest, OneOfTwoRecordsOfAnIdRemovedIsDeletedAndThenWrittenAgain)
{
    Add({"a", "a"});
    manager->Remove(RecordOf("a"));
    const auto calls = Close();
    EXPECT_EQ(calls.front(), "RemoveRecord(a)");
    EXPECT_EQ(store->records["a"]["file_name"], "a.pdf");
}

TEST_F(SaveTest, NumbersArePlainDecimal)
{
    auto fields = Stored(With({"a", "", 18446744073709551615u, false, {}, {}, {}, -2147483647 - 1, ""}));
    EXPECT_EQ(fields["cloud_size"], "18446744073709551615");
    EXPECT_EQ(fields["lifetime_in_sec"], "-2147483648");
    EXPECT_EQ(fields["is_private"], "0");

    store->records.clear();
    fields = Stored(With({"b", "", 0, true, {}, {}, {}, 0, ""}));
    EXPECT_EQ(fields["cloud_size"], "0");
    EXPECT_EQ(fields["lifetime_in_sec"], "0");
    EXPECT_EQ(fields["is_private"], "1");
}

TEST_F(SaveTest, UrlIsWrittenInItsDefaultForm)
{
    const QUrl url = QUrl::fromEncoded("https://me:pw@cloud.example:8443/f%C3%BCr%20alle%2Fx/?q=a%26b#top");
    auto fields = Stored(With({"a", "", 0, false, url, {}, {}, 0, ""}));
    EXPECT_EQ(fields["download_url"], "https://me:pw@cloud.example:8443/für alle%2Fx/?q=a%26b#top");
    EXPECT_EQ(fields["download_url"], url.toString().toStdString());
}

TEST_F(SaveTest, InvalidCreationTimeIsWrittenAsEmptyText)
{
    auto fields = Stored(With({"a", "", 0, false, {}, QDateTime(), QDateTime(), 0, ""}));
    EXPECT_EQ(fields.at("created_at"), "");
}

TEST_F(SaveTest, ModifiedTimeStatusSyncingAndLocalSizeAreNeverWritten)
{
    const auto record = RecordOf("a");
    record->SetPath(ioPath("/a.pdf"), "h");
    record->SetIsSyncingInProgress(true);
    record->SetPreviewsSet({{FileInfo::PreviewSize::Small, ioPath("/own.png")}});
    const auto fields = Stored(record);
    EXPECT_EQ(fields.size(), 11u);
    EXPECT_EQ(fields.count("modified_time"), 0u);
    EXPECT_EQ(fields.at("preview_path"), "");
}

TEST_F(SaveTest, NothingIsSavedBeforeDestruction)
{
    store->calls.clear();
    Add({"a"});
    manager->Update(RecordOf("a"));
    manager->GetFileInfo("a");
    manager->Clear();
    EXPECT_THAT(store->calls, IsEmpty());
}

TEST_F(SaveTest, SavingEmitsNothing)
{
    Add({"a", "b"});
    manager->Remove(RecordOf("b"));
    Events();
    Close();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(SaveTest, EmptyListWritesNothing)
{
    EXPECT_THAT(Close(), IsEmpty());
}

TEST_F(SaveTest, RecordsWhoseCloudPartWasSetInPlaceKeepRecordsOfTheirOwn)
{
    for (const std::string id : {"a", "b"}) {
        const auto record = std::make_shared<FileInfo>(ioPath('/' + id + ".pdf"), "hash");
        record->GetRedactableCloudInfo().emplace(CloudInfoOf(id));
        manager->Add(record);
    }
    Close();
    EXPECT_EQ(store->records.size(), 2u);
    EXPECT_EQ(store->records["a"]["file_name"], "a.pdf");
    EXPECT_EQ(store->records["b"]["file_name"], "b.pdf");
}

using SaveDeathTest = SaveTest;

TEST_F(SaveDeathTest, RecordWithoutCloudPartIsFatal)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            const auto record = RecordOf("a");
            record->GetRedactableCloudInfo().reset();
            manager->Add(record);
            manager.reset();
        },
        "bad_optional_access|bad optional access");
}

} // namespace

} // namespace Norlis::Test
