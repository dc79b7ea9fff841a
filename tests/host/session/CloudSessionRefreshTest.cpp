#include <host/session/CloudFacts.h>
#include <tests/support/SessionTest.h>
#include <tests/support/SqliteFile.h>

#include <QFile>
#include <QSignalSpy>
#include <QTimer>

namespace Norlis::Test {

namespace {

class CloudSessionRefreshTest : public SessionTest {
protected:
    /// Sends a list request and returns its id.
    qint64 Request()
    {
        const auto lists = protocol->CallsOf("retriveFileList").size();
        session->Refresh();
        EXPECT_TRUE(WaitForCalls("retriveFileList", lists + 1));
        return protocol->LastId("retriveFileList");
    }

    using Entries = QList<CloudEntry>;
};

CloudEntry At(CloudEntry entry, const QString& modifiedAt)
{
    entry.modifiedAt = modifiedAt;
    return entry;
}

TEST_F(CloudSessionRefreshTest, FirstListFillsTheListInTheOrderOfTheCloud)
{
    session->Refresh();
    EXPECT_THAT(protocol->calls, IsEmpty());
    ASSERT_TRUE(WaitForCalls("retriveFileList", 1));
    Answer("retriveFileList", Social::Success, Entries({EntryOf("b"), EntryOf("a"), EntryOf("c")}));
    EXPECT_THAT(Events(), IsEmpty());
    ASSERT_TRUE(WaitForEvent("ListRefreshed"));

    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+b a c, ~, -)"));
    EXPECT_EQ(Ids(), QStringList({"b", "a", "c"}));
    EXPECT_EQ(session->Documents().GetDocumentName(1), "a.pdf");
}

TEST_F(CloudSessionRefreshTest, SecondListReportsWhatIsNewChangedAndGone)
{
    Refresh({EntryOf("same"), EntryOf("edited"), EntryOf("renamed"), EntryOf("touched"), EntryOf("gone")});
    Events();
    auto renamed = EntryOf("renamed");
    renamed.name = "other name.pdf";

    Refresh({EntryOf("same"), EntryOf("edited", "second edition"), renamed,
             At(EntryOf("touched"), "2025-04-01T00:00:00Z"), EntryOf("new")});

    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+new, ~edited renamed touched, -gone)"));
    EXPECT_EQ(Held("edited")->GetCloudInfo()->GetSize(), 14u);
    EXPECT_EQ(PDF::FileInfo::CloudInfo(*Held("renamed")->GetCloudInfo()).GetFileName(), "other name.pdf");
    EXPECT_FALSE(Held("gone"));
    Refresh({EntryOf("same")});
    EXPECT_THAT(Events(), ElementsAre(testing::StartsWith("ListRefreshed(+, ~, -")));
}

TEST_F(CloudSessionRefreshTest, UnchangedDocumentsAreNotTouched)
{
    Refresh({EntryOf("a"), EntryOf("b")});
    QSignalSpy updates(&session->Documents(), qOverload<int>(&PDF::AbstractFileManager::FileUpdated));
    Refresh({EntryOf("b"), EntryOf("a")});
    EXPECT_EQ(updates.count(), 0);
}

TEST_F(CloudSessionRefreshTest, RefreshAfterARestartFindsWhatHasChangedAndNothingElse)
{
    const auto first = At(EntryOf("a"), "2025-03-01T06:07:08.900Z"); // more than a store keeps
    Refresh({first, EntryOf("b", "text"), EntryOf("c")});
    Download("b", "text");
    for (int restart = 0; restart < 2; ++restart) {
        Reopen();
        EXPECT_EQ(session->Documents().GetModifiedDateTime(0), QDateTime({2025, 3, 1}, {6, 7, 8}, Qt::UTC));
        QSignalSpy updates(&session->Documents(), qOverload<int>(&PDF::AbstractFileManager::FileUpdated));
        Events();
        Refresh({first, EntryOf("b", "text"), EntryOf("c")});
        EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~, -)"));
        EXPECT_EQ(updates.count(), 0);
    }
    Reopen();
    Refresh({first, EntryOf("b", "text"), At(EntryOf("c"), "2025-03-01T06:07:09Z")});
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~c, -)"));
}

