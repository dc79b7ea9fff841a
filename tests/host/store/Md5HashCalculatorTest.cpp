#include <files/FileIdentity.h>
#include <host/store/Md5HashCalculator.h>

#include <tests/support/MappedFile.h>
#include <tests/support/OrdinaryUser.h>
#include <tests/support/SqliteFile.h>

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <gmock/gmock.h>

#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Host {

namespace {

using Test::MappedFile;

class Md5HashCalculatorTest : public testing::Test {
protected:
    QString NewFile(const QString& name, const QByteArray& content) const
    {
        const QString file = folder.filePath(name);
        WriteFile(file, content);
        return file;
    }

    /// A file so long that hashing it to the end takes longer than any test may, on next to no disk space.
    QString EndlessFile() const
    {
        const QString file = NewFile("endless.pdf", {});
        EXPECT_TRUE(QFile::resize(file, qint64(1) << 42));
        return file;
    }

    static std::string Hash(Md5HashCalculator& calculator, const QString& file)
    {
        return calculator.CalculateHash(ioPath(file.toStdString()));
    }

    static std::string Md5(const QByteArray& content)
    {
        return QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex().toStdString();
    }

    static void PrepareAndWait(Md5HashCalculator& calculator, const QStringList& files,
                               Md5HashCalculator::Reading reading = Md5HashCalculator::Reading::IfChanged)
    {
        QObject context;
        bool isDone = false;
        calculator.Prepare(
            files, &context, [&] { isDone = true; }, reading);
        ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }, 30'000));
    }

    /// Makes a cached hash recognisable, so that it shows whether it or the file was read.
    void ReplaceCachedHashes() const
    {
        ASSERT_NE(RunSql(cacheFile, "SELECT count(*) FROM hashes"), "0");
        RunSql(cacheFile, "UPDATE hashes SET hash = '" + cached + "'");
    }

    const QTemporaryDir folder;
    const QString cacheFile = folder.filePath("hashes.sqlite");
    const QByteArray cached = QByteArray(32, '0');
};

