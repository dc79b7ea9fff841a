#include <tests/protocol/Files.h>

#include <files/FileReader.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Norlis::Files {

using namespace Norlis::Test;

class FileReaderTest : public testing::Test {
protected:
    QString FileOf(const QByteArray& content)
    {
        WriteFile(path, content);
        return path;
    }

    QByteArray ReadToTheEnd()
    {
        QByteArray all;
        for (QByteArray piece = reader.Next(); !piece.isEmpty(); piece = reader.Next()) {
            all += piece;
        }
        return all;
    }

    QTemporaryDir folder;
    QString path = folder.filePath("a.pdf");
    FileReader reader;
};

TEST_F(FileReaderTest, AFileIsReadInPiecesAndHashed)
{
    for (const int size : {0, 1, 1024 * 1024, 1024 * 1024 + 1, 3'500'000}) {
        const QByteArray content(size, 'x');
        FileReader each;
        ASSERT_TRUE(each.Open(FileOf(content)));
        QByteArray all;
        for (QByteArray piece = each.Next(); !piece.isEmpty(); piece = each.Next()) {
            all += piece;
            EXPECT_EQ(each.Position(), all.size());
        }
        EXPECT_EQ(all, content);
        EXPECT_EQ(each.Md5(), Md5Of(content));
        EXPECT_TRUE(each.IsUnchanged());
        EXPECT_FALSE(each.Failed());
    }
}

TEST_F(FileReaderTest, OnlyRegularFilesAreRead)
{
    MakeNamedPipe(folder.filePath("pipe"));
    for (const QString& other :
         {folder.path(), folder.filePath("pipe"), QString("/dev/zero"), folder.filePath("missing"), QString()}) {
        FileReader each;
        EXPECT_FALSE(each.Open(other)) << other.toStdString();
        EXPECT_NE(each.ErrorText(), QString());
    }
}

TEST_F(FileReaderTest, AChangeIsNoticed)
{
    ASSERT_TRUE(reader.Open(FileOf("content")));
    ASSERT_EQ(ReadToTheEnd(), QByteArray("content"));
    ASSERT_TRUE(reader.IsUnchanged());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("more");
    file.close();
    EXPECT_FALSE(reader.IsUnchanged());
}

TEST_F(FileReaderTest, AFileThatWasNotReadToItsEndIsNotTakenForTheWhole)
{
    ASSERT_TRUE(reader.Open(FileOf(QByteArray(2'000'000, 'x'))));
    reader.Next();
    EXPECT_FALSE(reader.IsUnchanged());
}

TEST_F(FileReaderTest, AFileThatIsCutOffEndsAndIsChanged)
{
    ASSERT_TRUE(reader.Open(FileOf(QByteArray(3'000'000, 'x'))));
    reader.Next();
    ASSERT_TRUE(QFile::resize(path, 10));
    EXPECT_EQ(reader.Next().size(), 0);
    EXPECT_FALSE(reader.IsUnchanged());
}

} // namespace Norlis::Files
