#include "FilesManagerBench.h"

#include <QFile>
#include <QTemporaryDir>

#include <locale>

namespace Norlis::Test {

namespace {

class FilesListQueryTest : public FilesManagerTest {
protected:
    /// Adds a document with a cloud size and, where a file is named, a local copy of that many bytes.
    void AddWithSizes(quint64 cloudSize, qint64 localSize = 0)
    {
        const auto record =
            std::make_shared<FileInfo>(FileInfo::CloudInfo("a", "a.pdf", cloudSize, true, {}, {}, {}, 0, ""));
        if (localSize != 0) {
            QFile local(folder.filePath("local.pdf"));
            ASSERT_TRUE(local.open(QIODevice::WriteOnly));
            ASSERT_TRUE(local.resize(localSize)); // takes no room on disk
            record->SetPath(ioPath(local.fileName().toStdString()), "hash");
        }
        manager->Add(record);
    }

    QTemporaryDir folder;
};

TEST_F(FilesListQueryTest, GettersReadTheRecordOfTheIndex)
{
    const auto record = std::make_shared<FileInfo>(
        FileInfo::CloudInfo("ид", "Übersicht.pdf", 99, true, {}, QDateTime({2001, 1, 1}, {}, Qt::UTC),
                            QDateTime({2025, 3, 1}, {6, 7, 8}, Qt::UTC), 0, "hash"));
    record->SetPath(ioPath("/home/me/Übersicht.pdf"), "hash");
    manager->Add(record);
    Add({"front"});

    EXPECT_EQ(manager->GetDocumentName(1), QStringLiteral("Übersicht.pdf"));
    EXPECT_EQ(manager->GetDocumentId(1), QStringLiteral("ид"));
    EXPECT_EQ(manager->GetDocumentPath(1), QStringLiteral("/home/me/Übersicht.pdf"));
    EXPECT_EQ(manager->GetModifiedDateTime(1), QDateTime({2025, 3, 1}, {6, 7, 8}, Qt::UTC));
    EXPECT_EQ(manager->GetDocumentState(1), static_cast<int>(record->GetCloudStatus()));
    EXPECT_EQ(manager->GetFileSize(1), 99);
    EXPECT_EQ(manager->GetDocumentPath(0), "");
    EXPECT_NE(manager->GetDocumentState(0), manager->GetDocumentState(1));
    EXPECT_THAT(Events(), IsEmpty());
}

/// As many locales have it.
struct GroupedDigits : std::numpunct<char> {
    char do_thousands_sep() const override
    {
        return '.';
    }
    std::string do_grouping() const override
    {
        return "\3";
    }
};

TEST_F(FilesListQueryTest, InvalidIndexIsLoggedInPlainDigitsWhateverTheLocale)
{
    for (int i = 0; i < 1000; ++i) {
        manager->Add(RecordOf("a"));
    }
    Events();
    const auto previous = std::locale::global(std::locale(std::locale(), new GroupedDigits));
    manager->GetDocumentId(-1234567);
    std::locale::global(previous);
    EXPECT_THAT(Events(), ElementsAre("ERROR Norlis::PDF::Cloud::NorlisCloudFilesManager::GetDocumentId: Invalid index "
                                      "requested: -1234567; max index: 1000"));
}

TEST_F(FilesListQueryTest, InvalidIndexIsLoggedByEveryGetterAndGivesItsDefault)
{
    Add({"a", "b", "c"});
    const std::string name = "ERROR Norlis::PDF::Cloud::NorlisCloudFilesManager::";

    for (const int index : {-1, 3, -2147483647 - 1, 2147483647}) {
        EXPECT_EQ(manager->GetDocumentName(index), QString());
        EXPECT_EQ(manager->GetPreviewsSet(index), (QMap<QString, QVariant>()));
        EXPECT_EQ(manager->GetDocumentId(index), QString());
        EXPECT_EQ(manager->GetDocumentPath(index), QString());
        EXPECT_TRUE(manager->GetModifiedDateTime(index).isNull());
        EXPECT_EQ(manager->GetDocumentState(index), 4);
        EXPECT_EQ(manager->GetFileSize(index), 0);

        const auto rest = ": Invalid index requested: " + std::to_string(index) + "; max index: 3";
        EXPECT_THAT(Events(), ElementsAre(name + "GetDocumentName" + rest, name + "GetPreviewsSet" + rest,
                                          name + "GetDocumentId" + rest, name + "GetDocumentPath" + rest,
                                          name + "GetModifiedDateTime" + rest, name + "GetDocumentState" + rest,
                                          name + "GetFileSize" + rest));
    }
    EXPECT_THAT(log.Sources(), ElementsAre("library/NorlisCloud/NorlisCloudFilesManager.cpp"));
}

TEST_F(FilesListQueryTest, EmptyListHasNoValidIndex)
{
    EXPECT_EQ(manager->GetDocumentState(0), 4);
    EXPECT_THAT(Events(), ElementsAre("ERROR Norlis::PDF::Cloud::NorlisCloudFilesManager::GetDocumentState: Invalid "
                                      "index requested: 0; max index: 0"));
}

TEST_F(FilesListQueryTest, RecordWithoutCloudPartGivesDefaultsInSilence)
{
    const auto record = RecordOf("a");
    manager->Add(record);
    Events();
    const auto cloud = std::exchange(record->GetRedactableCloudInfo(), std::nullopt);

    EXPECT_EQ(manager->GetDocumentName(0), QString());
    EXPECT_TRUE(manager->GetModifiedDateTime(0).isNull());
    EXPECT_EQ(manager->GetFileSize(0), 0);
    EXPECT_TRUE(manager->GetPreviewsSet(0).isEmpty());
    EXPECT_EQ(manager->GetDocumentId(0), "a");
    EXPECT_EQ(manager->GetDocumentState(0), 5);
    EXPECT_THAT(Events(), IsEmpty());

    record->GetRedactableCloudInfo().emplace(*cloud);
}

TEST_F(FilesListQueryTest, SizeIsThatOfTheLocalCopyWhereThereIsOne)
{
    AddWithSizes(100, 7);
    EXPECT_EQ(manager->GetFileSize(0), 7);
}

TEST_F(FilesListQueryTest, SizeIsThatOfTheCloudCopyOtherwise)
{
    AddWithSizes(100);
    EXPECT_EQ(manager->GetFileSize(0), 100);
}

TEST_F(FilesListQueryTest, SizesKeepTheirLow32Bits)
{
    AddWithSizes(5368709120); // 5 GiB
    EXPECT_EQ(manager->GetFileSize(0), 1073741824);
    AddWithSizes(3221225472); // 3 GiB
    EXPECT_EQ(manager->GetFileSize(0), -1073741824);
    AddWithSizes(18446744073709551615u);
    EXPECT_EQ(manager->GetFileSize(0), -1);
}

TEST_F(FilesListQueryTest, LocalSizeWhoseLow32BitsAreZeroIsStillTheLocalSize)
{
    AddWithSizes(100, 4294967296);
    EXPECT_EQ(manager->GetFileSize(0), 0);
}

TEST_F(FilesListQueryTest, PreviewsAreFileUrlsByTheNameOfTheirSize)
{
    const auto record = RecordOf("a");
    record->GetRedactableCloudInfo()->SetPreviewsSet({{FileInfo::PreviewSize::Large, ioPath("/tmp/groß 100%.png")},
                                                      {FileInfo::PreviewSize::Small, ioPath("/tmp/s.png")}});
    record->SetPreviewsSet({{FileInfo::PreviewSize::Medium, ioPath("/tmp/of the record itself.png")}});
    manager->Add(record);

    const QMap<QString, QVariant> expected = {
        {"small", QUrl::fromLocalFile("/tmp/s.png")},
        {"large", QUrl::fromLocalFile(QStringLiteral("/tmp/groß 100%.png"))},
    };
    EXPECT_EQ(manager->GetPreviewsSet(0), expected);
    EXPECT_EQ(manager->GetPreviewsSet(0)["small"].userType(), QMetaType::QUrl);
}

TEST_F(FilesListQueryTest, PreviewsOfSizesWithTheSameNameReplaceEachOther)
{
    const auto record = RecordOf("a");
    record->GetRedactableCloudInfo()->SetPreviewsSet({{static_cast<FileInfo::PreviewSize>(8), ioPath("/8.png")},
                                                      {static_cast<FileInfo::PreviewSize>(9), ioPath("/9.png")}});
    manager->Add(record);
    EXPECT_EQ(manager->GetPreviewsSet(0), (QMap<QString, QVariant>{{"", QUrl::fromLocalFile("/9.png")}}));
}

TEST_F(FilesListQueryTest, FileInfoIsAnIndependentCopyOfTheHeldRecord)
{
    const auto held = RecordOf("ид");
    held->SetPath(ioPath("/a.pdf"), "hash", "sync");
    held->SetIsSyncingInProgress(true);
    held->SetPreviewsSet({{FileInfo::PreviewSize::Small, ioPath("/p")}});
    manager->Add(held);

    const auto copy = manager->GetFileInfo(QStringLiteral("ид"));
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, held);
    EXPECT_EQ(copy->GetId(), "ид");
    EXPECT_EQ(copy->GetPath(), ioPath("/a.pdf"));
    EXPECT_EQ(copy->GetMd5Hash(), "hash");
    EXPECT_EQ(copy->GetCloudHashBeforeChange(), "sync");
    EXPECT_TRUE(copy->IsSyncingInProgress());
    EXPECT_EQ(copy->GetPreviewsSet(), held->GetPreviewsSet());
    EXPECT_EQ(copy->GetRedactableCloudInfo()->GetFileName(), "ид.pdf");

