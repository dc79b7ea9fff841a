#include "ContractTest.h"

namespace Norlis::TestKit {

class DownloadTest : public SignedInContractTest {};
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
    cloud->PutLarge("large.pdf", Large(50 * 1024 * 1024));
    const auto download = client.Download(client.Entry("large.pdf").id, Local("target.pdf"));
    ASSERT_TRUE(download->Succeeds());
    ASSERT_GT(download->percents.size(), 10U);
    EXPECT_GE(download->percents.front(), 0);
    EXPECT_TRUE(std::is_sorted(download->percents.begin(), download->percents.end()));
    EXPECT_EQ(std::count(download->percents.begin(), download->percents.end(), 100), 1);
    EXPECT_EQ(download->percents.back(), 100);
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

} // namespace Norlis::TestKit
