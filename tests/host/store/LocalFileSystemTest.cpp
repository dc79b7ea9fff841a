#include <host/store/LocalFileSystem.h>

#include <tests/support/OrdinaryUser.h>
#include <tests/support/SqliteFile.h>

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <clocale>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

namespace Norlis::Host {

namespace {

class LocalFileSystemTest : public testing::Test {
protected:
    LocalFileSystemTest()
    {
        std::filesystem::create_directories(root + "/folder/inner");
        std::ofstream(root + "/folder/file.pdf") << "x";
        std::filesystem::create_symlink(root + "/folder", root + "/link");
        std::filesystem::create_symlink("folder/file.pdf", root + "/link.pdf");
        std::filesystem::create_symlink("nowhere", root + "/dangling");
        std::filesystem::create_symlink("circle", root + "/circle");
    }

    ~LocalFileSystemTest() override
    {
        std::filesystem::remove_all(root); // Qt cannot delete every name
    }

    bool Exists(const std::string& path)
    {
        return fileSystem.Exists(ioPath(path));
    }

    std::string Normalize(const std::string& path)
    {
        return fileSystem.NormalizePath(ioPath(path)).utf8string();
    }

    const QTemporaryDir folder;
    const std::string root = std::filesystem::canonical(folder.path().toStdString());
    LocalFileSystem fileSystem;
};

TEST_F(LocalFileSystemTest, FileExists)
{
    EXPECT_TRUE(Exists(root + "/folder/file.pdf"));
    EXPECT_TRUE(Exists(root + "/link/file.pdf"));
    EXPECT_TRUE(Exists(root + "/link.pdf"));
}

TEST_F(LocalFileSystemTest, WhatIsNoFileDoesNotExist)
{
    EXPECT_FALSE(Exists(""));
    EXPECT_FALSE(Exists(root));
    EXPECT_FALSE(Exists(root + "/link"));
    EXPECT_FALSE(Exists(root + "/missing.pdf"));
    EXPECT_FALSE(Exists(root + "/missing/file.pdf"));
    EXPECT_FALSE(Exists(root + "/folder/file.pdf/file.pdf"));
    EXPECT_FALSE(Exists(root + "/dangling"));
    EXPECT_FALSE(Exists(root + "/circle"));
    EXPECT_FALSE(Exists(root + "/" + std::string(5000, 'x')));
    EXPECT_FALSE(Exists(root + "/folder/file.pdf" + std::string("\0.png", 5)));
}

TEST_F(LocalFileSystemTest, FileInAFolderThatMayNotBeEnteredDoesNotExist)
{
    const OrdinaryUser user;
    ASSERT_EQ(chmod((root + "/folder").c_str(), 0), 0);
    EXPECT_FALSE(Exists(root + "/folder/file.pdf"));
    EXPECT_EQ(Normalize(root + "/folder/./file.pdf"), root + "/folder/file.pdf");
    ASSERT_EQ(chmod((root + "/folder").c_str(), 0700), 0);
}

TEST_F(LocalFileSystemTest, SpellingsOfOneFileBecomeOnePath)
{
    const std::string path = root + "/folder/file.pdf";
    EXPECT_EQ(Normalize(path), path);
    EXPECT_EQ(Normalize(root + "//folder/./inner/../file.pdf"), path);
    EXPECT_EQ(Normalize(root + "/link/file.pdf"), path);
    EXPECT_EQ(Normalize(root + "/link.pdf"), path);
    EXPECT_EQ(Normalize(root + "/link/inner/../file.pdf"), path);
}

TEST_F(LocalFileSystemTest, SpellingsOfOneFolderBecomeOnePath)
{
    EXPECT_EQ(Normalize(root + "/folder/"), root + "/folder");
    EXPECT_EQ(Normalize(root + "/link"), root + "/folder");
    EXPECT_EQ(Normalize(root + "/missing/"), root + "/missing");
    EXPECT_EQ(Normalize("/"), "/");
    EXPECT_EQ(Normalize("/../.."), "/");
}

TEST_F(LocalFileSystemTest, MissingPartIsNormalizedAsText)
{
    EXPECT_EQ(Normalize(root + "/link/missing/../new.pdf"), root + "/folder/new.pdf");
    EXPECT_EQ(Normalize(root + "/missing/./a//b/../c.pdf"), root + "/missing/a/c.pdf");
}

TEST_F(LocalFileSystemTest, LinksInACircleAreNormalizedAsText)
{
    EXPECT_EQ(Normalize(root + "/circle/./file.pdf"), root + "/circle/file.pdf");
}

TEST_F(LocalFileSystemTest, NameThatIsTooLongIsNormalizedAsText)
{
    const std::string path = root + "/" + std::string(5000, 'x');
    EXPECT_EQ(Normalize(path + "/."), path);
}

TEST_F(LocalFileSystemTest, RelativePathBecomesAbsolute)
{
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QString::fromStdString(root)));
    EXPECT_EQ(Normalize("folder/file.pdf"), root + "/folder/file.pdf");
    EXPECT_EQ(Normalize("missing.pdf"), root + "/missing.pdf");
    EXPECT_EQ(Normalize("."), root);
    EXPECT_EQ(Normalize("../" + root.substr(root.rfind('/') + 1) + "/link.pdf"), root + "/folder/file.pdf");
    EXPECT_TRUE(Exists("link.pdf"));
    QDir::setCurrent(before);
}

TEST_F(LocalFileSystemTest, PathIsNormalizedEvenIfTheCurrentFolderIsGone)
{
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QString::fromStdString(root + "/folder/inner")));
    std::filesystem::remove(root + "/folder/inner");
    EXPECT_EQ(Normalize(root + "/link.pdf"), root + "/folder/file.pdf");
    EXPECT_EQ(Normalize("./a.pdf"), "a.pdf");
    QDir::setCurrent(before);
}

TEST_F(LocalFileSystemTest, EmptyPathStaysEmpty)
{
    EXPECT_EQ(Normalize(""), "");
}

TEST_F(LocalFileSystemTest, NormalPathIsNotChangedAgain)
{
    for (const auto* path : {"/folder/", "/missing/../a/", "/link/x/", "/circle/x/../y", "/dangling/x/"}) {
        const std::string once = Normalize(root + path);
        EXPECT_EQ(Normalize(once), once) << path;
    }
}

TEST_F(LocalFileSystemTest, NamesAreBytesWhateverTheLocale)
{
    const std::string localeBefore = std::setlocale(LC_ALL, nullptr);
    for (const auto* locale : {"C", "C.UTF-8"}) {
        ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr);
        for (const auto* name : {"Résumé – Zoë.pdf", "日本語.pdf", "\xff\xfe.pdf", "a\nb.pdf", " .pdf"}) {
            const std::string path = root + "/" + name;
            std::ofstream(path) << "x";
            EXPECT_TRUE(Exists(path)) << name;
            EXPECT_EQ(Normalize(root + "/link/../" + name), path);
        }
    }
    std::setlocale(LC_ALL, localeBefore.c_str());
}

} // namespace

} // namespace Norlis::Host
