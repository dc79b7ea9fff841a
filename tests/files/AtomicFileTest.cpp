#include <tests/support/Files.h>
#include <tests/support/FileSizeLimit.h>

#include <files/AtomicFile.h>
#include <files/FilePlacing.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>

namespace Norlis::Files {

using namespace Norlis::Test;

class AtomicFileTest : public testing::Test {
protected:
    void Write(const QByteArray& content)
    {
        ASSERT_TRUE(file.Open(folder.path()));
        ASSERT_TRUE(file.Write(content.constData(), content.size()));
        ASSERT_TRUE(file.Sync());
    }

    QTemporaryDir folder;
    AtomicFile file;
};

TEST_F(AtomicFileTest, NothingHasTheNameBeforeTheCommit)
{
    const QString path = folder.filePath("a.pdf");
    Write("content");
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(AtomicFile::IsTemporaryName(FilesBelow(folder.path()).value(0)));
    EXPECT_TRUE(file.CommitReplacing(path));
    EXPECT_EQ(ReadFile(path), QByteArray("content"));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("a.pdf"));
}

TEST_F(AtomicFileTest, TemporaryNamesAreOfOneFormOnly)
{
    for (const bool isHidden : {true, false}) {
        const QString name = AtomicFile::NewTemporaryName(isHidden);
        EXPECT_EQ(name.startsWith('.'), isHidden);
        EXPECT_TRUE(AtomicFile::IsTemporaryName(name));
        for (const QString& other : {name.chopped(1), name + '\n', 'x' + name, '.' + name, name.toUpper(),
                                     QString(name).remove(12, 1), QString(name).insert(12, "g")}) {
            EXPECT_EQ(AtomicFile::IsTemporaryName(other), other == '.' + name && !isHidden) << other.toStdString();
        }
    }
    EXPECT_FALSE(AtomicFile::IsTemporaryName(".norlis-something.part"));
}

TEST_F(AtomicFileTest, ACommittedFileIsKnownWhateverTakesItsPlace)
{
    const QString path = folder.filePath("a.pdf");
    Write("content");
    ASSERT_TRUE(file.CommitReplacing(path));
    EXPECT_EQ(file.CommittedVersion().ToString(), FileIdentity::OfPath(path).ToString());
    WriteFile(folder.filePath("b.pdf"), "another");
    ASSERT_EQ(std::rename(QFile::encodeName(folder.filePath("b.pdf")), QFile::encodeName(path)), 0);
    EXPECT_NE(file.CommittedVersion().ToString(), FileIdentity::OfPath(path).ToString());
}

TEST_F(AtomicFileTest, ALinkInItsPlaceIsNeitherFollowedNorGivenTheName)
{
    const QString path = folder.filePath("a.pdf");
    const QString secret = folder.filePath("secret");
    WriteFile(path, "old");
    WriteFile(secret, "secret");
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    ASSERT_TRUE(QFile::setPermissions(secret, QFile::ReadOwner | QFile::WriteOwner));
    Write("content");
    ASSERT_TRUE(QFile::remove(file.Path()));
    ASSERT_TRUE(QFile::link(secret, file.Path()));
    EXPECT_FALSE(file.CommitReplacing(path));
    EXPECT_TRUE(file.CommitExchanging(path));
    EXPECT_EQ(file.CommitNew(folder.filePath("b.pdf")), AtomicFile::Outcome::Failed);
    EXPECT_EQ(ReadFile(path), QByteArray("old"));
    EXPECT_FALSE(QFile::permissions(secret) & QFile::ReadOther);
    EXPECT_TRUE(MoveReplacing(file.Path(), path));
    EXPECT_FALSE(QFile::permissions(secret) & QFile::ReadOther);
}

TEST_F(AtomicFileTest, WithoutACommitNothingStays)
{
    {
        AtomicFile other;
        ASSERT_TRUE(other.Open(folder.path()));
        ASSERT_TRUE(other.Write("content", 7));
    }
    EXPECT_EQ(FilesBelow(folder.path()), QStringList());
}

TEST_F(AtomicFileTest, ACommittedFileStaysAfterDestruction)
{
    {
        AtomicFile other;
        ASSERT_TRUE(other.Open(folder.path()));
        EXPECT_EQ(other.CommitNew(folder.filePath("a.pdf")), AtomicFile::Outcome::Done);
    }
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("a.pdf"));
}

