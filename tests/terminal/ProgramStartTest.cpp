#include <tests/support/Files.h>
#include <tests/support/ProgramTest.h>
#include <tests/support/Waiting.h>

#include <gmock/gmock.h>

#include <csignal>

namespace Norlis::Test {

using testing::HasSubstr;

/// The program, started by a parent process that leaves it with less than usual.
class ProgramStartTest : public ProgramTest {
protected:
    void SetUp() override
    {
        SignIn();
    }

    /// Starts the program where a shell has run a command before.
    std::unique_ptr<QProcess> StartAfter(const QString& shellCommand, const QStringList& words,
                                         const QString& program = NORLIS_CLOUD_PROGRAM)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment);
        process->setWorkingDirectory(Home());
        process->start("/bin/sh", QStringList{"-c", shellCommand + "; exec \"$0\" \"$@\"", program} + words);
        EXPECT_TRUE(process->waitForStarted());
        process->closeWriteChannel();
        return process;
    }

    Outcome RunAfter(const QString& shellCommand, const QStringList& words)
    {
        return WaitForEnd(*StartAfter(shellCommand, words));
    }
};

TEST_F(ProgramStartTest, ClosedStandardDescriptorsAreNoReasonToFail)
{
    MakeFolder(Home() + "/copies");
    int number = 0;
    for (const char* closed : {">&-", "<&- >&- 2>&-"}) {
        const QString command = QStringLiteral("exec ") + closed;
        const QString name = QString::number(++number) + ".pdf";
        EXPECT_EQ(RunAfter(command, {"upload", MakeFile(name, "content")}).exitStatus, 0) << closed;
        EXPECT_TRUE(CloudNames().contains(name)) << closed;
        EXPECT_EQ(RunAfter(command, {"download", name, "--to", Home() + "/copies"}).exitStatus, 0) << closed;
        EXPECT_EQ(ContentOf(Home() + "/copies/" + name), "content") << closed;
        EXPECT_EQ(RunAfter(command, {"download", "missing.pdf"}).exitStatus, 1) << closed;
    }
}

TEST_F(ProgramStartTest, AFileThatMayNotGrowFurtherIsAnErrorAndLeavesNothing)
{
    MakeFile("Cloud/large.pdf", QByteArray(8 * MiB, 'x'));
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    MakeFolder(Home() + "/copies");
    const Outcome outcome = RunAfter("ulimit -f 8192", {"download", "large.pdf", "--to", Home() + "/copies"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors.toStdString(), HasSubstr("File too large"));
    EXPECT_EQ(FilesBelow(Home() + "/copies"), QStringList());
}

TEST_F(ProgramStartTest, TooFewDescriptorsAreSaidAtOnce)
{
    const Outcome outcome = RunAfter("ulimit -n 20", {"list"});
    EXPECT_EQ(outcome.exitStatus, 1);
    ASSERT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_THAT(outcome.errors.toStdString(), HasSubstr("the limit is 20. Raise it"));

    environment.insert("QT_QPA_PLATFORM", "offscreen");
    const auto window = StartAfter("ulimit -n 20", {"--help"}, NORLIS_DOCUMENTS_PROGRAM);
    const Outcome outcomeOfWindow = WaitForEnd(*window);
    EXPECT_EQ(outcomeOfWindow.exitStatus, 1);
    EXPECT_THAT(outcomeOfWindow.errors.toStdString(), HasSubstr("the limit is 20. Raise it"));
}

TEST_F(ProgramStartTest, NothingIsSaidBeforeThereIsALogUnlessItIsTheEnd)
{
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    const QString withComplaint = "unset XDG_RUNTIME_DIR"; // of which Qt warns a program that has a window
    const auto window = StartAfter(withComplaint, {"--version"}, NORLIS_DOCUMENTS_PROGRAM);
    const Outcome outcome = WaitForEnd(*window);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(RunAfter(withComplaint, {"list"}).errors, "");

    environment.insert("QT_QPA_PLATFORM", "none-such");
    const auto blind = StartAfter(withComplaint, {"--data", Data()}, NORLIS_DOCUMENTS_PROGRAM);
    const auto errors = WaitForEnd(*blind).errors.toStdString();
    EXPECT_THAT(errors, HasSubstr("norlis-documents: Could not find the Qt platform plugin \"none-such\""));
    EXPECT_THAT(errors, HasSubstr("norlis-documents: This application failed to start"));
}

TEST_F(ProgramStartTest, ALimitThatTheProgramMayRaiseItselfDoesNotDisturb)
{
    EXPECT_EQ(RunAfter("ulimit -S -n 20", {"list"}).exitStatus, 0);
}

TEST_F(ProgramStartTest, ACrashLeavesNoCopyOfTheMemory)
{
    MakeFile("Cloud/new.pdf"); // which it tells
    const auto process = StartAfter("ulimit -S -c unlimited", {"watch"});
    ASSERT_TRUE(process->waitForReadyRead());
    const QByteArray limits = ReadFile(QStringLiteral("/proc/%1/limits").arg(process->processId())).value_or("");
    EXPECT_THAT(limits.simplified().toStdString(), HasSubstr("Max core file size 0 0 bytes"));
    ASSERT_EQ(kill(static_cast<pid_t>(process->processId()), SIGQUIT), 0);
    EXPECT_EQ(WaitForEnd(*process).exitStatus, -1);
    EXPECT_EQ(QDir(Home()).entryList({"core*"}), QStringList());
}

} // namespace Norlis::Test