TEST_F(Md5HashCalculatorTest, HashIsLowerCaseHexadecimal)
{
    Md5HashCalculator calculator;
    EXPECT_EQ(Hash(calculator, NewFile("empty.pdf", "")), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(Hash(calculator, NewFile("abc.pdf", "abc")), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(Hash(calculator, NewFile("Zoë – 1.pdf", "message digest")), "f96b697d7cb7938d525a2f31aaf161d0");
}

TEST_F(Md5HashCalculatorTest, FileOfManyPiecesIsHashedWhole)
{
    Md5HashCalculator calculator;
    QByteArray content;
    for (int number = 0; number < 500'000; ++number) {
        content += QByteArray::number(number);
    }
    for (const int size : {262'143, 262'144, 262'145, 524'288, static_cast<int>(content.size())}) {
        const QByteArray part = content.left(size);
        EXPECT_EQ(Hash(calculator, NewFile("large.pdf", part)), Md5(part)) << size;
    }
}

TEST_F(Md5HashCalculatorTest, WhatIsNoReadableFileHasNoHash)
{
    Md5HashCalculator calculator(cacheFile);
    EXPECT_EQ(Hash(calculator, ""), "");
    EXPECT_EQ(Hash(calculator, folder.filePath("missing.pdf")), "");
    EXPECT_EQ(Hash(calculator, folder.path()), "");
    EXPECT_EQ(Hash(calculator, "/dev/zero"), "");
    const std::string file = NewFile("a.pdf", "a").toStdString();
    EXPECT_EQ(calculator.CalculateHash(ioPath(file + std::string("\0.png", 5))), "");
    const OrdinaryUser user;
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    EXPECT_EQ(calculator.CalculateHash(ioPath(file)), "");
}

TEST_F(Md5HashCalculatorTest, PipeIsNotWaitedForNorOpened)
{
    Md5HashCalculator calculator;
    const QString pipe = folder.filePath("pipe.pdf");
    ASSERT_EQ(mkfifo(pipe.toUtf8().constData(), 0600), 0);
    EXPECT_EQ(Hash(calculator, pipe), "");

    const int writer = open(pipe.toUtf8().constData(), O_RDWR | O_NONBLOCK);
    ASSERT_EQ(write(writer, "text", 4), 4);
    EXPECT_EQ(Hash(calculator, pipe), "");
    close(writer);
}

TEST_F(Md5HashCalculatorTest, ChangeThatNoTimeStampTellsOfIsFoundByReadingAlways)
{
    Md5HashCalculator calculator(cacheFile);
    const QString file = NewFile("a.pdf", "text");
    MappedFile map(file);
    PrepareAndWait(calculator, {file});
    map.Write("TEXT");
    EXPECT_EQ(Hash(calculator, file), Md5("text")) << "the change shows, so nothing is tested here";
    PrepareAndWait(calculator, {file}, Md5HashCalculator::Reading::Always);
    EXPECT_EQ(Hash(calculator, file), Md5("TEXT"));
}

TEST_F(Md5HashCalculatorTest, CachedHashSurvivesARestart)
{
    const QString file = NewFile("a.pdf", "text");
    {
        Md5HashCalculator calculator(cacheFile);
        PrepareAndWait(calculator, {file});
    }
    ReplaceCachedHashes();
    Md5HashCalculator calculator(cacheFile);
    EXPECT_EQ(Hash(calculator, file), cached.toStdString());
}

TEST_F(Md5HashCalculatorTest, ChangedFileIsReadAgain)
{
    const QString file = NewFile("a.pdf", "text");
    Md5HashCalculator calculator(cacheFile);
    PrepareAndWait(calculator, {file});
    ReplaceCachedHashes();
    ASSERT_EQ(Hash(calculator, file), cached.toStdString());

    WriteFile(file, "TEXT");
    EXPECT_EQ(Hash(calculator, file), Md5("TEXT"));
}

TEST_F(Md5HashCalculatorTest, FileWithItsOldTimeStampRestoredIsReadAgain)
{
    const QString file = NewFile("a.pdf", "text");
    Md5HashCalculator calculator(cacheFile);
    PrepareAndWait(calculator, {file});
    struct stat before {};
    ASSERT_EQ(stat(file.toUtf8().constData(), &before), 0);

    WriteFile(file, "TEXT");
    const timespec times[]{before.st_atim, before.st_mtim};
    ASSERT_EQ(utimensat(AT_FDCWD, file.toUtf8().constData(), times, 0), 0);
    EXPECT_EQ(Hash(calculator, file), Md5("TEXT"));
}

TEST_F(Md5HashCalculatorTest, FileReplacedByAnotherIsReadAgain)
{
    const QString file = NewFile("a.pdf", "text");
    const QString other = NewFile("b.pdf", "TEXT");
    Md5HashCalculator calculator(cacheFile);
    PrepareAndWait(calculator, {file, other});
    ASSERT_EQ(rename(other.toUtf8().constData(), file.toUtf8().constData()), 0);
    EXPECT_EQ(Hash(calculator, file), Md5("TEXT"));
}

TEST_F(Md5HashCalculatorTest, WriteRightAfterHashingIsSeen)
{
    // Within one tick of the system's clock both writes leave the same time stamp.
    const QString file = NewFile("a.pdf", "0000");
    Md5HashCalculator calculator;
    for (int number = 1000; number < 1300; ++number) {
        const QByteArray content = QByteArray::number(number);
        const int descriptor = open(file.toUtf8().constData(), O_WRONLY);
        ASSERT_EQ(pwrite(descriptor, content.constData(), 4, 0), 4);
        close(descriptor);
        ASSERT_EQ(Hash(calculator, file), Md5(content));
    }
}

TEST_F(Md5HashCalculatorTest, HashOfAFileThatWasJustWrittenIsNotCached)
{
    Md5HashCalculator calculator(cacheFile);
    bool wasCached = true;
    for (int number = 0; number < 100 && wasCached; ++number) { // a slow machine may let the file age
        Hash(calculator, NewFile(QString::number(number), "text"));
        wasCached = RunSql(cacheFile, "SELECT count(*) FROM hashes").toInt() > number;
    }
    EXPECT_FALSE(wasCached);
}

TEST_F(Md5HashCalculatorTest, UnusableCacheFileDoesNoHarm)
{
    Md5HashCalculator calculator(folder.filePath("no folder/hashes.sqlite"));
    EXPECT_EQ(Hash(calculator, NewFile("a.pdf", "abc")), Md5("abc"));
}

TEST_F(Md5HashCalculatorTest, HashesOfPreparedFilesAreCached)
{
    Md5HashCalculator calculator(cacheFile);
    const QStringList files{NewFile("a.pdf", "a"), NewFile("b.pdf", "b"), folder.filePath("missing.pdf"), folder.path(),
                            ""};
    PrepareAndWait(calculator, files);
    ReplaceCachedHashes();
    EXPECT_EQ(Hash(calculator, files[0]), cached.toStdString());
    EXPECT_EQ(Hash(calculator, files[1]), cached.toStdString());
    EXPECT_EQ(Hash(calculator, files[2]), "");
}

TEST_F(Md5HashCalculatorTest, DoneArrivesLaterOnTheThreadOfTheCalculator)
{
    Md5HashCalculator calculator;
    QObject context;
    QThread* done = nullptr;
    calculator.Prepare({}, &context, [&] { done = QThread::currentThread(); });
    EXPECT_EQ(done, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return done; }, 30'000));
    EXPECT_EQ(done, QThread::currentThread());
}

TEST_F(Md5HashCalculatorTest, DoneIsCalledOnceForEachPreparation)
{
    Md5HashCalculator calculator;
    QObject context;
    const QString file = NewFile("a.pdf", "a");
    std::vector<int> calls;
    for (int number = 0; number < 5; ++number) {
        calculator.Prepare({file}, &context, [&calls, number] { calls.push_back(number); });
    }
    PrepareAndWait(calculator, {});
    EXPECT_THAT(calls, testing::ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(Md5HashCalculatorTest, DoneIsNotCalledWhenTheContextIsGone)
{
    Md5HashCalculator calculator;
    auto context = std::make_unique<QObject>();
    bool isDone = false;
    calculator.Prepare({NewFile("a.pdf", "a")}, context.get(), [&] { isDone = true; });
    context.reset();
    PrepareAndWait(calculator, {});
    EXPECT_FALSE(isDone);
}

TEST_F(Md5HashCalculatorTest, NothingIsLeftOfAContextThatEndsWhenItsFilesAreReady)
{
    Md5HashCalculator calculator;
    const auto captured = std::make_shared<int>();
    for (int round = 0; round < 20'000; ++round) { // the moment is met some time
        auto context = std::make_unique<QObject>();
        calculator.Prepare({}, context.get(), [captured] {});
        const auto begin = std::chrono::steady_clock::now();
        while (std::chrono::steady_clock::now() - begin < std::chrono::microseconds(round % 100)) {
        }
    }
    PrepareAndWait(calculator, {});
    EXPECT_EQ(captured.use_count(), 1);
}

TEST_F(Md5HashCalculatorTest, DoneIsNotCalledWhenTheCalculatorIsGone)
{
    QObject context;
    bool isDone = false;
    {
        Md5HashCalculator calculator(cacheFile);
        PrepareAndWait(calculator, {NewFile("a.pdf", "a")});
        calculator.Prepare({}, &context, [&] { isDone = true; });
        calculator.Prepare({NewFile("b.pdf", "b")}, nullptr, {});
        const QDeadlineTimer limit(30'000);
        while (RunSql(cacheFile, "SELECT count(*) FROM hashes") == "1") { // without events: the first one is on its way
            ASSERT_FALSE(limit.hasExpired());
            QThread::yieldCurrentThread();
        }
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(isDone);
}

TEST_F(Md5HashCalculatorTest, PreparationMayGoWithoutACallback)
{
    Md5HashCalculator calculator(cacheFile);
    const QString file = NewFile("a.pdf", "a");
    QObject context;
    calculator.Prepare({file}, &context, {});
    calculator.Prepare({file}, nullptr, [] { FAIL(); });
    PrepareAndWait(calculator, {});
    ReplaceCachedHashes();
    EXPECT_EQ(Hash(calculator, file), cached.toStdString());
}

TEST_F(Md5HashCalculatorTest, DestructionBreaksHashingOff)
{
    bool isDone = false;
    QObject context;
    const QString file = EndlessFile();
    {
        Md5HashCalculator calculator(cacheFile);
        calculator.Prepare({NewFile("a.pdf", "a")}, &context, [&] { isDone = true; });
        calculator.Prepare({file}, &context, [] { FAIL(); });
        calculator.Prepare({file}, &context, [] { FAIL(); });
        ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }, 30'000));
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(RunSql(cacheFile, "SELECT count(*) FROM hashes"), "1");
}

TEST_F(Md5HashCalculatorTest, HashThatIsExpectedIsNotKnownUntilItIsTold)
{
    Md5HashCalculator calculator(cacheFile);
    const QString file = NewFile("report.pdf", "content");
    PrepareAndWait(calculator, {file});
    calculator.Expect(file);
    EXPECT_EQ(Hash(calculator, file), "");
    calculator.StopExpecting(file);
    EXPECT_EQ(Hash(calculator, file), Md5("content"));
    calculator.Expect(file);
    calculator.Tell(file, Files::FileIdentity::OfPath(file).ToString(), Md5("content"), true);
    EXPECT_EQ(Hash(calculator, file), Md5("content"));
}

TEST_F(Md5HashCalculatorTest, WhatIsExpectedIsNotRead)
{
    Md5HashCalculator calculator;
    const QString file = EndlessFile();
    calculator.Expect(file);
    EXPECT_EQ(Hash(calculator, file), "");
    calculator.Tell(file, Files::FileIdentity::OfPath(file).ToString(), cached.toStdString(), true);
    EXPECT_EQ(Hash(calculator, file), cached.toStdString());
}

TEST_F(Md5HashCalculatorTest, ToldHashCountsForTheFileThatItIsOfAlone)
{
    for (const bool isLasting : {true, false}) {
        Md5HashCalculator calculator;
        const QString file = NewFile("report.pdf", "content");
        calculator.Tell(file, Files::FileIdentity::OfPath(file).ToString(), cached.toStdString(), isLasting);
        EXPECT_EQ(Hash(calculator, file), cached.toStdString());
        WriteFile(file, "other content");
        EXPECT_EQ(Hash(calculator, file), Md5("other content"));
    }
}

TEST_F(Md5HashCalculatorTest, OnlyToldHashThatLastsIsCached)
{
    const QString lasting = NewFile("lasting.pdf", "a");
    const QString passing = NewFile("passing.pdf", "b");
    {
        Md5HashCalculator calculator(cacheFile);
        calculator.Tell(lasting, Files::FileIdentity::OfPath(lasting).ToString(), cached.toStdString(), true);
        calculator.Tell(passing, Files::FileIdentity::OfPath(passing).ToString(), cached.toStdString(), false);
    }
    Md5HashCalculator calculator(cacheFile);
    EXPECT_EQ(Hash(calculator, lasting), cached.toStdString());
    EXPECT_EQ(Hash(calculator, passing), Md5("b"));
}

TEST_F(Md5HashCalculatorTest, ToldHashThatDoesNotLastIsReadSomeTimeLater)
{
    Md5HashCalculator calculator;
    const QString file = NewFile("report.pdf", "content");
    calculator.Tell(file, Files::FileIdentity::OfPath(file).ToString(), cached.toStdString(), false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Hash(calculator, file) == Md5("content"); }, 30'000));
}

TEST_F(Md5HashCalculatorTest, FileIsHashedWhileAnotherIsPrepared)
{
    Md5HashCalculator calculator(cacheFile);
    QObject context;
    calculator.Prepare({EndlessFile()}, &context, [] { FAIL(); });
    EXPECT_EQ(Hash(calculator, NewFile("a.pdf", "abc")), Md5("abc"));
}

} // namespace

} // namespace Norlis::Host
