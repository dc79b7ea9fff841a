#include <tests/support/Files.h>

#include <files/PrivateFolder.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace Norlis::Files {

namespace {

using namespace Norlis::Test;

class PrivateFolderTest : public testing::Test {
protected:
    mode_t ModeOf(const char* name) const
    {
        struct stat status = {};
        EXPECT_EQ(stat(folder.filePath(name).toUtf8().constData(), &status), 0) << name;
        return status.st_mode & 0777;
    }

    const QTemporaryDir folder;
};

TEST_F(PrivateFolderTest, AllThatIsMissingIsMadeForTheUserAlone)
{
    MakeFolder(folder.filePath("shared"));
    ASSERT_EQ(chmod(folder.filePath("shared").toUtf8().constData(), 0755), 0);
    EXPECT_TRUE(MakePrivateFolder(folder.filePath("shared/one/two/")));
    EXPECT_EQ(ModeOf("shared/one"), 0700u);
    EXPECT_EQ(ModeOf("shared/one/two"), 0700u);
    EXPECT_EQ(ModeOf("shared"), 0755u);
    EXPECT_TRUE(MakePrivateFolder(folder.filePath("shared")));
    EXPECT_EQ(ModeOf("shared"), 0755u);
}

TEST_F(PrivateFolderTest, WhatStandsInTheWayStays)
{
    WriteFile(folder.filePath("file"), "");
    MakeLink("/nowhere", folder.filePath("link"));
    EXPECT_FALSE(MakePrivateFolder(folder.filePath("file")));
    EXPECT_FALSE(MakePrivateFolder(folder.filePath("link")));
    EXPECT_FALSE(MakePrivateFolder(folder.filePath("file/below")));
    EXPECT_FALSE(MakePrivateFolder({}));
}

} // namespace

} // namespace Norlis::Files
