#include <tests/support/Files.h>
#include <tests/support/Waiting.h>

#include <protocol/folder/FolderWatch.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace Norlis::Test {

namespace {

/// A watched folder with one document.
class FolderWatchTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkdir(folder));
        WriteFile(report, "first");
        ASSERT_TRUE(watch.Begin());
    }

    /// Whether the next thing told is told because of this: changes that come together are told once.
    template <typename Action>
    bool Tells(Action action)
    {
        const int before = told;
        action();
        return WaitUntil([&] { return told > before; });
    }

    /// How often something was told once another folder's watch tells of a change that is made now.
    int ToldBefore()
    {
        int toldThere = 0;
        Social::FolderWatch another(place.path(), [&] { ++toldThere; });
        EXPECT_TRUE(another.Begin());
        WriteFile(place.filePath("outside.pdf"), "outside");
        EXPECT_TRUE(WaitUntil([&] { return toldThere > 0; }));
        return told;
    }

    const QTemporaryDir place;
    const QString folder = place.filePath("cloud");
    const QString report = folder + "/report.pdf";
    int told = 0;
    Social::FolderWatch watch{folder, [this] { ++told; }};
};

TEST_F(FolderWatchTest, WhateverHappensToAFileIsTold)
{
    EXPECT_TRUE(Tells([&] { WriteFile(folder + "/new.pdf", "new"); }));
    EXPECT_TRUE(Tells([&] {
        QFile file(report); // in place, with a content of the same size
        ASSERT_TRUE(file.open(QFile::ReadWrite) && file.write("other") == 5);
    })) << "written in place";
    const QString outside = place.filePath("outside.pdf");
    WriteFile(outside, "outside");
    EXPECT_TRUE(Tells([&] { ASSERT_TRUE(QFile::rename(outside, folder + "/inside.pdf")); })) << "moved in";
    EXPECT_TRUE(Tells([&] { ASSERT_TRUE(QFile::rename(report, folder + "/renamed.pdf")); })) << "renamed";
    EXPECT_TRUE(Tells([&] { ASSERT_TRUE(QFile::rename(folder + "/renamed.pdf", outside)); })) << "moved out";
    EXPECT_TRUE(Tells([&] {
        ASSERT_EQ(link(QFile::encodeName(outside).constData(), QFile::encodeName(report).constData()), 0);
    })) << "linked";
    EXPECT_TRUE(Tells([&] { ASSERT_TRUE(QFile::remove(report)); })) << "removed";
}

TEST_F(FolderWatchTest, WhatCannotConcernDocumentsIsNotTold)
{
    ASSERT_TRUE(QDir(folder).mkdir("sub"));
    WriteFile(folder + "/sub/hashes.json", "{}");
    ASSERT_EQ(ReadFile(report), "first");
    ASSERT_TRUE(QDir(folder).rename("sub", "other"));
    EXPECT_EQ(ToldBefore(), 0);
}

TEST_F(FolderWatchTest, ThousandChangesAreToldTogether)
{
    for (int number = 0; number < 1000; ++number) {
        WriteFile(folder + QStringLiteral("/%1.pdf").arg(number), "content");
    }
    ASSERT_TRUE(WaitUntil([&] { return told > 0; }));
    EXPECT_LE(ToldBefore(), 3);
}

TEST_F(FolderWatchTest, ChangesThatNeverPauseAreToldAllTheSame)
{
    QTimer writing;
    QObject::connect(&writing, &QTimer::timeout, &writing, [&] { WriteFile(report, "again"); });
    writing.start(20);
    EXPECT_TRUE(WaitUntil([&] { return told > 0; }));
}

TEST_F(FolderWatchTest, ChangesBeforeItBeginsAgainAreNotTold)
{
    WriteFile(report, "second");
    ASSERT_TRUE(watch.Begin());
    EXPECT_EQ(ToldBefore(), 0);
}

TEST_F(FolderWatchTest, FolderThatGoesIsToldAndWatchedAgainWhenItIsBack)
{
    const QString away = place.filePath("away");
    ASSERT_TRUE(Tells([&] { ASSERT_TRUE(QDir().rename(folder, away)); }));
    EXPECT_FALSE(watch.Begin());
    ASSERT_TRUE(QDir().rename(away, folder));
    ASSERT_TRUE(watch.Begin());
    EXPECT_TRUE(Tells([&] { ASSERT_TRUE(QDir(folder).removeRecursively()); }));
    EXPECT_FALSE(watch.Begin());
}

} // namespace

} // namespace Norlis::Test
