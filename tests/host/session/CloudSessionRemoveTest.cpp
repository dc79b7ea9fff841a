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
                ElementsAre("Failed(Remove, 1, The document was not removed, it is not in the list of documents)"));
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

} // namespace

} // namespace Norlis::Test
