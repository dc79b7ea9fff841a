#include <tests/support/ProgramTest.h>

#include <apps/common/Interrupts.h>

#include <QDir>
#include <QDirIterator>
#include <QSignalSpy>
#include <QTest>

#include <csignal>

namespace Norlis::Test {

namespace {

using Apps::Interrupts;

constexpr qint64 bigSize = 512 * 1024 * 1024; // bytes; takes long enough to be met on the way
constexpr int timeLimit = 60'000;

class InterruptTest : public ProgramTest, public testing::WithParamInterface<int> {
protected:
    void SetUp() override
    {
        SignIn();
    }

    /// A file that takes no room on the disk.
    QString MakeBigFile(const QString& path)
    {
        const QString file = MakeFile(path);
        EXPECT_TRUE(QFile::resize(file, bigSize));
        return file;
    }

    /// Sizes of all files in a folder and below.
    static QMap<QString, qint64> FilesBelow(const QString& folder)
    {
        QMap<QString, qint64> files;
        QDirIterator iterator(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (iterator.hasNext()) {
            const QString path = iterator.next();
            files[path] = iterator.fileInfo().size();
        }
        return files;
    }

    /// Waits until a transfer has begun to write into a folder.
    static bool WaitForWriting(const QString& folder)
    {
        return QTest::qWaitFor(
            [&] {
                const auto sizes = FilesBelow(folder).values();
                return std::any_of(sizes.begin(), sizes.end(), [](qint64 size) { return size > 1024 * 1024; });
            },
            timeLimit);
    }
};

/// False when the program has ended: its id would be 0 then, which means every process of our own group.
bool Signal(const QProcess& program, int signal)
{
    const auto id = static_cast<pid_t>(program.processId());
    return id > 0 && kill(id, signal) == 0;
}

TEST_P(InterruptTest, UploadIsCancelledAndLeavesNothingBehind)
{
    const QString file = MakeBigFile("big.pdf");
    const auto before = FilesBelow(Cloud()).keys();
    const auto upload = Start({"upload", file});
    ASSERT_TRUE(WaitForWriting(Cloud())) << upload->readAllStandardError().toStdString();
    ASSERT_TRUE(Signal(*upload, GetParam()));

    const Outcome outcome = WaitForEnd(*upload);
    EXPECT_EQ(outcome.exitStatus, 130);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "norlis-cloud: \"big.pdf\" was cancelled\n");
    EXPECT_EQ(FilesBelow(Cloud()).keys(), before);
    EXPECT_EQ(Run({"list", "--offline", "--json"}).Json().size(), 0);
}

TEST_P(InterruptTest, DownloadIsCancelledAndLeavesNothingBehind)
{
    MakeBigFile("Cloud/big.pdf");
    ASSERT_TRUE(QDir().mkpath(Home() + "/out"));
    const auto download = Start({"download", "big.pdf", "--to", "out"});
    ASSERT_TRUE(WaitForWriting(Home() + "/out")) << download->readAllStandardError().toStdString();
    ASSERT_TRUE(Signal(*download, GetParam()));

    const Outcome outcome = WaitForEnd(*download);
    EXPECT_EQ(outcome.exitStatus, 130);
    EXPECT_EQ(outcome.errors, "norlis-cloud: \"big.pdf\" was cancelled\n");
    EXPECT_TRUE(QDir(Home() + "/out").isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST_P(InterruptTest, WindowSavesTheListAsItDoesWhenItIsClosed)
{
    ASSERT_TRUE(QFile::copy(Sample("ferry-ticket.pdf"), Cloud() + "/ferry-ticket.pdf"));
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    QProcess window;
    window.setProcessEnvironment(environment);
    window.start(NORLIS_DOCUMENTS_PROGRAM, {"--data", Data()});
    const auto hasPictures = [this] { // which come after the list
        const auto files = FilesBelow(Data() + "/services").keys();
        return std::any_of(files.begin(), files.end(),
                           [](const QString& file) { return file.contains("/pictures/") && file.endsWith(".png"); });
    };
    ASSERT_TRUE(QTest::qWaitFor(hasPictures, timeLimit)) << window.readAllStandardError().toStdString();
    ASSERT_TRUE(Signal(window, GetParam()));

    const Outcome outcome = WaitForEnd(window);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors.toStdString();
    EXPECT_EQ(Run({"list", "--offline", "--json"}).Json().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptTest, testing::Values(SIGINT, SIGTERM),
                         [](const auto& info) { return info.param == SIGINT ? "CtrlC" : "Terminate"; });

TEST(InterruptsTest, FirstSignalIsReportedOnce)
{
    Interrupts interrupts;
    QSignalSpy interrupted(&interrupts, &Interrupts::Interrupted);
    std::raise(SIGINT);
    EXPECT_EQ(interrupted.size(), 0) << "from inside the signal handler";
    EXPECT_TRUE(interrupted.wait(timeLimit));
    EXPECT_EQ(interrupted.size(), 1);
}

TEST(InterruptsTest, SecondSignalEndsTheProgramAtOnce)
{
    EXPECT_EXIT(
        {
            const Interrupts interrupts;
            std::raise(SIGINT);
            std::raise(SIGTERM);
        },
        testing::ExitedWithCode(130), "");
}

TEST(InterruptsTest, IgnoredSignalStaysIgnored)
{
    EXPECT_EXIT(
        {
            std::signal(SIGHUP, SIG_IGN);
            const Interrupts interrupts;
            std::raise(SIGHUP);
            std::raise(SIGHUP);
            std::_Exit(7);
        },
        testing::ExitedWithCode(7), "");
}

} // namespace

} // namespace Norlis::Test