TEST_F(CloudSessionRefreshTest, NothingIsSavedWhenNothingHasChanged)
{
    const auto store = dataFolder + "/documents.sqlite";
    Refresh({EntryOf("a"), EntryOf("b")});
    session->SaveAndClose();
    const auto before = Host::ContentOf(store);
    Open();
    Refresh({EntryOf("b"), EntryOf("a")});
    session->SaveAndClose();
    EXPECT_EQ(Host::ContentOf(store), before);

    Open();
    Refresh({EntryOf("b"), EntryOf("a", "second edition")});
    session->SaveAndClose();
    EXPECT_NE(Host::ContentOf(store), before);
}

TEST_F(CloudSessionRefreshTest, HashThatBecomesKnownIsNoChange)
{
    auto unhashed = EntryOf("1");
    const auto known = unhashed.md5Hash;
    unhashed.md5Hash = "version:1";
    Refresh({unhashed});
    Events();
    QSignalSpy updates(&session->Documents(), qOverload<int>(&PDF::AbstractFileManager::FileUpdated));
    Refresh({EntryOf("1")});
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~, -)"));
    EXPECT_EQ(updates.count(), 0);
    EXPECT_EQ(session->Facts("1")->hash, known.toStdString());

    Reopen();
    EXPECT_EQ(Held("1")->GetRedactableCloudInfo()->GetMd5Hash(), known.toStdString());
    unhashed.md5Hash = "version:2"; // what was hashed is there no longer
    Refresh({unhashed});
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~1, -)"));
    unhashed.md5Hash = "version:3";
    Refresh({unhashed});
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~1, -)"));
}

TEST_F(CloudSessionRefreshTest, LocalCopyThatWasChangedWhileTheProgramWasNotRunningIsFoundToBeTheCloudCopy)
{
    Refresh({EntryOf("1", "text")});
    Download("1", "text");
    Refresh({EntryOf("1", "second edition")});
    session.reset();
    Write("1.pdf", "second edition");
    Open();
    Refresh({EntryOf("1", "second edition")});
    EXPECT_EQ(Held("1")->GetCloudHashBeforeChange(), HashOf("second edition"));
}

TEST_F(CloudSessionRefreshTest, LocalCopyAndItsHistorySurviveARefresh)
{
    const auto path = Write("1.pdf", "text");
    Upload(path, "1");
    Refresh({EntryOf("1", "text")});
    EXPECT_EQ(Held("1")->GetPath().utf8string(), path.toStdString());
    EXPECT_EQ(Held("1")->GetCloudHashBeforeChange(), HashOf("text"));
    EXPECT_EQ(StatusOf("1"), Status::InSync);

    Refresh({EntryOf("1", "second edition")});
    EXPECT_EQ(StatusOf("1"), Status::ChangedInCloud);

    Write("1.pdf", "my changes");
    Refresh({EntryOf("1", "second edition")});
    EXPECT_EQ(StatusOf("1"), Status::ChangedOnBothSides);
}

TEST_F(CloudSessionRefreshTest, ChangeOfTheLocalCopyIsNoticedEvenIfTheCloudIsTheSame)
{
    Upload(Write("1.pdf", "text"), "1");
    Refresh({EntryOf("1", "text")});
    Write("1.pdf", "my changes");
    Events();
    Refresh({EntryOf("1", "text")});
    EXPECT_EQ(StatusOf("1"), Status::ChangedLocally);
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~, -)"));
}

TEST_F(CloudSessionRefreshTest, CopiesThatAreFoundToBeTheSameAreUpToDateFromThenOn)
{
    Refresh({EntryOf("1", "text")});
    Download("1", "text");
    Write("1.pdf", "second edition"); // as a transfer leaves it whose end the list was not told
    Refresh({EntryOf("1", "second edition")});
    EXPECT_EQ(StatusOf("1"), Status::InSync);

    Write("1.pdf", "third edition");
    Refresh({EntryOf("1", "second edition")});
    EXPECT_EQ(StatusOf("1"), Status::ChangedLocally);
}

TEST_F(CloudSessionRefreshTest, WhatOnlyAnUploadTellsSurvivesARefresh)
{
    Upload(Write("1.pdf", "text"), "1");
    Refresh({EntryOf("1", "text")});
    const auto held = Held("1");
    EXPECT_EQ(held->GetRedactableCloudInfo()->GetDownloadUrl(), QUrl("https://cloud.example/1"));
    EXPECT_FALSE(held->GetRedactableCloudInfo()->IsPrivate());
}

