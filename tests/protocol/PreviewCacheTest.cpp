#include <tests/support/Files.h>
#include <tests/support/FileSizeLimit.h>

#include <protocol/preview/PreviewCache.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Norlis::Social {

using namespace Norlis::Test;

class PreviewCacheTest : public testing::Test {
protected:
    /// A picture that does not compress.
    static RenderedPage Picture(const QSize& size, int seed = 1)
    {
        QImage image(size, QImage::Format_RGB32);
        quint32 state = static_cast<quint32>(seed);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                state = state * 1664525 + 1013904223;
                image.setPixel(x, y, 0xff000000U | (state >> 8U));
            }
        }
        return {image, 7};
    }

    qint64 UsedBytes() const
    {
        qint64 used = 0;
        for (const QFileInfo& file : QDir(path).entryInfoList(QDir::Files)) {
            used += file.size();
        }
        return used;
    }

    QTemporaryDir folder;
    QString path = folder.filePath("made/when/missing");
};

TEST_F(PreviewCacheTest, APictureComesBackAsItWas)
{
    PreviewCache cache(path);
    cache.Store("id", "version", {100, 200}, Picture({100, 150}));
    const auto found = cache.Find("id", "version", {100, 200});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->image.convertToFormat(QImage::Format_RGB32), Picture({100, 150}).image);
    EXPECT_EQ(found->pageCount, 7);
    EXPECT_TRUE(cache.Find("id", "version", {50, 200}));
}

TEST_F(PreviewCacheTest, ANewerCacheFindsWhatAnOlderKept)
{
    PreviewCache(path).Store("id", "version", {100, 200}, Picture({100, 150}));
    EXPECT_TRUE(PreviewCache(path).Find("id", "version", {100, 200}));
}

TEST_F(PreviewCacheTest, APictureForASmallerBoxOrOtherContentIsNotTheOne)
{
    PreviewCache cache(path);
    cache.Store("id", "version", {100, 200}, Picture({100, 150}));
    EXPECT_FALSE(cache.Find("id", "version", {101, 200}));
    EXPECT_FALSE(cache.Find("id", "version", {100, 201}));
    EXPECT_FALSE(cache.Find("id", "newer version", {100, 200}));
    EXPECT_FALSE(cache.Find("other", "version", {100, 200}));
}

TEST_F(PreviewCacheTest, ARemovedPictureIsGoneAndTakesNoRoom)
{
    PreviewCache cache(path, 100'000);
    for (int round = 0; round < 100; ++round) {
        cache.Store("id", "version", {100, 200}, Picture({100, 150}));
        cache.Remove("id", "version");
        EXPECT_FALSE(cache.Find("id", "version", {100, 200}));
    }
    cache.Store("id", "version", {100, 200}, Picture({100, 150}));
    cache.Store("other", "version", {100, 200}, Picture({100, 150}));
    cache.Remove("id", "newer version");
    EXPECT_TRUE(cache.Find("id", "version", {100, 200}));
    EXPECT_TRUE(cache.Find("other", "version", {100, 200}));
    PreviewCache("").Remove("id", "version");
}

TEST_F(PreviewCacheTest, WithoutAFolderNothingIsKept)
{
    const QString before = QDir::currentPath();
    const QTemporaryDir current;
    QDir::setCurrent(current.path());
    PreviewCache cache("");
    cache.Store("id", "version", {100, 200}, Picture({100, 150}));
    EXPECT_FALSE(cache.Find("id", "version", {100, 200}));
    EXPECT_EQ(FilesBelow(current.path()), QStringList());
    QDir::setCurrent(before);
}

TEST_F(PreviewCacheTest, ADamagedFileIsNotFound)
{
    PreviewCache cache(path);
    cache.Store("id", "version", {100, 200}, Picture({100, 150}));
    const QString file = path + '/' + FilesBelow(path).value(0);
    const auto whole = ReadFile(file);
    ASSERT_TRUE(whole);
    for (int length = 0; length < whole->size() - 40; length += 997) {
        WriteFile(file, whole->left(length));
        EXPECT_FALSE(cache.Find("id", "version", {100, 200})) << length;
    }
    WriteFile(file, QByteArray(10'000, '?'));
    EXPECT_FALSE(cache.Find("id", "version", {100, 200}));
    cache.Store("id", "version", {100, 200}, Picture({100, 150}));
    EXPECT_TRUE(cache.Find("id", "version", {100, 200}));
}

TEST_F(PreviewCacheTest, ItStaysBelowItsLimitAndTheNewestStay)
{
    constexpr qint64 limit = 300'000;
    PreviewCache cache(path, limit);
    for (int number = 0; number < 50; ++number) {
        cache.Store("id" + QString::number(number), "version", {60, 60}, Picture({60, 60}, number)); // about 11 kB
        ASSERT_LE(UsedBytes(), limit);
    }
    EXPECT_GT(UsedBytes(), limit / 2);
    EXPECT_TRUE(cache.Find("id49", "version", {60, 60}));
    EXPECT_FALSE(cache.Find("id0", "version", {60, 60}));
}

TEST_F(PreviewCacheTest, WhatAnOlderCacheKeptCountsToo)
{
    constexpr qint64 limit = 300'000;
    for (int number = 0; number < 50; ++number) {
        PreviewCache(path, limit).Store("id" + QString::number(number), "version", {60, 60}, Picture({60, 60}, number));
    }
    EXPECT_LE(UsedBytes(), limit);
}

TEST_F(PreviewCacheTest, StoringOneAgainTakesNoMoreRoom)
{
    PreviewCache cache(path, 300'000);
    cache.Store("other", "version", {60, 60}, Picture({60, 60}));
    for (int count = 0; count < 100; ++count) {
        cache.Store("id", "version", {60, 60}, Picture({60, 60}));
    }
    EXPECT_TRUE(cache.Find("other", "version", {60, 60}));
}

TEST_F(PreviewCacheTest, OtherFilesInTheFolderAreLeftAlone)
{
    MakeFolder(path);
    WriteFile(path + "/notes.txt", "notes");
    PreviewCache cache(path, 1000);
    cache.Store("id", "version", {60, 60}, Picture({60, 60}));
    EXPECT_EQ(ReadFile(path + "/notes.txt"), QByteArray("notes"));
}

TEST_F(PreviewCacheTest, OnAFullDiskNoPictureIsKeptAndLaterOnesAre)
{
    PreviewCache cache(path);
    cache.Store("other", "version", {60, 60}, Picture({60, 60}));
    const QStringList before = FilesBelow(path);
    for (const qint64 room : {0, 1000, 30'000}) {
        const FileSizeLimit full(static_cast<rlim_t>(room));
        cache.Store("id", "version", {100, 200}, Picture({100, 150})); // about 45 kB
        EXPECT_FALSE(cache.Find("id", "version", {100, 200})) << room;
        EXPECT_EQ(FilesBelow(path), before) << room;
    }
    cache.Store("id", "version", {100, 200}, Picture({100, 150}));
    EXPECT_TRUE(cache.Find("id", "version", {100, 200}));
    EXPECT_TRUE(cache.Find("other", "version", {60, 60}));
}

TEST_F(PreviewCacheTest, AFolderThatCannotBeMadeDoesWithout)
{
    WriteFile(folder.filePath("file"), "in the way");
    PreviewCache cache(folder.filePath("file"));
    cache.Store("id", "version", {60, 60}, Picture({60, 60}));
    EXPECT_FALSE(cache.Find("id", "version", {60, 60}));
    EXPECT_EQ(ReadFile(folder.filePath("file")), QByteArray("in the way"));
}

} // namespace Norlis::Social
