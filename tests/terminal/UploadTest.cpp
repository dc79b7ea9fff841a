#include <tests/support/MappedFile.h>
#include <tests/support/ProgramTest.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Norlis::Test {

namespace {

class UploadTest : public ProgramTest {
protected:
    void SetUp() override
    {
        SignIn();
    }
};

TEST_F(UploadTest, FilesArriveInTheCloud)
{
    const QString first = MakeFile("first.pdf", "1");
    MakeFile("second.pdf", "22");
    const Outcome outcome = Run({"upload", first, "second.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(outcome.output.contains("uploaded first.pdf  ")) << outcome.output.toStdString();
    EXPECT_TRUE(outcome.output.contains("uploaded second.pdf  ")) << outcome.output.toStdString();
    EXPECT_EQ(ContentOf(Cloud() + "/first.pdf"), "1");
    EXPECT_EQ(ContentOf(Cloud() + "/second.pdf"), "22");
}

TEST_F(UploadTest, ResultsAreAvailableAsJson)
{
    const QString file = MakeFile("report.pdf", "0123456789");
    const auto results = Run({"upload", file, "--json"}).JsonLines();
    ASSERT_EQ(results.size(), 1);
    EXPECT_EQ(results[0]["action"].toString(), "uploaded");
    EXPECT_EQ(results[0]["name"].toString(), "report.pdf");
    EXPECT_EQ(results[0]["path"].toString(), QFileInfo(file).canonicalFilePath());
    EXPECT_EQ(results[0]["size"].toInt(), 10);
    EXPECT_EQ(results[0]["md5"].toString(), "781e5e245d69b566979b86e28d23f2c7");
    const auto list = Run({"list", "--json"}).Json();
    EXPECT_EQ(results[0]["id"], list[0].toObject()["id"]);
}

TEST_F(UploadTest, MissingFileFailsAloneAndTheOthersGoOn)
{
    MakeFile("report.pdf");
    const Outcome outcome = Run({"upload", "nowhere.pdf", "report.pdf", Home()});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 2);
    EXPECT_TRUE(outcome.errors.contains("\"nowhere.pdf\"")) << outcome.errors.toStdString();
    EXPECT_EQ(CloudNames(), QStringList("report.pdf"));
}

TEST_F(UploadTest, FileNamedTwiceIsSentOnce)
{
    MakeFile("report.pdf");
    EXPECT_EQ(Run({"upload", "report.pdf", "./report.pdf", Home() + "/report.pdf"}).exitStatus, 0);
    EXPECT_EQ(CloudNames(), QStringList("report.pdf"));
}

TEST_F(UploadTest, TakenNameGetsANumber)
{
    MakeFile("a/report.pdf", "a");
    MakeFile("b/report.pdf", "b");
    ASSERT_EQ(Run({"upload", "a/report.pdf"}).exitStatus, 0);
    const Outcome outcome = Run({"upload", "b/report.pdf"});
    EXPECT_TRUE(outcome.output.startsWith("uploaded report.pdf as report (2).pdf  ")) << outcome.output.toStdString();
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "a");
    EXPECT_EQ(ContentOf(Cloud() + "/report (2).pdf"), "b");
}

TEST_F(UploadTest, UnchangedFileIsNotSentAgain)
{
    MakeFile("report.pdf");
    ASSERT_EQ(Run({"upload", "report.pdf"}).exitStatus, 0);
    const Outcome outcome = Run({"upload", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_TRUE(outcome.output.startsWith("already in the cloud, unchanged: report.pdf  "))
        << outcome.output.toStdString();
    EXPECT_EQ(CloudNames(), QStringList("report.pdf"));
}

TEST_F(UploadTest, ChangedFileUpdatesItsDocument)
{
    MakeFile("report.pdf", "old");
    ASSERT_EQ(Run({"upload", "report.pdf"}).exitStatus, 0);
    MakeFile("report.pdf", "new and longer");
    const Outcome outcome = Run({"upload", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.startsWith("updated report.pdf  ")) << outcome.output.toStdString();
    EXPECT_EQ(CloudNames(), QStringList("report.pdf"));
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "new and longer");
    EXPECT_TRUE(Run({"upload", "report.pdf"}).output.contains("unchanged"));
}

TEST_F(UploadTest, NewMakesASecondDocument)
{
    MakeFile("report.pdf");
    ASSERT_EQ(Run({"upload", "report.pdf"}).exitStatus, 0);
    EXPECT_EQ(Run({"upload", "--new", "report.pdf"}).exitStatus, 0);
    EXPECT_EQ(CloudNames(), QStringList({"report (2).pdf", "report.pdf"}));
}

TEST_F(UploadTest, NewerDocumentInTheCloudIsNotOverwritten)
{
    MakeFile("report.pdf", "old");
    ASSERT_EQ(Run({"upload", "report.pdf"}).exitStatus, 0);
    MakeFile("Cloud/report.pdf", "from elsewhere");
    EXPECT_EQ(Run({"upload", "report.pdf"}).exitStatus, 1);
    MakeFile("report.pdf", "changed here");
    const Outcome outcome = Run({"upload", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_TRUE(outcome.errors.contains("--new")) << outcome.errors.toStdString();
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "from elsewhere");
}

/// A document that was changed on both sides.
class UploadConflictTest : public UploadTest {
protected:
    void SetUp() override
    {
        UploadTest::SetUp();
        MakeFile("report.pdf", "old");
        ASSERT_EQ(Run({"upload", "report.pdf"}).exitStatus, 0);
        MakeFile("Cloud/report.pdf", "theirs");
        MakeFile("report.pdf", "mine");
    }
};

TEST_F(UploadConflictTest, BothAreKept)
{
    const Outcome outcome = Run({"upload", "--on-conflict=both", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.startsWith("uploaded report.pdf as report (from ")) << outcome.output.toStdString();
    QStringList names = CloudNames();
    ASSERT_EQ(names.size(), 2);
    names.removeAll("report.pdf");
    EXPECT_EQ(ContentOf(Cloud() + '/' + names.first()), "mine");
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "theirs");
    EXPECT_EQ(ContentOf(Home() + "/report.pdf"), "mine");
    EXPECT_TRUE(Run({"upload", "report.pdf"}).output.contains("unchanged")); // the copy of the new document
}

TEST_F(UploadConflictTest, MineReplacesTheirs)
{
    const Outcome outcome = Run({"upload", "--on-conflict=mine", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.startsWith("updated report.pdf  ")) << outcome.output.toStdString();
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "mine");
    EXPECT_EQ(CloudNames(), QStringList("report.pdf"));
}

TEST_F(UploadConflictTest, TheirsReplacesMine)
{
    const Outcome outcome = Run({"upload", "--on-conflict=theirs", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.startsWith("downloaded report.pdf  ")) << outcome.output.toStdString();
    EXPECT_EQ(ContentOf(Home() + "/report.pdf"), "theirs");
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "theirs");
}

TEST_F(UploadConflictTest, WhereNobodyCanBeAskedItFails)
{
    for (const char* const choice : {"--on-conflict=fail", "--json"}) {
        EXPECT_EQ(Run({"upload", choice, "report.pdf"}).exitStatus, 1);
    }
    EXPECT_EQ(ContentOf(Home() + "/report.pdf"), "mine");
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "theirs");
    const Outcome outcome = Run({"upload", "--on-conflict=perhaps", "report.pdf"});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_TRUE(outcome.errors.contains("ask, both, mine, theirs, fail")) << outcome.errors.toStdString();
}

TEST_F(UploadConflictTest, WhatWasSkippedHasNotBeenSeen)
{
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    MakeFile("Cloud/report.pdf", "theirs, and newer");
    ASSERT_TRUE(Run({"upload", "--on-conflict=theirs", MakeFile("other/report.pdf", "another")})
                    .output.startsWith("skipped report.pdf"));
    EXPECT_EQ(Run({"remove", "report.pdf"}).exitStatus, 1);
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "theirs, and newer");
}

TEST_F(UploadConflictTest, ATakenNameIsDecidedToo)
{
    const QString file = MakeFile("other/report.pdf", "another");
    EXPECT_EQ(Run({"upload", "--on-conflict=fail", file}).exitStatus, 1);
    EXPECT_TRUE(Run({"upload", "--on-conflict=theirs", file}).output.startsWith("skipped report.pdf"));
    EXPECT_EQ(CloudNames(), QStringList("report.pdf"));
    EXPECT_TRUE(Run({"upload", "--on-conflict=both", file}).output.startsWith("uploaded report.pdf as report (2).pdf"));
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "theirs");
    const QString third = MakeFile("third/report.pdf", "a third");
    EXPECT_TRUE(Run({"upload", "--on-conflict=mine", third}).output.startsWith("updated report.pdf"));
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "a third");
}

