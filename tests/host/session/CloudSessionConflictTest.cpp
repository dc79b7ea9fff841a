#include <tests/support/SessionTest.h>

#include <host/session/OtherName.h>

#include <contracts/NorlisCloudProtocol.h>

#include <QDate>
#include <QFileInfo>
#include <QSet>
#include <QSignalSpy>

namespace Norlis::Test {

namespace {

using Social::NorlisCloudProtocol;

/// What a user can choose when a document was changed here and in the cloud.
class CloudSessionConflictTest : public SessionTest {
protected:
    /// The document "1" has a local copy with changes, and the cloud has other ones.
    void SetUp() override
    {
        path = Write("1.pdf", "first");
        Upload(path, "1");
        Write("1.pdf", "ours");
        Refresh({EntryOf("1", "theirs")});
        ASSERT_EQ(StatusOf("1"), Status::ChangedOnBothSides);
        Events();
    }

    QString path;
};

TEST_F(CloudSessionConflictTest, KeepingBothSendsTheLocalCopyUnderAnotherName)
{
    session->KeepBoth("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    const auto& call = protocol->LastCall("uploadFile");
    EXPECT_EQ(call.fields[NorlisCloudProtocol::ID], "");
    const QString name = QFileInfo(call.localPath).fileName();
    EXPECT_THAT(name.toStdString(), testing::MatchesRegex("1 \\(from .*, [0-9]{4}-[0-9]{2}-[0-9]{2}\\)\\.pdf"));
    EXPECT_EQ(Read(call.localPath), "ours");
    Answer("uploadFile", Social::Success, SharingOf("2", name));
    ASSERT_TRUE(WaitForEvent("DocumentUploaded(1.pdf, 2)"));

    EXPECT_EQ(session->DocumentAt(path), "2");
    EXPECT_EQ(StatusOf("2"), Status::InSync);
    EXPECT_EQ(StatusOf("1"), Status::OnlyInCloud);
    EXPECT_EQ(Read(path), "ours");
    EXPECT_FALSE(QFileInfo::exists(call.localPath));
    Reopen();
    EXPECT_EQ(session->DocumentAt(path), "2");
    EXPECT_EQ(StatusOf("1"), Status::OnlyInCloud);
}

TEST_F(CloudSessionConflictTest, AFileIsTheCopyOfTheDocumentThatWasFetchedThereLast)
{
    session->KeepBoth("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    Answer("uploadFile", Social::Success, SharingOf("0", "1 (from desk).pdf"));
    ASSERT_TRUE(WaitForEvent("DocumentUploaded(1.pdf, 0)"));
    ASSERT_TRUE(QFile::remove(path)); // it is safe in the cloud
    Reopen();
    Refresh({EntryOf("1", "theirs"), EntryOf("0", "ours")});
    session->Download("1", QFileInfo(path).path());
    ASSERT_TRUE(WaitForCalls("downloadFile", 1));
    Deliver("theirs");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded(1"));
    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(session->DocumentAt(path), "1");
        EXPECT_EQ(StatusOf("1"), Status::InSync);
        EXPECT_EQ(StatusOf("0"), Status::OnlyInCloud);
        Reopen();
    }
}

TEST_F(CloudSessionConflictTest, ProgressIsToldByThePathThatTheUserKnows)
{
    session->KeepBoth("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    QSignalSpy progress(session.get(), &Host::CloudSession::UploadProgress);
    protocol->Progress(protocol->LastId("uploadFile"), 42);
    ASSERT_EQ(progress.size(), 1);
    EXPECT_EQ(progress.first(), QVariantList({path, 42}));
}

TEST_F(CloudSessionConflictTest, KeepingBothThatFailsOrIsCancelledChangesNothing)
{
    session->KeepBoth("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    AnswerError("uploadFile", "no room");
    EXPECT_THAT(Events(), ElementsAre("Failed(Upload, 1.pdf, Upload file error, no room)"));
    session->KeepBoth("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 3));
    session->CancelUpload(path);
    ASSERT_TRUE(WaitForEvent("UploadCanceled"));
    EXPECT_EQ(session->DocumentAt(path), "1");
    EXPECT_EQ(StatusOf("1"), Status::ChangedOnBothSides);
    EXPECT_THAT(FilesIn(dataFolder + "/links"), IsEmpty());
}

TEST_F(CloudSessionConflictTest, TheVersionInTheCloudTakesThePlaceOfTheLocalCopy)
{
    session->UseCloudVersion("1");
    ASSERT_TRUE(WaitForCalls("downloadFile", 1));
    EXPECT_EQ(Read(path), "ours");
    Deliver("theirs");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded(1"));
    EXPECT_EQ(Read(path), "theirs");
    EXPECT_EQ(StatusOf("1"), Status::InSync);
}

TEST_F(CloudSessionConflictTest, WhatIsSavedMeanwhileIsNotLost)
{
    session->UseCloudVersion("1");
    ASSERT_TRUE(WaitForCalls("downloadFile", 1));
    Write("1.pdf", "ours, saved once more");
    Deliver("theirs");
    ASSERT_TRUE(WaitForEvent("Failed(Download, 1"));
    EXPECT_EQ(problem.cause.kind, Social::OAuth2::FailureKind::Conflict);
    EXPECT_EQ(Read(path), "ours, saved once more");
}

TEST_F(CloudSessionConflictTest, WhatWasSavedSinceTheListLookedIsNotLost)
{
    Write("1.pdf", "ours, saved once more"); // which nobody has been asked about
    session->UseCloudVersion("1");
    ASSERT_TRUE(WaitForEvent("Failed(Download, 1"));
    EXPECT_EQ(problem.cause.kind, Social::OAuth2::FailureKind::Conflict);
    EXPECT_EQ(Read(path), "ours, saved once more");
    EXPECT_THAT(protocol->CallsOf("downloadFile"), IsEmpty());
}

TEST_F(CloudSessionConflictTest, ALocalCopyOfAnotherNameKeepsIt)
{
    const auto other = PathOf("mine.pdf");
    ASSERT_TRUE(QFile::rename(path, other));
    session->Download("1", folder);
    ASSERT_TRUE(WaitForCalls("downloadFile", 1));
    Deliver("theirs");
    ASSERT_TRUE(WaitForEvent("DocumentDownloaded(1"));
    EXPECT_EQ(Read(other), "ours");
}

TEST_F(CloudSessionConflictTest, AFileCanTakeThePlaceOfADocument)
{
    const auto other = Write("another.pdf", "another");
    EXPECT_EQ(session->DocumentNamed("1.pdf"), "1");
    EXPECT_EQ(session->DocumentNamed("2.pdf"), "");
    session->ReplaceWith("1", other);
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    EXPECT_EQ(protocol->LastCall("uploadFile").fields[NorlisCloudProtocol::ID], "1");
    EXPECT_EQ(protocol->LastCall("uploadFile").localPath, other);
    Answer("uploadFile", Social::Success, SharingOf("1", "1.pdf"));
    ASSERT_TRUE(WaitForEvent("DocumentUploaded(another.pdf, 1)"));
    EXPECT_EQ(session->DocumentAt(other), "1");
    EXPECT_EQ(StatusOf("1"), Status::InSync);
    EXPECT_EQ(Read(path), "ours");
}

TEST_F(CloudSessionConflictTest, WhatHasNoLocalCopyCannotBeKeptOrReplaced)
{
    Refresh({EntryOf("1", "theirs"), EntryOf("2")});
    Events();
    session->KeepBoth("2");
    session->UseCloudVersion("2");
    session->KeepBoth("unknown");
    session->UseCloudVersion("unknown");
    session->ReplaceWith("unknown", path);
    ASSERT_TRUE(WaitForEvent("Failed", 5));
    EXPECT_EQ(protocol->CallsOf("uploadFile").size(), 1U);
    EXPECT_THAT(protocol->CallsOf("downloadFile"), IsEmpty());
}

TEST(OtherNameTest, SaysWhereAndWhenAndCountsOn)
{
    const QDate date(2026, 11, 22);
    QSet<QString> names;
    const auto next = [&](const QString& name, const QString& host = "desk") {
        const auto other =
            Host::OtherNameOf(name, host, date, [&](const QString& taken) { return names.contains(taken); });
        names.insert(other);
        return other;
    };
    EXPECT_EQ(next("plan.pdf"), "plan (from desk, 2026-11-22).pdf");
    EXPECT_EQ(next("plan.pdf"), "plan (from desk, 2026-11-22) 2.pdf");
    EXPECT_EQ(next("plan.pdf"), "plan (from desk, 2026-11-22) 3.pdf");
    EXPECT_EQ(next("plan"), "plan (from desk, 2026-11-22)");
    EXPECT_EQ(next("a.b.pdf", "my/de\\sk\n"), "a.b (from mydesk, 2026-11-22).pdf");
    EXPECT_EQ(next("c.pdf", "\u00e4"), "c (from another computer, 2026-11-22).pdf");
    const auto shortened = next(QString(300, QChar(0x00e9)) + ".pdf");
    EXPECT_LE(shortened.toUtf8().size(), 235);
    EXPECT_TRUE(shortened.endsWith(" (from desk, 2026-11-22).pdf"));
}

} // namespace

} // namespace Norlis::Test
