#include <tests/support/MappedFile.h>
#include <tests/support/SessionTest.h>

#include <contracts/NorlisCloudProtocol.h>

#include <QDir>
#include <QFile>

namespace Norlis::Test {

namespace {

using Social::NorlisCloudProtocol;

class CloudSessionDownloadTest : public SessionTest {
protected:
    CloudSessionDownloadTest()
    {
        Refresh({EntryOf("1", "text"), EntryOf("2", "other")});
        Events();
    }

    /// Downloads the first document once more, to another folder.
    void DownloadElsewhere(const QByteArray& content)
    {
        ASSERT_TRUE(QDir().mkdir(elsewhere));
        session->Download("1", elsewhere);
        ASSERT_TRUE(WaitForCalls("downloadFile", 2));
        Deliver(content);
        ASSERT_TRUE(WaitForEvent("DocumentDownloaded", 2));
    }

    /// Starts a download and waits until the cloud is asked.
    void Request(const QString& id)
    {
        const auto downloads = protocol->CallsOf("downloadFile").size();
        session->Download(id, folder);
        ASSERT_TRUE(WaitForCalls("downloadFile", downloads + 1));
    }

    const QString elsewhere = root.filePath("elsewhere");
};

TEST_F(CloudSessionDownloadTest, DocumentArrivesWholeUnderItsNameAndUpToDate)
{
    session->Download("1", folder + '/');
    ASSERT_TRUE(WaitForCalls("downloadFile", 1));
    EXPECT_FALSE(QFile::exists(PathOf("1.pdf"))); // the cloud writes elsewhere
    Deliver("text");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));

    EXPECT_THAT(Events(), ElementsAre("DocumentDownloaded(1, 1.pdf)"));
    EXPECT_EQ(Read(PathOf("1.pdf")), "text");
    EXPECT_EQ(FilesIn(folder), QStringList("1.pdf"));
    EXPECT_EQ(StatusOf("1"), Status::InSync);
    EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("1.pdf").toStdString());
    EXPECT_EQ(Held("1")->GetCloudHashBeforeChange(), HashOf("text"));
    EXPECT_EQ(Held("1")->GetSize(), 4u);
}

TEST_F(CloudSessionDownloadTest, StagingStandsInTheTargetFolder)
{
    Request("1");
    const QDir staged(QFileInfo(protocol->LastCall("downloadFile").fields[NorlisCloudProtocol::FILE_NAME]).path());
    EXPECT_EQ(QFileInfo(staged.canonicalPath()).path(), QFileInfo(folder).canonicalFilePath());
    EXPECT_TRUE(staged.canonicalPath().contains("/.norlis-download-"));
    EXPECT_TRUE(Held("1")->GetPath().empty()); // until it is whole
}

TEST_F(CloudSessionDownloadTest, WhatCannotBeginFailsWithoutAskingTheCloud)
{
    const auto calls = protocol->calls.size();
    const auto file = Write("file", "");
    session->Download("unknown", folder);
    session->Download("1", PathOf("missing"));
    EXPECT_THAT(Events(), IsEmpty());
    ASSERT_TRUE(WaitForEvent("Failed(Download, 1"));
    session->Download("1", QString());
    session->Download("2", file);
    ASSERT_TRUE(WaitForEvent("Failed(Download, 2"));

    EXPECT_THAT(
        Events(),
        ElementsAre("Failed(Download, unknown, The document was not downloaded, It is not in the list of documents)",
                    HasSubstr("There is no folder \"" + PathOf("missing").toStdString()),
                    HasSubstr("There is no folder \"\""), HasSubstr("There is no folder \"" + file.toStdString())));
    EXPECT_EQ(problem.cause.document, "2.pdf");
    EXPECT_FALSE(problem.cause.advice.isEmpty());
    EXPECT_EQ(protocol->calls.size(), calls);
}

TEST_F(CloudSessionDownloadTest, NameThatLeavesTheFolderIsRefused)
{
    QList<CloudEntry> entries;
    for (const auto* name : {"../escape.pdf", "a/b.pdf", "..", ".", ""}) {
        auto entry = EntryOf(QString("id ") + name);
        entry.name = name;
        entries.append(entry);
    }
    Refresh(entries);
    Events();
    for (const auto& entry : entries) {
        session->Download(entry.id, folder);
    }
    LetWorkFinish();

    const auto events = Events();
    EXPECT_EQ(events.size(), 5u);
    EXPECT_THAT(events, testing::Each(HasSubstr("its name in the cloud is not valid as a file name")));
    EXPECT_THAT(protocol->CallsOf("downloadFile"), IsEmpty());
}

