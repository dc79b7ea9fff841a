#include <host/store/SqliteCloudInfoStorage.h>

#include <tests/support/FileSizeLimit.h>
#include <tests/support/OrdinaryUser.h>
#include <tests/support/SqliteFile.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace Norlis::Host {

namespace {

using Test::FileSizeLimit;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Records = std::map<std::string, std::map<std::string, std::string>>;

class SqliteCloudInfoStorageOpeningTest : public testing::Test {
protected:
    /// What opening, or reading, says; empty when both work.
    static std::string Problem(const QString& file)
    {
        try {
            SqliteCloudInfoStorage(file).ReadAll();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return {};
    }

    /// The file is refused in one line that names it and holds the text, and stays as it is.
    void ExpectRefused(const std::string& text) const
    {
        const QByteArray before = ContentOf(file);
        const QByteArray logBefore = ContentOf(file + "-wal");
        EXPECT_THAT(Problem(file), AllOf(HasSubstr(file.toStdString()), HasSubstr(text), Not(HasSubstr("\n"))));
        EXPECT_TRUE(ContentOf(file) == before);
        EXPECT_TRUE(ContentOf(file + "-wal") == logBefore);
    }

    /// A closed store of some hundred pages.
    void MakeStore() const
    {
        SqliteCloudInfoStorage storage(file);
        for (int number = 0; number < 1000; ++number) {
            storage.SetValue("document " + std::to_string(number), "name", std::string(500, 'x'));
        }
    }

    const QTemporaryDir folder;
    const QString file = folder.filePath("documents.sqlite");
};

TEST_F(SqliteCloudInfoStorageOpeningTest, FileOfAnotherKindIsRefused)
{
    for (const auto& content : {QByteArray("x"), QByteArray("%PDF-1.7\n"), QByteArray(10'000, '\0'),
                                QByteArray("SQLite format 3\0", 16), QByteArray(50'000, 'S')}) {
        WriteFile(file, content);
        ExpectRefused("it is not a document list");
    }
}

TEST_F(SqliteCloudInfoStorageOpeningTest, DatabaseOfAnotherProgramIsRefused)
{
    RunSql(file, "CREATE TABLE records (file_id, key, value)");
    ExpectRefused("it is not a document list");
}

TEST_F(SqliteCloudInfoStorageOpeningTest, DatabaseThatAnotherProgramLeftUnfinishedIsRefused)
{
    RunSql(file, "PRAGMA journal_mode = WAL; CREATE TABLE other (x); INSERT INTO other VALUES (1)", true);
    ASSERT_GT(QFileInfo(file + "-wal").size(), 0);
    ExpectRefused("it is not a document list");
}

TEST_F(SqliteCloudInfoStorageOpeningTest, EmptyFileBecomesAStore)
{
    WriteFile(file, {});
    EXPECT_EQ(Problem(file), "");
}

TEST_F(SqliteCloudInfoStorageOpeningTest, NewerVersionIsRefused)
{
    MakeStore();
    RunSql(file, "PRAGMA user_version = 2");
    ExpectRefused("newer version");
}

TEST_F(SqliteCloudInfoStorageOpeningTest, NewerVersionThatWasNotClosedIsRefused)
{
    MakeStore();
    RunSql(file, "PRAGMA user_version = 2; CREATE TABLE more (x)", true);
    ASSERT_GT(QFileInfo(file + "-wal").size(), 0);
    ExpectRefused("newer version");
}

TEST_F(SqliteCloudInfoStorageOpeningTest, StoreThatLostItsEndIsRefused)
{
    MakeStore();
    ASSERT_TRUE(QFile::resize(file, QFileInfo(file).size() / 2 / 4096 * 4096));
    ExpectRefused("is damaged");
}

TEST_F(SqliteCloudInfoStorageOpeningTest, StoreWithoutTheEndOfItsLastPageIsRefused)
{
    MakeStore();
    const QByteArray content = ContentOf(file);
    for (const int missing : {1, 100, 2048, 4095}) {
        WriteFile(file, content.chopped(missing));
        ExpectRefused("is damaged (its last page is not whole)");
    }
}

TEST_F(SqliteCloudInfoStorageOpeningTest, StoreWhoseLogHoldsTheLastPageIsWhole)
{
    MakeStore();
    RunSql(file, "PRAGMA wal_autocheckpoint = 0; UPDATE records SET file_id = CAST(file_id || 'y' AS BLOB)", true);
    ASSERT_TRUE(QFile::resize(file, QFileInfo(file).size() - 100)); // as by a crash while the log is taken over
    EXPECT_EQ(SqliteCloudInfoStorage(file).ReadAll().size(), 1000u);
}

TEST_F(SqliteCloudInfoStorageOpeningTest, StoreWithoutItsTableIsRefused)
{
    MakeStore();
    RunSql(file, "DROP TABLE records");
    ExpectRefused("is damaged");
}

TEST_F(SqliteCloudInfoStorageOpeningTest, RecordThatIsNotWholeIsReportedByReading)
{
    for (const char* const fields : {"x'00'", "x'00000001'", "x'ffffffff'", "x'0000000161'", "x'000000016100000002'",
                                     "x'0000000161000000026161ff'"}) {
        QFile::remove(file);
        SqliteCloudInfoStorage(file).SetValue("a", "name", "A");
        RunSql(file, QByteArray("UPDATE records SET fields = ") + fields);
        ExpectRefused("is damaged (a record is not whole)");
    }
}

TEST_F(SqliteCloudInfoStorageOpeningTest, DamagedPageIsReportedByReading)
{
    MakeStore();
    QByteArray content = ContentOf(file);
    content.replace(content.size() / 2 / 4096 * 4096, 4096, QByteArray(4096, '\xaa'));
    WriteFile(file, content);
    SqliteCloudInfoStorage storage(file);
    try {
        storage.ReadAll();
        FAIL() << "no error";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), AllOf(HasSubstr(file.toStdString()), HasSubstr("is damaged")));
    }
}

TEST_F(SqliteCloudInfoStorageOpeningTest, EveryDamagedPageIsReportedOrHarmless)
{
    MakeStore();
    const QByteArray content = ContentOf(file);
    for (int page = 0; page < content.size(); page += 4096) {
        for (const char filling : {'\0', '\xff', '\x05'}) {
            QByteArray damaged = content;
            damaged.replace(page, 4096, QByteArray(4096, filling));
            WriteFile(file, damaged);
            EXPECT_NE(Problem(file), "") << page / 4096;
        }
    }
}

TEST_F(SqliteCloudInfoStorageOpeningTest, StoreInUseCanBeOpenedToo)
{
    SqliteCloudInfoStorage first(file);
    EXPECT_EQ(Problem(file), "");

    first.SetValue("a", "name", "A");
    EXPECT_EQ(Problem(file), "") << "in the middle of a save";
    first.Commit();
    EXPECT_EQ(SqliteCloudInfoStorage(file).ReadAll(), (Records{{"a", {{"name", "A"}}}}));
}

TEST_F(SqliteCloudInfoStorageOpeningTest, StoreWithoutRoomForTheFileThatProgramsShareIsOpenedForOneProgram)
{
    MakeStore();
    const FileSizeLimit full(10'000);
    SqliteCloudInfoStorage storage(file);
    EXPECT_EQ(storage.ReadAll().size(), 1000u);
}

TEST_F(SqliteCloudInfoStorageOpeningTest, ClosedStoreIsFreeAgain)
{
    SqliteCloudInfoStorage(file).SetValue("a", "name", "A");
    EXPECT_EQ(Problem(file), "");
    EXPECT_EQ(RunSql(file, "SELECT CAST(file_id AS TEXT) FROM records"), "a");
}

TEST_F(SqliteCloudInfoStorageOpeningTest, MissingFolderIsReported)
{
    const QString missing = folder.filePath("no folder/documents.sqlite");
    EXPECT_THAT(Problem(missing), AllOf(HasSubstr("No such file or directory"), HasSubstr("folder exists")));
    EXPECT_FALSE(QFileInfo::exists(folder.filePath("no folder")));
}

TEST_F(SqliteCloudInfoStorageOpeningTest, WhatIsNoFileIsReported)
{
    EXPECT_THAT(Problem(folder.path()), HasSubstr("it is not a regular file"));
    ASSERT_EQ(mkfifo(file.toUtf8().constData(), 0600), 0);
    EXPECT_THAT(Problem(file), HasSubstr("it is not a regular file"));
    EXPECT_THAT(Problem({}), HasSubstr("has no file name"));
}

TEST_F(SqliteCloudInfoStorageOpeningTest, FolderWithoutWritePermissionIsReported)
{
    const OrdinaryUser user;
    const QString inside = folder.filePath("locked/documents.sqlite");
    ASSERT_TRUE(QDir(folder.path()).mkdir("locked"));
    SqliteCloudInfoStorage(inside).SetValue("a", "name", "A");
    ASSERT_EQ(chmod(folder.filePath("locked").toUtf8().constData(), 0500), 0);

    EXPECT_THAT(Problem(inside), AllOf(HasSubstr("cannot be written"), HasSubstr("Check the permissions")));
    EXPECT_THAT(Problem(folder.filePath("locked/new.sqlite")), HasSubstr("Permission denied"));

    ASSERT_EQ(chmod(folder.filePath("locked").toUtf8().constData(), 0700), 0);
    EXPECT_EQ(Problem(inside), "");
}

TEST_F(SqliteCloudInfoStorageOpeningTest, FileWithoutWritePermissionIsReported)
{
    const OrdinaryUser user;
    MakeStore();
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner));
    ExpectRefused("Permission denied");
    ASSERT_TRUE(QFile::setPermissions(file, {}));
    EXPECT_THAT(Problem(file), HasSubstr("Permission denied"));
}

} // namespace

} // namespace Norlis::Host
