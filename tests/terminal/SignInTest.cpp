#include <tests/support/ProgramTest.h>

#include <QDir>
#include <QFileInfo>

namespace Norlis::Test {

namespace {

class SignInTest : public ProgramTest {};

TEST_F(SignInTest, LoginIsRememberedByTheNextRun)
{
    SignIn();
    const Outcome outcome = Run({"list"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "No documents.\n");
}

TEST_F(SignInTest, CommandsSayHowToSignIn)
{
    for (const QStringList& words :
         {QStringList{"list"}, {"list", "--offline"}, {"upload", "a.pdf"}, {"quota"}, {"watch"}}) {
        const Outcome outcome = Run(words);
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "norlis-cloud: You are not signed in. Run: norlis-cloud login --service URL\n");
    }
}

TEST_F(SignInTest, FolderNeedsNoLogin)
{
    MakeFile("Cloud/report.pdf");
    const Outcome outcome = Run({"list", "--service", Cloud()});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(outcome.output.contains("report.pdf"));
}

TEST_F(SignInTest, RelativePathAndFileAddressNameTheSameService)
{
    MakeFile("Cloud/report.pdf");
    EXPECT_EQ(Run({"list", "--service", "Cloud"}).exitStatus, 0);
    const Outcome outcome = Run({"list", "--offline", "--service", QUrl::fromLocalFile(Cloud()).toString()});
    EXPECT_TRUE(outcome.output.contains("report.pdf")) << outcome.errors.toStdString();
}

TEST_F(SignInTest, MissingFolderIsReportedAndNotRemembered)
{
    const Outcome outcome = Run({"login", "--service", Home() + "/nowhere"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.contains(Home() + "/nowhere")) << outcome.errors.toStdString();
    EXPECT_TRUE(Run({"list"}).errors.contains("not signed in"));
}

TEST_F(SignInTest, FailedLoginKeepsTheServiceThatWasThere)
{
    SignIn();
    EXPECT_EQ(Run({"login", "--service", Home() + "/nowhere"}).exitStatus, 1);
    EXPECT_EQ(Run({"list"}).exitStatus, 0);
}

TEST_F(SignInTest, UnreadableCertificateFileIsReportedBeforeThePasswordIsAskedFor)
{
    const Outcome outcome = Run({"login", "--service", "https://anna@cloud.example/", "--ca-file", "nowhere.pem"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.contains(Home() + "/nowhere.pem")) << outcome.errors.toStdString();
}

TEST_F(SignInTest, LogoutForgetsTheService)
{
    SignIn();
    EXPECT_EQ(Run({"logout"}).output, "Signed out of " + Cloud() + '\n');
    EXPECT_TRUE(Run({"list"}).errors.contains("not signed in"));
    EXPECT_EQ(Run({"logout"}).output, "You were not signed in.\n");
}

TEST_F(SignInTest, LogoutFromAnotherServiceKeepsTheOneInUse)
{
    SignIn();
    EXPECT_EQ(Run({"logout", "--service", Home()}).exitStatus, 0);
    EXPECT_EQ(Run({"list"}).exitStatus, 0);
}

TEST_F(SignInTest, ResultsAreAvailableAsJson)
{
    ASSERT_TRUE(QDir().mkpath(Cloud()));
    const auto login = Run({"login", "--service", Cloud(), "--json"}).JsonLines();
    ASSERT_EQ(login.size(), 1);
    EXPECT_EQ(login[0]["service"].toString(), QUrl::fromLocalFile(Cloud()).toString());
    EXPECT_TRUE(login[0]["signedIn"].toBool());
    const auto logout = Run({"logout", "--json"}).JsonLines();
    ASSERT_EQ(logout.size(), 1);
    EXPECT_FALSE(logout[0]["signedIn"].toBool(true));
}

TEST_F(SignInTest, DataFolderIsForTheUserAlone)
{
    SignIn();
    const auto owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    const auto user = QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
    EXPECT_EQ(QFileInfo(Data()).permissions(), owner | user);
}

TEST_F(SignInTest, DataFolderCanBeChosen)
{
    ASSERT_TRUE(QDir().mkpath(Cloud()));
    EXPECT_EQ(Run({"login", "--service", Cloud(), "--data", "elsewhere"}).exitStatus, 0);
    EXPECT_EQ(Run({"list", "--data", Home() + "/elsewhere"}).exitStatus, 0);
    EXPECT_FALSE(QFileInfo::exists(Data()));
}

TEST_F(SignInTest, UnusableDataFolderIsReported)
{
    const QString file = MakeFile("file");
    const Outcome outcome = Run({"login", "--service", Home(), "--data", file});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.contains(file)) << outcome.errors.toStdString();
}

} // namespace

} // namespace Norlis::Test