    copy->SetPath(ioPath("/changed"), "");
    copy->GetRedactableCloudInfo().reset();
    EXPECT_EQ(manager->GetDocumentPath(0), "/a.pdf");
    EXPECT_EQ(manager->GetDocumentName(0), QStringLiteral("ид.pdf"));
}

TEST_F(FilesListQueryTest, FileInfoOfAnUnknownIdIsNull)
{
    Add({"a"});
    EXPECT_EQ(manager->GetFileInfo("A"), nullptr);
    EXPECT_EQ(manager->GetFileInfo(""), nullptr);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(FilesListQueryTest, IdByPathComparesNormalizedPathsFromTheFrontAndStopsAtTheFirst)
{
    fileSystem->normalize = [](const std::string& path) {
        return QString::fromStdString(path).toLower().toStdString();
    };
    for (const auto& [id, path] : {std::pair("a", "/X.PDF"), {"b", "/y.pdf"}, {"c", "/x.pdf"}, {"d", "/z.pdf"}}) {
        const auto record = RecordOf(id);
        record->SetPath(ioPath(path), "");
        manager->Add(record);
    }
    fileSystem->calls.clear();

    EXPECT_EQ(manager->GetIdByPath(ioPath("/x.Pdf")), "c");
    EXPECT_THAT(fileSystem->calls,
                ElementsAre("NormalizePath(/x.Pdf)", "NormalizePath(/z.pdf)", "NormalizePath(/x.pdf)"));
    EXPECT_EQ(manager->GetIdByPath(ioPath("/Y.PDF")), "b");
    EXPECT_EQ(manager->GetIdByPath(ioPath("/unknown.pdf")), "");
}

TEST_F(FilesListQueryTest, EmptyPathFindsTheFirstRecordWithoutLocalCopy)
{
    Add({"a", "b"});
    EXPECT_EQ(manager->GetIdByPath(ioPath()), "b");
}

TEST_F(FilesListQueryTest, GettersTouchNeitherStoreNorHashCalculator)
{
    Add({"a"});
    store->calls.clear();
    manager->GetDocumentName(0);
    manager->GetFileInfo("a");
    manager->GetIdByPath(ioPath("/a"));
    manager->GetFileSize(0);
    EXPECT_THAT(store->calls, IsEmpty());
    EXPECT_THAT(hashes->asked, IsEmpty());
}

} // namespace

} // namespace Norlis::Test
