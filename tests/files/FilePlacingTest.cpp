#include <tests/support/Files.h>
#include <tests/support/OldFileSystem.h>

#include <files/FilePlacing.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <memory>
#include <thread>

namespace Norlis::Files {

namespace {

using namespace Norlis::Test;

enum class FileSystem { Usual, WithoutThatRenaming, WithoutLinksToo };

class FilePlacingTest : public testing::TestWithParam<FileSystem> {
protected:
    void SetUp() override
    {
        WriteFile(source, "new");
        if (GetParam() != FileSystem::Usual) {
            old = std::make_unique<OldFileSystem>(GetParam() == FileSystem::WithoutThatRenaming);
        }
    }

    const QTemporaryDir folder;
    const QString source = folder.filePath("source");
    const QString target = folder.filePath(QStringLiteral("Zürich.pdf"));
    std::unique_ptr<OldFileSystem> old;
};

TEST_P(FilePlacingTest, FreeNameIsTaken)
{
    EXPECT_FALSE(MoveUnlessTaken(source, target));
    EXPECT_EQ(ReadFile(target), QByteArray("new"));
    EXPECT_FALSE(QFile::exists(source));
}

TEST_P(FilePlacingTest, TakenNameIsLeftAlone)
{
    WriteFile(target, "old");
    const QString dangling = folder.filePath("link");
    MakeLink("/nowhere", dangling);
    for (const QString& taken : {target, dangling, folder.path()}) {
        EXPECT_EQ(MoveUnlessTaken(source, taken), std::errc::file_exists) << taken.toStdString();
    }
    EXPECT_EQ(ReadFile(target), QByteArray("old"));
    EXPECT_EQ(ReadFile(source), QByteArray("new"));
}

TEST_P(FilePlacingTest, MissingSourceIsAnError)
{
    const QString missing = folder.filePath("missing");
    EXPECT_EQ(MoveUnlessTaken(missing, target), std::errc::no_such_file_or_directory);
    EXPECT_EQ(MoveReplacing(missing, target), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(QFile::exists(target));
}

TEST_P(FilePlacingTest, MissingFolderIsAnError)
{
    EXPECT_EQ(MoveUnlessTaken(source, folder.filePath("missing/a.pdf")), std::errc::no_such_file_or_directory);
    EXPECT_EQ(ReadFile(source), QByteArray("new"));
}

TEST_P(FilePlacingTest, FileIsReplacedOnDemand)
{
    WriteFile(target, "old");
    EXPECT_FALSE(MoveReplacing(source, target));
    EXPECT_EQ(ReadFile(target), QByteArray("new"));
    EXPECT_FALSE(QFile::exists(source));
}

TEST_P(FilePlacingTest, PrivateFileStaysPrivateWhenItIsReplaced)
{
    WriteFile(target, "old");
    const auto permissions = QFile::ReadOwner | QFile::WriteOwner;
    ASSERT_TRUE(QFile::setPermissions(target, permissions));
    EXPECT_FALSE(MoveReplacing(source, target));
    EXPECT_EQ(QFile::permissions(target) & ~(QFile::ReadUser | QFile::WriteUser), permissions);
}

TEST_P(FilePlacingTest, OnlyTheKnownVersionIsReplaced)
{
    WriteFile(target, "old");
    const auto known = FileIdentity::OfPath(target);
    WriteFile(target, "edited");
    EXPECT_EQ(MoveReplacing(source, target, known), std::errc::file_exists);
    EXPECT_EQ(ReadFile(target), QByteArray("edited"));
    EXPECT_EQ(ReadFile(source), QByteArray("new"));
    EXPECT_FALSE(MoveReplacing(source, target, FileIdentity::OfPath(target)));
    EXPECT_EQ(ReadFile(target), QByteArray("new"));
    EXPECT_FALSE(QFile::exists(source));
}

class MoveReplacingTest : public testing::Test {
protected:
    const QTemporaryDir folder;
    const QString source = folder.filePath("source");
    const QString target = folder.filePath("target");
};

TEST_F(MoveReplacingTest, AFileThatSomebodyIsAboutToWriteToStays)
{
    WriteFile(source, "new");
    WriteFile(target, "old");
    QFile editor(target);
    ASSERT_TRUE(editor.open(QFile::ReadWrite));
    EXPECT_EQ(MoveReplacing(source, target, FileIdentity::OfPath(target)), std::errc::file_exists);
    EXPECT_EQ(ReadFile(target), QByteArray("old"));
    editor.close();
    ASSERT_TRUE(editor.open(QFile::ReadOnly)); // a reader keeps what it has opened
    EXPECT_FALSE(MoveReplacing(source, target, FileIdentity::OfPath(target)));
    EXPECT_EQ(ReadFile(target), QByteArray("new"));
}

TEST_F(MoveReplacingTest, AnEditInThatMomentKeepsItsName)
{
    const QByteArray edit = folder.filePath("edit").toUtf8();
    std::atomic<int> begun = 0;
    std::atomic<int> saved = 0;
    constexpr int rounds = 600;
    std::thread editor([&] { // saves as most editors do, when the other one looks
        for (int round = 1; round <= rounds; ++round) {
            while (begun < round) {
                std::this_thread::yield();
            }
            std::rename(edit.constData(), target.toUtf8().constData());
            saved = round;
        }
    });
    int late = 0;
    for (int round = 1; round <= rounds; ++round) {
        WriteFile(source, "new");
        WriteFile(target, "old");
        WriteFile(QString::fromUtf8(edit), "edited");
        const auto known = FileIdentity::OfPath(target);
        begun = round;
        for (volatile int spins = round * 30; spins > 0; spins = spins - 1) { // a different moment each time
        }
        const auto failure = MoveReplacing(source, target, known);
        late += failure ? 0 : 1;
        while (saved < round) {
            std::this_thread::yield();
        }
        EXPECT_EQ(ReadFile(target), QByteArray("edited")) << round << (failure ? ": refused" : ": replaced");
        EXPECT_EQ(QFile::exists(source), failure == std::errc::file_exists) << round;
    }
    editor.join();
    RecordProperty("savedAfterwards", late);
}

TEST(ExchangeTest, TwoFilesChangePlaces)
{
    const QTemporaryDir folder;
    const QString first = folder.filePath("first");
    const QString second = folder.filePath("second");
    WriteFile(first, "1");
    EXPECT_EQ(Exchange(first, second), std::errc::no_such_file_or_directory);
    EXPECT_EQ(ReadFile(first), QByteArray("1"));
    WriteFile(second, "2");
    EXPECT_FALSE(Exchange(first, second));
    EXPECT_EQ(ReadFile(first), QByteArray("2"));
    EXPECT_EQ(ReadFile(second), QByteArray("1"));
}

INSTANTIATE_TEST_SUITE_P(FileSystems, FilePlacingTest,
                         testing::Values(FileSystem::Usual, FileSystem::WithoutThatRenaming,
                                         FileSystem::WithoutLinksToo));

} // namespace

} // namespace Norlis::Files
