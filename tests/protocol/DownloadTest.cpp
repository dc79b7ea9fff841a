#include <tests/support/ContractTest.h>
#include <tests/support/FileSizeLimit.h>

#include <files/FileIdentity.h>

#include <QFileInfo>

#include <unistd.h>

namespace Norlis::Test {

class DownloadTest : public SignedInContractTest {
protected:
    /// Puts a document into the cloud and returns its id.
    QString Put(const QString& name, const QByteArray& content)
    {
        cloud->Put(name, content);
        return client.Entry(name).id;
    }
};
NORLIS_FOR_EVERY_CLOUD(DownloadTest);

TEST_P(DownloadTest, TheDocumentIsWrittenToTheTarget)
{
    const QByteArray content(3'000'000, 'x');
    const auto download = client.Download(Put("report.pdf", content), Local("target.pdf"));
    ASSERT_TRUE(download->Succeeds());
    EXPECT_EQ(ReadFile(Local("target.pdf")), content);
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
    EXPECT_EQ(cloud->Get("report.pdf"), content);
}

TEST_P(DownloadTest, TheHashOfWhatHasArrivedIsToldBeforeTheDownloadEnds)
{
    const auto download = client.Download(Put("report.pdf", "content"), Local("target.pdf"));
    std::size_t toldBefore = 0;
    download->onDone = [&] { toldBefore = client.transferred.size(); };
    ASSERT_TRUE(download->Succeeds());
    ASSERT_EQ(client.transferred.size(), 1U);
    EXPECT_EQ(toldBefore, 1U);
    const auto& told = client.transferred.front();
    EXPECT_EQ(told.operation, download->operation);
    EXPECT_EQ(told.localPath, Local("target.pdf"));
    EXPECT_EQ(told.md5Hash, Md5Of("content"));
    EXPECT_EQ(told.identity, Files::FileIdentity::OfPath(Local("target.pdf")).ToString());
}

TEST_P(DownloadTest, ManyDocumentsAtOnceAreAllThere)
{
    constexpr int count = 60;
    for (int number = 0; number < count; ++number) {
        cloud->Put(QString("%1.pdf").arg(number), "content " + QByteArray::number(number));
    }
    ASSERT_TRUE(client.List()->Succeeds());
    std::vector<AnswerPtr<>> downloads;
    const auto files = client.List();
    ASSERT_TRUE(files->Succeeds());
    for (const auto& file : files->payload) {
        downloads.push_back(client.Download(file.id, Local(file.name)));
    }
    for (const auto& download : downloads) {
        EXPECT_TRUE(download->Succeeds());
    }
    EXPECT_EQ(FilesBelow(folder.path()).size(), count);
    for (int number = 0; number < count; ++number) {
        EXPECT_EQ(ReadFile(Local(QString("%1.pdf").arg(number))), "content " + QByteArray::number(number));
    }
}

TEST_P(DownloadTest, AnEmptyDocumentBecomesAnEmptyFile)
{
    const auto download = client.Download(Put("empty.pdf", {}), Local("target.pdf"));
    ASSERT_TRUE(download->Succeeds());
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray());
    EXPECT_EQ(download->percents.back(), 100);
}

TEST_P(DownloadTest, ProgressRisesAndEndsWithTheDownload)
{
    cloud->PutLarge("large.pdf", 50 * 1024 * 1024);
    const auto download = client.Download(client.Entry("large.pdf").id, Local("target.pdf"));
    ASSERT_TRUE(download->Succeeds());
    ASSERT_GT(download->percents.size(), 10U);
    EXPECT_GE(download->percents.front(), 0);
    EXPECT_TRUE(std::is_sorted(download->percents.begin(), download->percents.end()));
    EXPECT_EQ(std::count(download->percents.begin(), download->percents.end(), 100), 1);
    EXPECT_EQ(download->percents.back(), 100);
}

TEST_P(DownloadTest, WhoHasTheOldFileOpenKeepsReadingIt)
{
    const QString id = Put("report.pdf", "new");
    QFile reader(LocalFile("target.pdf", "old"));
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    ASSERT_TRUE(client.Download(id, Local("target.pdf"))->Succeeds());
    EXPECT_EQ(reader.readAll(), QByteArray("old"));
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("new"));
}

