#include <tests/support/SessionTest.h>

#include <contracts/NorlisCloudProtocol.h>

namespace Norlis::Test {

namespace {

class CloudSessionRemoveTest : public SessionTest {
protected:
    void Request(const QString& id)
    {
        const auto removals = protocol->CallsOf("deleteFile").size();
        session->Remove(id);
        ASSERT_TRUE(WaitForCalls("deleteFile", removals + 1));
    }
};

TEST_F(CloudSessionRemoveTest, RemovedDocumentLeavesTheListAndTheStoreButNotTheDisk)
{
    const auto path = Write("1.pdf", "text");
    Upload(path, "1");
    Refresh({EntryOf("1", "text"), EntryOf("2")});
    Events();

    Request("1");
    EXPECT_EQ(protocol->LastCall("deleteFile").fields[Social::NorlisCloudProtocol::ID], "1");
    EXPECT_EQ(session->Documents().FilesCount(), 2);
    Answer("deleteFile", Social::Success);

    EXPECT_THAT(Events(), ElementsAre("DocumentRemoved(1)"));
    EXPECT_EQ(Ids(), QStringList("2"));
    EXPECT_EQ(Read(path), "text");
    Reopen();
    EXPECT_EQ(Ids(), QStringList("2"));
}

TEST_F(CloudSessionRemoveTest, FailureKeepsTheDocumentAndSaysWhy)
{
    Refresh({EntryOf("1")});
    Events();
    Request("1");
    AnswerError("deleteFile", "it is locked");
    protocol->refused = {"deleteFile"};
    Request("1");
    EXPECT_THAT(Events(), ElementsAre("Failed(Remove, 1, Remove file error, it is locked)",
                                      "Failed(Remove, 1, Remove file failed, )"));
    EXPECT_EQ(Ids(), QStringList("1"));
}

TEST_F(CloudSessionRemoveTest, UnknownDocumentFailsWithoutAskingTheCloud)
{
    session->Remove("1");
    EXPECT_THAT(Events(), IsEmpty());
    ASSERT_TRUE(WaitForEvent("Failed"));
    EXPECT_THAT(Events(),
                ElementsAre("Failed(Remove, 1, The document was not removed, It is not in the list of documents)"));
    EXPECT_THAT(protocol->calls, IsEmpty());
}

TEST_F(CloudSessionRemoveTest, TwoRemovalsOfADocumentBothEnd)
{
    Refresh({EntryOf("1")});
    Events();
    Request("1");
    const auto first = protocol->LastId("deleteFile");
    Request("1");
    protocol->Answer(first, Social::Success);
    AnswerError("deleteFile", "there is no such document");
    EXPECT_THAT(Events(),
                ElementsAre("DocumentRemoved(1)", "Failed(Remove, 1, Remove file error, there is no such document)"));
}

TEST_F(CloudSessionRemoveTest, AVersionThatAListBringsMeanwhileIsNotRemoved)
{
    Refresh({EntryOf("1", "seen"), EntryOf("2", "seen")});
    Events();
    session->Refresh();
    ASSERT_TRUE(WaitForCalls("retriveFileList", 2)); // which the service may have made by now
    session->Remove("1");
    session->Remove("2");
    LetWorkFinish();
    EXPECT_THAT(protocol->CallsOf("deleteFile"), IsEmpty());
    Answer("retriveFileList", Social::Success, QList<CloudEntry>{EntryOf("1", "newer"), EntryOf("2", "seen")});
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    EXPECT_EQ(protocol->LastCall("deleteFile").fields[Social::NorlisCloudProtocol::ID], "2");
    ASSERT_TRUE(WaitForEvent("Failed(Remove, 1"));
    EXPECT_EQ(problem.cause.kind, Social::OAuth2::FailureKind::Conflict);
}

TEST_F(CloudSessionRemoveTest, AListThatFailsHoldsUpNoRemoval)
{
    Refresh({EntryOf("1")});
    session->Refresh();
    ASSERT_TRUE(WaitForCalls("retriveFileList", 2));
    session->Remove("1");
    LetWorkFinish();
    AnswerError("retriveFileList", "the line is cut");
    EXPECT_TRUE(WaitForCalls("deleteFile", 1));
}

constexpr auto never = std::chrono::hours(1);
constexpr auto soon = std::chrono::milliseconds(30);

TEST_F(CloudSessionRemoveTest, ADelayedRemovalHidesTheDocumentAtOnceAndIsSentLater)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    Events();
    session->RemoveLater({"1"}, soon);
    EXPECT_TRUE(session->IsRemovalPending("1"));
    EXPECT_FALSE(session->IsRemovalPending("2"));
    EXPECT_THAT(protocol->CallsOf("deleteFile"), IsEmpty());
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    EXPECT_THAT(Events(), ElementsAre("Hidden(1)"));
    EXPECT_TRUE(session->IsRemovalPending("1"));
    Answer("deleteFile", Social::Success);
    EXPECT_THAT(Events(), ElementsAre("Shown(1)", "DocumentRemoved(1)"));
    EXPECT_EQ(Ids(), QStringList("2"));
    EXPECT_FALSE(session->HasPendingRemovals());
}

TEST_F(CloudSessionRemoveTest, ADelayedRemovalCanBeTakenBackAndAskedForAgain)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    Events();
    session->RemoveLater({"1", "2"}, soon);
    session->UndoRemoval({"1", "unknown"});
    EXPECT_FALSE(session->IsRemovalPending("1"));
    session->RemoveLater({"1"}, never); // the delay of the first time is nothing to it
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    Answer("deleteFile", Social::Success);
    LetWorkFinish();
    EXPECT_EQ(protocol->CallsOf("deleteFile").size(), 1U);
    EXPECT_TRUE(session->IsRemovalPending("1"));
    EXPECT_EQ(Ids(), QStringList("1"));
    session->UndoRemoval({"1"});
    LetWorkFinish();
    EXPECT_EQ(Events().back(), "Shown(1)");
}

