#include "CloudManagerScenarios.h"
#include "NotedDestruction.h"

namespace Norlis::Test {

namespace {

using testing::UnorderedElementsAreArray;

/// What holds for requests of every kind.
class RequestTest : public CloudManagerTest, public testing::WithParamInterface<RequestKind> {
protected:
    qint64 Start()
    {
        return (this->*GetParam().start)();
    }
};

TEST_P(RequestTest, OnlyTransfersCountAsSynchronisation)
{
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
    const auto id = Start();
    EXPECT_EQ(manager->IsSyncInProgressWithCloud(), GetParam().isTransfer);
    protocol->Answer(id, Social::Success);
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_P(RequestTest, SecondCallbackDoesNothing)
{
    const auto id = Start();
    protocol->Answer(id, Social::Success);
    Forget();

    for (const auto result : {Social::Success, Social::Error, Social::Canceled}) {
        protocol->Answer(id, result);
    }
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_P(RequestTest, CallbackWithAnUnknownIdDoesNothingAndTheRequestGoesOn)
{
    const auto id = Start();
    Forget();

    protocol->AnswerAs(id, id + 1, Social::Success);
    protocol->AnswerAs(id, -1, Social::Error);
    EXPECT_THAT(Events(), IsEmpty());

    protocol->Answer(id, Social::Error);
    EXPECT_FALSE(Events().empty());
}

TEST_P(RequestTest, RefusedRequestIsNotRegistered)
{
    protocol->refused = {GetParam().operation};
    Start();
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
    Forget();
    manager.reset();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_P(RequestTest, CallbackFromInsideTheRequestIsIgnored)
{
    protocol->inside[GetParam().operation] = [this](qint64 id) {
        Forget();
        protocol->Answer(id, Social::Success);
    };
    const auto id = Start();
    EXPECT_THAT(Events(), IsEmpty());

    manager.reset();
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation " + std::to_string(id)));
}

TEST_P(RequestTest, DestructionCancelsTheRequestAndEmitsNothing)
{
    const auto id = Start();
    Forget();
    manager.reset();
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation " + std::to_string(id)));
}

TEST_P(RequestTest, CallbacksAfterDestructionDoNothing)
{
    const auto id = Start();
    manager.reset();
    Forget();

    for (const auto result : {Social::Success, Social::Error, Social::Canceled}) {
        protocol->Answer(id, result);
    }
    if (GetParam().isTransfer) {
        protocol->Progress(id, 50);
    }
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_P(RequestTest, EndedRequestIsNotCancelledByDestruction)
{
    protocol->Answer(Start(), foreignResult);
    Forget();
    manager.reset();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_P(RequestTest, CallbacksFromInsideTheCancellationOfDestructionDoNothing)
{
    const auto id = Start();
    protocol->inside["cancelOperation"] = [&](qint64 cancelled) {
        EXPECT_EQ(cancelled, id);
        Forget();
        if (GetParam().isTransfer) {
            protocol->Progress(id, 50);
        }
        protocol->Answer(id, Social::Canceled);
        protocol->Answer(id, Social::Success);
    };
    manager.reset();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_P(RequestTest, CallbacksFromTheProtocolsDestructorDoNothing)
{
    Start();
    protocol->answersWhenDestroyed = true;
    const std::weak_ptr<ScriptedProtocol> watched = protocol;
    protocol.reset();
    Forget();

    manager.reset();

    EXPECT_TRUE(watched.expired());
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1"));
}

TEST_P(RequestTest, ManagerDeletedInsideTheRequestLeavesNoRequestBehind)
{
    protocol->inside[GetParam().operation] = [this](qint64) {
        manager.reset();
        Forget();
    };
    const auto id = Start();
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation " + std::to_string(id)));
    EXPECT_THAT(protocol->Running(), IsEmpty());
}

TEST_P(RequestTest, ManagerDeletedInsideARefusedRequestReportsNothing)
{
    protocol->refused = {GetParam().operation};
    protocol->inside[GetParam().operation] = [this](qint64) {
        manager.reset();
        Forget();
    };
    Start();
    EXPECT_THAT(Events(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Registry, RequestTest, testing::ValuesIn(RequestKinds()),
                         [](const auto& info) { return info.param.operation; });

class RegistryTest : public CloudManagerTest {};

TEST_F(RegistryTest, DestructionCancelsEachOfManyRequestsOnce)
{
    std::vector<std::string> expected;
    for (int i = 0; i < 100; ++i) {
        for (const auto& kind : RequestKinds()) {
            if (kind.operation != "retriveFileList" || !manager->IsSyncInProgressWithCloud()) {
                expected.push_back("-> cancelOperation " + std::to_string((this->*kind.start)()));
            }
        }
    }
    Forget();

    manager.reset();

    EXPECT_THAT(Events(), UnorderedElementsAreArray(expected));
}

TEST_F(RegistryTest, DestructionStartsNothing)
{
    StartQuota();
    StartUpload();
    auto* const dying = manager.get();
    protocol->inside["cancelOperation"] = [=](qint64) {
        dying->UserQuota();
        dying->Upload(path);
        dying->CancelUploading(path);
        dying->RetrieveFilePreview(file, FileInfo::PreviewSize::Small, {40, 40});
        dying->RemoveFile(file);
        dying->Authorization(token);
        dying->Authorization(QString());
    };
    Forget();

    manager.reset();

    const auto events = Events();
    EXPECT_THAT(events, testing::Each(testing::Not(testing::HasSubstr("()"))));
    EXPECT_EQ(protocol->CallsOf("cancelOperation").size(), 2u);
    EXPECT_THAT(protocol->CallsOf("deleteFile"), IsEmpty());
    EXPECT_THAT(protocol->Running(), IsEmpty());
}

TEST_F(RegistryTest, AnswersToOthersDuringDestructionDoNothing)
{
    const auto quota = StartQuota();
    const auto upload = StartUpload();
    const auto removal = StartRemoval();
    protocol->inside["cancelOperation"] = [&](qint64) {
        for (const auto id : {quota, upload, removal}) {
            protocol->Answer(id, Social::Success);
        }
    };
    Forget();
    manager.reset();
    EXPECT_THAT(Events(), UnorderedElementsAre("-> cancelOperation 1", "-> cancelOperation 2", "-> cancelOperation 3"));
}

TEST_F(RegistryTest, RequestsEndIndependentlyOfEachOther)
{
    const auto quota = StartQuota();
    const auto upload = StartUpload();
    const auto download = StartDownload();
    Forget();

    protocol->Answer(download, Social::Error);
    EXPECT_TRUE(manager->IsSyncInProgressWithCloud());
    protocol->Answer(quota, Social::Canceled);
    protocol->Progress(upload, 3);
    manager->CancelUploading(path);

    EXPECT_THAT(Events(),
                ElementsAre("ERROR Download file error", "DownloadingFileRequestError(doc, Download file error)",
                            "INFO User quota request canceled", "RetrievingUserQuotaCanceled()",
                            "UploadingProgressValueChanged(/home/me/report.pdf, 3)", "-> cancelOperation 2",
                            "UploadingCanceled(/home/me/report.pdf)"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(RegistryTest, ProgressWithAnUnknownIdIsIgnored)
{
    const auto id = StartUpload();
    Forget();
    protocol->ProgressAs(id, id + 1, 50);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(RegistryTest, ManagerHasNoParent)
{
    EXPECT_EQ(manager->parent(), nullptr);
}

TEST(CloudManagerCollaboratorsTest, AreKeptForItsWholeLifeAndReleasedInReverseOrder)
{
    std::vector<std::string> released;
    auto protocol = std::make_shared<NotedDestruction<ScriptedProtocol>>();
    protocol->destroyed = [&] { released.emplace_back("protocol"); };
    auto hashes = std::make_shared<NotedDestruction<CountingHashCalculator>>();
    hashes->destroyed = [&] { released.emplace_back("hash calculator"); };
    auto fileSystem = std::make_shared<NotedDestruction<FakeFileSystem>>();
    fileSystem->destroyed = [&] { released.emplace_back("file system"); };
    auto manager =
        std::make_unique<NorlisCloudManager>(protocol, hashes, fileSystem, std::make_shared<FixedAccountSettings>());
    protocol.reset();
    hashes.reset();
    fileSystem.reset();
    EXPECT_THAT(released, IsEmpty());

    manager.reset();

    EXPECT_THAT(released, ElementsAre("file system", "hash calculator", "protocol"));
}

} // namespace

} // namespace Norlis::Test
