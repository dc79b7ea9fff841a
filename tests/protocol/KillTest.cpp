#include <tests/support/FolderUnderTest.h>
#include <tests/support/Rounds.h>

#include <QProcess>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace Norlis::Test {

/// Runs the transfer loop and kills it after a number of steps.
class KillTest : public testing::Test {
protected:
    void RunAndKill(const QString& what, const QString& path, int steps)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(NORLIS_TRANSFER_LOOP, {what, cloud.Folder(), path});
        int seen = 0;
        while (seen < steps && process.waitForReadyRead(60'000)) {
            seen += process.readAllStandardOutput().size();
        }
        EXPECT_GE(seen, steps);
        process.kill(); // SIGKILL
        EXPECT_TRUE(process.waitForFinished(60'000));
    }

    QByteArray SomeContent()
    {
        QByteArray content(6'000'000, '\0');
        for (char& byte : content) {
            byte = static_cast<char>(random.generate());
        }
        return content;
    }

    QRandomGenerator random{4711};
    FolderUnderTest cloud;
    QTemporaryDir folder;
};

TEST_F(KillTest, NoHalfUploadHasTheNameOfADocument)
{
    const QByteArray content = SomeContent();
    const QString path = folder.filePath("report.pdf");
    WriteFile(path, content);
    int whole = 0;
    for (int round = 0; round < 30; round += Stride(2)) {
        RunAndKill("upload", path, 1 + round);
        for (const QString& name : cloud.Content()) {
            if (!name.startsWith(".norlis-cloud/")) {
                ASSERT_EQ(cloud.Get(name), content) << qPrintable(name);
                ++whole;
            }
            cloud.Take(name);
        }
    }
    EXPECT_GT(whole, 30 / Stride(2));
}

TEST_F(KillTest, NoHalfDownloadHasTheNameOfTheTarget)
{
    const QByteArray content = SomeContent();
    cloud.Put("report.pdf", content);
    const QString target = folder.filePath("target.pdf");
    int replaced = 0;
    for (int round = 0; round < 30; round += Stride(2)) {
        WriteFile(target, "old");
        RunAndKill("download", target, 1 + round);
        const auto found = ReadFile(target);
        ASSERT_TRUE(found == QByteArray("old") || found == content);
        replaced += found == content ? 1 : 0;
    }
    EXPECT_GT(replaced, 15 / Stride(2));
}

} // namespace Norlis::Test
