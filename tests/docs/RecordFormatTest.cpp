// Holds docs/record-format.md to what the list and the store do.

#include <tests/support/SqliteFile.h>

#include <host/store/SqliteCloudInfoStorage.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/RecordingStore.h>
#include <NorlisTestKit/Records.h>

#include <QDataStream>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

using PreviewSize = PDF::FileInfo::PreviewSize;

QString Page()
{
    return Host::ContentOf(NORLIS_PROJECT "/docs/record-format.md");
}

/// The first group of every match.
QStringList Matches(const QString& text, const QString& pattern)
{
    QStringList found;
    auto matches = QRegularExpression(pattern, QRegularExpression::MultilineOption).globalMatch(text);
    while (matches.hasNext()) {
        found << matches.next().captured(1);
    }
    return found;
}

/// What the page says of a key, in a column of its table.
QString Column(const QString& key, int column)
{
    const QStringList row = Matches(Page(), "^(\\| `" + key + "` \\|.*)$");
    return row.isEmpty() ? QString() : row[0].split('|').value(column).trimmed();
}

class RecordFormatTest : public testing::Test {
protected:
    /// A document with a local copy and pictures, as it is stored.
    void StoreDocument()
    {
        PDF::Cloud::NorlisCloudFilesManager list(store, fileSystem, hashes);
        const auto record = TestKit::RecordOf("plan");
        record->SetPath(ioPath("/home/me/plan.pdf"), "hash of the local copy", "hash of the last synchronisation");
        record->GetRedactableCloudInfo()->SetPreviewsSet({{PreviewSize::Small, ioPath("/small.png")},
                                                          {PreviewSize::Medium, ioPath("/medium.png")},
                                                          {PreviewSize::Large, ioPath("/large.png")}});
        list.Add(record);
    }

    std::shared_ptr<TestKit::RecordingStore> store = std::make_shared<TestKit::RecordingStore>();
    std::shared_ptr<TestKit::FakeFileSystem> fileSystem = std::make_shared<TestKit::FakeFileSystem>();
    std::shared_ptr<TestKit::CountingHashCalculator> hashes = std::make_shared<TestKit::CountingHashCalculator>();
};

TEST_F(RecordFormatTest, PageListsTheKeysInTheOrderOfWriting)
{
    StoreDocument();
    QStringList written;
    for (const std::string& call : store->calls) {
        written += Matches(QString::fromStdString(call), "^SetValue\\(plan, (\\w+),");
    }
    QStringList shown;
    for (const QString& key : Matches(Page(), "^\\| `(\\w+)` \\|")) {
        if (Column(key, 2) != "never") {
            shown << key;
        }
    }
    EXPECT_EQ(shown, written);
    EXPECT_FALSE(written.isEmpty());
}

TEST_F(RecordFormatTest, PageListsTheKeysThatAreReadButNeverWritten)
{
    StoreDocument();
    store->records["plan"]["modified_time"] = "Sat Mar 1 06:07:08 2025";
    const PDF::Cloud::NorlisCloudFilesManager list(store, fileSystem, hashes);
    EXPECT_TRUE(list.GetModifiedDateTime(0).isValid());
    EXPECT_EQ(Column("modified_time", 2), "never");
}

TEST_F(RecordFormatTest, ExamplesInThePageAreTheValuesOfADocument)
{
    StoreDocument();
    const auto& fields = store->records["plan"];
    for (const auto& [key, value] : fields) {
        const QString example = Column(QString::fromStdString(key), 4);
        EXPECT_EQ(example, value.empty() ? QString() : '`' + QString::fromStdString(value) + '`') << key;
    }
}

TEST_F(RecordFormatTest, RecordWithoutFieldsIsADocumentOfWhichNothingIsKnown)
{
    store->records["plan"] = {};
    const PDF::Cloud::NorlisCloudFilesManager list(store, fileSystem, hashes);
    ASSERT_EQ(list.FilesCount(), 1);
    EXPECT_EQ(list.GetDocumentId(0), "plan");
    EXPECT_EQ(list.GetDocumentName(0), "");
    EXPECT_EQ(list.GetFileSize(0), 0);
    EXPECT_FALSE(list.GetModifiedDateTime(0).isValid());
    auto cloudInfo = list.GetFileInfo("plan")->GetRedactableCloudInfo().value();
    EXPECT_FALSE(cloudInfo.IsPrivate());
    EXPECT_EQ(cloudInfo.GetLifeTime(), 0);
    EXPECT_TRUE(cloudInfo.GetDownloadUrl().isEmpty());
}

TEST_F(RecordFormatTest, NumbersThatStopTheListAreThoseThatThePageNames)
{
    for (const QString& key : Matches(Page(), "^\\| `(\\w+)` \\|")) {
        StoreDocument();
        store->records["plan"][key.toStdString()] = "no number";
        const bool isNumber = Column(key, 5).contains("stops");
        const auto load = [&] { PDF::Cloud::NorlisCloudFilesManager(store, fileSystem, hashes); };
        if (isNumber) {
            EXPECT_THROW(load(), std::invalid_argument) << key.toStdString();
        } else {
            EXPECT_NO_THROW(load()) << key.toStdString();
        }
        store->records.clear();
    }
}

TEST_F(RecordFormatTest, SchemaInThePageIsThatOfAStore)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("records.sqlite");
    Host::SqliteCloudInfoStorage(file).SetValue("plan", "file_name", "plan.pdf");
    const auto ask = [&](const char* sql) { return QString::fromUtf8(Host::RunSql(file, sql)); };

    const QStringList schema = Matches(Page(), "^(CREATE TABLE[^;]+);");
    ASSERT_EQ(schema.size(), 1);
    EXPECT_EQ(schema[0].simplified(), ask("SELECT sql FROM sqlite_master WHERE type = 'table'").simplified());
    EXPECT_EQ(Matches(Page(), "^PRAGMA application_id = (\\d+);"), QStringList(ask("PRAGMA application_id")));
    EXPECT_EQ(Matches(Page(), "^PRAGMA user_version = (\\d+);"), QStringList(ask("PRAGMA user_version")));

    QDataStream fields(QByteArray::fromHex(ask("SELECT hex(fields) FROM records").toLatin1()));
    QByteArray key;
    QByteArray value;
    fields >> key >> value;
    EXPECT_EQ(key, "file_name");
    EXPECT_EQ(value, "plan.pdf");
    EXPECT_TRUE(fields.atEnd());
}

} // namespace

} // namespace Norlis::Test
