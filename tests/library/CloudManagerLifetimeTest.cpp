#include "CloudManagerScenarios.h"

#include <tests/support/SlotRunner.h>

#include <algorithm>
#include <set>

namespace Norlis::Test {

namespace {

/// What slots may do while the manager emits. Each test runs for every way to every signal; what they do to memory
/// shows under the address sanitizer.
class SlotTest : public CloudManagerTest, public testing::WithParamInterface<Scenario> {
protected:
    /// Lets the scenario run into a slot, which acts the first time only.
    void ReachSlot(const std::function<void()>& action)
    {
        SlotRunner runner([&] {
            if (runner.runs == 1) {
                action();
            }
        });
        const auto& meta = PDF::Cloud::AbstractCloudManager::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).name() == QByteArray::fromStdString(GetParam().signal)) {
                ASSERT_TRUE(runner.ConnectTo(*manager, meta.method(i)));
            }
        }
        WriteSignals(*manager, later);
        GetParam().reach(*this);
        EXPECT_GE(runner.runs, 1);
    }

    /// What slots saw that were connected after the acting one.
    std::shared_ptr<Journal> later = std::make_shared<Journal>();

    /// The journal's lines without protocol calls and log records.
    std::vector<std::string> SignalsOnly()
    {
        auto lines = Events();
        lines.erase(std::remove_if(lines.begin(), lines.end(), [](const auto& line) { return line.back() != ')'; }),
                    lines.end());
        return lines;
    }

    /// Answers what runs, and what that starts, until nothing runs any more.
    void AnswerEverything()
    {
        for (int round = 0; round < 20 && !protocol->Running().empty(); ++round) {
            for (const auto id : protocol->Running()) {
                protocol->Answer(id, Social::Success);
            }
        }
        EXPECT_THAT(protocol->Running(), IsEmpty());
    }

    /// Nothing is registered any more.
    void ExpectIdle()
    {
        EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
        Forget();
        manager.reset();
        EXPECT_THAT(Events(), IsEmpty());
    }
};

TEST_P(SlotTest, MayDeleteTheManager)
{
    ReachSlot([this] {
        manager.reset();
        Forget();
    });

    EXPECT_EQ(manager, nullptr);
    EXPECT_THAT(Events(), IsEmpty()) << "after the manager was deleted";
    EXPECT_THAT(protocol->Running(), IsEmpty());
}

TEST_P(SlotTest, MayClearTheCallersArguments)
{
    ReachSlot([this] {
        token.clear();
        path.clear();
        paths.clear();
        directory.clear();
        file.reset();
        files.clear();
    });
    EXPECT_EQ(later->Take(), SignalsOnly());
    protocol->signedIn = true;
    AnswerEverything();
    ExpectIdle();
}

TEST_P(SlotTest, MayCancelAndStartOtherRequests)
{
    ReachSlot([this] {
        manager->CancelUploading(path);
        manager->CancelDownloading(file);
        manager->Upload(paths);
        manager->Upload(path);
        manager->Download(files, directory);
        manager->RetrieveFilesList();
        manager->RemoveFile(file);
        manager->RetrieveFilePreview(file, FileInfo::PreviewSize::Large, {191, 191});
        manager->UserQuota();
        manager->Authorization(token);
        manager->CancelUploading(paths.at(1));
        manager->CancelDownloading(files.at(0));
    });
    AnswerEverything();
    ExpectIdle();
}

TEST_P(SlotTest, MayMakeTheProtocolDropItsCallbacks)
{
    ReachSlot([this] {
        for (const auto& call : protocol->calls) {
            protocol->Drop(call.id);
        }
    });
    manager.reset();
}

INSTANTIATE_TEST_SUITE_P(CloudManager, SlotTest, testing::ValuesIn(CloudManagerScenarios()),
                         [](const auto& info) { return info.param.signal + info.param.way; });

TEST(CloudManagerScenariosTest, EverySignalIsReached)
{
    std::set<std::string> reached;
    for (const auto& scenario : CloudManagerScenarios()) {
        reached.insert(scenario.signal);
    }
    std::set<std::string> declared;
    const auto& meta = PDF::Cloud::AbstractCloudManager::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        declared.insert(meta.method(i).name().toStdString());
    }
    EXPECT_EQ(reached, declared);
}

} // namespace

} // namespace Norlis::Test
