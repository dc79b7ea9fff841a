#include <tests/support/MappedFile.h>
#include <tests/support/SessionTest.h>

#include <contracts/NorlisCloudProtocol.h>

#include <QDir>
#include <QFile>

#include <ctime>

#include <sys/stat.h>

namespace Norlis::Test {

namespace {

using Social::NorlisCloudProtocol;

class CloudSessionUploadTest : public SessionTest {};

TEST_F(CloudSessionUploadTest, UploadedFileEntersTheListUpToDate)
{
    const auto path = Write("report.pdf", "first edition");

    session->Upload({path});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    EXPECT_EQ(protocol->LastCall("uploadFile").localPath, path);
    EXPECT_EQ(protocol->LastCall("uploadFile").fields[NorlisCloudProtocol::MD5_HASH].toStdString(),
              HashOf("first edition"));
    Answer("uploadFile", Social::Success, SharingOf("7", "report (2).pdf"));

    EXPECT_THAT(Events(), ElementsAre("DocumentUploaded(report.pdf, 7)"));
    const auto held = Held("7");
    ASSERT_TRUE(held);
    EXPECT_EQ(held->GetPath().utf8string(), path.toStdString());
    EXPECT_EQ(held->GetCloudHashBeforeChange(), HashOf("first edition"));
    EXPECT_EQ(held->GetCloudStatus(), Status::InSync);
    EXPECT_EQ(held->GetCloudInfo()->GetSize(), 13u);
    EXPECT_EQ(session->Documents().GetDocumentName(0), "report (2).pdf");
}

TEST_F(CloudSessionUploadTest, EveryFileOfAListEndsByItself)
{
    session->Upload({Write("a.pdf", "a"), Write("b.pdf", "b"), PathOf("missing.pdf")});
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    const auto calls = protocol->CallsOf("uploadFile");
    protocol->Answer(calls[1].id, Social::Success, SharingOf("2", "b.pdf"));
    protocol->Answer(calls[0].id, Social::Success, SharingOf("1", "a.pdf"));
    LetWorkFinish();

    EXPECT_THAT(Events(),
                ElementsAre("Failed(Upload, missing.pdf, The document was not uploaded, There is no such file)",
                            "DocumentUploaded(b.pdf, 2)", "DocumentUploaded(a.pdf, 1)"));
    EXPECT_EQ(Ids(), QStringList({"1", "2"}));
}

TEST_F(CloudSessionUploadTest, TimeOfManyUploadsGrowsWithTheirNumberAlone)
{
    constexpr int count = 2'000;
    QStringList paths;
    for (int number = 0; number < count; ++number) {
        paths.append(Write(QString::number(number), "a"));
    }
    const auto begin = std::clock();
    session->Upload(paths);
    ASSERT_TRUE(WaitForCalls("uploadFile", count));
    const auto calls = protocol->CallsOf("uploadFile");
    for (const auto& call : calls) {
        const auto name = QFileInfo(call.localPath).fileName();
        protocol->Answer(call.id, Social::Success, SharingOf(name, name));
    }
    EXPECT_EQ(session->Documents().FilesCount(), count);
    EXPECT_LT((std::clock() - begin) / CLOCKS_PER_SEC, 10)
        << "seconds; it took a minute to compare each with all others";
}

TEST_F(CloudSessionUploadTest, ChangeThatNoTimeStampTellsOfIsSentForWhatItIs)
{
    Upload(Write("1.pdf", "text"), "1");
    MappedFile map(PathOf("1.pdf"));
    Refresh({EntryOf("1", "text")});
    map.Write("TEXT");
    session->UploadChanges("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    EXPECT_EQ(protocol->LastCall("uploadFile").fields[NorlisCloudProtocol::MD5_HASH].toStdString(), HashOf("TEXT"));
}

TEST_F(CloudSessionUploadTest, NothingIsEmittedFromInsideTheRequest)
{
    session->Upload({});
    session->Upload({PathOf("missing.pdf")});
    session->UploadChanges("unknown");
    session->CancelUpload(PathOf("missing.pdf"));
    EXPECT_THAT(Events(), IsEmpty());
    LetWorkFinish();
    EXPECT_EQ(Events().size(), 3u);
}

TEST_F(CloudSessionUploadTest, WhatCannotBeSentFailsWithoutAskingTheCloud)
{
    QDir(folder).mkdir("folder.pdf");
    ASSERT_EQ(::mkfifo(QFile::encodeName(PathOf("pipe.pdf")).constData(), 0600), 0);
    QFile::link(PathOf("nowhere"), PathOf("link.pdf"));

    session->Upload({});
    session->Upload({QString(), PathOf("folder.pdf"), PathOf("pipe.pdf"), PathOf("link.pdf")});
    ASSERT_TRUE(WaitForEvent("Failed(Upload, link.pdf"));

    EXPECT_THAT(Events(),
                ElementsAre("Failed(Upload, , The document was not uploaded, no file was given)",
                            "Failed(Upload, , The document was not uploaded, no file was given)",
                            "Failed(Upload, folder.pdf, The document was not uploaded, It is a folder)",
                            "Failed(Upload, pipe.pdf, The document was not uploaded, It is not a regular file)",
                            "Failed(Upload, link.pdf, The document was not uploaded, There is no such file)"));
    EXPECT_EQ(problem.cause.what, "Upload");
    EXPECT_EQ(problem.cause.document, "link.pdf");
    EXPECT_FALSE(problem.cause.advice.isEmpty());
    EXPECT_THAT(protocol->calls, IsEmpty());
}

TEST_F(CloudSessionUploadTest, FileThatVanishesBeforeItIsSentFails)
{
    const auto path = Write("a.pdf", "a");
    protocol->inside["uploadFile"] = [](qint64) { FAIL() << "must not be sent"; };
    session->Upload({path});
    QMetaObject::invokeMethod(
        session.get(), [&] { QFile::remove(path); }, Qt::QueuedConnection);
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_EQ(problem.cause.reason, "The file could not be read");
}

TEST_F(CloudSessionUploadTest, SecondUploadOfTheSameFileFailsAndTheFirstGoesOn)
{
    const auto path = Write("a.pdf", "a");
    session->Upload({path, folder + "/./a.pdf"});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    session->Upload({path});
    ASSERT_TRUE(WaitForEvent("Failed(Upload, a.pdf"));
    LetWorkFinish();
    EXPECT_EQ(Events().size(), 2u);

    protocol->Answer(protocol->CallsOf("uploadFile").front().id, Social::Success, SharingOf("1", "a.pdf"));
    EXPECT_THAT(Events(), ElementsAre("DocumentUploaded(a.pdf, 1)"));

    Upload(path, "2"); // and the way is free again
}

TEST_F(CloudSessionUploadTest, FileOnALinkIsUploadedUnderTheNameOfTheLink)
{
    Write("original.pdf", "text");
    ASSERT_TRUE(QFile::link(PathOf("original.pdf"), PathOf("link.pdf")));

    session->Upload({PathOf("link.pdf")});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    EXPECT_EQ(protocol->LastCall("uploadFile").localPath, PathOf("link.pdf"));
    Answer("uploadFile", Social::Success, SharingOf("1", "link.pdf"));

    EXPECT_THAT(Events(), ElementsAre("DocumentUploaded(link.pdf, 1)"));
    EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("original.pdf").toStdString());
}

TEST_F(CloudSessionUploadTest, FileSavedWhileItIsSentShowsAsChangedLocally)
{
    const auto path = Write("a.pdf", "what was sent");
    session->Upload({path});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    Write("a.pdf", "what was saved meanwhile");
    Answer("uploadFile", Social::Success, SharingOf("1", "a.pdf"));

    EXPECT_EQ(StatusOf("1"), Status::ChangedLocally);
    EXPECT_EQ(Held("1")->GetCloudInfo()->GetSize(), 13u);
    EXPECT_EQ(Held("1")->GetCloudHashBeforeChange(), HashOf("what was sent"));
}

TEST_F(CloudSessionUploadTest, CancelEndsAnUploadInEveryStage)
{
    const auto path = Write("a.pdf", "a");
    session->Upload({path});
    session->CancelUpload(path);
    EXPECT_THAT(Events(), IsEmpty());
    ASSERT_TRUE(WaitForEvent("UploadCanceled"));
    LetWorkFinish();
    EXPECT_THAT(Events(), ElementsAre("UploadCanceled(a.pdf)"));
    for (const auto& call : protocol->CallsOf("uploadFile")) {
        EXPECT_NE(call.localPath, path);
    }

    const auto uploads = protocol->CallsOf("uploadFile").size();
    session->Upload({path});
    ASSERT_TRUE(WaitForCalls("uploadFile", uploads + 1));
    const auto id = protocol->LastId("uploadFile");
    session->CancelUpload(path);
    EXPECT_THAT(Events(), IsEmpty());
    ASSERT_TRUE(WaitForEvent("UploadCanceled"));
    protocol->Answer(id, Social::Success, SharingOf("1", "a.pdf"));
    LetWorkFinish();
    EXPECT_THAT(Events(), ElementsAre("UploadCanceled(a.pdf)"));
    EXPECT_EQ(protocol->LastCall("cancelOperation").operation, "cancelOperation");
    EXPECT_THAT(Ids(), IsEmpty());
}

TEST_F(CloudSessionUploadTest, FailureOfTheServiceIsReportedWithItsReasonAndNothingElse)
{
    session->Upload({Write("a.pdf", "a")});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    AnswerError("uploadFile", "the quota is used up");
    AnswerError("deleteFile", "there is no such document"); // the manager's own clean-up
    LetWorkFinish();

    EXPECT_THAT(Events(), ElementsAre("Failed(Upload, a.pdf, Upload file error, the quota is used up)"));
    EXPECT_THAT(Ids(), IsEmpty());
}

TEST_F(CloudSessionUploadTest, CleanUpThatFailsAtOnceDoesNotStealTheReason)
{
    session->Upload({Write("a.pdf", "a")});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    protocol->refused = {"deleteFile"};
    protocol->inside["deleteFile"] = [this](qint64) {
        Social::OAuth2::Failure failure;
        failure.reason = "not the reason";
        protocol->TellFailure(failure);
    };
    AnswerError("uploadFile", "the quota is used up");

    EXPECT_THAT(Events(), ElementsAre("Failed(Upload, a.pdf, Upload file error, the quota is used up)"));
}

TEST_F(CloudSessionUploadTest, SuccessfulCleanUpAfterAFailedUploadIsNotReported)
{
    session->Upload({Write("a.pdf", "a")});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    Answer("uploadFile", Social::Canceled, SharingOf("left behind", "a.pdf"));
    Answer("deleteFile", Social::Success);
    LetWorkFinish();

    EXPECT_THAT(Events(), ElementsAre("UploadCanceled(a.pdf)"));
}

TEST_F(CloudSessionUploadTest, RefusedUploadFailsOnce)
{
    protocol->refused = {"uploadFile"};
    session->Upload({Write("a.pdf", "a")});
    ASSERT_TRUE(WaitForEvent("Failed"));
    LetWorkFinish();
    EXPECT_THAT(Events(), ElementsAre("Failed(Upload, a.pdf, Upload file failed, )"));
}

TEST_F(CloudSessionUploadTest, AnswerWithoutAnIdIsAFailure)
{
    session->Upload({Write("a.pdf", "a")});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    Answer("uploadFile", Social::Success, SharingOf("", "a.pdf"));
    EXPECT_EQ(Events().size(), 1u);
    EXPECT_EQ(problem.request, Host::CloudProblem::Request::Upload);
    EXPECT_THAT(Ids(), IsEmpty());
}

TEST_F(CloudSessionUploadTest, ChangesReplaceTheCloudCopyAndBringTheRecordUpToDate)
{
    const auto path = Write("a.pdf", "old");
    Upload(path, "1");
    Write("a.pdf", "new text");
    Events();

    session->UploadChanges("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    EXPECT_EQ(protocol->LastCall("uploadFile").fields[NorlisCloudProtocol::ID], "1");
    EXPECT_EQ(protocol->LastCall("uploadFile").fields[NorlisCloudProtocol::MD5_HASH].toStdString(), HashOf("new text"));
    Answer("uploadFile", Social::Success, SharingOf("1", "a.pdf"));

    EXPECT_THAT(Events(), ElementsAre("DocumentUploaded(a.pdf, 1)"));
    EXPECT_EQ(Ids(), QStringList("1"));
    EXPECT_EQ(StatusOf("1"), Status::InSync);
    EXPECT_EQ(Held("1")->GetCloudHashBeforeChange(), HashOf("new text"));
}

TEST_F(CloudSessionUploadTest, ChangesNeedADocumentWithALocalCopy)
{
    Refresh({EntryOf("1")});
    Events();
    session->UploadChanges("1");
    session->UploadChanges("2");
    LetWorkFinish();
    EXPECT_THAT(Events(),
                ElementsAre("Failed(Upload, 1, The document was not uploaded, It has no local copy)",
                            "Failed(Upload, 2, The document was not uploaded, It is not in the list of documents)"));
}

TEST_F(CloudSessionUploadTest, DocumentIsMarkedAsSyncingWhileItsChangesAreSent)
{
    Upload(Write("a.pdf", "old"), "1");
    session->UploadChanges("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    const auto upload = protocol->LastId("uploadFile");
    LetWorkFinish();
    EXPECT_TRUE(Held("1")->IsSyncingInProgress());

    protocol->Answer(upload, Social::Error);
    LetWorkFinish();
    EXPECT_FALSE(Held("1")->IsSyncingInProgress());
}

} // namespace

} // namespace Norlis::Test
