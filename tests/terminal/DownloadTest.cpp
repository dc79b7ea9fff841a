#include <host/session/OtherName.h>
#include <tests/support/ProgramTest.h>

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QSysInfo>

namespace Norlis::Test {

namespace {

class DownloadTest : public ProgramTest {
protected:
    void SetUp() override
    {
        SignIn();
        ASSERT_TRUE(QDir().mkpath(Home() + "/out"));
    }
};

TEST_F(DownloadTest, DocumentArrivesUnchanged)
{
    QFile::copy(Sample("garden-year.pdf"), Cloud() + "/garden-year.pdf");
    const Outcome outcome = Run({"download", "garden-year.pdf", "--to", "out"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(ContentOf(Home() + "/out/garden-year.pdf"), ContentOf(Sample("garden-year.pdf")));
    EXPECT_EQ(QDir(Home() + "/out").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList("garden-year.pdf"));
}

TEST_F(DownloadTest, PlaceAndHashAreShown)
{
    MakeFile("Cloud/report.pdf", "0123456789");
    const QString place = QFileInfo(Home() + "/out").canonicalFilePath() + "/report.pdf";
    EXPECT_EQ(Run({"download", "report.pdf", "--to", "out"}).output,
              "downloaded " + place + "  MD5 781e5e245d69b566979b86e28d23f2c7\n");
}

TEST_F(DownloadTest, ResultsAreAvailableAsJson)
{
    MakeFile("Cloud/report.pdf", "0123456789");
    const auto results = Run({"download", "report.pdf", "--to", "out", "--json"}).JsonLines();
    ASSERT_EQ(results.size(), 1);
    EXPECT_EQ(results[0]["action"].toString(), "downloaded");
    EXPECT_EQ(results[0]["path"].toString(), QFileInfo(Home() + "/out/report.pdf").canonicalFilePath());
    EXPECT_EQ(results[0]["md5"].toString(), "781e5e245d69b566979b86e28d23f2c7");
}

TEST_F(DownloadTest, CurrentFolderIsTheDefault)
{
    MakeFile("Cloud/report.pdf", "content");
    EXPECT_EQ(Run({"download", "report.pdf"}).exitStatus, 0);
    EXPECT_EQ(ContentOf(Home() + "/report.pdf"), "content");
}

TEST_F(DownloadTest, DocumentCanBeNamedByItsId)
{
    MakeFile("Cloud/report.pdf", "content");
    const QString id = Run({"list", "--json"}).Json()[0].toObject()["id"].toString();
    EXPECT_EQ(Run({"download", id, "report.pdf"}).output.count("downloaded"), 1);
    EXPECT_EQ(ContentOf(Home() + "/report.pdf"), "content");
}

TEST_F(DownloadTest, NamesAreCaseSensitive)
{
    MakeFile("Cloud/report.pdf");
    const Outcome outcome = Run({"download", "Report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(outcome.errors.contains("\"Report.pdf\"")) << outcome.errors.toStdString();
}

TEST_F(DownloadTest, UnknownDocumentFailsAloneAndTheOthersGoOn)
{
    MakeFile("Cloud/report.pdf");
    const Outcome outcome = Run({"download", "nowhere.pdf", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(QFileInfo::exists(Home() + "/report.pdf"));
}

TEST_F(DownloadTest, MissingFolderIsReported)
{
    MakeFile("Cloud/report.pdf");
    const Outcome outcome = Run({"download", "report.pdf", "--to", "nowhere"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_FALSE(QFileInfo::exists(Home() + "/nowhere"));
}

TEST_F(DownloadTest, ForeignFileIsNotOverwritten)
{
    MakeFile("Cloud/report.pdf", "from the cloud");
    MakeFile("out/report.pdf", "mine");
    const Outcome outcome = Run({"download", "report.pdf", "--to", "out"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_EQ(ContentOf(Home() + "/out/report.pdf"), "mine");
}

TEST_F(DownloadTest, BesideAFileInTheWayADocumentCanHaveANumber)
{
    MakeFile("Cloud/report.pdf", "from the cloud");
    MakeFile("out/report.pdf", "mine");
    EXPECT_EQ(Run({"download", "report.pdf", "--to", "out", "--on-conflict=theirs"}).exitStatus, 1);
    EXPECT_TRUE(Run({"download", "report.pdf", "--to", "out", "--on-conflict=mine"}).output.startsWith("skipped "));
    EXPECT_EQ(ContentOf(Home() + "/out/report.pdf"), "mine");
    const Outcome outcome = Run({"download", "report.pdf", "--to", "out", "--on-conflict=both"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.contains("/out/report (2).pdf  MD5 ")) << outcome.output.toStdString();
    EXPECT_EQ(ContentOf(Home() + "/out/report (2).pdf"), "from the cloud");
    EXPECT_EQ(ContentOf(Home() + "/out/report.pdf"), "mine");
    EXPECT_EQ(QDir(Home() + "/out").entryList(QDir::Files).size(), 2);
}

TEST_F(DownloadTest, ACopyWithChangesCanGetAnotherName)
{
    MakeFile("Cloud/report.pdf", "old");
    ASSERT_EQ(Run({"download", "report.pdf", "--to", "."}).exitStatus, 0);
    MakeFile("report.pdf", "mine");
    MakeFile("Cloud/report.pdf", "theirs");
    const Outcome outcome = Run({"download", "report.pdf", "--on-conflict=both"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(ContentOf(Home() + "/report.pdf"), "theirs");
    const QStringList others = QDir(Home()).entryList({"report (from *"}, QDir::Files);
    ASSERT_EQ(others.size(), 1);
    EXPECT_EQ(ContentOf(Home() + '/' + others.first()), "mine");
}

TEST_F(DownloadTest, NothingIsWrittenThroughALinkInTheWay)
{
    MakeFile("Cloud/report.pdf", "old");
    MakeFile("out/kept.txt", "");
    ASSERT_EQ(Run({"download", "report.pdf", "--to", "out"}).exitStatus, 0);
    MakeFile("out/report.pdf", "mine");
    MakeFile("Cloud/report.pdf", "from the cloud");
    const QString other = Host::OtherNameOf("report.pdf", QSysInfo::machineHostName(), QDate::currentDate(),
                                            [](const QString&) { return false; });
    ASSERT_TRUE(QFile::link(Home() + "/victim.pdf", Home() + "/out/" + other)); // which leads nowhere
    EXPECT_EQ(Run({"download", "report.pdf", "--to", "out", "--on-conflict=both"}).exitStatus, 0);
    EXPECT_FALSE(QFile::exists(Home() + "/victim.pdf"));
    EXPECT_EQ(ContentOf(Home() + "/out/report.pdf"), "from the cloud");
}

TEST_F(DownloadTest, ALinkInThePlaceOfACopyIsNotTheCopy)
{
    MakeFile("Cloud/report.pdf", "from the cloud");
    ASSERT_EQ(Run({"download", "report.pdf", "--to", "."}).exitStatus, 0);
    MakeFile("elsewhere/secret.txt", "a secret");
    ASSERT_TRUE(QFile::remove(Home() + "/report.pdf"));
    ASSERT_TRUE(QFile::link(Home() + "/elsewhere/secret.txt", Home() + "/report.pdf"));
    EXPECT_EQ(Run({"download", "report.pdf", "--to", ".", "--on-conflict=theirs"}).exitStatus, 1);
    EXPECT_EQ(ContentOf(Home() + "/elsewhere/secret.txt"), "a secret");
    EXPECT_FALSE(Run({"list", "--json"}).output.contains("secret"));
}

TEST_F(DownloadTest, ACopyWithChangesCanBeReplaced)
{
    MakeFile("Cloud/report.pdf", "old");
    ASSERT_EQ(Run({"download", "report.pdf", "--to", "."}).exitStatus, 0);
    MakeFile("report.pdf", "mine");
    MakeFile("Cloud/report.pdf", "theirs");
    EXPECT_EQ(Run({"download", "report.pdf", "--on-conflict=fail"}).exitStatus, 1);
    EXPECT_EQ(ContentOf(Home() + "/report.pdf"), "mine");
    const Outcome outcome = Run({"download", "report.pdf", "--on-conflict=theirs"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(ContentOf(Home() + "/report.pdf"), "theirs");
}

TEST_F(DownloadTest, UnchangedLocalCopyIsBroughtUpToDate)
{
    MakeFile("report.pdf", "old");
    ASSERT_EQ(Run({"upload", "report.pdf"}).exitStatus, 0);
    MakeFile("Cloud/report.pdf", "newer");
    const Outcome outcome = Run({"download", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(ContentOf(Home() + "/report.pdf"), "newer");
}

TEST_F(DownloadTest, FileHasThePermissionsThatNewFilesHave)
{
    MakeFile("Cloud/report.pdf");
    ASSERT_EQ(Run({"download", "report.pdf", "--to", "out"}).exitStatus, 0);
    const QString ordinary = MakeFile("ordinary");
    EXPECT_EQ(QFileInfo(Home() + "/out/report.pdf").permissions(), QFileInfo(ordinary).permissions());
}

} // namespace

} // namespace Norlis::Test
