#include <tests/support/TransferFaultTest.h>

#include <QLocale>

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

TEST_F(UploadAftermathTest, OnlyNamesThatAreJustLikeOursAreSwept)
{
    const QByteArrayList names = {".norlis-something.part", ".norlis-0123456789abcde.part",
                                  ".norlis-0123456789ABCDEF.part", ".norlis-0123456789abcdef.part.part",
                                  "a.norlis-0123456789abcdef.part"};
    for (const QByteArray& name : names) {
        PutLeftover(name, 100);
    }
    PutLeftover("norlis-0123456789abcdef.part", 100); // for servers that refuse hidden names
    ASSERT_TRUE(client.List()->Succeeds());
    ASSERT_TRUE(client.Quota()->Succeeds());
    EXPECT_TRUE(WaitUntil([&] { return server.Names().size() == names.size(); }));
    EXPECT_EQ(server.Count("DELETE"), 1);
}

TEST_F(UploadAftermathTest, ItIsTheServersClockByWhichADayPasses)
{
    PutLeftover(".norlis-0123456789abcdef.part", 25);
    PutLeftover(".norlis-fedcba9876543210.part", 73);
    const auto hasDate = [this](const QByteArray& date) {
        server.BehaveAgain();
        server.Misbehave("PROPFIND", {[date](Wire& wire) {
                             ServerResponse answer = wire.Do(wire.Request());
                             answer.headers.Set("Date", date);
                             wire.Send(answer.Bytes());
                             wire.Finish();
                         }});
    };
    hasDate("some day");
    ASSERT_TRUE(client.List()->Succeeds());
    ASSERT_TRUE(client.Quota()->Succeeds());
    EXPECT_EQ(server.Count("DELETE"), 0);
    hasDate(QLocale::c()
                .toString(QDateTime::currentDateTimeUtc().addDays(-2), "ddd, dd MMM yyyy hh:mm:ss 'GMT'")
                .toLatin1());
    ASSERT_TRUE(client.List()->Succeeds());
    ExpectOnServer({".norlis-0123456789abcdef.part"});
}

TEST_F(UploadAftermathTest, AServerThatOnlyClaimsToStoreHashesIsNotAskedAgain)
{
    EXPECT_EQ(OffersOfHashes(HasInnerStatus(200)), 1);
}

TEST_F(UploadAftermathTest, AHashNamesTheVersionThatHasTheName)
{
    server.Misbehave(When("MOVE").Always(), {[this](Wire& wire) {
                         const QByteArray to = DecodedPath(wire.Request().headers.Value("Destination"));
                         const ServerResponse answer = wire.Do(wire.Request());
                         server.With([&](MemoryTree& tree) { tree.Find(to)->etag = "\"renamed\""; });
                         wire.Send(answer.Bytes());
                         wire.Finish();
                     }});
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", "content"))->Succeeds());
    Client other(Settings(), server.Password());
    ASSERT_TRUE(other.SignIn());
    EXPECT_TRUE(WaitUntil([&] { return other.Entry("report.pdf").md5Hash == Md5Of("content"); }));
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
