#include <base/PreparedProcess.h>
#include <tests/support/Files.h>
#include <tests/support/ProgramTest.h>
#include <tests/support/PseudoTerminal.h>

#include <QRegularExpression>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace Norlis::Test {

namespace {

class TerminalTest : public ProgramTest {
protected:
    void SetUp() override
    {
        SignIn();
    }

    /// A file that takes long enough for bars to be drawn, and no room on the disk.
    QString MakeBigFile(const QString& path)
    {
        const QString file = MakeFile(path);
        EXPECT_TRUE(QFile::resize(file, 96 * 1024 * 1024));
        return file;
    }
};

/// A process whose standard output nobody reads.
class WithoutReader : public PreparedProcess {
public:
    WithoutReader()
        : PreparedProcess([] {
              int ends[2];
              if (pipe(ends) == 0) {
                  ::close(ends[0]);
                  dup2(ends[1], STDOUT_FILENO);
                  ::close(ends[1]);
              }
          })
    {
    }
};

TEST_F(TerminalTest, UploadsShowBars)
{
    const QString first = MakeBigFile("first.pdf");
    const QString second = MakeBigFile("second.pdf");
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", first, second}, environment);
    EXPECT_EQ(terminal.WaitForEnd(), 0);
    const auto written = QString::fromUtf8(terminal.Written());
    EXPECT_TRUE(written.contains(QRegularExpression("first\\.pdf +\\[#+\\.*\\] +\\d+%"))) << written.toStdString();
    EXPECT_TRUE(written.contains(QRegularExpression("second\\.pdf +\\[#*\\.*\\] +\\d+%"))) << written.toStdString();
    // The last thing on the screen is a result, not a bar.
    EXPECT_TRUE(written.section("\x1b[J", -1).contains("uploaded ")) << written.toStdString();
}

TEST_F(TerminalTest, NarrowWindowIsSurvived)
{
    const QString file = MakeBigFile("a-long-name-for-a-file.pdf");
    for (const int columns : {1, 5, 12, 20}) {
        PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", "--new", file}, environment, columns, 5);
        EXPECT_EQ(terminal.WaitForEnd(), 0);
        for (const QByteArray& line : terminal.Written().split('\n')) {
            if (line.trimmed().endsWith('%')) {
                EXPECT_LT(QString::fromUtf8(line.mid(line.lastIndexOf("\x1b[J") + 3)).trimmed().size(), columns);
            }
        }
    }
}

TEST_F(TerminalTest, DumbTerminalGetsPlainLines)
{
    environment.insert("TERM", "dumb");
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", MakeBigFile("big.pdf")}, environment);
    EXPECT_EQ(terminal.WaitForEnd(), 0);
    EXPECT_FALSE(terminal.Written().contains('\x1b'));
    EXPECT_TRUE(terminal.Written().startsWith("uploaded big.pdf  ")) << terminal.Written().toStdString();
}

TEST_F(TerminalTest, JsonOnATerminalHasNoBars)
{
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", "--json", MakeBigFile("big.pdf")}, environment);
    EXPECT_EQ(terminal.WaitForEnd(), 0);
    EXPECT_FALSE(terminal.Written().contains('\x1b'));
}

TEST_F(TerminalTest, PipeGetsPlainLines)
{
    const Outcome outcome = Run({"upload", MakeBigFile("big.pdf")});
    EXPECT_FALSE(outcome.output.contains('\x1b'));
    EXPECT_EQ(outcome.output.count('\n'), 1);
}

TEST_F(TerminalTest, AConflictIsAskedAbout)
{
    const QString file = MakeFile("report.pdf", "old");
    ASSERT_EQ(Run({"upload", file}).exitStatus, 0);
    MakeFile("Cloud/report.pdf", "theirs");
    MakeFile("report.pdf", "mine");
    const QByteArray question = "was changed both here and in the cloud. Type both, mine, theirs or none";
    {
        PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", file}, environment);
        ASSERT_TRUE(terminal.WaitFor(question));
        terminal.Type("none\n");
        EXPECT_EQ(terminal.WaitForEnd(), 1);
    }
    {
        PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", file}, environment);
        ASSERT_TRUE(terminal.WaitFor(question));
        terminal.Type("\x03");
        EXPECT_EQ(terminal.WaitForEnd(), 130);
    }
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "theirs");
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", file}, environment);
    ASSERT_TRUE(terminal.WaitFor(question));
    terminal.Type("what?\nmi");
    ASSERT_TRUE(terminal.WaitFor("what?"));
    terminal.Type("ne\n");
    EXPECT_EQ(terminal.WaitForEnd(), 0) << terminal.Written().toStdString();
    EXPECT_EQ(terminal.Written().count(question), 2);
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "mine");
}