TEST_F(CloudSessionRemoveTest, ARemovalThatWasSentIsNotTakenBack)
{
    Refresh({EntryOf("1")});
    session->RemoveLater({"1"}, soon);
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    session->UndoRemoval({"1"});
    EXPECT_TRUE(session->IsRemovalPending("1"));
    Answer("deleteFile", Social::Success);
    EXPECT_THAT(Ids(), IsEmpty());
}

TEST_F(CloudSessionRemoveTest, WhatHasChangedMeanwhileIsNotRemovedAndShownAgain)
{
    Refresh({EntryOf("1", "seen")});
    session->RemoveLater({"1"}, never);
    Refresh({EntryOf("1", "newer")});
    Events();
    session->PrepareToClose();
    ASSERT_TRUE(WaitForEvent("ReadyToClose"));
    EXPECT_THAT(Events(), ElementsAre("Shown(1)",
                                      "Failed(Remove, 1, The document was not removed, It has changed in the cloud "
                                      "since you removed it)",
                                      "ReadyToClose()"));
    EXPECT_EQ(problem.cause.kind, Social::OAuth2::FailureKind::Conflict);
    EXPECT_THAT(protocol->CallsOf("deleteFile"), IsEmpty());
    EXPECT_EQ(Ids(), QStringList("1"));
}

TEST_F(CloudSessionRemoveTest, ADocumentThatSomebodyElseHasRemovedMeanwhileIsGoneAsWished)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    session->RemoveLater({"1"}, never);
    Refresh({EntryOf("2")});
    Events();
    session->PrepareToClose();
    ASSERT_TRUE(WaitForEvent("ReadyToClose"));
    EXPECT_THAT(Events(), ElementsAre("Shown(1)", "DocumentRemoved(1)", "ReadyToClose()"));
    EXPECT_THAT(protocol->CallsOf("deleteFile"), IsEmpty());
}

TEST_F(CloudSessionRemoveTest, ADelayedRemovalThatFailsShowsTheDocumentAgain)
{
    Refresh({EntryOf("1")});
    Events();
    session->RemoveLater({"1"}, soon);
    ASSERT_TRUE(WaitForCalls("deleteFile", 1));
    AnswerError("deleteFile", "it is locked");
    EXPECT_THAT(Events(), ElementsAre("Hidden(1)", "Shown(1)", "Failed(Remove, 1, Remove file error, it is locked)"));
    EXPECT_FALSE(session->IsRemovalPending("1"));
}

TEST_F(CloudSessionRemoveTest, WhoPreparesToCloseSendsWhatIsPendingAndWaitsForIt)
{
    Refresh({EntryOf("1"), EntryOf("2")});
    session->RemoveLater({"1", "2"}, never);
    Events();
    session->PrepareToClose();
    ASSERT_TRUE(WaitForCalls("deleteFile", 2));
    LetWorkFinish();
    EXPECT_EQ(CountOf("ReadyToClose"), 0);
    const auto second = protocol->LastId("deleteFile");
    protocol->Answer(second - 1, Social::Success);
    LetWorkFinish();
    EXPECT_EQ(CountOf("ReadyToClose"), 0);
    protocol->Answer(second, Social::Success);
    ASSERT_TRUE(WaitForEvent("ReadyToClose"));
    EXPECT_THAT(Ids(), IsEmpty());
    session->PrepareToClose();
    EXPECT_TRUE(WaitForEvent("ReadyToClose", 2)) << "nothing is pending";
}

TEST_F(CloudSessionRemoveTest, ACloudThatDoesNotAnswerDoesNotKeepTheProgramFromEnding)
{
    Refresh({EntryOf("1")});
    session->RemoveLater({"1"}, never);
    session->PrepareToClose();
    ASSERT_TRUE(WaitForEvent("ReadyToClose"));
    EXPECT_EQ(protocol->CallsOf("deleteFile").size(), 1U);
}

TEST_F(CloudSessionRemoveTest, WhatWasNotSentIsThereAgainAtTheNextStart)
{
    Refresh({EntryOf("1")});
    session->RemoveLater({"1"}, never);
    LetWorkFinish();
    Reopen();
    EXPECT_EQ(Ids(), QStringList("1"));
    EXPECT_FALSE(session->IsRemovalPending("1"));
    EXPECT_THAT(protocol->CallsOf("deleteFile"), IsEmpty());
}

TEST_F(CloudSessionRemoveTest, ADelayedRemovalOfAnUnknownDocumentOrWithoutSignInFailsAtOnce)
{
    Refresh({EntryOf("1")});
    Events();
    session->RemoveLater({"unknown"}, never);
    ASSERT_TRUE(WaitForEvent("Failed(Remove, unknown"));
    protocol->signedIn = false;
    session->RemoveLater({"1"}, never);
    ASSERT_TRUE(WaitForEvent("Failed(Remove, 1, Not signed in"));
    EXPECT_FALSE(session->HasPendingRemovals());
    EXPECT_EQ(CountOf("Hidden"), 0);
}

} // namespace

} // namespace Norlis::Test
