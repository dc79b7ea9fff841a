#include <host/store/SqliteCloudInfoStorage.h>

#include <tests/support/SqliteFile.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace Norlis::Host {

namespace {

using testing::IsEmpty;
using Records = std::map<std::string, std::map<std::string, std::string>>;

class SqliteCloudInfoStorageTest : public testing::Test {
protected:
    /// What a later start of the program finds.
    Records ReadBack() const
    {
        return SqliteCloudInfoStorage(file).ReadAll();
    }

    const QTemporaryDir folder;
    const QString file = folder.filePath("documents.sqlite");
};

TEST_F(SqliteCloudInfoStorageTest, NewStoreIsEmpty)
{
    EXPECT_THAT(ReadBack(), IsEmpty());
    EXPECT_THAT(ReadBack(), IsEmpty());
}

TEST_F(SqliteCloudInfoStorageTest, CommittedValuesAreReadBackByTheNextStart)
{
    const Records records{{"a", {{"name", "A"}, {"size", "1"}}}, {"b", {{"name", "B"}}}};
    {
        SqliteCloudInfoStorage storage(file);
        storage.SetValue("b", "name", "B");
        storage.SetValue("a", "size", "1");
        storage.SetValue("a", "name", "A");
        EXPECT_EQ(storage.ReadAll(), records);
        storage.Commit();
    }
    EXPECT_EQ(ReadBack(), records);
}

TEST_F(SqliteCloudInfoStorageTest, DestructorCommits)
{
    SqliteCloudInfoStorage(file).SetValue("a", "name", "A");

    EXPECT_EQ(ReadBack(), (Records{{"a", {{"name", "A"}}}}));
}

TEST_F(SqliteCloudInfoStorageTest, ValueReplacesTheOneBefore)
{
    SqliteCloudInfoStorage storage(file);
    storage.SetValue("a", "name", "old");
    storage.Commit();
    storage.SetValue("a", "name", "new");
    storage.SetValue("a", "name", "newest");

    EXPECT_EQ(storage.ReadAll(), (Records{{"a", {{"name", "newest"}}}}));
}

TEST_F(SqliteCloudInfoStorageTest, RemovedRecordLosesAllItsFieldsAndNoOther)
{
    {
        SqliteCloudInfoStorage storage(file);
        for (const auto* id : {"a", "ab", "b", ""}) {
            storage.SetValue(id, "name", "x");
            storage.SetValue(id, "size", "1");
        }
        storage.Commit();
        storage.RemoveRecord("a");
        storage.RemoveRecord("unknown");
    }
    const std::map<std::string, std::string> fields{{"name", "x"}, {"size", "1"}};
    EXPECT_EQ(ReadBack(), (Records{{"", fields}, {"ab", fields}, {"b", fields}}));
}

TEST_F(SqliteCloudInfoStorageTest, RemovedRecordCanBeWrittenAgain)
{
    {
        SqliteCloudInfoStorage storage(file);
        storage.SetValue("a", "name", "x");
        storage.SetValue("a", "size", "1");
        storage.RemoveRecord("a");
        storage.SetValue("a", "name", "y");
    }
    EXPECT_EQ(ReadBack(), (Records{{"a", {{"name", "y"}}}}));
}

TEST_F(SqliteCloudInfoStorageTest, AnyBytesSurvive)
{
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
    }
    const std::vector<std::string> texts{"",
                                         std::string("a\0b", 3),
                                         std::string(1, '\0'),
                                         "\xff\xfe not UTF-8",
                                         "Résumé – Zoë.pdf",
                                         "'; DROP TABLE records; --",
                                         "1e3",
                                         everyByte,
                                         std::string(3'000'000, 'x')};
    Records records;
    for (const auto& id : texts) {
        for (const auto& key : texts) {
            records[id][key] = key;
        }
    }
    {
        SqliteCloudInfoStorage storage(file);
        for (const auto& [id, fields] : records) {
            for (const auto& [key, value] : fields) {
                storage.SetValue(id, key, value);
            }
        }
    }
    EXPECT_TRUE(ReadBack() == records); // no print of megabytes
}

TEST_F(SqliteCloudInfoStorageTest, ManyRecordsComeBackWhateverOrderTheyWereWrittenIn)
{
    Records records;
    {
        SqliteCloudInfoStorage storage(file);
        for (int number = 0; number < 5000; ++number) {
            const std::string id = std::to_string(number * 7919 % 5000);
            storage.SetValue(id, "number", id);
            storage.SetValue(id, "name", "document " + id);
            records[id] = {{"number", id}, {"name", "document " + id}};
        }
    }
    EXPECT_EQ(ReadBack(), records);
}

TEST_F(SqliteCloudInfoStorageTest, SavingWhatStandsThereAlreadyWritesNothing)
{
    SqliteCloudInfoStorage storage(file);
    storage.SetValue("a", "name", "A");
    storage.Commit();
    const auto sizeBefore = QFileInfo(file + "-wal").size();
    ASSERT_GT(sizeBefore, 0);

    storage.SetValue("a", "name", "A");
    storage.Commit();

    EXPECT_EQ(QFileInfo(file + "-wal").size(), sizeBefore);
}

/// Two programs that have the file open, and have read what is in it.
class SharedSqliteCloudInfoStorageTest : public SqliteCloudInfoStorageTest {
protected:
    SharedSqliteCloudInfoStorageTest()
    {
        Save(one, before);
        one.Commit();
        one.ReadAll();
        other.ReadAll();
    }

    /// As the file list does at its end.
    static void Save(SqliteCloudInfoStorage& storage, const Records& records)
    {
        for (const auto& [id, fields] : records) {
            for (const auto& [key, value] : fields) {
                storage.SetValue(id, key, value);
            }
        }
    }