TEST_F(CloudSessionRefreshTest, DocumentUploadedAfterTheListWasRequestedStays)
{
    Refresh({EntryOf("old")});
    const auto list = Request();
    Upload(Write("new.pdf", "new"), "new");
    Events();
    protocol->Answer(list, Social::Success, Entries({EntryOf("old")}));
    ASSERT_TRUE(WaitForEvent("ListRefreshed"));
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~, -)"));
    EXPECT_EQ(Ids(), QStringList({"new", "old"}));

    Refresh({EntryOf("old")}); // this list must know of it
    EXPECT_EQ(Ids(), QStringList("old"));
}

TEST_F(CloudSessionRefreshTest, ListFromBeforeAnUploadDoesNotBringTheOldContentBack)
{
    Upload(Write("1.pdf", "old"), "1");
    const auto list = Request();
    Write("1.pdf", "new text");
    session->UploadChanges("1");
    ASSERT_TRUE(WaitForCalls("uploadFile", 2));
    Answer("uploadFile", Social::Success, SharingOf("1", "1.pdf"));
    Events();
    protocol->Answer(list, Social::Success, Entries({EntryOf("1", "old")}));
    ASSERT_TRUE(WaitForEvent("ListRefreshed"));

    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~, -)"));
    EXPECT_EQ(StatusOf("1"), Status::InSync);
}

TEST_F(CloudSessionRefreshTest, DocumentRemovedAfterTheListWasRequestedDoesNotComeBack)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    session->Remove("1");
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    const auto list = Request();
    Answer("deleteFile", Social::Success);
    Events();
    protocol->Answer(list, Social::Success, Entries({EntryOf("1"), EntryOf("2")}));
    ASSERT_TRUE(WaitForEvent("ListRefreshed"));
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+, ~, -)"));
    EXPECT_EQ(Ids(), QStringList("2"));

    Refresh({EntryOf("1"), EntryOf("2")}); // somebody has put it there again
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+1, ~, -)"));
}

TEST_F(CloudSessionRefreshTest, FirstOfTwoEntriesWithTheSameIdCounts)
{
    auto second = EntryOf("1", "other");
    second.name = "second.pdf";
    Refresh({EntryOf("1"), second});
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+1, ~, -)"));
    EXPECT_EQ(session->Documents().FilesCount(), 1);
    EXPECT_EQ(session->Documents().GetDocumentName(0), "1.pdf");
}

TEST_F(CloudSessionRefreshTest, NewerListReplacesTheRestOfAMergeAndBothRequestsEnd)
{
    Refresh({EntryOf("old")});
    Events();
    const auto first = Request();
    const auto second = Request();
    protocol->Answer(first, Social::Success, Entries({EntryOf("old"), EntryOf("a")}));
    protocol->Answer(second, Social::Success, Entries({EntryOf("b")}));
    ASSERT_TRUE(WaitForEvent("ListRefreshed(+, ~, -)"));
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+b, ~, -old)", "ListRefreshed(+, ~, -)"));
    EXPECT_EQ(Ids(), QStringList("b"));
}

TEST_F(CloudSessionRefreshTest, NewerListDuringAMergeCountsWhatWasDoneAlready)
{
    const auto first = Request();
    const auto second = Request();
    // The second list arrives when the first document of the first one has just been added.
    const auto connection = QObject::connect(
        &session->Documents(), qOverload<const std::shared_ptr<PDF::FileInfo>&>(&PDF::AbstractFileManager::FileAdded),
        session.get(), [this, second, isFirst = true]() mutable {
            if (std::exchange(isFirst, false)) {
                protocol->Answer(second, Social::Success, Entries({EntryOf("c"), EntryOf("b")}));
            }
        });
    protocol->Answer(first, Social::Success, Entries({EntryOf("a"), EntryOf("b")}));
    ASSERT_TRUE(WaitForEvent("ListRefreshed(+, ~, -)"));
    QObject::disconnect(connection);

    EXPECT_THAT(Events(), ElementsAre(testing::AnyOf("ListRefreshed(+c b, ~, -)", "ListRefreshed(+b c, ~, -)"),
                                      "ListRefreshed(+, ~, -)"));
    EXPECT_THAT(Ids(), UnorderedElementsAre("b", "c"));
}

