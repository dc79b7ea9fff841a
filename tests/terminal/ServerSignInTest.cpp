#include <tests/support/PseudoTerminal.h>
#include <tests/support/ServerTest.h>

#include <QDir>

namespace Norlis::Test {

namespace {

class ServerSignInTest : public ServerTest {
protected:
    QString AddressWithoutUser() const
    {
        return server.Address().toString(QUrl::RemoveUserInfo);
    }

    bool IsAnyTokenKept() const
    {
        return !QDir(Data() + "/tokens").isEmpty(QDir::Files | QDir::Hidden);
    }

    /// Signs in on a terminal and expects this question.
    void SignInAfter(const QString& question, const QString& address)
    {
        PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"login", "--service", address}, environment);
        ASSERT_TRUE(terminal.WaitFor(question.toUtf8())) << terminal.Written().toStdString();
        terminal.Type(server.Password().toUtf8() + '\n');
        EXPECT_EQ(terminal.WaitForEnd(), 0) << terminal.Written().toStdString();
        EXPECT_FALSE(terminal.Written().contains(server.Password().toUtf8())) << "it is typed unseen";
    }
};

TEST_F(ServerSignInTest, PasswordOfTheUserIsAskedFor)
{
    SignInAfter("Password for " + server.User() + " at " + AddressWithoutUser() + ": ", Address());
    const Outcome outcome = Run({"list"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(outcome.output, "No documents.\n");
}

TEST_F(ServerSignInTest, WithoutAUserATokenIsAskedForAndSentAsBearer)
{
    SignInAfter("Token for " + AddressWithoutUser() + ": ", AddressWithoutUser());
    ASSERT_FALSE(server.Requests().empty());
    EXPECT_EQ(server.Requests().back().headers.Value("Authorization"), "Bearer " + server.Password().toUtf8());
    EXPECT_EQ(Run({"list"}).exitStatus, 0);
}

TEST_F(ServerSignInTest, UserCanBeGivenBesideTheAddress)
{
    const Outcome outcome =
        Run({"login", "--service", AddressWithoutUser(), "--user", server.User(), "--token-file", PasswordFile()});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(outcome.output, "Signed in to " + Address() + '\n');
    EXPECT_EQ(Run({"list", "--service", AddressWithoutUser()}).exitStatus, 0);
}

TEST_F(ServerSignInTest, PasswordCanComeFromStandardInput)
{
    const auto process = Start({"login", "--service", Address()});
    process->write(server.Password().toUtf8() + '\n');
    process->closeWriteChannel();
    EXPECT_EQ(WaitForEnd(*process).exitStatus, 0);
    EXPECT_EQ(Run({"list"}).exitStatus, 0);
}

TEST_F(ServerSignInTest, ServerThatNeedsNoPasswordIsSignedInToWithoutOne)
{
    server.SetPassword({});
    server.Put("report.pdf", "content");
    for (const QString& address : {AddressWithoutUser(), Address()}) {
        const Outcome outcome = Run({"login", "--service", address});
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
        EXPECT_TRUE(Run({"list"}).output.contains("report.pdf"));
        EXPECT_EQ(Run({"doctor"}).exitStatus, 0);
    }
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"login", "--service", AddressWithoutUser()}, environment);
    ASSERT_TRUE(terminal.WaitFor("Token for "));
    terminal.Type("\n");
    EXPECT_EQ(terminal.WaitForEnd(), 0) << terminal.Written().toStdString();

    server.SetPassword("asked for from now on");
    EXPECT_TRUE(Run({"list"}).errors.contains("Sign in again: norlis-cloud login --service " + AddressWithoutUser()));
}

TEST_F(ServerSignInTest, PasswordThatIsMissingIsReportedAndNothingIsKept)
{
    const Outcome outcome = Run({"login", "--service", Address()});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.contains("No password or token was given")) << outcome.errors.toStdString();
    EXPECT_FALSE(IsAnyTokenKept());
    EXPECT_EQ(Run({"login", "--service", Address(), "--token-file", MakeFile("empty", "")}).exitStatus, 1);
}

TEST_F(ServerSignInTest, WrongPasswordIsReportedAndNotKept)
{
    const Outcome outcome =
        Run({"login", "--service", Address(), "--token-file", MakeFile("password", "something else")});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.startsWith("norlis-cloud: Signing in failed: ")) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.errors.contains("401")) << outcome.errors.toStdString();
    EXPECT_FALSE(IsAnyTokenKept());
    EXPECT_TRUE(Run({"list"}).errors.contains("not signed in"));
}

TEST_F(ServerSignInTest, LogoutForgetsThePassword)
{
    SignIn();
    EXPECT_TRUE(IsAnyTokenKept());
    EXPECT_EQ(Run({"logout"}).output, "Signed out of " + Address() + '\n');
    EXPECT_FALSE(IsAnyTokenKept());
    EXPECT_TRUE(Run({"list", "--service", Address()}).errors.contains("login --service " + Address()));
}

TEST_F(ServerSignInTest, PasswordThatWasChangedMeanwhileIsReportedWithTheCommandThatHelps)
{
    SignIn();
    server.SetPassword("another one");
    const Outcome outcome = Run({"list"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.endsWith("Sign in again: norlis-cloud login --service " + Address() + '\n'))
        << outcome.errors.toStdString();
}

TEST_F(ServerSignInTest, PlainHttpToAnotherMachineIsRefusedUnlessItIsAskedFor)
{
    const Outcome outcome = Run({"login", "--service", "http://anna@cloud.invalid/", "--token-file", PasswordFile()});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(outcome.errors.contains("unencrypted")) << outcome.errors.toStdString();
    const Outcome allowed =
        Run({"login", "--service", "http://anna@cloud.invalid/", "--token-file", PasswordFile(), "--allow-plain-http"});
    EXPECT_EQ(allowed.exitStatus, 1) << "there is no such server";
    EXPECT_FALSE(allowed.errors.contains("unencrypted")) << allowed.errors.toStdString();
}

} // namespace

} // namespace Norlis::Test
