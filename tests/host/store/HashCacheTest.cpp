#include <host/store/HashCache.h>

#include <tests/support/FileSizeLimit.h>
#include <tests/support/SqliteFile.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <thread>
#include <vector>

namespace Norlis::Host {

namespace {

using Files::FileIdentity;
using Test::FileSizeLimit;

const std::string hashOfA(32, 'a');
const std::string hashOfB(32, 'b');
constexpr FileIdentity identity{1, 2, 3, 4, 5};

class HashCacheTest : public testing::Test {
protected:
    const QTemporaryDir folder;
    const QString file = folder.filePath("hashes.sqlite");
};

TEST_F(HashCacheTest, HashIsFoundAgain)
{
    HashCache cache({});
    EXPECT_EQ(cache.Find("/a", identity), "");
    cache.Store("/a", identity, hashOfA);
    EXPECT_EQ(cache.Find("/a", identity), hashOfA);
    EXPECT_EQ(cache.Find("/b", identity), "");
}

TEST_F(HashCacheTest, HashOfAnyOtherIdentityIsNotFound)
{
    HashCache cache({});
    cache.Store("/a", identity, hashOfA);
    for (const auto& other : {FileIdentity{9, 2, 3, 4, 5}, FileIdentity{1, 9, 3, 4, 5}, FileIdentity{1, 2, 9, 4, 5},
                              FileIdentity{1, 2, 3, 9, 5}, FileIdentity{1, 2, 3, 4, 9}}) {
        EXPECT_EQ(cache.Find("/a", other), "");
    }
    EXPECT_EQ(cache.Find("/a", identity), hashOfA);
}

TEST_F(HashCacheTest, NewHashOfAPathReplacesTheOneBefore)
{
    constexpr FileIdentity newer{1, 2, 3, 4, 6};
    HashCache cache({});
    cache.Store("/a", identity, hashOfA);
    cache.Store("/a", newer, hashOfB);
    EXPECT_EQ(cache.Find("/a", newer), hashOfB);
    EXPECT_EQ(cache.Find("/a", identity), "");
}

TEST_F(HashCacheTest, HashSurvivesARestart)
{
    HashCache(file).Store("/a", identity, hashOfA);
    EXPECT_EQ(HashCache(file).Find("/a", identity), hashOfA);
}

TEST_F(HashCacheTest, FileIsMadeAtTheFirstUseAndForTheUserAlone)
{
    HashCache cache(file);
    EXPECT_FALSE(QFileInfo::exists(file));
    cache.Find("/a", identity);
    EXPECT_EQ(QFile::permissions(file), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
}

TEST_F(HashCacheTest, TwoProgramsShareAFile)
{
    HashCache first(file);
    HashCache second(file);
    first.Store("/a", identity, hashOfA);
    second.Store("/b", identity, hashOfB);
    first.Flush();
    second.Flush();
    EXPECT_EQ(first.Find("/b", identity), hashOfB);
    EXPECT_EQ(second.Find("/a", identity), hashOfA);
}

TEST_F(HashCacheTest, FileOfAnotherKindIsLeftAloneAndDoneWithout)
{
    const QByteArray letter("Dear diary, this is no database.");
    WriteFile(file, letter);
    {
        HashCache cache(file);
        cache.Store("/a", identity, hashOfA);
        EXPECT_EQ(cache.Find("/a", identity), hashOfA);
    }
    EXPECT_EQ(ContentOf(file), letter);
}

TEST_F(HashCacheTest, FileThatCannotBeMadeIsDoneWithout)
{
    HashCache cache(folder.filePath("no folder/hashes.sqlite"));
    cache.Store("/a", identity, hashOfA);
    EXPECT_EQ(cache.Find("/a", identity), hashOfA);
    EXPECT_FALSE(QFileInfo::exists(folder.filePath("no folder")));
}

TEST_F(HashCacheTest, OnAFullDiskNoHashIsKeptAndLaterOnesAre)
{
    for (const bool isNew : {true, false}) {
        for (rlim_t room = 0; room < 100'000; room += 1100) { // in the middle of a page too
            QFile::remove(file);
            if (!isNew) {
                HashCache(file).Store("/b", identity, hashOfB);
            }
            {
                HashCache cache(file);
                const FileSizeLimit full(room);
                for (int number = 0; number < 5; ++number) {
                    cache.Store("/a", identity, hashOfA);
                    cache.Flush();
                }
            }
            HashCache cache(file);
            EXPECT_THAT(cache.Find("/a", identity), testing::AnyOf("", hashOfA)) << room;
            EXPECT_EQ(cache.Find("/b", identity), isNew ? "" : hashOfB) << room;
            cache.Store("/a", identity, hashOfA);
            cache.Flush();
            EXPECT_EQ(HashCache(file).Find("/a", identity), hashOfA) << room;
        }
    }
}

TEST_F(HashCacheTest, DamagedFileIsMadeAnew)
{
    HashCache(file).Store("/a", identity, hashOfA);
    QByteArray content = ContentOf(file);
    ASSERT_GT(content.size(), 8192);
    WriteFile(file, content.replace(4096, content.size() - 4096, QByteArray(content.size() - 4096, '\xaa')));
    {
        HashCache cache(file);
        EXPECT_EQ(cache.Find("/a", identity), "");
        cache.Store("/a", identity, hashOfB);
    }
    EXPECT_EQ(HashCache(file).Find("/a", identity), hashOfB);
}

TEST_F(HashCacheTest, TruncatedFileIsMadeAnew)
{
    HashCache(file).Store("/a", identity, hashOfA);
    ASSERT_TRUE(QFile::resize(file, 5000));
    HashCache(file).Store("/a", identity, hashOfB);
    EXPECT_EQ(HashCache(file).Find("/a", identity), hashOfB);
}

TEST_F(HashCacheTest, FileOfAnotherVersionIsMadeAnew)
{
    HashCache(file).Store("/a", identity, hashOfA);
    RunSql(file, "PRAGMA user_version = 2");
    EXPECT_EQ(HashCache(file).Find("/a", identity), "");
    HashCache(file).Store("/a", identity, hashOfB);
    EXPECT_EQ(HashCache(file).Find("/a", identity), hashOfB);
}

TEST_F(HashCacheTest, WhatIsNoHashIsNotFound)
{
    HashCache(file).Store("/a", identity, hashOfA);
    RunSql(file, "UPDATE hashes SET hash = 'short'");
    EXPECT_EQ(HashCache(file).Find("/a", identity), "");
}

TEST_F(HashCacheTest, OldestHashesAreDropped)
{
    constexpr int maxHashes = 100'000;
    HashCache cache({});
    for (int number = 0; number <= maxHashes; ++number) {
        cache.Store(std::to_string(number), identity, hashOfA);
    }
    cache.Flush();
    EXPECT_EQ(cache.Find("0", identity), "");
    EXPECT_EQ(cache.Find("1", identity), hashOfA);
    EXPECT_EQ(cache.Find(std::to_string(maxHashes), identity), hashOfA);
}

TEST_F(HashCacheTest, SeveralThreadsMayUseIt)
{
    HashCache cache({});
    std::vector<std::thread> threads;
    for (const auto* name : {"/a", "/b", "/c", "/d"}) {
        threads.emplace_back([&cache, name] {
            for (int number = 0; number < 3000; ++number) {
                const auto path = name + std::to_string(number);
                cache.Store(path, identity, hashOfA);
                EXPECT_EQ(cache.Find(path, identity), hashOfA);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

} // namespace

} // namespace Norlis::Host
