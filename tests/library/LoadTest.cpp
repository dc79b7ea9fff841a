#include "FilesManagerBench.h"

namespace Norlis::Test {

namespace {

class LoadTest : public FilesManagerTest {
protected:
    /// What the list restores from one stored record.
    FileInfo::CloudInfo Loaded(const RecordingStore::Fields& fields)
    {
        store->records = {{"a", fields}};
        Open();
        return *manager->GetFileInfo("a")->GetRedactableCloudInfo();
    }

    /// The same for a record with a local copy at /local.pdf.
    std::shared_ptr<FileInfo> LoadedWithLocalCopy(RecordingStore::Fields fields)
    {
        fields["file_path"] = "/local.pdf";
        fileSystem->existing = {"/local.pdf"};
        Loaded(fields);
        return manager->GetFileInfo("a");
    }

    template <typename Exception>
    void ExpectLoadThrows(const RecordingStore::Fields& fields, const std::string& text)
    {
        manager.reset();
        store->records = {{"0 good", {}}, {"1 bad", fields}};
        store->calls.clear();
        journal->Take();
        try {
            Open();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::exception& error) {
            EXPECT_EQ(typeid(error), typeid(Exception));
            EXPECT_EQ(error.what(), text);
        }
        EXPECT_THAT(store->calls, ElementsAre("ReadAll()"));
        EXPECT_THAT(Events(), IsEmpty());
    }
};

TEST_F(LoadTest, RecordsAreRestoredInDescendingOrderOfTheirIds)
{
    store->records = {{"b", {}}, {"a", {}}, {"c", {}}, {"C", {}}, {"é", {}}};
    Open();
    EXPECT_THAT(Ids(), ElementsAre("é", "c", "b", "a", "C"));
}

TEST_F(LoadTest, StoreIsReadOnceAndNothingIsWrittenOrEmitted)
{
    store->records = {{"a", {{"file_name", "a.pdf"}}}};
    store->calls.clear();
    journal->Take();
    auto fresh = std::make_unique<NorlisCloudFilesManager>(store, fileSystem, hashes);
    EXPECT_THAT(store->calls, ElementsAre("ReadAll()"));
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(LoadTest, EveryFieldReachesTheRecord)
{
    auto cloud = Loaded({{"file_hash", "cloud hash"},
                         {"file_name", "Übersicht.pdf"},
                         {"is_private", "1"},
                         {"download_url", "https://cloud.example/a b?x=1"},
                         {"created_at", "Thu Feb 29 12:30:45 2024 GMT"},
                         {"modified_time", "Sat Mar 1 06:07:08 2025"},
                         {"lifetime_in_sec", "3600"},
                         {"cloud_size", "4294967295"},
                         {"unknown key", "ignored"}});

    EXPECT_EQ(manager->GetDocumentId(0), "a");
    EXPECT_EQ(cloud.GetMd5Hash(), "cloud hash");
    EXPECT_EQ(cloud.GetFileName(), "Übersicht.pdf");
    EXPECT_TRUE(cloud.IsPrivate());
    EXPECT_EQ(cloud.GetDownloadUrl(), QUrl("https://cloud.example/a%20b?x=1"));
    EXPECT_EQ(cloud.GetCreatedAt(), QDateTime({2024, 2, 29}, {12, 30, 45}, Qt::UTC));
    EXPECT_EQ(cloud.GetModifyTime(), QDateTime({2025, 3, 1}, {6, 7, 8}, Qt::LocalTime));
    EXPECT_EQ(cloud.GetLifeTime(), 1);
    EXPECT_EQ(cloud.GetSize(), 4294967295u);
    EXPECT_TRUE(cloud.GetPreviewsSet().empty());
}

TEST_F(LoadTest, MissingKeysHaveDefaults)
{
    auto cloud = Loaded({});
    EXPECT_EQ(cloud.GetMd5Hash(), "");
    EXPECT_EQ(cloud.GetFileName(), "");
    EXPECT_FALSE(cloud.IsPrivate());
    EXPECT_TRUE(cloud.GetDownloadUrl().isEmpty());
    EXPECT_FALSE(cloud.GetCreatedAt().isValid());
    EXPECT_FALSE(cloud.GetModifyTime().isValid());
    EXPECT_EQ(cloud.GetLifeTime(), 0);
    EXPECT_EQ(cloud.GetSize(), 0u);
    EXPECT_EQ(manager->GetDocumentPath(0), "");
    EXPECT_EQ(manager->GetFileInfo("a")->GetMd5Hash(), "");
    EXPECT_EQ(manager->GetFileInfo("a")->GetCloudHashBeforeChange(), "");
    EXPECT_FALSE(manager->GetFileInfo("a")->IsSyncingInProgress());
}

TEST_F(LoadTest, TimeThatIsNotInTextFormIsInvalid)
{
    EXPECT_FALSE(Loaded({{"created_at", "2024-02-29T12:30:45Z"}}).GetCreatedAt().isValid());
    EXPECT_FALSE(Loaded({{"modified_time", "soon"}}).GetModifyTime().isValid());
}

TEST_F(LoadTest, LifetimeIsReducedToWhetherThereIsOne)
{
    for (const auto& [text, lifetime] : {std::pair("3600", 1),
                                         {"1", 1},
                                         {"-5", 1},
                                         {" +7 seconds", 1},
                                         {"2147483647", 1},
                                         {"-2147483648", 1},
                                         {"0", 0},
                                         {"-0", 0},
                                         {"00", 0},
                                         {"0x10", 0}}) {
        EXPECT_EQ(Loaded({{"lifetime_in_sec", text}}).GetLifeTime(), lifetime) << text;
    }
}

TEST_F(LoadTest, RecordIsPrivateWhenTheNumberIsNotZero)
{
    for (const auto& [text, isPrivate] : {std::pair("1", true),
                                          {"-1", true},
                                          {"7", true},
                                          {"\t2x", true},
                                          {"0", false},
                                          {"0x1", false},
                                          {"+0", false}}) {
        EXPECT_EQ(Loaded({{"is_private", text}}).IsPrivate(), isPrivate) << text;
    }
}

TEST_F(LoadTest, SizeIsReadAsUnsigned32BitNumber)
{
    for (const auto& [text, size] : {std::pair<const char*, quint64>("0", 0),
                                     {"12 bytes", 12},
                                     {" \t\n\v\f\r42", 42},
                                     {"+8", 8},
                                     {"007", 7},
                                     {"-1", 4294967295},
                                     {"-4294967295", 1},
                                     {"0x10", 0},
                                     {"1.9", 1},
                                     {"1e3", 1},
                                     {"4294967295", 4294967295}}) {
        EXPECT_EQ(Loaded({{"cloud_size", text}}).GetSize(), size) << text;
    }
}

TEST_F(LoadTest, MalformedSizeLeavesTheConstructor)
{
    for (const auto* text : {"", " ", "x", "-", "+", "+-1", "- 1", ".5", "\u0664"}) {
        ExpectLoadThrows<std::invalid_argument>({{"cloud_size", text}}, "invalid stoul argument");
    }
    for (const auto* text :
         {"4294967296", "5368709120", "-4294967296", "18446744073709551616", "99999999999999999999999999999999"}) {
        ExpectLoadThrows<std::out_of_range>({{"cloud_size", text}}, "stoul argument out of range");
    }
}

TEST_F(LoadTest, MalformedSignedNumbersLeaveTheConstructor)
{
    for (const auto* key : {"is_private", "lifetime_in_sec"}) {
        for (const auto* text : {"", "true", "--1", "\n"}) {
            ExpectLoadThrows<std::invalid_argument>({{key, text}}, "invalid stoi argument");
        }
        for (const auto* text : {"2147483648", "-2147483649", "18446744073709551616"}) {
            ExpectLoadThrows<std::out_of_range>({{key, text}}, "stoi argument out of range");
        }
    }
}

TEST_F(LoadTest, SizeIsReadBeforeTheOtherNumbers)
{
    ExpectLoadThrows<std::out_of_range>({{"cloud_size", "5368709120"}, {"is_private", "x"}},
                                        "stoul argument out of range");
    ExpectLoadThrows<std::out_of_range>({{"is_private", "2147483648"}, {"lifetime_in_sec", "x"}},
                                        "stoi argument out of range");
}

TEST_F(LoadTest, LocalCopyIsRehashedAndKeepsTheHashOfTheLastSynchronisation)
{
    hashes->hashes["/local.pdf"] = "hash of today";

    const auto record =
        LoadedWithLocalCopy({{"local_file_hash", "hash of yesterday"}, {"last_sync_file_hash", "sync"}});

    EXPECT_EQ(record->GetPath(), ioPath("/local.pdf"));
    EXPECT_EQ(record->GetMd5Hash(), "hash of today");
    EXPECT_EQ(record->GetCloudHashBeforeChange(), "sync");
    EXPECT_THAT(hashes->asked, ElementsAre("/local.pdf"));
}

TEST_F(LoadTest, PathIsNormalizedBeforeItIsLookedUp)
{
    fileSystem->normalize = [](const std::string& path) { return "/n" + path; };
    fileSystem->existing = {"/n/a.pdf"};
    fileSystem->calls.clear();

    Loaded({{"file_path", "/a.pdf"}});

    EXPECT_THAT(fileSystem->calls, ElementsAre("NormalizePath(/a.pdf)", "Exists(/n/a.pdf)"));
    EXPECT_EQ(manager->GetDocumentPath(0), "/n/a.pdf");
    EXPECT_THAT(hashes->asked, ElementsAre("/n/a.pdf"));
}

TEST_F(LoadTest, MissingPathIsLookedUpAsTheEmptyOne)
{
    fileSystem->calls.clear();
    Loaded({});
    EXPECT_THAT(fileSystem->calls, ElementsAre("NormalizePath()", "Exists()"));
}

TEST_F(LoadTest, MissingLocalFileLeavesNoPathHashesOrPreviews)
{
    Loaded({{"file_path", "/gone.pdf"},
            {"local_file_hash", "h"},
            {"last_sync_file_hash", "s"},
            {"preview_path", "/1;/2;/3"}});

    const auto record = manager->GetFileInfo("a");
    EXPECT_TRUE(record->GetPath().empty());
    EXPECT_EQ(record->GetMd5Hash(), "");
    EXPECT_EQ(record->GetCloudHashBeforeChange(), "");
    EXPECT_TRUE(manager->GetPreviewsSet(0).isEmpty());
    EXPECT_THAT(hashes->asked, IsEmpty());
}

TEST_F(LoadTest, PreviewsAreTakenFromExactlyThreeParts)
{
    using Size = FileInfo::PreviewSize;
    const auto record = LoadedWithLocalCopy({{"preview_path", "/ä.png;/b.png;/c.png"}});
    const std::map<Size, ioPath> expected = {
        {Size::Small, ioPath("/ä.png")}, {Size::Medium, ioPath("/b.png")}, {Size::Large, ioPath("/c.png")}};
    EXPECT_EQ(record->GetRedactableCloudInfo()->GetPreviewsSet(), expected);
    EXPECT_TRUE(record->GetPreviewsSet().empty());
}

TEST_F(LoadTest, EmptyPartsCount)
{
    using Size = FileInfo::PreviewSize;
    const auto record = LoadedWithLocalCopy({{"preview_path", ";/b.png;"}});
    const std::map<Size, ioPath> expected = {
        {Size::Small, ioPath()}, {Size::Medium, ioPath("/b.png")}, {Size::Large, ioPath()}};
    EXPECT_EQ(record->GetRedactableCloudInfo()->GetPreviewsSet(), expected);
}

TEST_F(LoadTest, AnyOtherNumberOfPartsIsIgnored)
{
    for (const auto* text : {"", "/a", "/a;", "/a;/b", "/a;/b;/c;", ";;;", "/a;/b;/c;/d"}) {
        const auto record = LoadedWithLocalCopy({{"preview_path", text}});
        EXPECT_TRUE(record->GetRedactableCloudInfo()->GetPreviewsSet().empty()) << text;
    }
    EXPECT_TRUE(LoadedWithLocalCopy({})->GetRedactableCloudInfo()->GetPreviewsSet().empty());
}

TEST_F(LoadTest, LoadedRecordsAreNoCandidatesForDeletion)
{
    Loaded({});
    EXPECT_THAT(Close(), testing::Not(Contains("RemoveRecord(a)")));
}

TEST_F(LoadTest, ExceptionsOfCollaboratorsReachTheCaller)
{
    class BrokenHashCalculator : public PDF::IHashCalculator {
        std::string CalculateHash(const ioPath&) override
        {
            throw std::runtime_error("unreadable");
        }
    };
    store->records = {{"a", {{"file_path", "/a.pdf"}}}};
    fileSystem->existing = {"/a.pdf"};
    EXPECT_THROW(NorlisCloudFilesManager(store, fileSystem, std::make_shared<BrokenHashCalculator>()),
                 std::runtime_error);
    store->records.clear();
}

} // namespace

} // namespace Norlis::Test
