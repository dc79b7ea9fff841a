// Every call of the record store goes wrong once, the first, the second ... until there are no more. Whatever comes of
// it, each record is the old one or the new one, but for the one that a store without transactions was about to write;
// and a list that is made over the store afterwards works.

#include <host/store/SqliteCloudInfoStorage.h>

#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/RecordingStore.h>
#include <NorlisTestKit/Records.h>
#include <NorlisTestKit/SignalJournal.h>

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <map>
#include <stdexcept>

namespace Norlis::Test {

namespace {

using namespace TestKit;
using PDF::FileInfo;
using PDF::Cloud::ICloudInfoStorage;
using PDF::Cloud::NorlisCloudFilesManager;
using testing::ExitedWithCode;
using testing::IsEmpty;
using testing::KilledBySignal;

using Records = std::map<std::string, RecordingStore::Fields>;

constexpr int mostCalls = 100;

/// The cloud's document "b", of which everything is new.
std::shared_ptr<FileInfo> NewB()
{
    const QDateTime later({2025, 6, 7}, {8, 9, 10}, Qt::UTC);
    return std::make_shared<FileInfo>(
        FileInfo::CloudInfo("b", "new.pdf", 99, false, QUrl("https://cloud.example/new"), later, later, 0, "new hash"));
}

void UpdateOrAdd(NorlisCloudFilesManager& list, const std::shared_ptr<FileInfo>& record)
{
    if (list.GetFileInfo(QString::fromStdString(record->GetId()))) {
        list.Update(record);
    } else {
        list.Add(record);
    }
}

/// Another document "b", no "c", a new "d": what a refresh may bring.
void Change(NorlisCloudFilesManager& list)
{
    UpdateOrAdd(list, NewB());
    list.Remove(RecordOf("c"));
    UpdateOrAdd(list, RecordOf("d"));
}

class StoreAccessTest : public testing::Test {
protected:
    std::unique_ptr<NorlisCloudFilesManager> ListOver(const std::shared_ptr<ICloudInfoStorage>& store) const
    {
        return std::make_unique<NorlisCloudFilesManager>(store, fileSystem, hashes);
    }

    /// Has a list store three documents, the first with a local copy.
    void Prepare(const std::shared_ptr<ICloudInfoStorage>& store) const
    {
        fileSystem->existing = {"/a.pdf"};
        const auto list = ListOver(store);
        for (const char* id : {"a", "b", "c"}) {
            list->Add(RecordOf(id));
        }
        const auto copied = RecordOf("a");
        copied->SetPath(ioPath("/a.pdf"), "hash");
        list->Update(copied);
    }

    /// What is stored before and, when nothing goes wrong, after the change.
    Records Stored(bool isChanged) const
    {
        const auto store = std::make_shared<RecordingStore>();
        Prepare(store);
        if (isChanged) {
            Change(*ListOver(store));
        }
        return store->records;
    }

    static RecordingStore::Fields FieldsOf(const Records& records, const std::string& id)
    {
        const auto record = records.find(id);
        return record == records.end() ? RecordingStore::Fields() : record->second;
    }

    const std::shared_ptr<FakeFileSystem> fileSystem = std::make_shared<FakeFileSystem>();
    const std::shared_ptr<CountingHashCalculator> hashes = std::make_shared<CountingHashCalculator>();
    const Records before = Stored(false);
    const Records after = Stored(true);
};

// The list writes field by field and asks for no result, so the store has to see to it that a record is whole. Without
// that, only the record that is being written may be half.
class ForgetfulStoreTest : public StoreAccessTest, public testing::WithParamInterface<int> {
protected:
    void ExpectOldOrNew(const Records& found) const
    {
        std::vector<std::string> mixed;
        for (const char* id : {"a", "b", "c", "d"}) {
            const auto oldFields = FieldsOf(before, id);
            const auto newFields = FieldsOf(after, id);
            const auto fields = FieldsOf(found, id);
            if (fields == oldFields || fields == newFields) {
                continue;
            }
            mixed.emplace_back(id);
            for (const auto& field : fields) {
                EXPECT_TRUE(std::count(oldFields.begin(), oldFields.end(), field) != 0 ||
                            std::count(newFields.begin(), newFields.end(), field) != 0)
                    << id << ": " << field.first << " is " << field.second;
            }
        }
        EXPECT_LE(mixed.size(), 1u) << testing::PrintToString(mixed);
        EXPECT_LE(found.size(), 4u);
    }
};

INSTANTIATE_TEST_SUITE_P(Calls, ForgetfulStoreTest, testing::Values(1, When::always),
                         [](const auto& info) { return info.param == 1 ? "One" : "AllFromThenOn"; });

TEST_P(ForgetfulStoreTest, HoldsOldAndNewRecordsAndTheNextListBringsTheRest)
{
    for (const char* id : {"b", "c", "d"}) {
        ASSERT_NE(FieldsOf(before, id), FieldsOf(after, id));
    }
    for (int number = 1; number < mostCalls; ++number) {
        SCOPED_TRACE("call " + std::to_string(number));
        const auto store = std::make_shared<RecordingStore>();
        Prepare(store);
        store->calls.clear();
        store->Misbehave(When("*").From(number).Times(GetParam()), StoreFault::Forgets);
        Change(*ListOver(store));
        const bool hasHappened = static_cast<int>(store->calls.size()) >= number;
        store->BehaveAgain();
        ExpectOldOrNew(store->records);
        if (GetParam() == 1) {
            EXPECT_EQ(store->records.count("c"), 0u) << "the store is asked twice to remove a record";
        }

        Change(*ListOver(store));
        EXPECT_EQ(store->records, after);
        if (!hasHappened) {
            EXPECT_GT(number, 20);
            return;
        }
    }
    ADD_FAILURE() << "a list of endless calls";
}

/// A store in front of another one: one call throws and does not reach that.
class ThrowingStore : public ICloudInfoStorage {
public:
    ThrowingStore(const std::shared_ptr<ICloudInfoStorage>& storage, int number) : storage(storage), callsLeft(number)
    {
    }

