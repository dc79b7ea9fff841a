#include <tests/support/ServerTest.h>

#include <tests/support/PseudoTerminal.h>

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

namespace Norlis::Test {

namespace {

class ServerCommandsTest : public ServerTest {
protected:
    void SetUp() override
    {
        SignIn();
    }

    QString Advice() const
    {
        return "Sign in again: norlis-cloud login --service " + Address();
    }
};

TEST_F(ServerCommandsTest, DocumentGoesThereAndComesBack)
{
    const QByteArray content = ContentOf(Sample("ferry-ticket.pdf"));
    const QString file = MakeFile("ferry-ticket.pdf", content);
    ASSERT_EQ(Run({"upload", file}).exitStatus, 0);
    EXPECT_EQ(server.Get("ferry-ticket.pdf"), content);
    EXPECT_TRUE(Run({"list"}).output.contains("ferry-ticket.pdf"));
    ASSERT_TRUE(QDir(Home()).mkdir("elsewhere"));
    const Outcome download = Run({"download", "ferry-ticket.pdf", "--to", "elsewhere"});
    EXPECT_EQ(download.exitStatus, 0) << download.errors.toStdString();
    EXPECT_EQ(ContentOf(Home() + "/elsewhere/ferry-ticket.pdf"), content);
    const Outcome pictures = Run({"preview", "ferry-ticket.pdf"});
    EXPECT_EQ(pictures.exitStatus, 0) << pictures.errors.toStdString();
    EXPECT_EQ(Run({"remove", "ferry-ticket.pdf"}).exitStatus, 0);
    EXPECT_EQ(server.Names(), QStringList());
}

TEST_F(ServerCommandsTest, DocumentOfTheSameNameIsLeftAlone)
{
    server.Put("report.pdf", "somebody else's");
    const Outcome outcome = Run({"upload", MakeFile("report.pdf"), "--json"});
    ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    ASSERT_EQ(outcome.JsonLines().size(), 1);
    EXPECT_EQ(Run({"remove", outcome.JsonLines()[0]["id"].toString()}).exitStatus, 0);
    EXPECT_EQ(server.Names(), QStringList("report.pdf"));
    EXPECT_EQ(server.Get("report.pdf"), QByteArray("somebody else's"));
}

TEST_F(ServerCommandsTest, ListWithAnEntryThatCannotBeReadTakesNothingAway)
{
    for (const QString& name : {QString("a.pdf"), QString("b.pdf")}) {
        ASSERT_EQ(Run({"upload", MakeFile(name, name.toUtf8())}).exitStatus, 0);
    }
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    server.Misbehave(When("PROPFIND").Always(), {[](Wire& wire) {
                         ServerResponse answer = wire.Do(wire.Request());
                         answer.body.replace("/documents/a.pdf", "a.pdf");
                         wire.Send(answer.Bytes());
                         wire.Finish();
                     }});
    const Outcome outcome = Run({"list"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.contains("a.pdf")) << outcome.output.toStdString();
    EXPECT_TRUE(Run({"list", "--offline"}).output.contains("a.pdf"));
    server.BehaveAgain();
    server.Remove("b.pdf");
    EXPECT_FALSE(Run({"list"}).output.contains("b.pdf"));
    EXPECT_TRUE(Run({"upload", Home() + "/a.pdf"}).output.contains("unchanged"));
}

TEST_F(ServerCommandsTest, StorageOfWhichTheServerTellsNothingIsNoFailure)
{
    const Outcome outcome = Run({"quota"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(outcome.output, "The service does not report how much storage is used\n");
    const auto results = Run({"quota", "--json"}).JsonLines();
    ASSERT_EQ(results.size(), 1);
    EXPECT_TRUE(results[0]["used"].isNull());
    EXPECT_TRUE(results[0]["total"].isNull());
}

TEST_F(ServerCommandsTest, RefusalOfAnUploadIsToldWithItsReasonAndWhatToDo)
{
    server.Misbehave(When("PUT").Always(), IsOutOfSpace());
    const Outcome outcome = Run({"upload", MakeFile("report.pdf")});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.startsWith("norlis-cloud: Uploading \"report.pdf\" failed: The server has no room left "
                                          "(507"))
        << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.errors.endsWith("Free some space in the cloud and try again\n"))
        << outcome.errors.toStdString();
}

TEST_F(ServerCommandsTest, ServerThatEndsTheSignInInMidWorkIsToldWithTheCommandThatHelps)
{
    server.Misbehave(When("PUT").Always(), AnswersWith(401));
    QStringList words("upload");
    for (int number = 0; number < 12; ++number) { // more than are sent at once
        words << MakeFile(QStringLiteral("%1.pdf").arg(number));
    }
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 12) << outcome.errors.toStdString();
    for (const QString& line : outcome.ErrorLines()) {
        EXPECT_TRUE(line.startsWith("norlis-cloud: Uploading \"")) << line.toStdString();
        EXPECT_TRUE(line.endsWith(Advice())) << line.toStdString();
    }
}

/// What a killed program leaves behind.
class KilledTransferTest : public ServerCommandsTest {
protected:
    /// Lets a command fetch the document, and kills it in the middle.
    /// \param folder beginning of the name of the folder that the document arrives in
    /// \param size   of the document, in bytes; larger ones are fetched in parts for a preview
    void KillInTheMiddleOf(const QStringList& command, const QString& folder, int size = 4'000'000)
    {
        server.Put("report.pdf", QByteArray(size, 'x'));
        server.Misbehave(When("GET").Always(), HangsInTheAnswer(size / 2));
        const auto process = Start(command);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !Leftovers().filter(folder).isEmpty(); }, 60'000));
        process->kill();
        ASSERT_TRUE(process->waitForFinished(60'000));
        server.BehaveAgain();
    }

    /// Files of an interrupted transfer, anywhere in the home folder.
    QStringList Leftovers() const
    {
        QStringList found;
        QDirIterator files(Home(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            if (files.next().contains("/.norlis-download-") || files.filePath().contains("/norlis-preview-")) {
                found << files.filePath();
            }
        }
        return found;
    }

    /// Makes them look as if nobody had touched them for a time.
    void Age(int hours) const
    {
        const auto leftovers = Leftovers();
        for (const QString& file : leftovers) {
            const auto seconds = QDateTime::currentSecsSinceEpoch() - hours * 60 * 60;
            const timespec times[] = {{seconds, 0}, {seconds, 0}};
            for (const QString& path : {file, QFileInfo(file).path()}) {
                ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
            }
        }
    }

    void ExpectSweptAfterADay()
    {
        const QStringList before = Leftovers();
        EXPECT_FALSE(before.isEmpty());
        Age(23);
        EXPECT_EQ(Run({"list"}).exitStatus, 0);
        EXPECT_EQ(Leftovers(), before) << "a slow transfer may still be running";
        Age(25);
        const QString folder = QFileInfo(before.value(0)).path();
        EXPECT_EQ(Run({"list"}).exitStatus, 0);
        EXPECT_EQ(Leftovers(), QStringList());
        EXPECT_FALSE(QFileInfo::exists(folder));
    }
};

TEST_F(KilledTransferTest, DownloadIsSweptADayLater)
{
    ASSERT_TRUE(QDir(Home()).mkpath("out"));
    KillInTheMiddleOf({"download", "report.pdf", "--to", "out"}, "/.norlis-download-");
    ExpectSweptAfterADay();
    EXPECT_TRUE(QDir(Home() + "/out").isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_F(KilledTransferTest, DocumentOfAPreviewIsSweptADayLater)
{
    KillInTheMiddleOf({"preview", "report.pdf"}, "/norlis-preview-", 400'000);
    ExpectSweptAfterADay();
}

TEST_F(KilledTransferTest, FolderThatOnlyLooksLikeOneOfADownloadIsLeftAlone)
{
    MakeFile(".norlis-download-0123456789abcdef/mine.pdf");
    Age(48);
    EXPECT_EQ(Run({"list"}).exitStatus, 0);
    EXPECT_EQ(Leftovers().size(), 1);
}

TEST_F(KilledTransferTest, FolderThatSomethingElseHasBeenPutIntoIsLeftAlone)
{
    ASSERT_TRUE(QDir(Home()).mkpath("out"));
    KillInTheMiddleOf({"download", "report.pdf", "--to", "out"}, "/.norlis-download-");
    const QString document = Leftovers().filter("/.norlis-download-").value(0);
    ASSERT_TRUE(QDir().mkpath(QFileInfo(document).path() + "/mine"));
    Age(48);
    EXPECT_EQ(Run({"list"}).exitStatus, 0);
    EXPECT_EQ(Leftovers(), QStringList(document));
}

TEST_F(ServerCommandsTest, WatchEndsWhenTheServerEndsTheSignIn)
{
    server.Put("report.pdf", "%PDF-1.4\n");
    const auto process = Start({"watch", "--interval", "1"});
    ASSERT_TRUE(process->waitForReadyRead(60'000)); // "added report.pdf"
    server.SetPassword("another one");
    const Outcome outcome = WaitForEnd(*process);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.errors.contains(Advice())) << outcome.errors.toStdString();
}

TEST_F(ServerCommandsTest, WatchOutlastsAServerThatIsAway)
{
    server.Put("first.pdf", "%PDF-1.4\n");
    const auto process = Start({"watch", "--interval", "1"});
    ASSERT_TRUE(process->waitForReadyRead(60'000)); // "added first.pdf"
    EXPECT_TRUE(process->readAllStandardOutput().contains("first.pdf"));
    server.Stop();
    process->setReadChannel(QProcess::StandardError);
    ASSERT_TRUE(process->waitForReadyRead(60'000));
    EXPECT_TRUE(process->readAllStandardError().contains("Fetching the list failed"));
    server.Start();
    server.Put("second.pdf", "%PDF-1.4\n");
    process->setReadChannel(QProcess::StandardOutput);
    ASSERT_TRUE(process->waitForReadyRead(60'000));
    EXPECT_TRUE(process->readAllStandardOutput().contains("second.pdf"));
}

TEST_F(ServerCommandsTest, TextsOfTheServerMoveNoCursor)
{
    // C1 control characters, and a turn of the direction of writing, which XML may hold.
    server.Misbehave(When("PUT").Always(), Refuses(403, "Forbidden",
                                                   "red \xc2\x9b"
                                                   "31m \xc2\x85 \xe2\x80\xae fdp"));
    PseudoTerminal terminal(NORLIS_CLOUD_PROGRAM, {"upload", MakeFile("report.pdf")}, environment);
    EXPECT_EQ(terminal.WaitForEnd(), 1);
    EXPECT_TRUE(terminal.Written().contains("403")) << terminal.Written().toStdString();
    for (const QByteArray harmful : {"\xc2\x9b", "\xc2\x85", "\xe2\x80\xae"}) {
        EXPECT_FALSE(terminal.Written().contains(harmful)) << terminal.Written().toStdString();
    }
}

TEST_F(ServerCommandsTest, ProbeCanBeShownToOthers)
{
    server.Put("private-letter.pdf", "%PDF-1.4\n");
    for (const QStringList& words : {QStringList{"doctor"}, {"doctor", "--json"}}) {
        const Outcome outcome = Run(words);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
        EXPECT_FALSE(outcome.output.trimmed().isEmpty());
        for (const QString& secret : {server.User(), server.Password(), QString("127.0.0.1"),
                                      QString::number(server.Port()), QString("private-letter")}) {
            EXPECT_FALSE(outcome.output.contains(secret)) << outcome.output.toStdString();
        }
    }
    EXPECT_EQ(server.Names(), QStringList("private-letter.pdf"));
}

} // namespace

} // namespace Norlis::Test
