#include <contracts/ioPath.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <type_traits>

namespace Norlis::Test {

namespace {

class ioPathTest : public testing::Test { // NOLINT(readability-identifier-naming)
protected:
    ioPath In(const QString& name) const
    {
        return ioPath(folder.filePath(name).toStdString());
    }

    ioPath Written(const QString& name) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return In(name);
    }

    QTemporaryDir folder;
};

TEST_F(ioPathTest, DefaultPathIsEmpty)
{
    EXPECT_TRUE(ioPath().empty());
    EXPECT_EQ(ioPath().utf8string(), "");
    EXPECT_FALSE(ioPath().exists());
    EXPECT_FALSE(ioPath().remove());
    EXPECT_EQ(ioPath(), ioPath(std::string()));
}

TEST_F(ioPathTest, BytesAreKeptAsGiven)
{
    const std::string text = "C:\\Übersicht//./ид\xF0\x9F\x93\x84.PDF/";
    EXPECT_EQ(ioPath(text).utf8string(), text);
    EXPECT_FALSE(ioPath(text).empty());
}

TEST_F(ioPathTest, TextMayBeAssigned)
{
    ioPath path;
    path = "/ä";
    EXPECT_EQ(path, ioPath("/ä"));
    path = static_cast<const char*>(nullptr);
    EXPECT_TRUE(path.empty());
}

TEST_F(ioPathTest, PathsAreComparedByteForByte)
{
    EXPECT_TRUE(ioPath("/a") == ioPath("/a"));
    EXPECT_FALSE(ioPath("/a") != ioPath("/a"));
    EXPECT_TRUE(ioPath("/a") != ioPath("/A"));
    EXPECT_FALSE(ioPath("/a") == ioPath("/a/"));
}

TEST_F(ioPathTest, PathsCanBeCopiedAndMoved)
{
    static_assert(std::is_copy_constructible_v<ioPath> && std::is_copy_assignable_v<ioPath>);
    static_assert(std::is_nothrow_move_constructible_v<ioPath> && std::is_nothrow_move_assignable_v<ioPath>);
    ioPath path("/a");
    const ioPath copy = path;
    const ioPath moved = std::move(path);
    EXPECT_EQ(copy, moved);
}

TEST_F(ioPathTest, FileExistsUntilItIsRemoved)
{
    const auto path = Written(QStringLiteral("Ü ид.pdf"));
    EXPECT_TRUE(path.exists());
    EXPECT_TRUE(path.remove());
    EXPECT_FALSE(path.exists());
    EXPECT_FALSE(path.remove());
}

TEST_F(ioPathTest, FolderExistsButIsNotRemoved)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir("folder"));
    EXPECT_TRUE(In("folder").exists());
    EXPECT_FALSE(In("folder").remove());
    EXPECT_TRUE(In("folder").exists());
}

TEST_F(ioPathTest, LinkIsRemovedButNotItsTarget)
{
    const auto target = Written("target");
    ASSERT_TRUE(QFile::link(folder.filePath("target"), folder.filePath("link")));
    EXPECT_TRUE(In("link").exists());
    EXPECT_TRUE(In("link").remove());
    EXPECT_FALSE(In("link").exists());
    EXPECT_TRUE(target.exists());
}

TEST_F(ioPathTest, LinkToAFolderIsRemovedButNotTheFolder)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir("folder"));
    ASSERT_TRUE(QFile::link(folder.filePath("folder"), folder.filePath("link")));
    EXPECT_TRUE(In("link").remove());
    EXPECT_TRUE(In("folder").exists());
}

TEST_F(ioPathTest, LinkWithoutTargetDoesNotExistButCanBeRemoved)
{
    ASSERT_TRUE(QFile::link(folder.filePath("nothing"), folder.filePath("link")));
    EXPECT_FALSE(In("link").exists());
    EXPECT_TRUE(In("link").remove());
}

TEST_F(ioPathTest, PathThatCannotBeLookedUpDoesNotExist)
{
    const auto file = Written("file");
    EXPECT_FALSE(In("file/below").exists());
    EXPECT_FALSE(In("file/below").remove());
    EXPECT_FALSE(ioPath(std::string(10000, 'x')).exists());
    EXPECT_FALSE(ioPath(std::string(10000, 'x')).remove());
    EXPECT_TRUE(file.exists());
}

} // namespace

} // namespace Norlis::Test