    void RemoveRecord(const std::string& fileId) override
    {
        Count();
        storage->RemoveRecord(fileId);
    }

    void SetValue(const std::string& fileId, const std::string& key, const std::string& value) override
    {
        Count();
        storage->SetValue(fileId, key, value);
    }

    Records ReadAll() override
    {
        Count();
        return storage->ReadAll();
    }

private:
    void Count()
    {
        if (--callsLeft == 0) {
            throw std::runtime_error("The store failed");
        }
    }

    const std::shared_ptr<ICloudInfoStorage> storage;
    int callsLeft;
};

class ThrowingStoreTest : public StoreAccessTest {
protected:
    /// In order of the calls: one reads the store, one removes "c", and the rest save.
    static constexpr int readingCall = 1;
    static constexpr int removingCall = 2;

    const QTemporaryDir folder;
    const QString file = folder.filePath("documents.sqlite");
};

TEST_F(ThrowingStoreTest, ThatCannotBeReadHasNoListAndStaysAsItWas)
{
    const auto store = std::make_shared<RecordingStore>();
    Prepare(store);
    EXPECT_THROW(ListOver(std::make_shared<ThrowingStore>(store, readingCall)), std::runtime_error);
    EXPECT_EQ(store->records, before);
    Change(*ListOver(store));
    EXPECT_EQ(store->records, after);
}

TEST_F(ThrowingStoreTest, ThatFailsToRemoveLeavesTheDocumentInTheList)
{
    const auto store = std::make_shared<RecordingStore>();
    Prepare(store);
    auto list = ListOver(std::make_shared<ThrowingStore>(store, removingCall));
    const auto journal = std::make_shared<Journal>();
    WriteSignals(*list, journal);
    EXPECT_THROW(list->Remove(RecordOf("c")), std::runtime_error);
    EXPECT_THAT(journal->Take(), IsEmpty());
    EXPECT_TRUE(list->GetFileInfo("c"));
    EXPECT_EQ(store->records, before);

    Change(*list);
    list.reset();
    EXPECT_EQ(store->records, after);
}

// The list saves in its destructor, from which nothing can be thrown. What the file held stays whole.
TEST_F(ThrowingStoreTest, ThatFailsToSaveEndsTheProgramAndTheFileHoldsTheStateBefore)
{
    for (int number = removingCall + 1; number < mostCalls; ++number) {
        SCOPED_TRACE("call " + std::to_string(number));
        QFile::remove(file);
        Prepare(std::make_shared<Host::SqliteCloudInfoStorage>(file));
        int status = 0;
        const auto hasSaved = [&status](int ended) {
            status = ended;
            return ExitedWithCode(0)(ended) || KilledBySignal(SIGABRT)(ended);
        };
        EXPECT_EXIT(
            {
                const auto storage = std::make_shared<Host::SqliteCloudInfoStorage>(file);
                Change(*ListOver(std::make_shared<ThrowingStore>(storage, number)));
                storage->Commit();
                std::_Exit(0);
            },
            hasSaved, "");
        const bool isAfter = ExitedWithCode(0)(status);
        const auto storage = std::make_shared<Host::SqliteCloudInfoStorage>(file);
        EXPECT_EQ(storage->ReadAll(), isAfter ? after : before);
        Change(*ListOver(storage));
        EXPECT_EQ(storage->ReadAll(), after);
        if (isAfter) {
            EXPECT_GT(number, 20);
            return;
        }
    }
    ADD_FAILURE() << "a list of endless calls";
}

} // namespace

} // namespace Norlis::Test
