// The short examples of docs/testkit.md that are no programs of their own.

#include <NorlisTestKit/CountingHashCalculator.h>
#include <NorlisTestKit/FakeFileSystem.h>
#include <NorlisTestKit/FaultServer.h>
#include <NorlisTestKit/RecordingStore.h>

#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;

TEST(TestKitPageTest, FaultsAreAskedForInOneWay)
{
    const auto store = std::make_shared<RecordingStore>();
    const auto fileSystem = std::make_shared<FakeFileSystem>();
    const auto hashes = std::make_shared<CountingHashCalculator>();
    FaultServer server;
    fileSystem->existing = {"/home/me/report.pdf"};

    store->Misbehave("ReadAll", StoreFault::Throws);
    store->Misbehave(When("SetValue", "file_name").From(3).Always(), StoreFault::Forgets);
    fileSystem->Misbehave(When("Exists", "report.pdf"), FileSystemFault::Vanishes);
    hashes->Misbehave(When("*").Always(), HashFault::IsEmpty);
    server.Misbehave(When("PUT").From(2).Times(3), AnswersWith(503));

    EXPECT_THROW(store->ReadAll(), std::runtime_error);
    EXPECT_TRUE(fileSystem->Exists(ioPath("/home/me/report.pdf")));
    EXPECT_FALSE(fileSystem->Exists(ioPath("/home/me/report.pdf")));
    EXPECT_EQ(hashes->CalculateHash(ioPath("/home/me/report.pdf")), "");
}

} // namespace Norlis::Test