TEST_F(CloudSessionRefreshTest, DocumentThatWasMissingForATimeHasItsLocalCopyAgain)
{
    Refresh({EntryOf("1", "text"), EntryOf("2")});
    Download("1", "text");
    for (const bool restarts : {false, true}) {
        Refresh({EntryOf("2")});
        EXPECT_EQ(Ids(), QStringList("2"));
        EXPECT_EQ(session->DocumentAt(PathOf("1.pdf")), "");
        if (restarts) {
            Reopen();
        }
        Refresh({EntryOf("1", "text"), EntryOf("2")});
        EXPECT_EQ(StatusOf("1"), Status::InSync);
        EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("1.pdf").toStdString());
        EXPECT_EQ(session->DocumentAt(PathOf("1.pdf")), "1");
    }
    Refresh({});
    Refresh({EntryOf("1", "second edition")});
    EXPECT_EQ(StatusOf("1"), Status::ChangedInCloud);
    Download("1", "second edition");
    EXPECT_EQ(Read(PathOf("1.pdf")), "second edition");
}

TEST_F(CloudSessionRefreshTest, LocalCopyThatWasEditedWhileItsDocumentWasMissingHasChanged)
{
    Refresh({EntryOf("1", "text")});
    Download("1", "text");
    Refresh({});
    Write("1.pdf", "my changes");
    Refresh({EntryOf("1", "text")});
    EXPECT_EQ(StatusOf("1"), Status::ChangedLocally);
    Refresh({});
    Refresh({EntryOf("1", "second edition")});
    EXPECT_EQ(StatusOf("1"), Status::ChangedOnBothSides);
}

TEST_F(CloudSessionRefreshTest, MissingDocumentThatComesBackWithAnotherIdIsKnownByNameAndContent)
{
    Refresh({EntryOf("1", "text")});
    Download("1", "text");
    Refresh({});
    auto same = EntryOf("new id", "text");
    same.name = "1.pdf";
    auto sameNameOnly = EntryOf("other id", "other");
    sameNameOnly.name = "1.pdf";
    Refresh({sameNameOnly, EntryOf("copy", "text"), same});
    EXPECT_EQ(Held("new id")->GetPath().utf8string(), PathOf("1.pdf").toStdString());
    EXPECT_EQ(StatusOf("new id"), Status::InSync);
    EXPECT_TRUE(Held("other id")->GetPath().empty());
    EXPECT_TRUE(Held("copy")->GetPath().empty());
}

TEST_F(CloudSessionRefreshTest, LocalCopyThatIsAwayWhenItsDocumentComesBackIsKnownWhenItIsThereAgain)
{
    Refresh({EntryOf("1", "text")});
    Download("1", "text");
    Refresh({});
    ASSERT_TRUE(QFile::rename(PathOf("1.pdf"), PathOf("away.pdf")));
    Refresh({EntryOf("1", "text")});
    EXPECT_EQ(StatusOf("1"), Status::OnlyInCloud);
    ASSERT_TRUE(QFile::rename(PathOf("away.pdf"), PathOf("1.pdf")));
    Refresh({EntryOf("1", "text")});
    EXPECT_EQ(StatusOf("1"), Status::InSync);
}

TEST_F(CloudSessionRefreshTest, LocalCopyOfARemovedDocumentOrOneThatBelongsToAnotherByNowIsNotTaken)
{
    Refresh({EntryOf("1", "text"), EntryOf("2", "other")});
    Download("1", "text");
    Download("2", "other");
    session->Remove("2");
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    Answer("deleteFile", Social::Success);
    Refresh({});
    Upload(PathOf("1.pdf"), "3");
    Refresh({EntryOf("1", "text"), EntryOf("2", "other"), EntryOf("3", "text")});
    EXPECT_TRUE(Held("1")->GetPath().empty());
    EXPECT_TRUE(Held("2")->GetPath().empty());
    EXPECT_EQ(session->DocumentAt(PathOf("1.pdf")), "3");
}

