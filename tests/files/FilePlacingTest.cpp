#include <files/FilePlacing.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Norlis::Test {

namespace {

class FilePlacingTest : public testing::Test {
protected:
    QString Write(const QString& name, const QByteArray& content)
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }

    QByteArray Read(const QString& path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    const QTemporaryDir folder;
};

TEST_F(FilePlacingTest, FreeNameIsTaken)
{
    const auto source = Write("source", "new");
    const auto target = folder.filePath(QStringLiteral("Zürich.pdf"));
    EXPECT_FALSE(Files::MoveUnlessTaken(source, target));
    EXPECT_EQ(Read(target), "new");
    EXPECT_FALSE(QFile::exists(source));
}

TEST_F(FilePlacingTest, TakenNameIsLeftAloneUnlessItIsToBeReplaced)
{
    const auto source = Write("source", "new");
    const auto target = Write("target", "old");
    EXPECT_EQ(Files::MoveUnlessTaken(source, target), std::errc::file_exists);
    EXPECT_EQ(Read(target), "old");
    EXPECT_EQ(Read(source), "new");

    EXPECT_FALSE(Files::MoveReplacing(source, target));
    EXPECT_EQ(Read(target), "new");
    EXPECT_FALSE(QFile::exists(source));
}

TEST_F(FilePlacingTest, MissingSourceIsAnError)
{
    EXPECT_TRUE(Files::MoveUnlessTaken(folder.filePath("missing"), folder.filePath("target")));
    EXPECT_TRUE(Files::MoveReplacing(folder.filePath("missing"), folder.filePath("target")));
}

} // namespace

} // namespace Norlis::Test
