#include <tests/support/ProgramTest.h>

#include <QFile>

namespace Norlis::Test {

namespace {

class WatchTest : public ProgramTest {
protected:
    void SetUp() override
    {
        SignIn();
    }

    static QString NextLine(QProcess& process)
    {
        while (!process.canReadLine()) {
            if (!process.waitForReadyRead(60'000)) {
                ADD_FAILURE() << "no line comes: " << process.readAllStandardError().toStdString();
                return {};
            }
        }
        return QString::fromUtf8(process.readLine()).trimmed();
    }
};

TEST_F(WatchTest, ChangesAreShownUntilInterrupted)
{
    MakeFile("Cloud/report.pdf", "1");
    const auto watch = Start({"watch", "--interval", "1"});
    EXPECT_TRUE(NextLine(*watch).endsWith("  added    report.pdf (1 B)"));
    MakeFile("Cloud/report.pdf", "22");
    EXPECT_TRUE(NextLine(*watch).endsWith("  changed  report.pdf (2 B)"));
    ASSERT_TRUE(QFile::remove(Cloud() + "/report.pdf"));
    EXPECT_TRUE(NextLine(*watch).endsWith("  removed  report.pdf"));
    watch->terminate();
    const Outcome outcome = WaitForEnd(*watch);
    EXPECT_EQ(outcome.exitStatus, 130);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "");
}

TEST_F(WatchTest, ChangesOfAFolderAreShownBeforeTheNextLookIsDue)
{
    MakeFile("Cloud/report.pdf", "1");
    const auto watch = Start({"watch", "--interval", "86400"});
    EXPECT_TRUE(NextLine(*watch).endsWith("  added    report.pdf (1 B)"));
    MakeFile("Cloud/report.pdf", "22");
    EXPECT_TRUE(NextLine(*watch).endsWith("  changed  report.pdf (2 B)"));
    MakeFile("Cloud/another.pdf", "333");
    EXPECT_TRUE(NextLine(*watch).endsWith("  added    another.pdf (3 B)"));
    watch->terminate();
    EXPECT_EQ(WaitForEnd(*watch).exitStatus, 130);
}

TEST_F(WatchTest, NextWatchBeginsWithWhatChangedMeanwhile)
{
    MakeFile("Cloud/a.pdf");
    MakeFile("Cloud/b.pdf");
    const auto first = Start({"watch"});
    EXPECT_TRUE(NextLine(*first).contains("added"));
    EXPECT_TRUE(NextLine(*first).contains("added"));
    first->terminate();
    ASSERT_EQ(WaitForEnd(*first).exitStatus, 130);

    ASSERT_TRUE(QFile::remove(Cloud() + "/a.pdf"));
    const auto second = Start({"watch"});
    EXPECT_TRUE(NextLine(*second).endsWith("removed  a.pdf"));
    second->terminate();
    const Outcome outcome = WaitForEnd(*second);
    EXPECT_EQ(outcome.exitStatus, 130);
    EXPECT_EQ(outcome.output, "");
}

TEST_F(WatchTest, ChangesAreAvailableAsJson)
{
    MakeFile("Cloud/report.pdf", "1");
    const auto watch = Start({"watch", "--interval", "1", "--json"});
    Outcome line;
    line.output = NextLine(*watch);
    ASSERT_TRUE(QFile::remove(Cloud() + "/report.pdf"));
    line.output += '\n' + NextLine(*watch);
    const auto changes = line.JsonLines();
    ASSERT_EQ(changes.size(), 2);
    EXPECT_EQ(changes[0]["change"].toString(), "added");
    EXPECT_EQ(changes[0]["size"].toInt(), 1);
    EXPECT_EQ(changes[1]["change"].toString(), "removed");
    EXPECT_EQ(changes[1]["id"], changes[0]["id"]);
    EXPECT_EQ(changes[1]["name"].toString(), "report.pdf");
    watch->terminate();
    EXPECT_EQ(WaitForEnd(*watch).exitStatus, 130);
}

TEST_F(WatchTest, LookThatFailsIsReportedAndTheNextOneComes)
{
    MakeFile("Cloud/report.pdf");
    const auto watch = Start({"watch", "--interval", "1"});
    NextLine(*watch);
    ASSERT_TRUE(QFile::rename(Cloud(), Home() + "/Away"));
    watch->setReadChannel(QProcess::StandardError);
    EXPECT_TRUE(NextLine(*watch).startsWith("norlis-cloud: Fetching the list failed: "));
    ASSERT_TRUE(QFile::rename(Home() + "/Away", Cloud()));
    MakeFile("Cloud/another.pdf");
    watch->setReadChannel(QProcess::StandardOutput);
    EXPECT_TRUE(NextLine(*watch).contains("  added    another.pdf"));
    watch->terminate();
    EXPECT_EQ(WaitForEnd(*watch).exitStatus, 130);
}

} // namespace

} // namespace Norlis::Test
