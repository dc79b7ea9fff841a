#include <host/store/HashMemory.h>

#include <tests/support/FileSizeLimit.h>
#include <tests/support/SqliteFile.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <thread>
#include <vector>

namespace Norlis::Host {

namespace {

using Test::FileSizeLimit;

const std::string hashOfA(32, 'a');
const std::string hashOfB(32, 'b');
constexpr FileIdentity identity{1, 2, 3, 4, 5};

class HashMemoryTest : public testing::Test {
protected:
    const QTemporaryDir folder;
    const QString file = folder.filePath("hashes.sqlite");
};

TEST_F(HashMemoryTest, HashIsFoundAgain)
{
    HashMemory memory({});
    EXPECT_EQ(memory.Find("/a", identity), "");
    memory.Remember("/a", identity, hashOfA);
    EXPECT_EQ(memory.Find("/a", identity), hashOfA);
    EXPECT_EQ(memory.Find("/b", identity), "");
}

TEST_F(HashMemoryTest, HashOfAnyOtherIdentityIsNotFound)
{
    HashMemory memory({});
    memory.Remember("/a", identity, hashOfA);
    for (const auto& other : {FileIdentity{9, 2, 3, 4, 5}, FileIdentity{1, 9, 3, 4, 5}, FileIdentity{1, 2, 9, 4, 5},
                              FileIdentity{1, 2, 3, 9, 5}, FileIdentity{1, 2, 3, 4, 9}}) {
        EXPECT_EQ(memory.Find("/a", other), "");
    }
    EXPECT_EQ(memory.Find("/a", identity), hashOfA);
}

TEST_F(HashMemoryTest, NewHashOfAPathReplacesTheOneBefore)
{
    constexpr FileIdentity newer{1, 2, 3, 4, 6};
    HashMemory memory({});
    memory.Remember("/a", identity, hashOfA);
    memory.Remember("/a", newer, hashOfB);
    EXPECT_EQ(memory.Find("/a", newer), hashOfB);
    EXPECT_EQ(memory.Find("/a", identity), "");
}

TEST_F(HashMemoryTest, HashSurvivesARestart)
{
    HashMemory(file).Remember("/a", identity, hashOfA);
    EXPECT_EQ(HashMemory(file).Find("/a", identity), hashOfA);
}

TEST_F(HashMemoryTest, FileIsMadeAtTheFirstUseAndForTheUserAlone)
{
    HashMemory memory(file);
    EXPECT_FALSE(QFileInfo::exists(file));
    memory.Find("/a", identity);
    EXPECT_EQ(QFile::permissions(file), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
}

TEST_F(HashMemoryTest, TwoProgramsShareAFile)
{
    HashMemory first(file);
    HashMemory second(file);
    first.Remember("/a", identity, hashOfA);
    second.Remember("/b", identity, hashOfB);
    EXPECT_EQ(first.Find("/b", identity), hashOfB);
    EXPECT_EQ(second.Find("/a", identity), hashOfA);
}

TEST_F(HashMemoryTest, FileOfAnotherKindIsLeftAloneAndDoneWithout)
{
    const QByteArray letter("Dear diary, this is no database.");
    WriteFile(file, letter);
    {
        HashMemory memory(file);
        memory.Remember("/a", identity, hashOfA);
        EXPECT_EQ(memory.Find("/a", identity), hashOfA);
    }
    EXPECT_EQ(ContentOf(file), letter);
}

TEST_F(HashMemoryTest, FileThatCannotBeMadeIsDoneWithout)
{
    HashMemory memory(folder.filePath("no folder/hashes.sqlite"));
    memory.Remember("/a", identity, hashOfA);
    EXPECT_EQ(memory.Find("/a", identity), hashOfA);
    EXPECT_FALSE(QFileInfo::exists(folder.filePath("no folder")));
}

TEST_F(HashMemoryTest, OnAFullDiskNoHashIsKeptAndLaterOnesAre)
{
    for (const bool isNew : {true, false}) {
        for (rlim_t room = 0; room < 100'000; room += 1100) { // in the middle of a page too
            QFile::remove(file);
            if (!isNew) {
                HashMemory(file).Remember("/b", identity, hashOfB);
            }
            {
                HashMemory memory(file);
                const FileSizeLimit full(room);
                for (int number = 0; number < 5; ++number) {
                    memory.Remember("/a", identity, hashOfA);
                }
            }
            HashMemory memory(file);
            EXPECT_THAT(memory.Find("/a", identity), testing::AnyOf("", hashOfA)) << room;
            EXPECT_EQ(memory.Find("/b", identity), isNew ? "" : hashOfB) << room;
            memory.Remember("/a", identity, hashOfA);
            EXPECT_EQ(HashMemory(file).Find("/a", identity), hashOfA) << room;
        }
    }
}

TEST_F(HashMemoryTest, DamagedFileIsMadeAnew)
{
    HashMemory(file).Remember("/a", identity, hashOfA);
    QByteArray content = ContentOf(file);
    ASSERT_GT(content.size(), 8192);
    WriteFile(file, content.replace(4096, content.size() - 4096, QByteArray(content.size() - 4096, '\xaa')));
    {
        HashMemory memory(file);
        EXPECT_EQ(memory.Find("/a", identity), "");
        memory.Remember("/a", identity, hashOfB);
    }
    EXPECT_EQ(HashMemory(file).Find("/a", identity), hashOfB);
}

TEST_F(HashMemoryTest, TruncatedFileIsMadeAnew)
{
    HashMemory(file).Remember("/a", identity, hashOfA);
    ASSERT_TRUE(QFile::resize(file, 5000));
    HashMemory(file).Remember("/a", identity, hashOfB);
    EXPECT_EQ(HashMemory(file).Find("/a", identity), hashOfB);
}

TEST_F(HashMemoryTest, FileOfAnotherVersionIsMadeAnew)
{
    HashMemory(file).Remember("/a", identity, hashOfA);
    RunSql(file, "PRAGMA user_version = 2");
    EXPECT_EQ(HashMemory(file).Find("/a", identity), "");
    HashMemory(file).Remember("/a", identity, hashOfB);
    EXPECT_EQ(HashMemory(file).Find("/a", identity), hashOfB);
}

TEST_F(HashMemoryTest, WhatIsNoHashIsNotFound)
{
    HashMemory(file).Remember("/a", identity, hashOfA);
    RunSql(file, "UPDATE hashes SET hash = 'short'");
    EXPECT_EQ(HashMemory(file).Find("/a", identity), "");
}

TEST_F(HashMemoryTest, OldestHashesAreForgotten)
{
    constexpr int most = 100'000;
    HashMemory memory({});
    for (int number = 0; number <= most; ++number) {
        memory.Remember(std::to_string(number), identity, hashOfA);
    }
    EXPECT_EQ(memory.Find("0", identity), "");
    EXPECT_EQ(memory.Find("1", identity), hashOfA);
    EXPECT_EQ(memory.Find(std::to_string(most), identity), hashOfA);
}

TEST_F(HashMemoryTest, SeveralThreadsMayUseIt)
{
    HashMemory memory({});
    std::vector<std::thread> threads;
    for (const auto* name : {"/a", "/b", "/c", "/d"}) {
        threads.emplace_back([&memory, name] {
            for (int number = 0; number < 3000; ++number) {
                const auto path = name + std::to_string(number);
                memory.Remember(path, identity, hashOfA);
                EXPECT_EQ(memory.Find(path, identity), hashOfA);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

} // namespace

} // namespace Norlis::Host
