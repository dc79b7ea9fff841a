#include "ContractTest.h"

#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>

namespace Norlis::TestKit {

using testing::IsEmpty;
using testing::Matches;

class UploadTest : public SignedInContractTest {};
NORLIS_FOR_EVERY_CLOUD(UploadTest);

TEST_P(UploadTest, ANewDocumentIsNamedAsTheLocalFile)
{
    const QByteArray content(3'000'000, 'x');
    const auto upload = client.Upload(LocalFile("report.pdf", content), {}, Md5Of(content));
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(cloud->Content(), QStringList("report.pdf"));
    EXPECT_EQ(cloud->Get("report.pdf"), content);

    const CloudFile entry = client.Entry("report.pdf");
    EXPECT_EQ(upload->payload.id, entry.id);
    EXPECT_EQ(upload->payload.fileName, "report.pdf");
    EXPECT_TRUE(upload->payload.isPrivate);
    EXPECT_TRUE(upload->payload.downloadUrl.isValid());
    EXPECT_TRUE(upload->payload.modifiedAt.isValid());
    EXPECT_EQ(entry.md5Hash, Md5Of(content));
    EXPECT_EQ(QFileInfo(Local("report.pdf")).size(), content.size());
}

TEST_P(UploadTest, ATakenNameGetsANumberAndTheFirstStaysUntouched)
{
    cloud->Put("report.pdf", "first");
    for (const auto& [content, name] : QMap<QByteArray, QString>{{"2nd", cloud->NumberedName("report.pdf", 2)},
                                                                 {"3rd", cloud->NumberedName("report.pdf", 3)}}
                                           .toStdMap()) {
        const auto upload = client.Upload(LocalFile("report.pdf", content));
        ASSERT_TRUE(upload->Succeeds());
        EXPECT_EQ(upload->payload.fileName, name);
        EXPECT_EQ(upload->payload.id, client.Entry(name).id);
        EXPECT_EQ(cloud->Get(name), content);
    }
    EXPECT_EQ(cloud->Get("report.pdf"), QByteArray("first"));
}

TEST_P(UploadTest, UploadsOfOneNameAtOnceBecomeDocumentsOfTheirOwn)
{
    const QString path = LocalFile("report.pdf", QByteArray(2'000'000, 'x'));
    std::vector<AnswerPtr<Social::NorlisCloudSharingResult>> uploads;
    for (int count = 0; count < 20; ++count) {
        uploads.push_back(client.Upload(path));
    }
    for (const auto& upload : uploads) {
        EXPECT_TRUE(upload->Succeeds());
    }
    EXPECT_EQ(cloud->Content().size(), 20);
}

TEST_P(UploadTest, AnUploadByIdReplacesAndKeepsIdAndName)
{
    cloud->Put("report.pdf", "old");
    const QString id = client.Entry("report.pdf").id;
    const auto upload = client.Upload(LocalFile("other name.pdf", "new content"), id);
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_EQ(upload->payload.id, id);
    EXPECT_EQ(upload->payload.fileName, "report.pdf");
    EXPECT_EQ(cloud->Content(), QStringList("report.pdf"));
    EXPECT_EQ(cloud->Get("report.pdf"), QByteArray("new content"));
    EXPECT_EQ(client.Entry("report.pdf").id, id);
    EXPECT_EQ(client.Entry("report.pdf").md5Hash, Md5Of("new content"));
}

TEST_P(UploadTest, TheHashOfAnUploadIsThereForOthersAndGoesWithItsContent)
{
    ASSERT_TRUE(client.Upload(LocalFile("report.pdf", "mine"))->Succeeds());
    const auto other = Another();
    ASSERT_TRUE(other->SignIn());
    const testing::Matcher<QString> hash =
        cloud->KeepsHashes() ? testing::Matcher<QString>(Md5Of("mine")) : IsForeignHash("mine");
    // A server stores it by a request of its own, after the upload has been reported.
    EXPECT_TRUE(WaitUntil([&] { return Matches(hash)(other->Entry("report.pdf").md5Hash); }));
    cloud->Put("report.pdf", "hers");
    EXPECT_THAT(client.Entry("report.pdf").md5Hash, IsForeignHash("hers"));
    EXPECT_THAT(other->Entry("report.pdf").md5Hash, IsForeignHash("hers"));
}

TEST_P(UploadTest, AnUploadToAnUnknownIdFailsAndLeavesNothing)
{
    const auto upload = client.Upload(LocalFile("report.pdf", "new"), "unknown");
    EXPECT_TRUE(upload->Fails());
    EXPECT_EQ(upload->payload.id, QString());
    EXPECT_THAT(cloud->Content(), IsEmpty());
}

TEST_P(UploadTest, AnEmptyFileIsADocumentToo)
{
    const auto upload = client.Upload(LocalFile("empty.pdf", {}), {}, Md5Of({}));
    EXPECT_TRUE(upload->Succeeds());
    EXPECT_EQ(cloud->Get("empty.pdf"), QByteArray());
    EXPECT_EQ(upload->percents.back(), 100);
}

TEST_P(UploadTest, NamesSurviveByteForByte)
{
    QStringList names = {"\u00e9.pdf",
                         "e\u0301.pdf",
                         QString::fromUtf8("\xf0\x9f\x93\x84.pdf"),
                         "-rf.pdf",
                         "100%.pdf",
                         "a#b?c&d=e.pdf",
                         " space .pdf",
                         "..pdf",
                         "%2e%2e%2f.pdf",
                         "'quoted\" <b>.pdf",
                         "no suffix",
                         LongName(),
                         "a+b;c,d@e.pdf",
                         "\u65e5\u672c.pdf",
                         "\ufeffmarked.pdf",
                         "\u202efdp.exe\u200b\u061c.pdf"};
    if (!cloud->ListsNamesThatBeginWithADot()) {
        names.removeAll("..pdf");
    }
    if (!cloud->ListsPercentSignsAndAmpersands()) {
        names = names.filter(QRegularExpression("^[^%&]*$"));
    }
    for (const QString& name : qAsConst(names)) {
        const auto upload = client.Upload(LocalFile(name, name.toUtf8()));
        ASSERT_TRUE(upload->Succeeds()) << name.toStdString();
        EXPECT_EQ(upload->payload.fileName, name);
        EXPECT_EQ(cloud->Get(name), name.toUtf8());
        EXPECT_EQ(client.Entry(name).id, upload->payload.id);
        const auto download = client.Download(upload->payload.id, Local("back"));
        ASSERT_TRUE(download->Succeeds());
        EXPECT_EQ(ReadFile(Local("back")), name.toUtf8());
        ASSERT_TRUE(QFile::remove(Local("back"))); // no copy of the next document
    }
    EXPECT_EQ(cloud->Content().size(), names.size());
}

TEST_P(UploadTest, ALongNameThatIsTakenIsShortened)
{
    const QString name = LongName();
    cloud->Put(name, "first");
    const auto upload = client.Upload(LocalFile(name, "second"));
    ASSERT_TRUE(upload->Succeeds());
    const QString end = cloud->NumberedName("x.pdf", 2).mid(1);
    EXPECT_TRUE(upload->payload.fileName.endsWith(end));
    EXPECT_EQ(cloud->Get(upload->payload.fileName), QByteArray("second"));
}

TEST_P(UploadTest, NamesThatAreUnsafeElsewhereAreRefused)
{
    if (!cloud->RefusesUnsafeNames()) {
        GTEST_SKIP() << "The cloud has such names";
    }
    for (const char* name : {"back\\slash.pdf", "new\nline.pdf", "CON.pdf", "nul"}) {
        const auto upload = client.Upload(LocalFile(name, "content"));
        EXPECT_TRUE(upload->Fails()) << name;
        EXPECT_EQ(upload->payload.id, QString());
    }
    EXPECT_THAT(cloud->Content(), IsEmpty());
}

TEST_P(UploadTest, WhatIsNoReadableFileIsRefused)
{
    MakeFolder(Local("folder.pdf"));
    MakeNamedPipe(Local("pipe.pdf"));
    MakeLink(Local("nowhere"), Local("dangling.pdf"));
    for (const QString& path : {Local("missing.pdf"), Local("folder.pdf"), Local("pipe.pdf"), Local("dangling.pdf"),
                                Local("folder.pdf") + '/', QString(), QString("/"), QString("/dev/zero")}) {
        const auto upload = client.Upload(path);
        EXPECT_TRUE(upload->Fails()) << path.toStdString();
        EXPECT_EQ(upload->payload.id, QString());
    }
    EXPECT_THAT(cloud->Content(), IsEmpty());
}

TEST_P(UploadTest, ALinkToAFileIsSentAsTheFile)
{
    LocalFile("target.pdf", "content");
    MakeLink(Local("target.pdf"), Local("link.pdf"));
    ASSERT_TRUE(client.Upload(Local("link.pdf"))->Succeeds());
    EXPECT_EQ(cloud->Get("link.pdf"), QByteArray("content"));
}

TEST_P(UploadTest, AnotherHashThanTheFilesIsRefused)
{
    const QString path = LocalFile("report.pdf", "content");
    const auto upload = client.Upload(path, {}, Md5Of("other"));
    EXPECT_TRUE(upload->Fails());
    EXPECT_EQ(upload->payload.id, QString());
    EXPECT_THAT(cloud->Content(), IsEmpty());
    EXPECT_TRUE(client.Upload(path, {}, Md5Of("content").toUpper())->Succeeds());
}

TEST_P(UploadTest, AFailedReplacementLeavesTheOldDocument)
{
    cloud->Put("report.pdf", "old");
    const QString id = client.Entry("report.pdf").id;
    const auto upload = client.Upload(LocalFile("report.pdf", "new"), id, Md5Of("other"));
    EXPECT_TRUE(upload->Fails());
    EXPECT_EQ(upload->payload.id, QString());
    EXPECT_EQ(cloud->Content(), QStringList("report.pdf"));
    EXPECT_EQ(cloud->Get("report.pdf"), QByteArray("old"));
}

TEST_P(UploadTest, AFileThatChangesMeanwhileIsRefused)
{
    WriteSparseFile(Local("growing.pdf"), Large(64 * 1024 * 1024));
    const auto upload = client.Upload(Local("growing.pdf"));
    QFile file(Local("growing.pdf"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    upload->onProgress = [&](int percent) {
        if (percent > 0 && percent < 50) {
            file.seek(0);
            file.write("changed");
        }
    };
    EXPECT_TRUE(upload->Fails());
    EXPECT_EQ(upload->payload.id, QString());
    EXPECT_THAT(cloud->Content(), IsEmpty());
}

TEST_P(UploadTest, AFileThatIsCutOffMeanwhileIsRefused)
{
    WriteSparseFile(Local("shrinking.pdf"), Large(64 * 1024 * 1024));
    const auto upload = client.Upload(Local("shrinking.pdf"));
    upload->onProgress = [&](int percent) {
        if (percent > 0 && percent < 50) {
            QFile::resize(Local("shrinking.pdf"), 10);
        }
    };
    EXPECT_TRUE(upload->Fails());
    EXPECT_THAT(cloud->Content(), IsEmpty());
}

TEST_P(UploadTest, ProgressRisesAndEndsWithTheUpload)
{
    WriteSparseFile(Local("large.pdf"), Large(50 * 1024 * 1024));
    const auto upload = client.Upload(Local("large.pdf"));
    ASSERT_TRUE(upload->Succeeds());
    ASSERT_GT(upload->percents.size(), 10U);
    EXPECT_GE(upload->percents.front(), 0);
    EXPECT_TRUE(std::is_sorted(upload->percents.begin(), upload->percents.end()));
    EXPECT_EQ(std::count(upload->percents.begin(), upload->percents.end(), 100), 1);
    EXPECT_EQ(upload->percents.back(), 100);
}

TEST_P(UploadTest, AFailedUploadNeverReportsThatItIsComplete)
{
    const auto upload = client.Upload(LocalFile("report.pdf", QByteArray(5'000'000, 'x')), {}, Md5Of("other"));
    EXPECT_TRUE(upload->Fails());
    EXPECT_EQ(std::count(upload->percents.begin(), upload->percents.end(), 100), 0);
}

TEST_P(UploadTest, ACloudThatVanishesMeanwhileIsAnError)
{
    WriteSparseFile(Local("large.pdf"), Large(256 * 1024 * 1024));
    const auto upload = client.Upload(Local("large.pdf"));
    ASSERT_TRUE(WaitUntil([&] { return upload->percents.size() > 1; }));
    cloud->Withdraw();
    EXPECT_TRUE(upload->Fails());
    EXPECT_EQ(upload->payload.id, QString());
    cloud->Restore();
    EXPECT_EQ(client.Entry("large.pdf").id, QString());
}

} // namespace Norlis::TestKit