TEST_F(AtomicFileTest, ReplacingKeepsThePermissions)
{
    const QString path = folder.filePath("a.pdf");
    WriteFile(path, "old");
    for (const auto permissions : {QFileDevice::Permissions(0x6600), QFileDevice::Permissions(0x6644)}) {
        ASSERT_TRUE(QFile::setPermissions(path, permissions));
        AtomicFile other;
        ASSERT_TRUE(other.Open(folder.path()));
        ASSERT_TRUE(other.CommitReplacing(path));
        EXPECT_EQ(QFileInfo(path).permissions(), permissions);
    }
}

TEST_F(AtomicFileTest, WhatAnExchangeBringsOutIsKept)
{
    const QString path = folder.filePath("a.pdf");
    WriteFile(path, "old");
    ASSERT_TRUE(QFile::setPermissions(path, QFileDevice::Permissions(0x6600)));
    QString aside;
    {
        AtomicFile other;
        ASSERT_TRUE(other.Open(folder.path()));
        ASSERT_TRUE(other.Write("new", 3));
        EXPECT_FALSE(other.CommitExchanging(path));
        EXPECT_TRUE(other.CommittedVersion() == FileIdentity::OfPath(path));
        aside = other.Path();
    }
    EXPECT_EQ(ReadFile(path), QByteArray("new"));
    EXPECT_EQ(QFileInfo(path).permissions(), QFileDevice::Permissions(0x6600));
    EXPECT_EQ(ReadFile(aside), QByteArray("old"));
}

TEST_F(AtomicFileTest, AnExchangeWithNothingLeavesNothing)
{
    {
        AtomicFile other;
        ASSERT_TRUE(other.Open(folder.path()));
        EXPECT_EQ(other.CommitExchanging(folder.filePath("a.pdf")), std::errc::no_such_file_or_directory);
        EXPECT_EQ(other.ErrorText(), "No such file or directory");
    }
    EXPECT_EQ(FilesBelow(folder.path()), QStringList());
}

TEST_F(AtomicFileTest, APrivateFileIsPrivateWhileItIsWritten)
{
    ASSERT_TRUE(file.Open(folder.path(), 0600));
    EXPECT_EQ(QFileInfo(file.Path()).permissions(), QFileDevice::Permissions(0x6600));
}

TEST_F(AtomicFileTest, ATakenNameIsLeftAloneAndAnotherCanBeTried)
{
    WriteFile(folder.filePath("a.pdf"), "old");
    MakeLink("/nowhere", folder.filePath("b.pdf"));
    MakeFolder(folder.filePath("c.pdf"));
    Write("new");
    for (const char* name : {"a.pdf", "b.pdf", "c.pdf"}) {
        EXPECT_EQ(file.CommitNew(folder.filePath(name)), AtomicFile::Outcome::NameTaken) << name;
    }
    EXPECT_EQ(file.CommitNew(folder.filePath("d.pdf")), AtomicFile::Outcome::Done);
    EXPECT_EQ(ReadFile(folder.filePath("a.pdf")), QByteArray("old"));
    EXPECT_EQ(ReadFile(folder.filePath("d.pdf")), QByteArray("new"));
}

TEST_F(AtomicFileTest, ANameThatCannotBeGivenIsAFailureAndSaysWhy)
{
    Write("content");
    EXPECT_EQ(file.CommitNew(folder.filePath("missing/a.pdf")), AtomicFile::Outcome::Failed);
    EXPECT_EQ(file.ErrorText(), "No such file or directory");
    MakeFolder(folder.filePath("folder"));
    EXPECT_FALSE(file.CommitReplacing(folder.filePath("folder")));
    EXPECT_EQ(file.ErrorText(), "Is a directory");
    EXPECT_EQ(file.CommitNew(folder.filePath(QString(300, 'a'))), AtomicFile::Outcome::Failed);
    EXPECT_EQ(file.ErrorText(), "File name too long");
    EXPECT_EQ(file.CommitNew(folder.filePath("a.pdf")), AtomicFile::Outcome::Done);
}

TEST_F(AtomicFileTest, AMissingFolderCannotBeWrittenTo)
{
    EXPECT_FALSE(file.Open(folder.filePath("missing")));
    EXPECT_NE(file.ErrorText(), QString());
}

TEST_F(AtomicFileTest, AWriteThatIsCutShortFailsAndSaysWhy)
{
    ASSERT_TRUE(file.Open(folder.path()));
    const FileSizeLimit full(1000);
    EXPECT_TRUE(file.Write(QByteArray(900, 'x').constData(), 900));
    EXPECT_FALSE(file.Write(QByteArray(900, 'x').constData(), 900));
    EXPECT_EQ(file.ErrorText(), "File too large");
}

} // namespace Norlis::Files
