#include "CloudManagerBench.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QFile>
#include <QSignalSpy>

namespace Norlis::Test {

namespace {

class RemoveTest : public CloudManagerTest {};

TEST_F(RemoveTest, RequestCarriesTheIdAloneAndIsNotAnnounced)
{
    manager->RemoveFile(file);

    const QMap<QString, QString> expected = {{Social::NorlisCloudProtocol::ID, "doc"}};
    EXPECT_EQ(protocol->LastCall("deleteFile").fields, expected);
    EXPECT_TRUE(protocol->LastCall("deleteFile").extra.isEmpty());
    EXPECT_THAT(Events(), ElementsAre("-> deleteFile 1"));
}

TEST_F(RemoveTest, RecordWithoutIdIsSentAllTheSame)
{
    file = std::make_shared<FileInfo>(FileInfo::CloudInfo("", "a.pdf", 0, false, {}, {}, {}, 0, ""));
    manager->RemoveFile(file);
    const QMap<QString, QString> expected = {{Social::NorlisCloudProtocol::ID, QString()}};
    EXPECT_EQ(protocol->LastCall("deleteFile").fields, expected);
}

TEST_F(RemoveTest, SignedOutOnlyAsksForAuthorization)
{
    protocol->signedIn = false;
    manager->RemoveFile(file);
    manager->RemoveFile(nullptr);
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()", "AuthorizationRequired()"));
}

TEST_F(RemoveTest, NullRecordThrowsAPlainException)
{
    try {
        manager->RemoveFile(nullptr);
        FAIL() << "nothing was thrown";
    } catch (const std::exception& error) {
        EXPECT_EQ(typeid(error), typeid(std::exception));
    }
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(RemoveTest, RefusedRequestIsReportedAndNotRegistered)
{
    protocol->refused = {"deleteFile"};
    manager->RemoveFile(file);
    EXPECT_THAT(Events(), ElementsAre("-> deleteFile refused", "ERROR Remove file failed",
                                      "RemovingFileError(doc, Remove file failed)"));
    manager.reset();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(RemoveTest, SuccessReportsTheRecordItselfAndThenAsksForTheQuota)
{
    QSignalSpy removed(manager.get(), &NorlisCloudManager::RemoveFileFinished);
    const auto id = StartRemoval();
    Forget();

    protocol->Answer(id, Social::Success);

    EXPECT_THAT(Events(), ElementsAre("RemoveFileFinished(doc)", "RetrievingUserQuotaStarted()", "-> userQuota 2"));
    EXPECT_EQ(removed[0][0].value<std::shared_ptr<FileInfo>>(), file);
}

TEST_F(RemoveTest, EveryOtherResultIsAnError)
{
    for (const auto result : {Social::Error, Social::Canceled, foreignResult, negativeResult}) {
        const auto id = StartRemoval();
        Forget();
        protocol->Answer(id, result);
        EXPECT_THAT(Events(), ElementsAre("ERROR Remove file error", "RemovingFileError(doc, Remove file error)"))
            << result;
    }
}

TEST_F(RemoveTest, RemovalIsNoTransfer)
{
    StartRemoval();
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
    Forget();

    manager->RetrieveFilesList();
    manager->CancelDownloading(file);
    manager->CancelUploading("doc");

    EXPECT_THAT(Events(), ElementsAre("RetrievingFilesListStarted()", "-> retriveFileList 2"));
}

TEST_F(RemoveTest, TwoRemovalsOfOneRecordCompleteEachOnItsOwn)
{
    const auto first = StartRemoval();
    const auto second = StartRemoval();
    Forget();
    protocol->Answer(second, Social::Success);
    protocol->Answer(first, Social::Error);
    EXPECT_THAT(Events(), ElementsAre("RemoveFileFinished(doc)", "RetrievingUserQuotaStarted()", "-> userQuota 3",
                                      "ERROR Remove file error", "RemovingFileError(doc, Remove file error)"));
}

TEST_F(RemoveTest, LocalFileStays)
{
    const auto local = Write("local.pdf");
    file->SetPath(ioPath(local.toStdString()), "hash");
    protocol->Answer(StartRemoval(), Social::Success);
    EXPECT_TRUE(QFile::exists(local));
    EXPECT_FALSE(file->GetPath().empty());
}

TEST_F(RemoveTest, CallbackKeepsTheRecordAlive)
{
    const auto id = StartRemoval();
    file.reset();
    Forget();
    protocol->Answer(id, Social::Error);
    EXPECT_THAT(Events(), ElementsAre("ERROR Remove file error", "RemovingFileError(doc, Remove file error)"));
}

} // namespace

} // namespace Norlis::Test
