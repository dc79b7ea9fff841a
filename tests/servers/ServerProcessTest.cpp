#include "ServerProcess.h"

#include <QFile>
#include <QTemporaryDir>

#include <tests/support/Waiting.h>

#include <gtest/gtest.h>

#include <csignal>

namespace Norlis::Test {

class ServerProcessTest : public testing::Test {
protected:
    void Run(const QString& script)
    {
        process = std::make_unique<ServerProcess>(ProgramStart{"/bin/sh", {"-c", script}, {"GREETING=hello"}, "/"},
                                                  folder.filePath("output"));
    }

    QByteArray Output() const
    {
        QFile file(folder.filePath("output"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    std::unique_ptr<ServerProcess> process;
};

TEST_F(ServerProcessTest, WhatItWritesIsKept)
{
    Run("echo $GREETING; pwd; echo error >&2");
    EXPECT_TRUE(BlockUntil([this] { return !process->IsRunning(); }));
    EXPECT_EQ(Output(), "hello\n/\nerror\n");
}

TEST_F(ServerProcessTest, WhatIsNoProgramEndsAtOnce)
{
    process = std::make_unique<ServerProcess>(ProgramStart{"/no/such/program", {}, {}, "/"}, folder.filePath("output"));
    EXPECT_TRUE(BlockUntil([this] { return !process->IsRunning(); }));
}

TEST_F(ServerProcessTest, ItEndsTogetherWithWhatItHasStarted)
{
    Run("sh -c 'echo $$; exec sleep 1000' & wait");
    ASSERT_TRUE(BlockUntil([this] { return Output().endsWith('\n'); }));
    const pid_t inner = Output().trimmed().toInt();
    ASSERT_GT(inner, 0);
    EXPECT_EQ(kill(inner, 0), 0);
    process.reset();
    EXPECT_NE(kill(inner, 0), 0);
}

TEST_F(ServerProcessTest, WhatItHasStartedDoesNotOutliveIt)
{
    Run("sleep 1000 &");
    EXPECT_TRUE(BlockUntil([this] { return !process->IsRunning(); }));
}

TEST_F(ServerProcessTest, WhoDoesNotWantToEndIsKilled)
{
    Run("trap '' TERM; echo $$; while true; do sleep 1000; done");
    ASSERT_TRUE(BlockUntil([this] { return Output().endsWith('\n'); }));
    const pid_t inner = Output().trimmed().toInt();
    ASSERT_GT(inner, 0);
    process.reset();
    EXPECT_TRUE(BlockUntil([inner] {
        QFile status("/proc/" + QString::number(inner) + "/stat"); // "1234 (sh) Z ...", if it still has to be noticed
        return !status.open(QIODevice::ReadOnly) || status.readAll().split(' ').value(2) == "Z";
    }));
}

} // namespace Norlis::Test
