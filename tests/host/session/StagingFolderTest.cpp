#include <testkit/contract/Printing.h>
#include <tests/support/Files.h>

#include <host/session/StagingFolder.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>

namespace Norlis::Host {

using namespace Norlis::Test;

class StagingFolderTest : public testing::Test {
protected:
    QTemporaryDir folder;
    const QString target = folder.filePath("target");
    const QString other = folder.filePath("other");
    const QString list = folder.filePath("list");

    static QString PlaceOf(const StagingFolder& staging)
    {
        return QFileInfo(staging.Path()).canonicalFilePath();
    }

    StagingFolderTest()
    {
        MakeFolder(target);
        MakeFolder(other);
        WriteFile(other + "/thesis.pdf", "years of work");
    }

    /// As a program that is killed does, some days ago. Returns its path.
    QString LeaveBehind() const
    {
        QString path;
        {
            const StagingFolder staging(target, list);
            path = PlaceOf(staging);
            MakeFolder(path + "/obstacle");
        }
        RemoveFolder(path + "/obstacle");
        WriteFile(path + "/a.pdf", "half");
        MakeOld(path);
        return path;
    }

    /// A folder and its files.
    static void MakeOld(const QString& path)
    {
        const auto files = FilesBelow(path);
        for (const QString& name : files) {
            SetTimeOf(path + '/' + name);
        }
        SetTimeOf(path);
    }

    static void SetTimeOf(const QString& path)
    {
        const timespec time{::time(nullptr) - 2 * 24 * 60 * 60, 0};
        const timespec times[] = {time, time};
        ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    }

    QStringList Listed() const
    {
        return QDir(list).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
};

TEST_F(StagingFolderTest, TakesItsFilesWithIt)
{
    {
        const StagingFolder staging(target, list);
        ASSERT_TRUE(staging.IsValid());
        WriteFile(staging.Path() + "/a.pdf", "whole");
        WriteFile(staging.Path() + "/.part", "half");
        EXPECT_EQ(Listed().size(), 1);
    }
    EXPECT_TRUE(QDir(target).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    EXPECT_EQ(Listed(), QStringList());
}

TEST_F(StagingFolderTest, LeavesAloneWhatOthersPutInItsPlace)
{
    StagingFolder linked(target, folder.filePath("list"));
    const QString first = PlaceOf(linked);
    ASSERT_TRUE(QDir().rename(first, folder.filePath("moved")));
    ASSERT_TRUE(QFile::link(other, first));
    EXPECT_FALSE(QFile::exists(linked.Path() + "/thesis.pdf"));
    WriteFile(linked.Path() + "/a.pdf", "arrived");
    EXPECT_EQ(ReadFile(folder.filePath("moved/a.pdf")), QByteArray("arrived"));
    EXPECT_TRUE(linked.Remove());
    EXPECT_EQ(FilesBelow(other), QStringList("thesis.pdf"));

    StagingFolder exchanged(target, folder.filePath("list"));
    const QString second = PlaceOf(exchanged);
    ASSERT_TRUE(QDir().rename(second, folder.filePath("moved too")));
    ASSERT_TRUE(QDir().rename(other, second));
    EXPECT_TRUE(exchanged.Remove());
    EXPECT_EQ(ReadFile(second + "/thesis.pdf"), QByteArray("years of work"));
}

TEST_F(StagingFolderTest, SweepRemovesWhatWasLeftBehind)
{
    const QString path = LeaveBehind();
    StagingFolder::Sweep(list);
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_EQ(Listed(), QStringList());
}

TEST_F(StagingFolderTest, SweepLeavesAloneWhatOthersHaveGivenTheNameOfAFolderLeftBehind)
{
    MakeOld(other);
    const QString linked = LeaveBehind();
    ASSERT_TRUE(QDir().rename(linked, folder.filePath("moved")));
    ASSERT_TRUE(QFile::link(other, linked));
    StagingFolder::Sweep(list);
    EXPECT_EQ(ReadFile(other + "/thesis.pdf"), QByteArray("years of work"));

    const QString exchanged = LeaveBehind();
    ASSERT_TRUE(QDir().rename(exchanged, folder.filePath("moved too")));
    ASSERT_TRUE(QDir().rename(other, exchanged));
    StagingFolder::Sweep(list);
    EXPECT_EQ(ReadFile(exchanged + "/thesis.pdf"), QByteArray("years of work"));
}

} // namespace Norlis::Host