TEST_P(DownloadTest, AFileThatOthersMayNotReadStaysSo)
{
    const QString id = Put("report.pdf", "new");
    const auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    ASSERT_TRUE(QFile::setPermissions(LocalFile("target.pdf", "old"), ownerOnly));
    ASSERT_TRUE(client.Download(id, Local("target.pdf"))->Succeeds());
    const auto others = QFileDevice::ReadGroup | QFileDevice::ReadOther;
    EXPECT_EQ(QFileInfo(Local("target.pdf")).permissions() & others, QFileDevice::Permissions());
}

TEST_P(DownloadTest, AnUnknownDocumentFailsAndLeavesTheOldFile)
{
    const QString id = Put("gone.pdf", "content");
    cloud->Take("gone.pdf");
    LocalFile("target.pdf", "old");
    for (const QString& unknown : {QString(), QString("unknown"), QString("../target.pdf"), id}) {
        EXPECT_TRUE(client.Download(unknown, Local("target.pdf"))->Fails()) << unknown.toStdString();
    }
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("old"));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
}

TEST_P(DownloadTest, ATargetThatCannotBeWrittenIsAnError)
{
    const QString id = Put("report.pdf", "content");
    MakeFolder(Local("folder.pdf"));
    LocalFile("file", "not a folder");
    for (const QString& target : {Local("missing/target.pdf"), Local("folder.pdf"), Local("folder.pdf/"),
                                  Local("file/target.pdf"), QString(), Local(".."), Local("folder.pdf/CON.pdf")}) {
        const auto download = client.Download(id, target);
        EXPECT_TRUE(download->Fails()) << target.toStdString();
        EXPECT_EQ(std::count(download->percents.begin(), download->percents.end(), 100), 0);
    }
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("file"));
}

TEST_P(DownloadTest, NamesAreWrittenByteForByte)
{
    const QString id = Put("report.pdf", "content");
    const QStringList names = {"\u00e9.pdf", "e\u0301.pdf", QString::fromUtf8("\xf0\x9f\x93\x84.pdf"), "-rf.pdf",
                               "100%.pdf",   "a#b?c.pdf",   QString("\u00e4").repeated(125) + "x.pdf"};
    for (const QString& name : names) {
        ASSERT_TRUE(client.Download(id, Local(name))->Succeeds()) << name.toStdString();
    }
    QStringList sorted = names;
    sorted.sort();
    EXPECT_EQ(FilesBelow(folder.path()), sorted);
}

TEST_P(DownloadTest, ADocumentThatVanishesMeanwhileLeavesNoHalfFile)
{
    cloud->PutLarge("large.pdf", Large(256 * 1024 * 1024));
    LocalFile("target.pdf", "old");
    const auto download = client.Download(client.Entry("large.pdf").id, Local("target.pdf"));
    ASSERT_TRUE(WaitUntil([&] { return download->percents.size() > 1; }));
    cloud->PutLarge("large.pdf", 10);
    ASSERT_TRUE(WaitUntil([&] { return download->Came(); }));
    EXPECT_TRUE(download->result == Social::Error || cloud->RestartsDownloadOnChange());
    EXPECT_EQ(ReadFile(Local("target.pdf")),
              download->result == Social::Success ? QByteArray(10, '\0') : QByteArray("old"));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
}

TEST_P(DownloadTest, AFullDiskIsAnErrorAndLeavesTheOldFile)
{
    const QString id = Put("report.pdf", QByteArray(5'000'000, 'x'));
    LocalFile("target.pdf", "old");
    const FileSizeLimit full(2'500'000);
    EXPECT_TRUE(client.Download(id, Local("target.pdf"))->Fails());
    EXPECT_EQ(ReadFile(Local("target.pdf")), QByteArray("old"));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
    ASSERT_EQ(client.failures.size(), 1U);
    EXPECT_THAT(client.failures[0].reason.toStdString(), testing::HasSubstr("File too large"));
}

TEST_P(DownloadTest, ATargetNextToADownloadInProgressIsNotTouched)
{
    const QString first = Put("first.pdf", QByteArray(2'000'000, '1'));
    const QString second = Put("second.pdf", QByteArray(2'000'000, '2'));
    std::vector<AnswerPtr<>> downloads;
    for (int count = 0; count < 10; ++count) {
        downloads.push_back(client.Download(count % 2 == 0 ? first : second, Local("target.pdf")));
    }
    for (const auto& download : downloads) {
        EXPECT_TRUE(download->Succeeds());
    }
    const auto content = ReadFile(Local("target.pdf"));
    EXPECT_TRUE(content == QByteArray(2'000'000, '1') || content == QByteArray(2'000'000, '2'));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("target.pdf"));
}

} // namespace Norlis::Test
