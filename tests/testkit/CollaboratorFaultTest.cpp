#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/RecordingStore.h>
#include <NorlisTestKit/Records.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;
using testing::ElementsAre;
using testing::IsEmpty;

using Records = std::map<std::string, RecordingStore::Fields>;

TEST(RecordingStoreTest, CallThatThrowsIsNotedAndChangesNothing)
{
    RecordingStore store;
    store.SetValue("a", "key", "old");
    store.Misbehave(When("*").Times(3), StoreFault::Throws);
    EXPECT_THROW(store.SetValue("a", "key", "new"), std::runtime_error);
    EXPECT_THROW(store.RemoveRecord("a"), std::runtime_error);
    EXPECT_THROW(store.ReadAll(), std::runtime_error);
    EXPECT_EQ(store.ReadAll(), (Records{{"a", {{"key", "old"}}}}));
    EXPECT_THAT(store.calls, ElementsAre("SetValue(a, key, old)", "SetValue(a, key, new)", "RemoveRecord(a)",
                                         "ReadAll()", "ReadAll()"));
}

TEST(RecordingStoreTest, ForgetfulStoreClaimsThatAllIsWell)
{
    RecordingStore store;
    store.SetValue("a", "key", "old");
    store.Misbehave(When("*").Times(3), StoreFault::Forgets);
    store.SetValue("a", "key", "new");
    store.RemoveRecord("a");
    EXPECT_THAT(store.ReadAll(), IsEmpty());
    EXPECT_EQ(store.ReadAll(), (Records{{"a", {{"key", "old"}}}}));
}

TEST(RecordingStoreTest, FaultIsForTheCallsThatItWasAskedFor)
{
    RecordingStore store;
    store.Misbehave(When("SetValue", "size").From(2).Always(), StoreFault::Forgets);
    for (const char* id : {"a", "b", "c"}) {
        store.SetValue(id, "name", "x");
        store.SetValue(id, "size", "1");
    }
    EXPECT_EQ(store.records,
              (Records{{"a", {{"name", "x"}, {"size", "1"}}}, {"b", {{"name", "x"}}}, {"c", {{"name", "x"}}}}));
    store.BehaveAgain();
    store.SetValue("b", "size", "1");
    EXPECT_EQ(store.records["b"]["size"], "1");
}

TEST(RecordingStoreTest, DamagedReadLeavesTheStoreAsItIs)
{
    RecordingStore store;
    store.records = {{"a", {{"name", "plan"}, {"size", "1234"}}}};
    store.Misbehave("ReadAll", StoreFault::Damages);
    EXPECT_EQ(store.ReadAll(), (Records{{"a",
                                         {{"name", "\xff"
                                                   "an"},
                                          {"size", "\xff"
                                                   "34"}}}}));
    EXPECT_EQ(store.ReadAll(), (Records{{"a", {{"name", "plan"}, {"size", "1234"}}}}));
    store.Misbehave("SetValue", StoreFault::Damages);
    store.SetValue("a", "name", "bill");
    EXPECT_EQ(store.records["a"]["name"], "\xff"
                                          "ll");
}

TEST(RecordingStoreTest, FileListRefusesDamagedRecordsAndLeavesThemAsTheyAre)
{
    const auto store = std::make_shared<RecordingStore>();
    const auto open = [&] {
        return std::make_unique<PDF::Cloud::NorlisCloudFilesManager>(store, std::make_shared<FakeFileSystem>(),
                                                                     std::make_shared<CountingHashCalculator>());
    };
    open()->Add(RecordOf("plan"));
    const auto stored = store->records;
    store->Misbehave("ReadAll", StoreFault::Damages);
    EXPECT_THROW(open(), std::invalid_argument);
    EXPECT_EQ(store->records, stored);
    EXPECT_EQ(open()->FilesCount(), 1);
}

TEST(FaultsTest, FaultThatCanNeverHappenIsAnError)
{
    RecordingStore store;
    try {
        store.Misbehave("setValue", StoreFault::Throws);
        FAIL() << "nobody noticed";
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "No operation setValue; there are RemoveRecord, SetValue, ReadAll");
    }
    EXPECT_THROW(store.Misbehave(When("SetValue").From(0), StoreFault::Throws), std::invalid_argument);
    EXPECT_THROW(store.Misbehave(When("SetValue").Times(0), StoreFault::Throws), std::invalid_argument);
    EXPECT_THROW(FakeFileSystem().Misbehave("SetValue", FileSystemFault::Throws), std::invalid_argument);
    EXPECT_THROW(CountingHashCalculator().Misbehave("SetValue", HashFault::Throws), std::invalid_argument);
}

TEST(FakeFileSystemTest, PathVanishesOnceItHasBeenSeen)
{
    FakeFileSystem fileSystem;
    fileSystem.existing = {"/a", "/b"};
    fileSystem.Misbehave(When("Exists", "/b"), FileSystemFault::Vanishes);
    EXPECT_TRUE(fileSystem.Exists(ioPath("/b")));
    EXPECT_FALSE(fileSystem.Exists(ioPath("/b")));
    EXPECT_TRUE(fileSystem.Exists(ioPath("/a")));
    fileSystem.Misbehave("NormalizePath", FileSystemFault::Vanishes);
    EXPECT_EQ(fileSystem.NormalizePath(ioPath("/a")).utf8string(), "/a");
    EXPECT_THAT(fileSystem.existing, IsEmpty());
}

TEST(FakeFileSystemTest, CallThatThrowsIsNoted)
{
    FakeFileSystem fileSystem;
    fileSystem.existing = {"/a"};
    fileSystem.Misbehave(When("*").Times(2), FileSystemFault::Throws);
    EXPECT_THROW(fileSystem.Exists(ioPath("/a")), std::runtime_error);
    EXPECT_THROW(fileSystem.NormalizePath(ioPath("/a")), std::runtime_error);
    fileSystem.BehaveAgain();
    EXPECT_TRUE(fileSystem.Exists(ioPath("/a")));
    EXPECT_THAT(fileSystem.calls, ElementsAre("Exists(/a)", "NormalizePath(/a)", "Exists(/a)"));
}

TEST(CountingHashCalculatorTest, HashFailsForTheFilesThatWereNamed)
{
    CountingHashCalculator hashes;
    hashes.hashes["/b"] = "1234";
    hashes.Misbehave(When("CalculateHash", "/b"), HashFault::IsEmpty);
    hashes.Misbehave(When("CalculateHash", "/c"), HashFault::Throws);
    EXPECT_EQ(hashes.CalculateHash(ioPath("/a")), "hash of /a");
    EXPECT_EQ(hashes.CalculateHash(ioPath("/b")), "");
    EXPECT_EQ(hashes.CalculateHash(ioPath("/b")), "1234");
    EXPECT_THROW(hashes.CalculateHash(ioPath("/c")), std::runtime_error);
    hashes.Misbehave("*", HashFault::IsEmpty);
    hashes.BehaveAgain();
    EXPECT_EQ(hashes.CalculateHash(ioPath("/c")), "hash of /c");
    EXPECT_THAT(hashes.asked, ElementsAre("/a", "/b", "/b", "/c", "/c"));
}

} // namespace Norlis::Test
