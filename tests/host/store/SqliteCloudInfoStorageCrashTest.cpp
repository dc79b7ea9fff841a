#include <host/store/SqliteCloudInfoStorage.h>

#include <tests/support/FileSizeLimit.h>
#include <tests/support/SqliteFile.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

namespace Norlis::Host {

namespace {

using Test::FileSizeLimit;
using testing::HasSubstr;
using Records = std::map<std::string, std::map<std::string, std::string>>;

/// Another process that does something with a store, tells so, and waits to be killed.
class OtherProcess {
public:
    template <typename Work>
    explicit OtherProcess(const Work& work)
    {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        id = fork();
        if (id == 0) {
            try {
                work([&] {
                    EXPECT_EQ(write(ends[1], "x", 1), 1);
                    for (;;) {
                        pause();
                    }
                });
            } catch (...) {
            }
            _exit(1);
        }
        close(ends[1]);
        char told = 0;
        EXPECT_EQ(read(ends[0], &told, 1), 1) << "the other process failed";
        close(ends[0]);
    }

    ~OtherProcess()
    {
        if (id > 0) { // -1, after a fork that failed, would mean every process of the machine
            kill(id, SIGKILL);
            waitpid(id, nullptr, 0);
        }
    }

    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

private:
    pid_t id;
};

class SqliteCloudInfoStorageCrashTest : public testing::Test {
protected:
    static Records AllWith(const std::string& text)
    {
        Records records;
        for (int number = 0; number < 2000; ++number) {
            records["document " + std::to_string(number)] = {{"name", text}, {"note", std::string(2000, text[0])}};
        }
        return records;
    }

    /// Saves as the file list does: removes some records, sets all others.
    static void Save(SqliteCloudInfoStorage& storage, const Records& records)
    {
        storage.RemoveRecord("gone");
        for (const auto& [id, fields] : records) {
            for (const auto& [key, value] : fields) {
                storage.SetValue(id, key, value);
            }
        }
    }

    void MakeStore(const Records& records) const
    {
        SqliteCloudInfoStorage storage(file);
        Save(storage, records);
    }

    Records ReadBack() const
    {
        return SqliteCloudInfoStorage(file).ReadAll();
    }