TEST_F(UploadTest, FilesOfAListThatWasWrongForAMomentAreNotSentAgain)
{
    const QStringList names = {"a.pdf", "b.pdf", "c.pdf"};
    for (const QString& name : names) {
        ASSERT_EQ(Run({"upload", MakeFile(name, name.toUtf8())}).exitStatus, 0);
    }
    const auto move = [&](const QString& from, const QString& to) {
        return std::all_of(names.begin(), names.end(),
                           [&](const QString& name) { return QFile::rename(from + '/' + name, to + '/' + name); });
    };
    ASSERT_TRUE(QDir().mkpath(Home() + "/away") && move(Cloud(), Home() + "/away"));
    const Outcome wrong = Run({"list"});
    EXPECT_EQ(wrong.exitStatus, 0);
    EXPECT_TRUE(wrong.errors.contains("3 of the 3 documents")) << wrong.errors.toStdString();
    EXPECT_EQ(Run({"list"}).errors, "");
    ASSERT_TRUE(move(Home() + "/away", Cloud()));

    const Outcome outcome = Run(QStringList{"upload"} + names);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(outcome.output.count("unchanged"), 3) << outcome.output.toStdString();
    EXPECT_EQ(CloudNames(), names);
}

TEST_F(UploadTest, FileThatWasComparedInAnotherFolderStillBelongsToItsDocument)
{
    ASSERT_EQ(Run({"upload", MakeFile("s.pdf", "ours")}).exitStatus, 0);
    MakeFile("Cloud/s.pdf", "theirs, longer");
    MakeFile("s.pdf", "ours, changed");
    ASSERT_EQ(Run({"upload", "s.pdf"}).exitStatus, 1);
    ASSERT_TRUE(QDir().mkpath(Home() + "/out"));
    const auto downloaded = Run({"download", "s.pdf", "--to", "out", "--json"}).JsonLines();
    ASSERT_EQ(downloaded.size(), 1);
    EXPECT_TRUE(downloaded[0]["path"].toString().endsWith("/out/s.pdf"));

    const Outcome again = Run({"upload", "s.pdf"});
    EXPECT_EQ(again.exitStatus, 1);
    EXPECT_TRUE(again.errors.contains("changed both here and in the cloud")) << again.errors.toStdString();
    EXPECT_EQ(CloudNames(), QStringList("s.pdf"));
    EXPECT_EQ(ContentOf(Cloud() + "/s.pdf"), "theirs, longer");

    MakeFile("out/s.pdf", "ours and theirs");
    const Outcome merged = Run({"upload", "out/s.pdf"});
    EXPECT_TRUE(merged.output.startsWith("updated s.pdf  "))
        << merged.output.toStdString() << merged.errors.toStdString();
    EXPECT_EQ(ContentOf(Cloud() + "/s.pdf"), "ours and theirs");
    EXPECT_EQ(Run({"upload", "s.pdf"}).exitStatus, 1) << "it knows nothing of what was put together";
}

