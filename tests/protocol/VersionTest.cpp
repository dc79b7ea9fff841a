#include <tests/support/ServiceContractTest.h>

namespace Norlis::Test {

using testing::HasSubstr;

namespace {

const QByteArray hers = "what somebody else has put there";

} // namespace

/// Which version of a document a client may replace or remove: the one that its copy came from, or that it has seen.
class VersionTest : public ServiceContractTest {
protected:
    /// Uploads a document. Somebody else replaces it, and our copy is edited.
    void EditOnBothSides()
    {
        path = LocalFile("report.pdf", "first");
        const auto upload = client.Upload(path);
        ASSERT_TRUE(upload->Succeeds());
        id = upload->payload.id;
        cloud->Put("report.pdf", hers);
        WriteFile(path, "ours, edited");
    }

    void ExpectConflict(const TestKit::Client& who) const
    {
        ASSERT_FALSE(who.failures.empty());
        EXPECT_THAT(who.failures.back().reason.toStdString(), HasSubstr("changed"));
        EXPECT_EQ(who.failures.back().kind, Social::OAuth2::FailureKind::Conflict);
        EXPECT_EQ(cloud->Get("report.pdf"), hers);
        EXPECT_EQ(cloud->Content(), QStringList("report.pdf"));
    }

    QString path;
    QString id;
};

TEST_P(VersionTest, AnUploadDoesNotReplaceWhatSomebodyElseHasPutThereSince)
{
    ASSERT_NO_FATAL_FAILURE(EditOnBothSides());
    EXPECT_TRUE(client.Upload(path, id)->Fails());
    ExpectConflict(client);
}

TEST_P(VersionTest, AListDoesNotMakeACopyNewer)
{
    ASSERT_NO_FATAL_FAILURE(EditOnBothSides());
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_TRUE(client.Upload(path, id)->Fails());
    ExpectConflict(client);
}

TEST_P(VersionTest, ACopyIsRememberedByItsPath)
{
    ASSERT_NO_FATAL_FAILURE(EditOnBothSides());
    // Storing the hash of our version, which some servers take for a change of theirs, is over by then.
    ASSERT_TRUE(client.List()->Succeeds());
    ASSERT_TRUE(client.Download(id, Local("elsewhere.pdf"))->Succeeds());
    EXPECT_TRUE(client.Upload(path, id)->Fails());
    ExpectConflict(client);
    WriteFile(Local("elsewhere.pdf"), "made from hers");
    EXPECT_TRUE(client.Upload(Local("elsewhere.pdf"), id)->Succeeds());
    EXPECT_EQ(cloud->Get("report.pdf"), QByteArray("made from hers"));
}

TEST_P(VersionTest, ACopyThatWasMovedIsStillRemembered)
{
    ASSERT_NO_FATAL_FAILURE(EditOnBothSides());
    ASSERT_TRUE(QFile::rename(path, Local("moved.pdf")));
    Protocol().copyMoved(id, path, Local("moved.pdf"));
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_TRUE(client.Upload(Local("moved.pdf"), id)->Fails());
    ExpectConflict(client);
}

TEST_P(VersionTest, WhoHasSeenTheOtherVersionMayReplaceIt)
{
    ASSERT_NO_FATAL_FAILURE(EditOnBothSides());
    ASSERT_TRUE(client.List()->Succeeds());
    Protocol().acceptListedVersion(id, path);
    EXPECT_TRUE(client.Upload(path, id)->Succeeds());
    EXPECT_EQ(cloud->Get("report.pdf"), QByteArray("ours, edited"));
}

TEST_P(VersionTest, WhoHasSeenYetAnotherVersionMayNotReplaceIt)
{
    ASSERT_NO_FATAL_FAILURE(EditOnBothSides());
    ASSERT_TRUE(client.List()->Succeeds());
    Protocol().acceptListedVersion(id, path, Md5Of("what was listed before"));
    EXPECT_TRUE(client.Upload(path, id)->Fails());
    ExpectConflict(client);
}

TEST_P(VersionTest, CopiesAreRememberedBetweenRuns)
{
    auto settings = Service().Settings();
    settings.dataFolder = Local("data");
    path = LocalFile("report.pdf", "first");
    {
        Client before(settings, cloud->Token());
        ASSERT_TRUE(before.SignIn());
        const auto upload = before.Upload(path);
        ASSERT_TRUE(upload->Succeeds());
        id = upload->payload.id;
    }
    cloud->Put("report.pdf", hers);
    WriteFile(path, "ours, edited");
    Client after(settings, cloud->Token());
    ASSERT_TRUE(after.SignIn());
    ASSERT_TRUE(after.List()->Succeeds());
    EXPECT_TRUE(after.Upload(path, id)->Fails());
    ExpectConflict(after);
}

TEST_P(VersionTest, ARemovalDoesNotTakeAVersionThatTheListDidNotShow)
{
    cloud->Put("report.pdf", "first");
    id = client.Entry("report.pdf").id;
    cloud->Put("report.pdf", hers);
    EXPECT_TRUE(client.Remove(id)->Fails());
    ExpectConflict(client);
    ASSERT_TRUE(client.List()->Succeeds());
    EXPECT_TRUE(client.Remove(id)->Succeeds());
    EXPECT_EQ(cloud->Content(), QStringList());
}

TEST_P(VersionTest, TheListShowsThatADocumentHasChanged)
{
    ASSERT_NO_FATAL_FAILURE(EditOnBothSides());
    const QString ours = Md5Of("first");
    const QString changed = client.Entry("report.pdf").md5Hash;
    EXPECT_NE(changed, ours);
    EXPECT_NE(changed, QString());
    EXPECT_EQ(client.Entry("report.pdf").md5Hash, changed);
}

TEST_P(VersionTest, TheListGivesTheHashOfWhatWasFetched)
{
    cloud->Put("report.pdf", hers);
    ASSERT_TRUE(client.Download(client.Entry("report.pdf").id, Local("report.pdf"))->Succeeds());
    EXPECT_EQ(client.Entry("report.pdf").md5Hash, Md5Of(hers));
}

NORLIS_FOR_EVERY_CLOUD(VersionTest);

} // namespace Norlis::Test