    const QTemporaryDir folder;
    const QString file = folder.filePath("documents.sqlite");
    const Records before = AllWith("old");
    const Records after = AllWith("new");
};

TEST_F(SqliteCloudInfoStorageCrashTest, KilledSaveLeavesTheStateBefore)
{
    MakeStore(before);
    {
        const OtherProcess other([&](const auto& tellAndWait) {
            SqliteCloudInfoStorage storage(file);
            Save(storage, after);
            tellAndWait();
        });
        ASSERT_GT(QFileInfo(file + "-wal").size(), 1'000'000) << "nothing was on its way to the disk";
    }
    EXPECT_TRUE(ReadBack() == before);
}

TEST_F(SqliteCloudInfoStorageCrashTest, ProgramKilledAfterCommitHasSaved)
{
    MakeStore(before);
    {
        const OtherProcess other([&](const auto& tellAndWait) {
            SqliteCloudInfoStorage storage(file);
            Save(storage, after);
            storage.Commit();
            storage.RemoveRecord("document 1");
            tellAndWait();
        });
    }
    EXPECT_TRUE(ReadBack() == after);
}

TEST_F(SqliteCloudInfoStorageCrashTest, StoreCanBeReadWhileAnotherProgramIsInTheMiddleOfASave)
{
    MakeStore(before);
    {
        const OtherProcess other([&](const auto& tellAndWait) {
            SqliteCloudInfoStorage storage(file);
            Save(storage, after);
            tellAndWait();
        });
        EXPECT_TRUE(ReadBack() == before);
    }
    EXPECT_TRUE(ReadBack() == before);
}

TEST_F(SqliteCloudInfoStorageCrashTest, DiskThatFillsUpLeavesTheStateBeforeOrAfter)
{
    int failures = 0;
    bool hasSaved = false;
    // The log of the save takes about ten megabytes.
    for (rlim_t limit = 0; !hasSaved && limit < 30'000'000; limit += 1'500'000) {
        QFile::remove(file);
        MakeStore(before);
        {
            SqliteCloudInfoStorage storage(file);
            const FileSizeLimit full(limit);
            Save(storage, after);
            try {
                storage.Commit();
                hasSaved = true;
            } catch (const std::runtime_error& error) {
                ++failures;
                EXPECT_THAT(error.what(), HasSubstr(file.toStdString()));
            }
            EXPECT_TRUE(storage.ReadAll() == (hasSaved ? after : before)) << limit;
        }
        EXPECT_TRUE(ReadBack() == (hasSaved ? after : before)) << limit;
    }
    EXPECT_GT(failures, 3);
    EXPECT_TRUE(hasSaved);
}

TEST_F(SqliteCloudInfoStorageCrashTest, StoreThatFoundNoRoomToBeMadeIsMadeLater)
{
    bool isMade = false;
    for (rlim_t limit = 0; !isMade && limit < 100'000; limit += 1100) {
        QFile::remove(file);
        {
            const FileSizeLimit full(limit);
            try {
                const SqliteCloudInfoStorage storage(file);
                isMade = true;
            } catch (const std::runtime_error& error) {
                EXPECT_THAT(error.what(), HasSubstr(file.toStdString()));
            }
        }
        EXPECT_TRUE(ReadBack().empty()) << limit;
        EXPECT_TRUE(isMade || limit < 50'000);
    }
}

TEST_F(SqliteCloudInfoStorageCrashTest, FirstFailureIsReportedOnceAndTheStoreWorksOn)
{
    MakeStore(before);
    SqliteCloudInfoStorage storage(file);
    {
        const FileSizeLimit full(100'000);
        Save(storage, after);
    }
    storage.SetValue("late", "name", "x"); // the disk has room again, but the records before it are lost
    EXPECT_THROW(storage.Commit(), std::runtime_error);
    EXPECT_TRUE(storage.ReadAll() == before);

    EXPECT_NO_THROW(storage.Commit());
    Save(storage, after);
    storage.Commit();
    EXPECT_TRUE(storage.ReadAll() == after);
}

TEST_F(SqliteCloudInfoStorageCrashTest, DamageMetWhileSavingTakesTheWholeSaveBack)
{
    MakeStore(before);
    QByteArray content = ContentOf(file);
    const int page = content.indexOf("document 1500") / 4096 * 4096;
    ASSERT_GT(page, 4096);
    WriteFile(file, content.replace(page, 4096, QByteArray(4096, '\xaa')));
    {
        SqliteCloudInfoStorage storage(file);
        storage.SetValue("a new one", "name", "x");
        Save(storage, after);
        try {
            storage.Commit();
            ADD_FAILURE() << "no error";
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), HasSubstr("is damaged"));
        }
    }
    EXPECT_EQ(RunSql(file, "SELECT count(*) FROM records WHERE file_id = CAST('a new one' AS BLOB)"), "0");
}

TEST_F(SqliteCloudInfoStorageCrashTest, ValueThatIsTooLongTakesTheWholeSaveBack)
{
    {
        SqliteCloudInfoStorage storage(file);
        storage.SetValue("a", "name", "x");
        storage.SetValue("b", "name", std::string(1'000'000'001, 'x')); // a byte more than SQLite takes
        storage.SetValue("c", "name", "x");
        try {
            storage.Commit();
            ADD_FAILURE() << "no error";
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), HasSubstr("too long"));
        }
    }
    EXPECT_TRUE(ReadBack().empty());
}

TEST_F(SqliteCloudInfoStorageCrashTest, FailureThatNobodyAsksForEndsWithTheStore)
{
    MakeStore(before);
    {
        SqliteCloudInfoStorage storage(file);
        const FileSizeLimit full(100'000);
        Save(storage, after);
    }
    EXPECT_TRUE(ReadBack() == before);
}

} // namespace

} // namespace Norlis::Host
