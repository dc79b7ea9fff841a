#include <tests/support/ProgramTest.h>

#include <QDateTime>
#include <QDir>

namespace Norlis::Test {

namespace {

class ListTest : public ProgramTest {};

TEST_F(ListTest, DocumentsAreOrderedByName)
{
    SignIn();
    for (const QString name : {"b.pdf", "Zebra.pdf", "a.pdf", "C.pdf"}) {
        MakeFile("Cloud/" + name);
    }
    QStringList names;
    for (const QString& line : Run({"list"}).output.split('\n', Qt::SkipEmptyParts)) {
        names << line.section(' ', 0, 0);
    }
    EXPECT_EQ(names, QStringList({"NAME", "a.pdf", "b.pdf", "C.pdf", "Zebra.pdf"}));
}

TEST_F(ListTest, ColumnsAreAligned)
{
    SignIn();
    MakeFile("Cloud/short.pdf");
    MakeFile("Cloud/a much longer name – with a dash.pdf", QByteArray(123'456, 'x'));
    const auto lines = Run({"list"}).output.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3);
    for (const QString& line : lines) {
        EXPECT_EQ(line.lastIndexOf(' '), lines[0].lastIndexOf(' ')) << line.toStdString();
    }
    EXPECT_TRUE(lines[1].contains("  121 KiB  ")) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].contains("      9 B  ")) << lines[2].toStdString();
}

TEST_F(ListTest, AsciiLocaleChangesNothing)
{
    SignIn();
    MakeFile("Cloud/report.pdf");
    MakeFile(QStringLiteral("Cloud/Résumé – 年報.pdf"));
    const QString list = Run({"list"}).output;
    environment.insert("LC_ALL", "C");
    EXPECT_EQ(Run({"list"}).output, list);
}

TEST_F(ListTest, JsonIsExact)
{
    SignIn();
    const QString name = QStringLiteral("Résumé \"final\"; Zoë.pdf");
    MakeFile("Cloud/" + name, "0123456789");
    const QDateTime modified(QDate(2021, 4, 5), QTime(6, 7, 8), Qt::UTC);
    QFile file(Cloud() + '/' + name);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.setFileTime(modified, QFileDevice::FileModificationTime));
    file.close();

    const QJsonArray list = Run({"list", "--json"}).Json();
    ASSERT_EQ(list.size(), 1);
    const QJsonObject entry = list[0].toObject();
    EXPECT_EQ(entry["name"].toString(), name);
    EXPECT_EQ(entry["size"].toInt(), 10);
    EXPECT_EQ(entry["md5"].toString(), "781e5e245d69b566979b86e28d23f2c7");
    EXPECT_EQ(entry["modified"].toString(), "2021-04-05T06:07:08Z");
    EXPECT_EQ(entry["state"].toString(), "only-in-cloud");
    EXPECT_TRUE(entry["path"].isNull());
    EXPECT_FALSE(entry["id"].toString().isEmpty());
}

TEST_F(ListTest, EmptyListIsAnEmptyJsonArray)
{
    SignIn();
    EXPECT_EQ(Run({"list", "--json"}).Json(), QJsonArray());
}

TEST_F(ListTest, OfflineShowsWhatTheLastRunSaw)
{
    SignIn();
    MakeFile("Cloud/report.pdf", "0123456789");
    const QJsonArray seen = Run({"list", "--json"}).Json();
    ASSERT_TRUE(QDir(Cloud()).removeRecursively());

    const Outcome online = Run({"list"});
    EXPECT_EQ(online.exitStatus, 1);
    EXPECT_EQ(online.ErrorLines().size(), 1);
    EXPECT_EQ(online.output, "");

    const QJsonArray stored = Run({"list", "--offline", "--json"}).Json();
    ASSERT_EQ(stored.size(), 1);
    for (const QString key : {"id", "name", "size", "md5", "state"}) {
        EXPECT_EQ(stored[0].toObject()[key], seen[0].toObject()[key]) << key.toStdString();
    }
}

TEST_F(ListTest, NamesAloneShowNobodyWhatVersionsThereAre)
{
    SignIn();
    MakeFile("Cloud/b.pdf", "one");
    MakeFile("Cloud/a b.pdf", "two");
    ASSERT_EQ(Run({"list"}).exitStatus, 0);
    EXPECT_EQ(Run({"list", "--offline", "--names"}).output, "a b.pdf\nb.pdf\n");
    MakeFile("Cloud/b.pdf", "another version");
    EXPECT_EQ(Run({"list", "--names"}).output, "a b.pdf\nb.pdf\n");
    EXPECT_EQ(Run({"remove", "b.pdf"}).exitStatus, 1) << "nobody has seen that version";
    EXPECT_EQ(Run({"list", "--names", "--json"}).exitStatus, 2);
}

TEST_F(ListTest, StateTellsHowTheCopiesDiffer)
{
    SignIn();
    const auto state = [this] { return Run({"list", "--json"}).Json()[0].toObject()["state"].toString(); };
    const QString file = MakeFile("report.pdf", "one");
    ASSERT_EQ(Run({"upload", file}).exitStatus, 0);
    EXPECT_EQ(state(), "in-sync");
    MakeFile("report.pdf", "another one");
    EXPECT_EQ(state(), "changed-locally");
    MakeFile("Cloud/report.pdf", "a third one");
    EXPECT_EQ(state(), "changed-on-both-sides");
    MakeFile("report.pdf", "one");
    EXPECT_EQ(state(), "changed-in-cloud");
    QFile::remove(file);
    EXPECT_EQ(state(), "only-in-cloud");
}

TEST_F(ListTest, TwoRunsDoNotMixTheirLists)
{
    SignIn();
    const auto watch = Start({"watch"}); // leaves the list to others
    MakeFile("Cloud/report.pdf");
    EXPECT_TRUE(Run({"list"}).output.contains("report.pdf"));
    watch->terminate();
    EXPECT_EQ(WaitForEnd(*watch).exitStatus, 130);
}

} // namespace

} // namespace Norlis::Test