TEST_F(UploadTest, ChangeThatNoTimeStampTellsOfIsSent)
{
    const QString file = MakeFile("report.pdf", "text");
    ASSERT_EQ(Run({"upload", file}).exitStatus, 0);
    MappedFile map(file);
    ASSERT_TRUE(Run({"upload", file}).output.contains("unchanged"));
    map.Write("TEXT");
    const Outcome outcome = Run({"upload", file});
    EXPECT_TRUE(outcome.output.startsWith("updated report.pdf  ")) << outcome.output.toStdString();
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "TEXT");
}

TEST_F(UploadTest, DocumentThatWasRemovedElsewhereIsSentAsNew)
{
    MakeFile("report.pdf", "content");
    ASSERT_EQ(Run({"upload", "report.pdf"}).exitStatus, 0);
    ASSERT_TRUE(QFile::remove(Cloud() + "/report.pdf"));
    const Outcome outcome = Run({"upload", "report.pdf"});
    EXPECT_TRUE(outcome.output.startsWith("uploaded report.pdf  ")) << outcome.output.toStdString();
    EXPECT_EQ(ContentOf(Cloud() + "/report.pdf"), "content");
}

TEST_F(UploadTest, OddNamesWork)
{
    const QStringList names = {"--strange.pdf",   "-x.pdf",    "a b.pdf",    "Résumé – Zoë.pdf",
                               "it's \"5%\".pdf", "смета.pdf", "年報 🚢.pdf", ".hidden.pdf"};
    QStringList words = {"upload", "--"};
    for (const QString& name : names) {
        MakeFile(name, name.toUtf8());
        words << name;
    }
    const Outcome outcome = Run(words);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    for (const QString& name : names) {
        EXPECT_EQ(ContentOf(Cloud() + '/' + name), name.toUtf8());
    }
}

TEST_F(UploadTest, UnicodeNamesWorkUnderAnAsciiLocale)
{
    environment.insert("LC_ALL", "C");
    const QString name = QStringLiteral("Résumé – 年報.pdf");
    MakeFile(name, "content");
    const Outcome outcome = Run({"upload", name});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_TRUE(outcome.output.startsWith("uploaded " + name + "  ")) << outcome.output.toStdString();
    EXPECT_EQ(CloudNames(), QStringList(name));
}

TEST_F(UploadTest, NameThatTheCloudRefusesIsReportedOnOneLine)
{
    const QString name = "two\nlines\x1b[2J.pdf";
    MakeFile(name);
    const Outcome outcome = Run({"upload", name});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.ErrorLines().size(), 1);
    EXPECT_FALSE(outcome.errors.contains('\x1b'));
    EXPECT_EQ(CloudNames(), QStringList());
}

} // namespace

} // namespace Norlis::Test
