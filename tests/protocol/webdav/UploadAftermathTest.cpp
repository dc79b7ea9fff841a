#include "TransferFaultTest.h"

namespace Norlis::Test {

/// What goes on behind uploads.
class UploadAftermathTest : public TransferFaultTest<> {
protected:
    /// Uploads three files one after the other, and returns how often their hashes were offered to the server.
    int OffersOfHashes(const Misbehaviour& misbehaviour)
    {
        server.Misbehave(When("PROPPATCH").Always(), misbehaviour);
        for (const char* name : {"1.pdf", "2.pdf", "3.pdf"}) {
            EXPECT_TRUE(client.Upload(LocalFile(name, name))->Succeeds());
            EXPECT_TRUE(WaitUntil([&] { return server.Count("PROPPATCH") > 0; }));
            EXPECT_TRUE(client.Quota()->Succeeds()); // by then that has been answered too
            EXPECT_TRUE(client.Quota()->Succeeds());
        }
        return server.Count("PROPPATCH");
    }

    void PutLeftover(const QByteArray& name, int hoursOld)
    {
        server.With([&](MemoryTree& tree) {
            tree.Put("/documents/" + name, "left").modifiedAt =
                QDateTime::currentDateTimeUtc().addSecs(-hoursOld * 3600);
        });
    }
};

TEST_F(UploadAftermathTest, AServerThatTakesNoPropertiesIsNotAskedAgain)
{
    EXPECT_EQ(OffersOfHashes(AnswersWith(405)), 1);
}

TEST_F(UploadAftermathTest, ARefusalInsideOfAnAnswerCountsToo)
{
    EXPECT_EQ(OffersOfHashes(HasInnerStatus(403)), 1);
}

TEST_F(UploadAftermathTest, AServerThatTakesThemIsGivenAllHashes)
{
    EXPECT_EQ(OffersOfHashes(RunsFirst([] {})), 3);
    Client other(Settings(), server.Password());
    ASSERT_TRUE(other.SignIn());
    EXPECT_EQ(other.Entry("3.pdf").md5Hash, Md5Of("3.pdf"));
}

TEST_F(UploadAftermathTest, UploadsDoNotWaitForHashesToBeKept)
{
    server.Misbehave(When("PROPPATCH").Always(), Hangs());
    Client impatient(Settings(1'000), server.Password());
    ASSERT_TRUE(impatient.SignIn());
    for (const char* name : {"1.pdf", "2.pdf", "3.pdf"}) {
        ASSERT_TRUE(impatient.Upload(LocalFile(name, name))->Succeeds());
    }
    EXPECT_EQ(impatient.Entry("1.pdf").md5Hash, Md5Of("1.pdf")); // it is known to the one who sent it
    EXPECT_TRUE(impatient.Remove(impatient.Entry("1.pdf").id)->Succeeds());
    ExpectOnServer({"2.pdf", "3.pdf"});
    EXPECT_EQ(server.Count("PROPPATCH"), 1);
}

TEST_F(UploadAftermathTest, WhatUploadsLeftADayAgoIsSweptWithTheList)
{
    PutLeftover(".norlis-0123456789abcdef.part", 25);
    PutLeftover(".norlis-fedcba9876543210.part", 23);
    PutLeftover("old.part", 50);
    server.Put("report.pdf", "content");
    const auto list = client.List();
    ASSERT_TRUE(list->Succeeds());
    EXPECT_EQ(list->payload.size(), 2);
    ExpectOnServer({".norlis-fedcba9876543210.part", "old.part", "report.pdf"});
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_EQ(server.Count("DELETE"), 1);
}

TEST_F(UploadAftermathTest, ACollectionIsNeverSwept)
{
    server.With([&](MemoryTree& tree) {
        const QByteArray path = "/documents/.norlis-0123456789abcdef.part";
        tree.MakeCollection(path).modifiedAt = QDateTime::currentDateTimeUtc().addDays(-9);
        tree.Put(path + "/inside.pdf", "precious");
    });
    ASSERT_TRUE(client.List()->Succeeds());
    ASSERT_TRUE(client.Quota()->Succeeds());
    EXPECT_EQ(server.Count("DELETE"), 0);
}

TEST_F(UploadAftermathTest, AListThatFailsSweepsNothing)
{
    PutLeftover(".norlis-0123456789abcdef.part", 25);
    server.Misbehave(When("PROPFIND").Always(), CutsAfterBytes(1200));
    ASSERT_TRUE(client.List()->Fails());
    ASSERT_TRUE(client.Remove("unknown")->Fails());
    EXPECT_EQ(server.Count("DELETE"), 0);
}

} // namespace Norlis::Test
