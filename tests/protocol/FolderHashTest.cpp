#include "FolderCloudTest.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

namespace Norlis::Test {

/// What the service remembers of the hashes of documents.
class FolderHashTest : public FolderCloudTest {
protected:
    /// Puts a document there, has it hashed, and writes another hash where that is remembered.
    void RememberAnotherHash(const QString& hash)
    {
        cloud.Put("document.pdf", "content");
        const auto changed = QFileInfo(cloud.PathOf("document.pdf")).metadataChangeTime();
        ASSERT_TRUE(WaitUntil([&] { return changed.msecsTo(QDateTime::currentDateTime()) > 100; }));
        ASSERT_TRUE(client.SignIn());
        ASSERT_EQ(client.Entry("document.pdf").md5Hash, Md5Of("content"));
        const QString path = cloud.PathOf(".norlis-cloud/hashes.json");
        auto text = ReadFile(path);
        ASSERT_TRUE(text);
        ASSERT_TRUE(text->contains(Md5Of("content").toLatin1()));
        WriteFile(path, text->replace(Md5Of("content").toLatin1(), hash.toLatin1()));
    }
};

TEST_F(FolderHashTest, WhatIsRememberedOfDocumentsMayBeAnything)
{
    cloud.Put("document.pdf", "content");
    const QString path = cloud.PathOf(".norlis-cloud/hashes.json");
    MakeFolder(cloud.PathOf(".norlis-cloud"));
    for (const QByteArray& text : {QByteArray(), QByteArray("{"), QByteArray("[1, 2]"), QByteArray("{\"a\": 1}"),
                                   QByteArray("{\"a\": {\"version\": 1, \"md5\": []}}"), QByteArray(100'000, '[')}) {
        WriteFile(path, text);
        Client other(cloud.Settings());
        ASSERT_TRUE(other.SignIn());
        EXPECT_EQ(other.Entry("document.pdf").md5Hash, Md5Of("content"));
    }
    QFile::remove(path);
    MakeNamedPipe(path);
    Client other(cloud.Settings());
    ASSERT_TRUE(other.SignIn());
    EXPECT_EQ(other.Entry("document.pdf").md5Hash, Md5Of("content"));
}

TEST_F(FolderHashTest, HashesAreNotCalculatedAgainForDocumentsThatDidNotChange)
{
    ASSERT_NO_FATAL_FAILURE(RememberAnotherHash(Md5Of("a trace")));
    Client other(cloud.Settings());
    ASSERT_TRUE(other.SignIn());
    EXPECT_EQ(other.Entry("document.pdf").md5Hash, Md5Of("a trace"));

    cloud.Put("document.pdf", "changed");
    EXPECT_EQ(other.Entry("document.pdf").md5Hash, Md5Of("changed"));
}

TEST_F(FolderHashTest, AWrongHashInTheCacheIsFoundOutByADownload)
{
    ASSERT_NO_FATAL_FAILURE(RememberAnotherHash(Md5Of("a mistake")));
    Client other(cloud.Settings());
    ASSERT_TRUE(other.SignIn());
    const QString id = other.Entry("document.pdf").id;
    const auto download = other.Download(id, folder.filePath("target.pdf"));
    EXPECT_TRUE(download->Succeeds());
    EXPECT_TRUE(std::is_sorted(download->percents.begin(), download->percents.end()));
    EXPECT_EQ(ReadFile(folder.filePath("target.pdf")), QByteArray("content"));
    EXPECT_EQ(other.Entry("document.pdf").md5Hash, Md5Of("content"));
}

TEST_F(FolderHashTest, NothingWaitsForTheHashOfAHugeDocument)
{
    cloud.PutLarge("huge.pdf", 100 * 1024 * MiB);
    cloud.PutLarge("large.pdf", 70 * MiB);
    cloud.Put("small.pdf", "content");
    ASSERT_TRUE(client.SignIn());
    EXPECT_EQ(client.Entry("small.pdf").md5Hash, Md5Of("content"));
    EXPECT_TRUE(client.Download(client.Entry("small.pdf").id, folder.filePath("target.pdf"))->Succeeds());
    EXPECT_EQ(client.Entry("huge.pdf").size, 100 * 1024 * MiB);
    const QString hash = client.Entry("huge.pdf").md5Hash; // stands for the version
    EXPECT_TRUE(hash.startsWith("version:")) << hash.toStdString();
    EXPECT_EQ(client.Entry("huge.pdf").md5Hash, hash);
    // The smaller one is hashed first, meanwhile, and goes on beside lists.
    EXPECT_TRUE(WaitUntil([&] { return !client.Entry("large.pdf").md5Hash.startsWith("version:"); }));
    client.Destroy();
    Client other(cloud.Settings());
    ASSERT_TRUE(other.SignIn());
    EXPECT_FALSE(other.Entry("large.pdf").md5Hash.startsWith("version:"));
    cloud.PutLarge("huge.pdf", 100 * 1024 * MiB + 1);
    EXPECT_NE(other.Entry("huge.pdf").md5Hash, hash);
}

TEST_F(FolderHashTest, AnUploadsHashIsNotTakenForThatOfWhatSomebodyPutsInItsPlace)
{
    ASSERT_TRUE(client.SignIn());
    const QString path = Local("document.pdf", "mine");
    for (int round = 0; round < 200; ++round) {
        const QString others = Local("others.pdf", "somebody else's");
        const auto upload = client.Upload(path);
        QCoreApplication::processEvents();
        ASSERT_TRUE(BlockUntil([&] { return QFile::exists(cloud.PathOf("document.pdf")); }));
        ASSERT_EQ(std::rename(QFile::encodeName(others), QFile::encodeName(cloud.PathOf("document.pdf"))), 0);
        ASSERT_TRUE(upload->Succeeds());
        ASSERT_EQ(client.Entry("document.pdf").md5Hash, Md5Of("somebody else's")) << "in round " << round;
        cloud.Take("document.pdf");
    }
}

} // namespace Norlis::Test