TEST_F(CloudSessionRefreshTest, SizeOfAVeryLargeDocumentSurvivesRestarts)
{
    constexpr qint64 size = Q_INT64_C(4'831'838'208); // more than 32 bits hold
    auto entry = EntryOf("1", "text");
    entry.size = size;
    Refresh({entry, EntryOf("2")});
    for (int restart = 0; restart < 2; ++restart) {
        EXPECT_EQ(session->CloudSizes(), (QHash<QString, quint64>{{"1", size}, {"2", 7}}));
        Reopen();
    }
    Refresh({entry, EntryOf("2")});
    Download("1", "text");
    for (int restart = 0; restart < 2; ++restart) {
        EXPECT_EQ(session->CloudSizes().value("1"), quint64{size}) << "not that of the local copy";
        Reopen();
        EXPECT_EQ(Held("1")->GetRedactableCloudInfo()->GetSize(), static_cast<quint64>(size));
        EXPECT_EQ(Held("1")->GetPath().utf8string(), PathOf("1.pdf").toStdString());
        EXPECT_EQ(StatusOf("1"), Status::InSync);
    }
}

TEST_F(CloudSessionRefreshTest, ListThatLacksMostDocumentsIsMentionedOnce)
{
    QSignalSpy gone(session.get(), &Host::CloudSession::ManyDocumentsGone);
    Refresh({EntryOf("1"), EntryOf("2"), EntryOf("3"), EntryOf("4"), EntryOf("5")});
    Refresh({EntryOf("1"), EntryOf("2"), EntryOf("3"), EntryOf("4")});
    EXPECT_TRUE(gone.isEmpty());
    Refresh({EntryOf("4")});
    EXPECT_EQ(gone, QList<QVariantList>({{3, 4}}));
    Refresh({EntryOf("4")});
    EXPECT_EQ(gone.size(), 1);
}

TEST_F(CloudSessionRefreshTest, EmptyListEmptiesTheList)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    Events();
    Refresh({});
    EXPECT_EQ(session->Documents().FilesCount(), 0);
    EXPECT_THAT(Events(), ElementsAre(testing::AnyOf("ListRefreshed(+, ~, -1 2)", "ListRefreshed(+, ~, -2 1)")));
}

TEST_F(CloudSessionRefreshTest, FailureCancellationAndRefusalEachEndTheRequest)
{
    Request();
    AnswerError("retriveFileList", "no network");
    Request();
    Answer("retriveFileList", Social::Canceled);
    protocol->refused = {"retriveFileList"};
    Request();
    EXPECT_THAT(Events(), ElementsAre("Failed(List, , Files list request error, no network)",
                                      "Failed(List, , Files list request canceled, )",
                                      "Failed(List, , Retrieve files information failed, )"));
    protocol->refused.clear();
    Refresh({EntryOf("1")});
    EXPECT_THAT(Events(), ElementsAre("ListRefreshed(+1, ~, -)"));
}

TEST_F(CloudSessionRefreshTest, NothingIsRequestedWhileATransferRuns)
{
    session->Upload({Write("a.pdf", "a")});
    ASSERT_TRUE(WaitForCalls("uploadFile", 1));
    session->Refresh();
    LetWorkFinish();
    EXPECT_THAT(protocol->CallsOf("retriveFileList"), IsEmpty());
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(CloudSessionRefreshTest, AutomaticRefreshIsMergedToo)
{
    session->RefreshEvery(std::chrono::milliseconds(1));
    ASSERT_TRUE(WaitForCalls("retriveFileList", 1));
    Answer("retriveFileList", Social::Success, Entries({EntryOf("1")}));
    ASSERT_TRUE(WaitForEvent("ListRefreshed(+1"));
    EXPECT_EQ(Ids(), QStringList("1"));
}

TEST_F(CloudSessionRefreshTest, ListOfManyDocumentsLeavesTheEventLoopFree)
{
    Entries entries;
    for (int index = 0; index < 5000; ++index) {
        entries.append(EntryOf(QString::number(index)));
    }
    const auto list = Request();
    int turns = 0;
    QTimer other;
    QObject::connect(&other, &QTimer::timeout, [&] { ++turns; });
    protocol->Answer(list, Social::Success, entries);
    other.start(0);
    ASSERT_TRUE(WaitForEvent("ListRefreshed"));
    EXPECT_GT(turns, 1);
    EXPECT_EQ(session->Documents().FilesCount(), 5000);
}

} // namespace

} // namespace Norlis::Test
