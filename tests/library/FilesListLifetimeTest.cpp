#include "FilesManagerBench.h"
#include "NotedDestruction.h"

#include <tests/support/SlotRunner.h>

namespace Norlis::Test {

namespace {

/// What slots may do while the file list emits. What they do to memory shows under the address sanitizer.
class FilesListSlotTest : public FilesManagerTest, public testing::WithParamInterface<const char*> {
protected:
    /// Runs an operation that emits the signal of the parameter; the slot acts the first time only.
    void ReachSlot(const std::function<void()>& action)
    {
        SlotRunner runner([&] {
            if (runner.runs == 1) {
                action();
            }
        });
        const auto& meta = PDF::AbstractFileManager::staticMetaObject;
        const int index = meta.indexOfSignal(GetParam());
        ASSERT_GE(index, 0);
        ASSERT_TRUE(runner.ConnectTo(*manager, meta.method(index)));

        WriteSignals(*manager, later);
        const QByteArray signal = GetParam();
        if (signal.startsWith("FileAdded")) {
            manager->Add(record);
        } else if (signal.startsWith("FileRemoved")) {
            manager->Remove(record);
        } else {
            manager->Update(newer);
        }
        EXPECT_GE(runner.runs, 1);
    }

    /// What slots saw that were connected after the acting one.
    std::shared_ptr<Journal> later = std::make_shared<Journal>();

    std::shared_ptr<FileInfo> record = RecordOf("a");
    std::shared_ptr<const FileInfo> newer = RecordOf("a");

    void SetUp() override
    {
        Add({"a", "b"});
    }
};

TEST_P(FilesListSlotTest, MayDeleteTheList)
{
    ReachSlot([this] {
        manager.reset();
        journal->Take();
    });
    EXPECT_EQ(manager, nullptr);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_P(FilesListSlotTest, MayClearTheCallersPointers)
{
    ReachSlot([this] {
        record.reset();
        newer.reset();
    });
    const auto events = Events();
    EXPECT_EQ(events.size(), 2u);
    EXPECT_EQ(later->Take(), events);
}

TEST_P(FilesListSlotTest, MayChangeTheList)
{
    ReachSlot([this] {
        manager->Remove(RecordOf("a"));
        manager->Remove(RecordOf("b"));
        Add({"c", "d"});
        manager->Update(RecordOf("c"));
    });
    EXPECT_THAT(Ids(), Contains("d"));
}

TEST_P(FilesListSlotTest, MayTakeTheRecordsCloudPartAway)
{
    ReachSlot([this] { record->GetRedactableCloudInfo().reset(); });
    record->GetRedactableCloudInfo().emplace(CloudInfoOf("a"));
}

INSTANTIATE_TEST_SUITE_P(FilesManager, FilesListSlotTest,
                         testing::Values("FileAdded(std::shared_ptr<FileInfo>)", "FileAdded()",
                                         "FileRemoved(std::shared_ptr<const FileInfo>)", "FileRemoved()",
                                         "FileUpdated(std::string)", "FileUpdated(int)"),
                         [](const auto& info) {
                             const QByteArray signal = info.param;
                             return signal.left(signal.indexOf('(')).toStdString() + std::to_string(info.index);
                         });

class FilesListLifetimeTest : public FilesManagerTest {};

TEST_F(FilesListLifetimeTest, IndexIsThatOfTheMomentInWhichItIsReported)
{
    Add({"a"});
    QObject::connect(manager.get(), qOverload<const std::string&>(&NorlisCloudFilesManager::FileUpdated), manager.get(),
                     [this] { Add({"b"}); });
    manager->Update(RecordOf("a"));
    EXPECT_THAT(Events(), ElementsAre("FileUpdated(1)"));
}

TEST_F(FilesListLifetimeTest, RecordTakenOutBeforeItsIndexIsReportedHasNone)
{
    Add({"a"});
    QObject::connect(manager.get(), qOverload<const std::string&>(&NorlisCloudFilesManager::FileUpdated), manager.get(),
                     [this] { manager->Remove(RecordOf("a")); });
    manager->Update(RecordOf("a"));
    EXPECT_THAT(Events(), ElementsAre("FileUpdated(\"a\")", "FileRemoved(a)", "FileRemoved()"));
}

TEST_F(FilesListLifetimeTest, RecordsOutliveTheListThatTheyAreSharedWith)
{
    const auto record = RecordOf("a");
    manager->Add(record);
    manager.reset();
    EXPECT_EQ(record.use_count(), 1);
    EXPECT_EQ(record->GetId(), "a");
}

TEST(FilesListCollaboratorsTest, AreKeptForItsWholeLifeAndReleasedInReverseOrder)
{
    std::vector<std::string> released;
    auto store = std::make_shared<NotedDestruction<RecordingStore>>();
    store->destroyed = [&] { released.emplace_back("store"); };
    auto fileSystem = std::make_shared<NotedDestruction<FakeFileSystem>>();
    fileSystem->destroyed = [&] { released.emplace_back("file system"); };
    auto hashes = std::make_shared<NotedDestruction<CountingHashCalculator>>();
    hashes->destroyed = [&] { released.emplace_back("hash calculator"); };
    auto manager = std::make_unique<NorlisCloudFilesManager>(store, fileSystem, hashes);
    store.reset();
    fileSystem.reset();
    hashes.reset();
    EXPECT_THAT(released, IsEmpty());

    manager.reset();

    EXPECT_THAT(released, ElementsAre("hash calculator", "file system", "store"));
}

} // namespace

} // namespace Norlis::Test
