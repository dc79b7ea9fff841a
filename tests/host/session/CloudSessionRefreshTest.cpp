#include <tests/support/SessionTest.h>

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

TEST_F(CloudSessionRefreshTest, LocalCopyAndItsHistorySurviveARefresh)
{
    const auto path = Write("1.pdf", "text");
    Upload(path, "1");
    Refresh({EntryOf("1", "text")});
    EXPECT_EQ(Held("1")->GetPath().utf8string(), path.toStdString());
    EXPECT_EQ(Held("1")->GetCloudHashBeforeChange(), Md5Of("text"));
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
    const auto list = Request();
    session->Remove("1");
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
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
    settings->autoRefresh = true;
    settings->interval = 1;
    Reopen();
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