    const Records before{{"a", {{"name", "A"}, {"path", ""}, {"size", "1"}}}, {"b", {{"name", "B"}}}};
    SqliteCloudInfoStorage one{file};
    SqliteCloudInfoStorage other{file};
};

TEST_F(SharedSqliteCloudInfoStorageTest, WhatOneChangedStaysWhenTheOtherSavesEverything)
{
    one.SetValue("a", "path", "/a.pdf");
    one.Commit();
    auto later = before;
    later["a"]["size"] = "2";
    Save(other, later);
    other.Commit();

    later["a"]["path"] = "/a.pdf";
    EXPECT_EQ(ReadBack(), later);
}

TEST_F(SharedSqliteCloudInfoStorageTest, WhatOneRemovedDoesNotComeBackWhenTheOtherSavesEverything)
{
    one.RemoveRecord("a");
    one.Commit();
    auto later = before;
    later["a"]["size"] = "2";
    Save(other, later);
    other.Commit();

    EXPECT_EQ(ReadBack(), (Records{{"b", {{"name", "B"}}}}));
}

TEST_F(SharedSqliteCloudInfoStorageTest, RecordThatBothAddedHasWhatEitherKnows)
{
    one.SetValue("c", "name", "C");
    one.SetValue("c", "path", "/c.pdf");
    one.Commit();
    other.SetValue("c", "name", "C");
    other.SetValue("c", "path", "");
    other.SetValue("c", "size", "3");
    other.Commit();

    auto later = before;
    later["c"] = {{"name", "C"}, {"path", "/c.pdf"}, {"size", "3"}};
    EXPECT_EQ(ReadBack(), later);
}

TEST_F(SharedSqliteCloudInfoStorageTest, ReplacedRecordIsWrittenWhole)
{
    one.SetValue("a", "path", "/a.pdf");
    one.Commit();
    other.RemoveRecord("a");
    Save(other, before);
    other.Commit();

    EXPECT_EQ(ReadBack(), before);
}

TEST_F(SharedSqliteCloudInfoStorageTest, RemovalKeepsNobodyWaitingUntilItIsCommitted)
{
    one.RemoveRecord("a");
    one.DropCopy("/a.pdf");
    EXPECT_EQ(one.ReadAll(), (Records{{"b", {{"name", "B"}}}}));
    other.SetValue("b", "name", "other B");
    other.Commit();
    one.Commit();

    EXPECT_EQ(ReadBack(), (Records{{"b", {{"name", "other B"}}}}));
}

TEST_F(SqliteCloudInfoStorageTest, KeptCopiesAreReadBackByTheNextStartAndAreNoRecords)
{
    const auto paths = [](SqliteCloudInfoStorage& storage) {
        std::vector<std::string> found;
        for (const auto& copy : storage.ReadCopies()) {
            found.push_back(copy.path + ' ' + copy.documentId + ' ' + copy.name + ' ' + copy.syncHash + ' ' +
                            std::to_string(copy.lostAt));
        }
        return found;
    };
    {
        SqliteCloudInfoStorage storage(file);
        EXPECT_THAT(storage.ReadCopies(), IsEmpty());
        storage.KeepCopy({"/a.pdf", "a", "A", "old", 0});
        storage.KeepCopy({"/a.pdf", "a", "A", "hash", 7});
        storage.KeepCopy({"/b.pdf", "b", "B", "", 0});
        storage.Commit();
        storage.DropCopy("/b.pdf");
        storage.DropCopy("/unknown.pdf");
    }
    SqliteCloudInfoStorage storage(file);
    EXPECT_THAT(paths(storage), testing::ElementsAre("/a.pdf a A hash 7"));
    EXPECT_THAT(storage.ReadAll(), IsEmpty());
}

TEST_F(SqliteCloudInfoStorageTest, FilesAreReadableForTheUserAlone)
{
    SqliteCloudInfoStorage storage(file);
    storage.SetValue("a", "name", "A");
    storage.Commit();

    const auto userAlone = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    EXPECT_EQ(QFile::permissions(file), userAlone);
    EXPECT_EQ(QFile::permissions(file + "-wal"), userAlone);
}

TEST_F(SqliteCloudInfoStorageTest, OneFileIsLeftWhenTheStoreIsClosed)
{
    SqliteCloudInfoStorage(file).SetValue("a", "name", "A");

    EXPECT_THAT(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), testing::ElementsAre("documents.sqlite"));
}

TEST_F(SqliteCloudInfoStorageTest, FileNameMayBeRelative)
{
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    for (const auto* name : {"documents.sqlite", ":memory:", "file:x"}) {
        SqliteCloudInfoStorage(name).SetValue("a", "name", name);
        EXPECT_EQ(SqliteCloudInfoStorage(folder.path() + "/" + name).ReadAll(), (Records{{"a", {{"name", name}}}}));
    }
    ASSERT_TRUE(QDir::setCurrent(before));
}

TEST_F(SqliteCloudInfoStorageTest, FileNameMayHoldAnything)
{
    for (const auto* name : {"Zoë – 1.sqlite", "100% ?mode=ro#x.sqlite", ":memory:", "file:x"}) {
        const QString odd = folder.path() + "/" + QString::fromUtf8(name);
        SqliteCloudInfoStorage(odd).SetValue("a", "name", name);
        EXPECT_TRUE(QFileInfo(odd).size() > 0) << name;
        EXPECT_EQ(SqliteCloudInfoStorage(odd).ReadAll(), (Records{{"a", {{"name", name}}}}));
    }
}

} // namespace

} // namespace Norlis::Host
