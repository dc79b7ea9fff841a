#include <tests/support/Files.h>

#include <files/FileIdentity.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace Norlis::Files {

namespace {

using namespace Norlis::Test;
using std::chrono::nanoseconds;
using std::chrono::seconds;

class FileIdentityTest : public testing::Test {
protected:
    FileIdentity Written(const QByteArray& content)
    {
        WriteFile(path, content);
        return FileIdentity::OfPath(path);
    }

    static nanoseconds Now()
    {
        return std::chrono::system_clock::now().time_since_epoch();
    }

    const QTemporaryDir folder;
    const QString path = folder.filePath("a.pdf");
};

TEST_F(FileIdentityTest, FilesAndContentsAreToldApart)
{
    const auto missing = FileIdentity::OfPath(path);
    EXPECT_FALSE(missing.IsFile());
    const auto first = Written("content");
    EXPECT_TRUE(first.IsFile());
    EXPECT_EQ(first.size, 7);
    EXPECT_TRUE(first == FileIdentity::OfPath(path));
    EXPECT_EQ(first.ToString(), FileIdentity::OfPath(path).ToString());

    const auto longer = Written("longer content");
    EXPECT_TRUE(first != longer);
    EXPECT_NE(first.ToString(), longer.ToString());

    WriteFile(folder.filePath("b.pdf"), "longer content");
    EXPECT_TRUE(longer != FileIdentity::OfPath(folder.filePath("b.pdf")));
}

TEST_F(FileIdentityTest, EveryFieldCounts)
{
    const FileIdentity identity{1, 2, 3, 4, 5};
    for (const FileIdentity& other :
         {FileIdentity{9, 2, 3, 4, 5}, FileIdentity{1, 9, 3, 4, 5}, FileIdentity{1, 2, 9, 4, 5},
          FileIdentity{1, 2, 3, 9, 5}, FileIdentity{1, 2, 3, 4, 9}}) {
        EXPECT_TRUE(identity != other);
        EXPECT_NE(identity.ToString(), other.ToString());
    }
}

TEST_F(FileIdentityTest, TextsAreReadBack)
{
    for (const FileIdentity& identity : {FileIdentity{1, 2, 3, -4, 5}, FileIdentity(), Written("content")}) {
        EXPECT_TRUE(FileIdentity::FromString(identity.ToString()) == identity) << identity.ToString().toStdString();
    }
    for (const char* text : {"", "-", "1-2-3-4", "1-2-3-4-5-6", "1-2-3-4-x", "--3-4-5", "1-2-3-4-10000000000000000"}) {
        EXPECT_FALSE(FileIdentity::FromString(text).IsFile()) << text;
    }
}

TEST_F(FileIdentityTest, RenamedFileIsTheSame)
{
    const auto written = Written("content");
    ASSERT_TRUE(QFile::rename(path, folder.filePath("b.pdf")));
    auto renamed = FileIdentity::OfPath(folder.filePath("b.pdf"));
    renamed.changedNanoseconds += 1; // where the clock has not gone on since
    EXPECT_TRUE(renamed.HasContentOf(written));
    EXPECT_FALSE(Written("another").HasContentOf(written));
}

TEST_F(FileIdentityTest, TimesOutOfReachAreUnknown)
{
    Written("content");
    for (const time_t year : {1600, 1677, 2263, 2400}) {
        const timespec time = {(year - 1970) * 31'556'952, 0};
        const timespec times[] = {time, time};
        struct stat status = {};
        ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
        ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
        if (status.st_mtim.tv_sec == time.tv_sec) { // not every file system knows these times
            EXPECT_EQ(FileIdentity::OfPath(path).modifiedNanoseconds, FileIdentity::unknownTime) << year;
        }
    }
    EXPECT_GT(TimeUntilSettled(nanoseconds(FileIdentity::unknownTime)), std::chrono::hours(24));
    EXPECT_GT(TimeUntilSettled(nanoseconds::max()), std::chrono::hours(24));
    EXPECT_LT(TimeUntilSettled(nanoseconds(FileIdentity::unknownTime + 1)), nanoseconds::zero());
}

TEST_F(FileIdentityTest, LinksAreFollowedWhereAskedFor)
{
    const auto identity = Written("content");
    const QString link = folder.filePath("link");
    MakeLink(path, link);
    EXPECT_FALSE(FileIdentity::OfPath(link).IsFile());
    EXPECT_TRUE(FileIdentity::OfTarget(link.toStdString()) == identity);
    EXPECT_TRUE(FileIdentity::OfTarget(path.toStdString()) == identity);
}

TEST_F(FileIdentityTest, OnlyRegularFilesHaveOne)
{
    const QString pipe = folder.filePath("pipe");
    MakeNamedPipe(pipe);
    for (const QString& other : {folder.path(), pipe, QString("/dev/zero"), folder.filePath("missing"), QString()}) {
        EXPECT_FALSE(FileIdentity::OfPath(other).IsFile()) << other.toStdString();
        EXPECT_FALSE(FileIdentity::OfTarget(other.toStdString()).IsFile()) << other.toStdString();
    }
    EXPECT_FALSE(FileIdentity::OfDescriptor(-1).IsFile());
}

TEST_F(FileIdentityTest, AnOpenFileKeepsItsOwn)
{
    Written("content");
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    ASSERT_TRUE(QFile::rename(path, folder.filePath("b.pdf")));
    EXPECT_TRUE(FileIdentity::OfDescriptor(file.handle()) == FileIdentity::OfPath(folder.filePath("b.pdf")));
}

TEST_F(FileIdentityTest, AFileSettlesAfterAMoment)
{
    const auto written = Written("content");
    EXPECT_GT(written.TimeUntilSettled(), nanoseconds(seconds(-1))); // a slow machine may let it age
    EXPECT_LE(written.TimeUntilSettled(), seconds(3));

    FileIdentity old = written;
    old.changedNanoseconds -= nanoseconds(seconds(4)).count();
    EXPECT_LT(old.TimeUntilSettled(), seconds(0));
}

TEST_F(FileIdentityTest, AFileThatWasSetToAnotherTimeStillSettles)
{
    const auto written = Written("content");
    auto fromTheFuture = written;
    fromTheFuture.modifiedNanoseconds += nanoseconds(std::chrono::hours(24)).count(); // programs can set that
    EXPECT_LE(fromTheFuture.TimeUntilSettled(), seconds(3));
}

TEST_F(FileIdentityTest, WholeSecondsSettleLater)
{
    const auto wholeSecond = std::chrono::duration_cast<seconds>(Now());
    EXPECT_GT(TimeUntilSettled(wholeSecond), seconds(1));
    EXPECT_LE(TimeUntilSettled(wholeSecond), seconds(3));
    EXPECT_LE(TimeUntilSettled(wholeSecond + nanoseconds(1)), std::chrono::milliseconds(50));
    EXPECT_LT(TimeUntilSettled(wholeSecond - seconds(3)), seconds(0));
    EXPECT_GT(TimeUntilSettled(Now() + std::chrono::hours(1)), std::chrono::minutes(59));
}

} // namespace

} // namespace Norlis::Files