TEST_F(CloudSessionDownloadTest, ForeignFileOfTheSameNameIsLeftAlone)
{
    Write("1.pdf", "mine");
    ASSERT_TRUE(QFile::link(PathOf("nowhere"), PathOf("2.pdf")));
    session->Download("1", folder);
    session->Download("2", folder);
    ASSERT_TRUE(WaitForEvent("Failed(Download, 1"));
    ASSERT_TRUE(WaitForEvent("Failed(Download, 2"));

    EXPECT_EQ(problem.cause.reason, "the folder already contains something else with this name");
    EXPECT_EQ(Read(PathOf("1.pdf")), "mine");
    EXPECT_EQ(FilesIn(folder), QStringList({"1.pdf", "2.pdf"}));
    EXPECT_THAT(protocol->CallsOf("downloadFile"), IsEmpty());
}

TEST_F(CloudSessionDownloadTest, WhatIsBesideAForeignFileHasANumberAndIsRefreshedThere)
{
    EXPECT_EQ(session->ObstacleTo("1", folder), "");
    Write("1.pdf", "mine");
    EXPECT_EQ(session->ObstacleTo("1", folder), PathOf("1.pdf"));
    EXPECT_EQ(session->ObstacleTo("unknown", folder), "");
    session->DownloadBeside("1", folder);
    ASSERT_TRUE(WaitForCalls("downloadFile", 1));
    Write("1 (2).pdf", "came meanwhile");
    Deliver("text");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    EXPECT_THAT(Events(), ElementsAre("DocumentDownloaded(1, 1 (3).pdf)"));
    EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("1 (3).pdf").toStdString());
    EXPECT_EQ(StatusOf("1"), Status::InSync);

    Refresh({EntryOf("1", "second edition"), EntryOf("2")});
    EXPECT_EQ(session->ObstacleTo("1", folder), "");
    Events();
    Download("1", "second edition");
    EXPECT_THAT(Events(), ElementsAre("DocumentDownloaded(1, 1 (3).pdf)"));
    EXPECT_EQ(Read(PathOf("1 (3).pdf")), "second edition");
    EXPECT_EQ(Read(PathOf("1 (2).pdf")), "came meanwhile");
    EXPECT_EQ(Read(PathOf("1.pdf")), "mine");
    EXPECT_EQ(FilesIn(folder), QStringList({"1 (2).pdf", "1 (3).pdf", "1.pdf"}));
}

TEST_F(CloudSessionDownloadTest, WhatIsBesideNothingHasItsName)
{
    session->DownloadBeside("1", folder);
    ASSERT_TRUE(WaitForCalls("downloadFile", 1));
    Deliver("text");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    EXPECT_THAT(Events(), ElementsAre("DocumentDownloaded(1, 1.pdf)"));
    Write("1.pdf", "my changes");
    session->DownloadBeside("1", folder);
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_EQ(problem.cause.kind, Social::OAuth2::FailureKind::Conflict);
    EXPECT_EQ(Read(PathOf("1.pdf")), "my changes");
}

TEST_F(CloudSessionDownloadTest, FileThatAppearsMeanwhileIsLeftAlone)
{
    Request("1");
    Write("1.pdf", "mine");
    Deliver("text");
    ASSERT_TRUE(WaitForEvent("Failed"));

    EXPECT_EQ(Read(PathOf("1.pdf")), "mine");
    EXPECT_EQ(FilesIn(folder), QStringList("1.pdf"));
    EXPECT_TRUE(Held("1")->GetPath().empty());
}

TEST_F(CloudSessionDownloadTest, OwnUnchangedCopyIsReplacedByTheNewEdition)
{
    Download("1", "text");
    Refresh({EntryOf("1", "second edition"), EntryOf("2")});
    EXPECT_EQ(StatusOf("1"), Status::ChangedInCloud);
    Events();

    Download("1", "second edition");
    EXPECT_THAT(Events(), ElementsAre("DocumentDownloaded(1, 1.pdf)"));
    EXPECT_EQ(Read(PathOf("1.pdf")), "second edition");
    EXPECT_EQ(FilesIn(folder), QStringList("1.pdf"));
    EXPECT_EQ(StatusOf("1"), Status::InSync);
}

