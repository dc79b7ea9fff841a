#pragma once

#include <tests/support/LogCapture.h>

#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/Journal.h>
#include <NorlisTestKit/RecordingStore.h>
#include <NorlisTestKit/Records.h>
#include <NorlisTestKit/SignalJournal.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;

using PDF::FileInfo;
using PDF::Cloud::NorlisCloudFilesManager;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// A file list over a store in memory. Its signals and log records stand in one journal.
class FilesManagerTest : public testing::Test {
protected:
    FilesManagerTest()
    {
        Open();
    }

    /// (Re)constructs the list, which loads what the store holds.
    void Open()
    {
        manager = std::make_unique<NorlisCloudFilesManager>(store, fileSystem, hashes);
        WriteSignals(*manager, journal);
    }

    /// Destroys the list, which saves it; gives the calls that reached the store.
    std::vector<std::string> Close()
    {
        store->calls.clear();
        manager.reset();
        return store->calls;
    }

    std::vector<std::string> Events()
    {
        return journal->Take();
    }

    /// Adds records so that the last one named is at index 0.
    void Add(const std::vector<std::string>& ids)
    {
        for (const auto& id : ids) {
            manager->Add(RecordOf(id));
        }
        journal->Take();
    }

    std::vector<std::string> Ids() const
    {
        std::vector<std::string> ids;
        for (int i = 0; i < manager->FilesCount(); ++i) {
            ids.push_back(manager->GetDocumentId(i).toStdString());
        }
        return ids;
    }

    std::shared_ptr<Journal> journal = std::make_shared<Journal>();
    LogCapture log{journal};
    std::shared_ptr<RecordingStore> store = std::make_shared<RecordingStore>();
    std::shared_ptr<FakeFileSystem> fileSystem = std::make_shared<FakeFileSystem>();
    std::shared_ptr<CountingHashCalculator> hashes = std::make_shared<CountingHashCalculator>();
    std::unique_ptr<NorlisCloudFilesManager> manager;
};

} // namespace Norlis::Test
