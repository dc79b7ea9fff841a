#include <tests/support/ProgramTest.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QImage>

namespace Norlis::Test {

namespace {

class DocumentCommandsTest : public ProgramTest {
protected:
    void SetUp() override
    {
        SignIn();
    }

    static QString FileBelow(const QString& folder, const QString& name)
    {
        QDirIterator files(folder, {name}, QDir::Files, QDirIterator::Subdirectories);
        return files.hasNext() ? files.next() : QString();
    }
};

TEST_F(DocumentCommandsTest, RemovedDocumentIsGoneAndItsLocalCopyStays)
{
    const QString file = MakeFile("report.pdf");
    MakeFile("Cloud/other.pdf");
    ASSERT_EQ(Run({"upload", file}).exitStatus, 0);
    const Outcome outcome = Run({"remove", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.startsWith("removed report.pdf  ")) << outcome.output.toStdString();
    EXPECT_EQ(CloudNames(), QStringList("other.pdf"));
    EXPECT_TRUE(QFileInfo::exists(file));
    EXPECT_FALSE(Run({"list", "--offline"}).output.contains("report.pdf"));
}

TEST_F(DocumentCommandsTest, RemovingAnUnknownDocumentFailsAloneAndTheOthersGoOn)
{
    MakeFile("Cloud/a.pdf");
    MakeFile("Cloud/b.pdf");
    const Outcome outcome = Run({"remove", "a.pdf", "nowhere.pdf", "b.pdf", "--json"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_EQ(outcome.JsonLines().size(), 2);
    EXPECT_EQ(outcome.JsonLines()[0]["action"].toString(), "removed");
    EXPECT_EQ(CloudNames(), QStringList());
}

TEST_F(DocumentCommandsTest, DocumentThatHasChangedSinceItWasSeenIsRemovedOnlyByForce)
{
    MakeFile("Cloud/a.pdf", "seen");
    MakeFile("Cloud/b.pdf", "seen");
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    MakeFile("Cloud/a.pdf", "newer");
    const Outcome outcome = Run({"remove", "a.pdf", "b.pdf"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.contains("\"a.pdf\"")) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.errors.contains("changed since you saw it")) << outcome.errors.toStdString();
    EXPECT_EQ(CloudNames(), QStringList("a.pdf"));

    MakeFile("Cloud/a.pdf", "newest");
    EXPECT_EQ(Run({"remove", "a.pdf", "--force"}).exitStatus, 0);
    EXPECT_EQ(CloudNames(), QStringList());
}

TEST_F(DocumentCommandsTest, OnlyAListShowsAChange)
{
    const QString file = MakeFile("own.pdf", "own");
    ASSERT_EQ(Run({"upload", file}).exitStatus, 0);
    MakeFile("Cloud/a.pdf", "seen");
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    MakeFile("Cloud/a.pdf", "newer");
    for (const QStringList& command : {QStringList{"upload", file}, QStringList{"remove", "nowhere.pdf"}}) {
        Run(command); // fetches the list too
        EXPECT_EQ(Run({"remove", "a.pdf"}).exitStatus, 1);
        EXPECT_EQ(Run({"remove", "a.pdf"}).exitStatus, 1) << "a refusal shows nothing";
        EXPECT_EQ(ContentOf(Cloud() + "/a.pdf"), "newer");
    }
    ASSERT_EQ(Run({"list", "--json"}).exitStatus, 0);
    EXPECT_EQ(Run({"remove", "a.pdf"}).exitStatus, 0);
}

TEST_F(DocumentCommandsTest, WhatWasSentOrFetchedHasBeenSeen)
{
    MakeFile("Cloud/a.pdf", "seen");
    MakeFile("Cloud/b.pdf", "seen");
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    MakeFile("Cloud/a.pdf", "newer");
    MakeFile("Cloud/b.pdf", "newer");
    ASSERT_TRUE(QDir(Home()).mkdir("out"));
    ASSERT_EQ(Run({"download", "a.pdf", "b.pdf", "--to", "out"}).exitStatus, 0);
    ASSERT_EQ(Run({"upload", MakeFile("out/b.pdf", "our own")}).exitStatus, 0);
    const Outcome outcome = Run({"remove", "a.pdf", "b.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
}

TEST_F(DocumentCommandsTest, WhereNoListWasShownTheOneThatIsKeptCounts)
{
    MakeFile("Cloud/a.pdf", "seen");
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    ASSERT_TRUE(QFile::remove(FileBelow(Data(), "shown-versions"))); // as if another program had shown it
    MakeFile("Cloud/a.pdf", "newer");
    EXPECT_EQ(Run({"remove", "a.pdf"}).exitStatus, 1);
    EXPECT_EQ(Run({"remove", "a.pdf"}).exitStatus, 1);
    EXPECT_EQ(CloudNames(), QStringList("a.pdf"));
}

TEST_F(DocumentCommandsTest, WhenItIsNotKnownWhatWasShownTheUserHasToLookAgain)
{
    MakeFile("Cloud/a.pdf", "seen");
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    const QString path = FileBelow(Data(), "shown-versions");
    const QByteArray whole = ContentOf(path);
    for (const QByteArray& damaged : {QByteArray(), QByteArray("{}"), whole.chopped(1), whole + 'x',
                                      whole.left(4) + "\xff\xff\xff\xff" + whole.mid(8)}) {
        WriteFile(path, damaged);
        EXPECT_EQ(Run({"remove", "a.pdf"}).exitStatus, 1) << damaged.toHex().toStdString();
        EXPECT_EQ(CloudNames(), QStringList("a.pdf"));
    }
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    EXPECT_EQ(Run({"remove", "a.pdf"}).exitStatus, 0);
}

TEST_F(DocumentCommandsTest, PicturesComeInThreeSizesAndLieInTheDataFolder)
{
    ASSERT_EQ(Run({"upload", Sample("garden-year.pdf")}).exitStatus, 0);
    const auto results = Run({"preview", "garden-year.pdf", "--json"}).JsonLines();
    ASSERT_EQ(results.size(), 1);
    EXPECT_EQ(results[0]["name"].toString(), "garden-year.pdf");
    const QJsonObject paths = results[0]["previews"].toObject();
    const QMap<QString, int> edges = {{"small", 40}, {"medium", 100}, {"large", 191}};
    for (auto edge = edges.begin(); edge != edges.end(); ++edge) {
        const QString path = paths[edge.key()].toString();
        EXPECT_TRUE(path.startsWith(Data() + '/')) << path.toStdString();
        const QImage picture(path);
        EXPECT_EQ(qMax(picture.width(), picture.height()), edge.value()) << path.toStdString();
    }
}

TEST_F(DocumentCommandsTest, PicturesOfADocumentThatOthersHaveSentCanBeMade)
{
    QFile::copy(Sample("ferry-ticket.pdf"), Cloud() + "/ferry-ticket.pdf");
    const Outcome outcome = Run({"preview", "ferry-ticket.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    const auto lines = outcome.output.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[0], "ferry-ticket.pdf");
    EXPECT_TRUE(QFileInfo::exists(lines[3].section(' ', -1))) << lines[3].toStdString();
}

TEST_F(DocumentCommandsTest, PictureOfABrokenDocumentIsReportedOnce)
{
    MakeFile("Cloud/broken.pdf", "%PDF-1.4\nand nothing more");
    QFile::copy(Sample("ferry-ticket.pdf"), Cloud() + "/ferry-ticket.pdf");
    const Outcome outcome = Run({"preview", "broken.pdf", "ferry-ticket.pdf"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_TRUE(outcome.errors.contains("\"broken.pdf\"")) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.startsWith("ferry-ticket.pdf\n"));
}

TEST_F(DocumentCommandsTest, QuotaIsShownInBytes)
{
    MakeFile("Cloud/a.pdf", QByteArray(3 * 1024 * 1024 + 1, 'x'));
    const auto results = Run({"quota", "--json"}).JsonLines();
    ASSERT_EQ(results.size(), 1);
    EXPECT_EQ(results[0]["used"].toDouble(), 4 * 1024 * 1024);
    EXPECT_GT(results[0]["total"].toDouble(), results[0]["used"].toDouble());
    EXPECT_TRUE(Run({"quota"}).output.startsWith("4.0 MiB of ")) << Run({"quota"}).output.toStdString();
}

} // namespace

} // namespace Norlis::Test