TEST_F(CloudSessionDownloadTest, OwnCopyWithChangesIsLeftAlone)
{
    Download("1", "text");
    Write("1.pdf", "my changes");
    Events();

    session->Download("1", folder);
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_EQ(problem.cause.reason, "the local copy has changes that are not in the cloud");
    EXPECT_EQ(Read(PathOf("1.pdf")), "my changes");
}

TEST_F(CloudSessionDownloadTest, OwnCopyThatIsChangedMeanwhileIsLeftAlone)
{
    Download("1", "text");
    Events();
    Request("1");
    Write("1.pdf", "my changes");
    Deliver("text");
    ASSERT_TRUE(WaitForEvent("Failed"));

    EXPECT_EQ(Read(PathOf("1.pdf")), "my changes");
    EXPECT_EQ(FilesIn(folder), QStringList("1.pdf"));
    EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("1.pdf").toStdString());
}

TEST_F(CloudSessionDownloadTest, CopyForComparisonDoesNotTakeThePlaceOfTheOneWithChanges)
{
    Download("1", "text");
    Write("1.pdf", "my changes");
    Refresh({EntryOf("1", "their changes"), EntryOf("2", "other")});
    ASSERT_NO_FATAL_FAILURE(DownloadElsewhere("their changes"));
    EXPECT_EQ(Read(elsewhere + "/1.pdf"), "their changes");
    EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("1.pdf").toStdString());
    EXPECT_EQ(StatusOf("1"), Status::ChangedOnBothSides);
    EXPECT_EQ(session->DocumentAt(elsewhere + "/1.pdf"), "1");

    // The changes are put together there.
    QFile merged(elsewhere + "/1.pdf");
    ASSERT_TRUE(merged.open(QFile::WriteOnly) && merged.write("all changes") > 0);
    merged.close();
    Reopen();
    session->ReadLocalCopy(elsewhere + "/1.pdf");
    QSignalSpy read(session.get(), &Host::CloudSession::LocalCopyRead);
    ASSERT_TRUE(read.wait(20'000));
    EXPECT_EQ(read, QList<QVariantList>({{elsewhere + "/1.pdf", "1"}}));
    EXPECT_EQ(StatusOf("1"), Status::ChangedLocally);
    session->ReadLocalCopy(PathOf("1.pdf"));
    ASSERT_TRUE(read.wait(20'000));
    EXPECT_EQ(StatusOf("1"), Status::ChangedOnBothSides);
}

TEST_F(CloudSessionDownloadTest, SecondUnchangedCopyIsTheLocalOneAndTheFirstStaysKnown)
{
    Download("1", "text");
    ASSERT_NO_FATAL_FAILURE(DownloadElsewhere("text"));
    EXPECT_EQ(Held("1")->GetPath().utf8string(), (elsewhere + "/1.pdf").toStdString());

    Write("1.pdf", "my changes");
    EXPECT_EQ(session->DocumentAt(PathOf("1.pdf")), "1");
    session->ReadLocalCopy(PathOf("1.pdf"));
    ASSERT_TRUE(QSignalSpy(session.get(), &Host::CloudSession::LocalCopyRead).wait(20'000));
    EXPECT_EQ(StatusOf("1"), Status::ChangedLocally);
    EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("1.pdf").toStdString());
    EXPECT_EQ(session->DocumentAt(elsewhere + "/1.pdf"), "1");
}

TEST_F(CloudSessionDownloadTest, CopyWhoseChangesTheTimeStampDoesNotTellOfIsLeftAlone)
{
    Download("1", "text");
    MappedFile map(PathOf("1.pdf"));
    Refresh({EntryOf("1", "second edition"), EntryOf("2")});
    EXPECT_EQ(StatusOf("1"), Status::ChangedInCloud);
    map.Write("TEXT");
    session->Download("1", folder);
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_EQ(problem.cause.reason, "the local copy has changes that are not in the cloud");
    EXPECT_EQ(Read(PathOf("1.pdf")), "TEXT");
}

TEST_F(CloudSessionDownloadTest, LinkToTheOwnCopyIsNotReplaced)
{
    Download("1", "text");
    const auto elsewhere = root.filePath("elsewhere");
    ASSERT_TRUE(QDir().mkdir(elsewhere) && QFile::link(PathOf("1.pdf"), elsewhere + "/1.pdf"));
    Events();
    session->Download("1", elsewhere);
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_TRUE(QFileInfo(elsewhere + "/1.pdf").isSymLink());
}

TEST_F(CloudSessionDownloadTest, ContentThatTheListDidNotAnnounceIsThrownAway)
{
    Request("1");
    Deliver("something else");
    ASSERT_TRUE(WaitForEvent("Failed"));

    EXPECT_EQ(problem.cause.reason, "the downloaded file does not match the list of documents");
    EXPECT_THAT(FilesIn(folder), IsEmpty());
    EXPECT_TRUE(Held("1")->GetPath().empty());
}

TEST_F(CloudSessionDownloadTest, CloudWithoutHashesIsTrusted)
{
    auto entry = EntryOf("1", "text");
    entry.md5Hash.clear();
    Refresh({entry});
    Download("1", "text");

    EXPECT_EQ(Held("1")->GetCloudHashBeforeChange(), HashOf("text"));
    EXPECT_EQ(StatusOf("1"), Status::InSync);
}

TEST_F(CloudSessionDownloadTest, SuccessWithoutAFileIsAFailure)
{
    Request("1");
    Answer("downloadFile", Social::Success);
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_EQ(problem.cause.reason, "the downloaded file could not be read");
    EXPECT_THAT(FilesIn(folder), IsEmpty());
}

TEST_F(CloudSessionDownloadTest, WhatSomebodyPutsInThePlaceOfTheStagingFolderIsNotTaken)
{
    ASSERT_TRUE(QDir().mkdir(elsewhere));
    QFile own(elsewhere + "/1.pdf");
    for (const bool isCanceled : {true, false}) {
        ASSERT_TRUE(own.open(QFile::WriteOnly) && own.write("private") == 7);
        own.close();
        Request("1");
        const QFileInfo staged(protocol->LastCall("downloadFile").fields[NorlisCloudProtocol::FILE_NAME]);
        const QString place = QDir(staged.path()).canonicalPath();
        ASSERT_TRUE(QDir().rename(place, root.filePath(isCanceled ? "moved" : "moved too")));
        ASSERT_TRUE(QFile::link(elsewhere, place));
        if (isCanceled) {
            session->CancelDownload("1");
            ASSERT_TRUE(WaitForEvent("DownloadCanceled"));
        } else {
            Answer("downloadFile", Social::Success);
            ASSERT_TRUE(WaitForEvent("Failed"));
        }
        EXPECT_EQ(Read(own.fileName()), "private");
        EXPECT_FALSE(QFile::exists(folder + "/1.pdf"));
        ASSERT_TRUE(QFile::remove(place));
    }
}

TEST_F(CloudSessionDownloadTest, NamesThatSomeFileSystemsTakeForOneArriveApart)
{
    auto upper = EntryOf("2");
    upper.name = "1.PDF";
    Refresh({EntryOf("1"), upper});
    Request("1");
    const QFileInfo first(protocol->LastCall("downloadFile").fields[NorlisCloudProtocol::FILE_NAME]);
    Request("2");
    const QFileInfo second(protocol->LastCall("downloadFile").fields[NorlisCloudProtocol::FILE_NAME]);
    EXPECT_NE(first.path(), second.path());
}

TEST_F(CloudSessionDownloadTest, FailureOfTheServiceLeavesNothingBehind)
{
    Request("1");
    QFile arriving(protocol->LastCall("downloadFile").fields[NorlisCloudProtocol::FILE_NAME]);
    ASSERT_TRUE(arriving.open(QFile::WriteOnly) && arriving.write("half") == 4);
    arriving.close();
    AnswerError("downloadFile", "the connection broke");

    EXPECT_THAT(Events(), ElementsAre("Failed(Download, 1, Download file error, the connection broke)"));
    EXPECT_THAT(FilesIn(folder), IsEmpty());
    LetWorkFinish();
    EXPECT_TRUE(Held("1")->GetPath().empty());
    EXPECT_FALSE(Held("1")->IsSyncingInProgress());
}

TEST_F(CloudSessionDownloadTest, RefusedDownloadFailsOnceAndLeavesNothingBehind)
{
    protocol->refused = {"downloadFile"};
    session->Download("1", folder);
    ASSERT_TRUE(WaitForEvent("Failed"));
    LetWorkFinish();
    EXPECT_THAT(Events(), ElementsAre("Failed(Download, 1, Download file failed, )"));
    EXPECT_THAT(FilesIn(folder), IsEmpty());
}

TEST_F(CloudSessionDownloadTest, CancelEndsADownloadAndKeepsTheOldCopy)
{
    Download("1", "text");
    Events();
    Request("1");
    const auto id = protocol->LastId("downloadFile");
    session->CancelDownload("1");
    EXPECT_THAT(Events(), IsEmpty());
    ASSERT_TRUE(WaitForEvent("DownloadCanceled"));
    protocol->Answer(id, Social::Success);
    LetWorkFinish();

    EXPECT_THAT(Events(), ElementsAre("DownloadCanceled(1)"));
    EXPECT_EQ(FilesIn(folder), QStringList("1.pdf"));
    EXPECT_EQ(Read(PathOf("1.pdf")), "text");
    EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("1.pdf").toStdString());
    EXPECT_FALSE(Held("1")->IsSyncingInProgress());
}

TEST_F(CloudSessionDownloadTest, CancelBeforeTheCloudIsAskedAndAfterItHasDelivered)
{
    session->Download("1", folder);
    session->CancelDownload("1");
    session->CancelDownload("unknown");
    ASSERT_TRUE(WaitForEvent("DownloadCanceled"));
    LetWorkFinish();
    EXPECT_THAT(Events(), ElementsAre("DownloadCanceled(1)"));

    Request("1");
    Deliver("text");
    session->CancelDownload("1");
    ASSERT_TRUE(WaitForEvent("DownloadCanceled"));
    LetWorkFinish();
    EXPECT_THAT(Events(), ElementsAre("DownloadCanceled(1)"));
    EXPECT_THAT(FilesIn(folder), IsEmpty());
}

TEST_F(CloudSessionDownloadTest, CancellationByTheServiceIsReportedOnce)
{
    Request("1");
    Answer("downloadFile", Social::Canceled);
    EXPECT_THAT(Events(), ElementsAre("DownloadCanceled(1)"));
    EXPECT_THAT(FilesIn(folder), IsEmpty());
}

TEST_F(CloudSessionDownloadTest, SecondDownloadOfTheSameDocumentFailsAndTheFirstGoesOn)
{
    Request("1");
    session->Download("1", root.path());
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_EQ(problem.cause.reason, "It is already being downloaded");
    Events();
    Deliver("text");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    EXPECT_THAT(Events(), ElementsAre("DocumentDownloaded(1, 1.pdf)"));
}

TEST_F(CloudSessionDownloadTest, SeveralDocumentsArriveSideBySide)
{
    Request("1");
    const auto first = protocol->LastId("downloadFile");
    const auto firstPath = protocol->LastCall("downloadFile").fields[NorlisCloudProtocol::FILE_NAME];
    Request("2");
    Deliver("other");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded(2"));
    Write(QDir(folder).relativeFilePath(firstPath), "text");
    protocol->Answer(first, Social::Success);
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded(1"));
    EXPECT_EQ(FilesIn(folder), QStringList({"1.pdf", "2.pdf"}));
}

TEST_F(CloudSessionDownloadTest, DocumentIsMarkedAsSyncingWhileItComes)
{
    Request("1");
    LetWorkFinish();
    EXPECT_TRUE(Held("1")->IsSyncingInProgress());
    Deliver("text");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    EXPECT_FALSE(Held("1")->IsSyncingInProgress());
    LetWorkFinish();
    EXPECT_FALSE(Held("1")->IsSyncingInProgress());
}

TEST_F(CloudSessionDownloadTest, DocumentRemovedMeanwhileIsDeliveredButDoesNotComeBack)
{
    Request("1");
    session->Remove("1");
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    Answer("deleteFile", Social::Success);
    Deliver("text");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded"));
    EXPECT_EQ(Read(PathOf("1.pdf")), "text");
    EXPECT_EQ(Ids(), QStringList("2"));
}

} // namespace

} // namespace Norlis::Test
