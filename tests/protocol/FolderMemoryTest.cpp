#include "FolderCloudTest.h"

#include <memory>

namespace Norlis::Test {

using testing::HasSubstr;

/// By what the service knows the folder that was used before.
class FolderMemoryTest : public FolderCloudTest {
protected:
    FolderMemoryTest()
    {
        settings.dataFolder = folder.filePath("data");
    }

    /// As a program that is started once more.
    bool SignIn()
    {
        next = std::make_unique<Client>(settings);
        return next->SignIn();
    }

    Social::OAuth2::AuthInfo settings = cloud.Settings();
    std::unique_ptr<Client> next;
};

TEST_F(FolderMemoryTest, TheEmptyFolderOfADriveThatIsGoneIsRefused)
{
    ASSERT_TRUE(SignIn());
    ASSERT_TRUE(next->Upload(Local("document.pdf", "content"))->Succeeds());
    cloud.Withdraw();
    MakeFolder(cloud.Folder());
    EXPECT_FALSE(SignIn());
    ASSERT_FALSE(next->failures.empty());
    EXPECT_THAT(next->failures.back().reason.toStdString(), HasSubstr("is not the one that was used before"));
    const QString advice = next->failures.back().advice;
    EXPECT_THAT(advice.toStdString(), HasSubstr("Make its drive available"));
    EXPECT_EQ(cloud.Content(), QStringList());

    RemoveFolder(cloud.Folder());
    cloud.Restore();
    EXPECT_TRUE(SignIn());
    EXPECT_EQ(ListedNames(*next), QStringList("document.pdf"));
}

TEST_F(FolderMemoryTest, AnotherFolderIsAcceptedAsTheAdviceSays)
{
    ASSERT_TRUE(SignIn());
    cloud.Withdraw();
    MakeFolder(cloud.Folder());
    ASSERT_FALSE(SignIn());
    const QStringList remembered = FilesBelow(folder.filePath("data"));
    ASSERT_EQ(remembered.size(), 1);
    const QString file = folder.filePath("data/" + remembered[0]);
    EXPECT_THAT(next->failures.back().advice.toStdString(), HasSubstr("delete " + file.toStdString() + " first"));
    ASSERT_TRUE(QFile::remove(file));
    EXPECT_TRUE(SignIn());
    EXPECT_TRUE(SignIn());
}

TEST_F(FolderMemoryTest, SigningOutForgetsWhichFolderItWas)
{
    ASSERT_TRUE(SignIn());
    next->Protocol()->logout();
    EXPECT_TRUE(WaitUntil([&] { return FilesBelow(folder.filePath("data")).isEmpty(); }));
    cloud.Withdraw();
    MakeFolder(cloud.Folder());
    EXPECT_TRUE(SignIn());
}

TEST_F(FolderMemoryTest, TheFoldersOwnFilesMayBeDeleted)
{
    ASSERT_TRUE(SignIn());
    RemoveFolder(cloud.PathOf(".norlis-cloud"));
    EXPECT_TRUE(SignIn());
    cloud.Withdraw();
    MakeFolder(cloud.Folder());
    EXPECT_FALSE(SignIn()); // it has got its mark again
}

TEST_F(FolderMemoryTest, AFolderThatWasMovedToAnotherDriveIsTheSame)
{
    ASSERT_TRUE(SignIn());
    const auto mark = ReadFile(cloud.PathOf(".norlis-cloud/mark"));
    ASSERT_TRUE(mark);
    cloud.Withdraw();
    MakeFolder(cloud.Folder());
    MakeFolder(cloud.PathOf(".norlis-cloud"));
    WriteFile(cloud.PathOf(".norlis-cloud/mark"), *mark);
    EXPECT_TRUE(SignIn());
}

} // namespace Norlis::Test
