#include <testkit/contract/Printing.h>
#include <tests/support/Files.h>

#include <host/session/StagingFolder.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Norlis::Host {

using namespace Norlis::Test;

class StagingFolderTest : public testing::Test {
protected:
    QTemporaryDir folder;
    const QString target = folder.filePath("target");
    const QString other = folder.filePath("other");

    StagingFolderTest()
    {
        MakeFolder(target);
        MakeFolder(other);
        WriteFile(other + "/thesis.pdf", "years of work");
    }
};

TEST_F(StagingFolderTest, TakesItsFilesWithIt)
{
    const QString list = folder.filePath("list");
    {
        const StagingFolder staging(target, list);
        ASSERT_TRUE(staging.IsValid());
        WriteFile(staging.Path() + "/a.pdf", "whole");
        WriteFile(staging.Path() + "/.part", "half");
        EXPECT_EQ(QDir(list).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot).size(),
                  1);
    }
    EXPECT_TRUE(QDir(target).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    EXPECT_TRUE(QDir(list).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot));
}

TEST_F(StagingFolderTest, LeavesAloneWhatOthersPutInItsPlace)
{
    StagingFolder linked(target, folder.filePath("list"));
    ASSERT_TRUE(QDir().rename(linked.Path(), folder.filePath("moved")));
    ASSERT_TRUE(QFile::link(other, linked.Path()));
    EXPECT_TRUE(linked.Remove());
    EXPECT_EQ(ReadFile(other + "/thesis.pdf"), QByteArray("years of work"));

    StagingFolder exchanged(target, folder.filePath("list"));
    ASSERT_TRUE(QDir().rename(exchanged.Path(), folder.filePath("moved too")));
    ASSERT_TRUE(QDir().rename(other, exchanged.Path()));
    EXPECT_TRUE(exchanged.Remove());
    EXPECT_EQ(ReadFile(exchanged.Path() + "/thesis.pdf"), QByteArray("years of work"));
}

} // namespace Norlis::Host
