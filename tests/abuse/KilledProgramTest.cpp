// The terminal program killed at any moment of what it does. How often each test does so is in NORLIS_KILLS.

#include <tests/support/ProgramTest.h>
#include <tests/support/Rounds.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSet>

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

namespace Norlis::Test {

namespace {

using testing::AnyOf;

int Kills()
{
    bool isNumber = false;
    const int kills = qEnvironmentVariableIntValue("NORLIS_KILLS", &isNumber);
    return isNumber ? kills : IsThorough() ? 10 : 2;
}

class KilledProgramTest : public ProgramTest {
protected:
    void SetUp() override
    {
        SignIn();
    }

    /// Does the same again and again. Before each time something is prepared, and afterwards, with the program dead or
    /// done, something is checked. The first run is not killed, to learn how long one takes.
    void KillAgainAndAgain(const QStringList& command, const std::function<void(int round)>& prepare,
                           const std::function<void()>& check)
    {
        qint64 duration = 0;
        int dead = 0;
        for (int round = 0; dead < Kills() && round <= 10 * Kills() && !HasFailure(); ++round) {
            prepare(round);
            QElapsedTimer elapsed;
            elapsed.start();
            const auto process = Start(command);
            process->closeWriteChannel();
            if (round == 0) {
                const Outcome outcome = WaitForEnd(*process);
                ASSERT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
                duration = elapsed.elapsed();
            } else {
                const int delay = random.bounded(static_cast<int>(duration) + 1);
                if (process->waitForFinished(delay)) {
                    duration = std::min(duration, elapsed.elapsed()); // the machine did something else before
                } else {
                    process->kill(); // SIGKILL
                    ASSERT_TRUE(process->waitForFinished(60'000));
                    ++dead;
                }
                SCOPED_TRACE("killed after " + std::to_string(delay) + " of " + std::to_string(duration) + " ms");
                check();
            }
        }
        RecordProperty("killed", dead);
        EXPECT_EQ(dead, Kills()) << "most runs were over before their end";
    }

    /// Does it once more, to the end.
    void ExpectToWork(const QStringList& command)
    {
        const Outcome outcome = Run(command);
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    }

    QByteArray SomeContent()
    {
        QByteArray content(8'000'000, Qt::Uninitialized);
        random.fillRange(reinterpret_cast<quint32*>(content.data()), content.size() / 4);
        return content;
    }

    QSet<QString> ListedNames()
    {
        const Outcome outcome = Run({"list", "--offline", "--json"});
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
        QSet<QString> names;
        for (const QJsonValue& document : outcome.Json()) {
            names << document.toObject()["name"].toString();
        }
        return names;
    }

    QRandomGenerator random{20261121};
};

TEST_F(KilledProgramTest, UploadLeavesTheOldDocumentOrTheNewOne)
{
    const QString file = MakeFile("report.pdf", SomeContent());
    ExpectToWork({"upload", file});
    QByteArray before = ContentOf(file);
    QByteArray after;
    KillAgainAndAgain(
        {"upload", file},
        [&](int) {
            before = ContentOf(Cloud() + "/report.pdf");
            after = SomeContent();
            MakeFile("report.pdf", after);
        },
        [&] {
            ASSERT_EQ(CloudNames(), QStringList("report.pdf"));
            const QByteArray found = ContentOf(Cloud() + "/report.pdf");
            ASSERT_TRUE(found == before || found == after);
            ASSERT_TRUE(ContentOf(file) == after) << "the user's own file";
            ExpectToWork({"upload", file});
            EXPECT_TRUE(ContentOf(Cloud() + "/report.pdf") == after);
        });
}

TEST_F(KilledProgramTest, UploadOfANewDocumentLeavesItWholeOrNotAtAll)
{
    QByteArray content;
    QString file;
    KillAgainAndAgain(
        {"upload", "--new", "report.pdf"},
        [&](int) {
            for (const QString& name : CloudNames()) {
                QFile::remove(Cloud() + '/' + name);
            }
            content = SomeContent();
            file = MakeFile("report.pdf", content);
        },
        [&] {
            for (const QString& name : CloudNames()) {
                ASSERT_EQ(name, "report.pdf");
                ASSERT_TRUE(ContentOf(Cloud() + '/' + name) == content);
            }
            ASSERT_TRUE(ContentOf(file) == content) << "the user's own file";
            ExpectToWork({"list"});
        });
}

TEST_F(KilledProgramTest, DownloadLeavesTheOldCopyOrTheNewOne)
{
    const QString folder = Home() + "/Documents";
    const QString copy = folder + "/report.pdf";
    const QStringList download = {"download", "report.pdf", "--to", folder};
    QDir().mkpath(folder);
    MakeFile("Cloud/report.pdf", SomeContent());
    ExpectToWork({"list"});
    ExpectToWork(download);
    QByteArray before;
    QByteArray after;
    KillAgainAndAgain(
        download,
        [&](int) {
            before = ContentOf(copy);
            after = SomeContent();
            MakeFile("Cloud/report.pdf", after);
        },
        [&] {
            ASSERT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList("report.pdf"));
            const QByteArray found = ContentOf(copy);
            ASSERT_TRUE(found == before || found == after);
            ASSERT_TRUE(ContentOf(Cloud() + "/report.pdf") == after) << "the document in the cloud";
            ExpectToWork(download);
            EXPECT_TRUE(ContentOf(copy) == after);
        });
}

TEST_F(KilledProgramTest, SavedListIsTheOldOneOrTheNewOne)
{
    QSet<QString> before;
    QSet<QString> after;
    KillAgainAndAgain(
        {"list"},
        [&](int round) {
            before = after;
            after.clear();
            for (const QString& name : qAsConst(before)) {
                QFile::remove(Cloud() + '/' + name);
            }
            for (int number = 0; number < 200; ++number) {
                const auto name = QStringLiteral("%1-%2.pdf").arg(round).arg(number);
                MakeFile("Cloud/" + name);
                after << name;
            }
        },
        [&] {
            ASSERT_THAT(ListedNames(), AnyOf(before, after));
            ExpectToWork({"list"});
            EXPECT_EQ(ListedNames(), after);
        });
}

} // namespace

} // namespace Norlis::Test
