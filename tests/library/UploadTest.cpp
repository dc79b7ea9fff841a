#include "CloudManagerBench.h"

#include <contracts/NorlisCloudProtocol.h>

namespace Norlis::Test {

namespace {

using Social::NorlisCloudProtocol;

class UploadTest : public CloudManagerTest {};

TEST_F(UploadTest, PathFormSendsMimeTypesAndHash)
{
    hashes->hashes["/home/me/Übersicht.pdf"] = "abc123";
    path = QStringLiteral("/home/me/Übersicht.pdf");
    fileSystem->normalize = [](const std::string& given) { return "normalized " + given; };

    manager->Upload(path);

    const QMap<QString, QString> expected = {
        {NorlisCloudProtocol::FILE_MIME_TYPE, "application/pdf"},
        {NorlisCloudProtocol::CHUNK_MIME_TYPE, "application/pdf"},
        {NorlisCloudProtocol::MD5_HASH, "abc123"},
    };
    EXPECT_EQ(protocol->LastCall("uploadFile").fields, expected);
    EXPECT_EQ(protocol->LastCall("uploadFile").localPath, path);
    EXPECT_THAT(hashes->asked, ElementsAre("/home/me/Übersicht.pdf"));
    EXPECT_THAT(fileSystem->calls, IsEmpty());
    EXPECT_THAT(Events(), ElementsAre("UploadingStarted(/home/me/Übersicht.pdf)", "-> uploadFile 1"));
}

TEST_F(UploadTest, RecordFormAlsoSendsTheId)
{
    file = RecordOf("ид");
    file->SetPath(ioPath("/home/me/ä.pdf"), "stale hash");
    file->SetIsSyncingInProgress(false);

    manager->Upload(file);

    const QMap<QString, QString> expected = {
        {NorlisCloudProtocol::FILE_MIME_TYPE, "application/pdf"},
        {NorlisCloudProtocol::CHUNK_MIME_TYPE, "application/pdf"},
        {NorlisCloudProtocol::MD5_HASH, QStringLiteral("hash of /home/me/ä.pdf")},
        {NorlisCloudProtocol::ID, QStringLiteral("ид")},
    };
    EXPECT_EQ(protocol->LastCall("uploadFile").fields, expected);
    EXPECT_EQ(protocol->LastCall("uploadFile").localPath, QStringLiteral("/home/me/ä.pdf"));
    EXPECT_THAT(Events(), ElementsAre("UploadingStarted(/home/me/ä.pdf)", "-> uploadFile 1"));
}

TEST_F(UploadTest, RecordFormNeitherKeepsNorChangesTheRecord)
{
    file->SetPath(ioPath("/home/me/a.pdf"), "stale hash");

    manager->Upload(file);

    EXPECT_EQ(file.use_count(), 1);
    EXPECT_EQ(file->GetMd5Hash(), "stale hash");
    EXPECT_EQ(file->GetPath(), ioPath("/home/me/a.pdf"));
    EXPECT_FALSE(file->IsSyncingInProgress());

    file->SetIsSyncingInProgress(true);
    protocol->Answer(1, Social::Success);
    EXPECT_TRUE(file->IsSyncingInProgress());
}

TEST_F(UploadTest, NullRecordThrowsAPlainExceptionAfterTheLoginTest)
{
    try {
        manager->Upload(std::shared_ptr<FileInfo>());
        FAIL() << "nothing was thrown";
    } catch (const std::exception& error) {
        EXPECT_EQ(typeid(error), typeid(std::exception));
    }
    EXPECT_THAT(Events(), IsEmpty());

    protocol->signedIn = false;
    manager->Upload(std::shared_ptr<FileInfo>());
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
}

TEST_F(UploadTest, SignedOutEveryFormAsksForAuthorizationOnce)
{
    protocol->signedIn = false;

    manager->Upload(path);
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
    manager->Upload(file);
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
    manager->Upload(QList<QString>{"/1.pdf", "/2.pdf", "/3.pdf"});
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
    manager->Upload(QList<QString>());
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
    manager->CancelUploading(path);
    EXPECT_THAT(Events(), ElementsAre("AuthorizationRequired()"));
    EXPECT_THAT(hashes->asked, IsEmpty());
}

TEST_F(UploadTest, ListStartsOneUploadPerPathInOrder)
{
    manager->Upload(QList<QString>{"/2.pdf", "/1.pdf", "/2.pdf"});
    EXPECT_THAT(Events(), ElementsAre("UploadingStarted(/2.pdf)", "-> uploadFile 1", "UploadingStarted(/1.pdf)",
                                      "-> uploadFile 2", "UploadingStarted(/2.pdf)", "-> uploadFile 3"));
}

TEST_F(UploadTest, EmptyListDoesNothing)
{
    manager->Upload(QList<QString>());
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(UploadTest, EachUploadOfAListMakesItsOwnLoginTest)
{
    protocol->inside["uploadFile"] = [this](qint64) { protocol->signedIn = false; };
    manager->Upload(QList<QString>{"/1.pdf", "/2.pdf", "/3.pdf"});
    EXPECT_THAT(Events(), ElementsAre("UploadingStarted(/1.pdf)", "-> uploadFile 1", "AuthorizationRequired()",
                                      "AuthorizationRequired()"));
}

TEST_F(UploadTest, RefusedRequestIsReportedAfterItsStartAndNotRegistered)
{
    protocol->refused = {"uploadFile"};

    manager->Upload(path);

    EXPECT_THAT(Events(), ElementsAre("UploadingStarted(/home/me/report.pdf)", "-> uploadFile refused",
                                      "ERROR Upload file failed",
                                      "UploadingFileRequestError(/home/me/report.pdf, Upload file failed)"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(UploadTest, RefusedRequestOfARecordIsReportedUnderItsPath)
{
    protocol->refused = {"uploadFile"};
    file->SetPath(ioPath("/a.pdf"), "hash");
    manager->Upload(file);
    EXPECT_THAT(Events(), ElementsAre("UploadingStarted(/a.pdf)", "-> uploadFile refused", "ERROR Upload file failed",
                                      "UploadingFileRequestError(/a.pdf, Upload file failed)"));
}

TEST_F(UploadTest, ProgressIsPassedOnAsItComes)
{
    const auto id = StartUpload();
    Forget();

    for (const int value : {0, 50, 50, 100, -1, 2147483647}) {
        protocol->Progress(id, value);
    }

    EXPECT_THAT(Events(), ElementsAre("UploadingProgressValueChanged(/home/me/report.pdf, 0)",
                                      "UploadingProgressValueChanged(/home/me/report.pdf, 50)",
                                      "UploadingProgressValueChanged(/home/me/report.pdf, 50)",
                                      "UploadingProgressValueChanged(/home/me/report.pdf, 100)",
                                      "UploadingProgressValueChanged(/home/me/report.pdf, -1)",
                                      "UploadingProgressValueChanged(/home/me/report.pdf, 2147483647)"));
    EXPECT_TRUE(manager->IsSyncInProgressWithCloud());
}

TEST_F(UploadTest, ProgressAfterTheEndIsIgnored)
{
    const auto id = StartUpload();
    protocol->Answer(id, Social::Success);
    Forget();
    protocol->Progress(id, 100);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(UploadTest, UploadCountsAsTransferUntilItEnds)
{
    for (const auto result : {Social::Success, Social::Error, Social::Canceled, foreignResult}) {
        EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
        const auto id = StartUpload();
        EXPECT_TRUE(manager->IsSyncInProgressWithCloud());
        protocol->Answer(id, result);
        EXPECT_FALSE(manager->IsSyncInProgressWithCloud()) << result;
    }
}

TEST_F(UploadTest, TransferHasEndedWhenItsSignalIsEmitted)
{
    bool inProgress = true;
    QObject::connect(manager.get(), &NorlisCloudManager::UploadingFinished, manager.get(),
                     [&] { inProgress = manager->IsSyncInProgressWithCloud(); });
    protocol->Answer(StartUpload(), Social::Success);
    EXPECT_FALSE(inProgress);
}

TEST_F(UploadTest, CancelStopsTheRequestAndReportsOnce)
{
    const auto id = StartUpload();
    Forget();

    manager->CancelUploading(path);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingCanceled(/home/me/report.pdf)"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());

    protocol->Progress(id, 70);
    protocol->Answer(id, Social::Canceled);
    protocol->Answer(id, Social::Success);
    manager->CancelUploading(path);
    EXPECT_THAT(Events(), IsEmpty());

    manager.reset();
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(UploadTest, CancelOfAPathThatIsNotUploadedDoesNothing)
{
    StartUpload();
    Forget();
    manager->CancelUploading(path + "x");
    manager->CancelUploading(path.left(5));
    manager->CancelUploading(path.toUpper());
    manager->CancelUploading(QString());
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_TRUE(manager->IsSyncInProgressWithCloud());
}

TEST_F(UploadTest, CancelComparesThePathByteForByte)
{
    manager->Upload(QStringLiteral("/e\u0301.pdf"));
    Forget();
    manager->CancelUploading(QStringLiteral("/\u00e9.pdf"));
    EXPECT_THAT(Events(), IsEmpty());
    manager->CancelUploading(QStringLiteral("/e\u0301.pdf"));
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingCanceled(/e\u0301.pdf)"));
}

TEST_F(UploadTest, CancelOfAPathUploadedTwiceTakesTheSmallerId)
{
    StartUpload();
    StartUpload();
    EXPECT_EQ(protocol->CallsOf("uploadFile").size(), 2u);
    Forget();

    manager->CancelUploading(path);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingCanceled(/home/me/report.pdf)"));
    EXPECT_TRUE(manager->IsSyncInProgressWithCloud());

    manager->CancelUploading(path);
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 2", "UploadingCanceled(/home/me/report.pdf)"));
    EXPECT_FALSE(manager->IsSyncInProgressWithCloud());
}

TEST_F(UploadTest, CancelNeverCleansUpInTheCloud)
{
    const auto id = StartUpload();
    manager->CancelUploading(path);
    protocol->Answer(id, Social::Canceled);
    EXPECT_THAT(protocol->CallsOf("deleteFile"), IsEmpty());
}

TEST_F(UploadTest, CancelFindsTheUploadOfARecordByItsPath)
{
    file->SetPath(ioPath("/a.pdf"), "hash");
    manager->Upload(file);
    Forget();
    manager->CancelUploading("/a.pdf");
    EXPECT_THAT(Events(), ElementsAre("-> cancelOperation 1", "UploadingCanceled(/a.pdf)"));
}

} // namespace

} // namespace Norlis::Test