TEST_F(TerminalTest, ProblemsTakeTheBarsAwayAndPutThemBack)
{
    const QString first = MakeFile("first.pdf");
    ASSERT_TRUE(QFile::resize(first, 512 * 1024 * 1024));
    const QString second = MakeBigFile("second.pdf");
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", first, second}, environment);
    ASSERT_TRUE(terminal.WaitFor("second.pdf "));
    ASSERT_TRUE(QFile::remove(second)); // whose turn comes when the first one is read
    ASSERT_TRUE(terminal.WaitFor("Uploading \"second.pdf\" failed"));
    ASSERT_TRUE(terminal.WaitFor("\nfirst.pdf "));
    EXPECT_TRUE(terminal.Written().contains("\x1b[Jnorlis-cloud: Uploading")) << terminal.Written().toStdString();
    terminal.Type("\x03");
    EXPECT_EQ(terminal.WaitForEnd(), 130);
}

TEST_F(TerminalTest, CtrlCTakesTheBarsAway)
{
    const QString file = MakeFile("big.pdf");
    ASSERT_TRUE(QFile::resize(file, 512 * 1024 * 1024));
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", file}, environment);
    ASSERT_TRUE(terminal.WaitFor("["));
    ASSERT_TRUE(terminal.WaitFor("%"));
    terminal.Type("\x03");
    EXPECT_EQ(terminal.WaitForEnd(), 130);
    EXPECT_TRUE(terminal.Written().endsWith("\x1b[Jnorlis-cloud: \"big.pdf\" was cancelled\r\n"))
        << terminal.Written().toStdString();
    EXPECT_EQ(CloudNames(), QStringList());
}

TEST_F(TerminalTest, NamesAreMadeHarmlessForPeopleAndStayExactInJson)
{
    const QString name = QStringLiteral("\ufeffevil\u202efdp\u200b\u061c\U000e0041.pdf");
    const QByteArray shown = QStringLiteral("\ufffdevil\ufffdfdp\ufffd\ufffd\ufffd.pdf").toUtf8();
    MakeFile("Cloud/" + name);
    MakeFolder(Home() + "/copies");
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"list"}, environment);
    EXPECT_EQ(terminal.WaitForEnd(), 0);
    EXPECT_TRUE(terminal.Written().contains(shown)) << terminal.Written().toStdString();
    for (const QStringList& words : {QStringList{"list"}, QStringList{"download", name, "--to", Home() + "/copies"}}) {
        const Outcome outcome = Run(words);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
        EXPECT_TRUE(outcome.output.toUtf8().contains(shown)) << outcome.output.toStdString();
    }
    EXPECT_EQ(Run({"list", "--json"}).Json()[0].toObject()["name"].toString(), name);
    EXPECT_EQ(FilesBelow(Home() + "/copies"), QStringList(name));

    ASSERT_EQ(Run({"remove", name}).exitStatus, 0);
    ASSERT_EQ(Run({"upload", Home() + "/copies/" + name}).exitStatus, 0);
    EXPECT_EQ(CloudNames(), QStringList(name));
}

TEST_F(TerminalTest, LongNamesAreCutToTheWindow)
{
    MakeFile("Cloud/" + QString(200, 'n') + ".pdf");
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"list"}, environment, 100);
    EXPECT_EQ(terminal.WaitForEnd(), 0);
    for (const QByteArray& line : terminal.Written().split('\n')) {
        EXPECT_LE(QString::fromUtf8(line).trimmed().size(), 100) << line.toStdString();
    }
    EXPECT_TRUE(Run({"list"}).output.contains(QString(200, 'n') + ".pdf"));
}

TEST_F(TerminalTest, FullDiskUnderTheResultsIsAFailure)
{
    for (const QStringList& words : {QStringList{"list"}, {"list", "--json"}, {"--help"}}) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setStandardOutputFile("/dev/full");
        process.start(NORLIS_CLOUD_PROGRAM, words);
        const Outcome outcome = WaitForEnd(process);
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_EQ(outcome.errors, "norlis-cloud: The results cannot be written: No space left on device\n");
    }
}

TEST_F(TerminalTest, ReaderThatHasGoneIsNoCrash)
{
    const QString file = MakeFile("report.pdf");
    for (const QStringList& words : {QStringList{"list"}, {"upload", file}, {"watch"}, {"--help"}}) {
        WithoutReader process;
        process.setProcessEnvironment(environment);
        process.start(NORLIS_CLOUD_PROGRAM, words);
        const Outcome outcome = WaitForEnd(process);
        EXPECT_EQ(outcome.exitStatus, 1) << words.join(' ').toStdString();
        EXPECT_EQ(outcome.errors, "");
    }
    EXPECT_EQ(CloudNames(), QStringList("report.pdf")) << "the work is done all the same";
}

} // namespace

} // namespace Norlis::Test
