#include <tests/support/Client.h>
#include <tests/support/Files.h>
#include <tests/support/FileSizeLimit.h>
#include <tests/support/FolderUnderTest.h>

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/mount.h>

namespace Norlis::Test {

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// Little room below a folder: a file system of its own where that is permitted, else a limit for each file.
class LittleRoom {
public:
    LittleRoom(const QString& folder, qint64 size) : mountPoint(QFile::encodeName(folder))
    {
        const QByteArray options = "size=" + QByteArray::number(size);
        isMounted = mount("tmpfs", mountPoint.constData(), "tmpfs", 0, options.constData()) == 0;
        if (!isMounted) {
            limit = std::make_unique<FileSizeLimit>(size);
        }
    }

    ~LittleRoom()
    {
        if (isMounted) {
            EXPECT_EQ(umount2(mountPoint.constData(), MNT_DETACH), 0);
        }
    }

    LittleRoom(const LittleRoom&) = delete;
    LittleRoom& operator=(const LittleRoom&) = delete;

private:
    const QByteArray mountPoint;
    bool isMounted = false;
    std::unique_ptr<FileSizeLimit> limit;
};

} // namespace

class StorageTest : public testing::Test {
protected:
    Social::OAuth2::AuthInfo SettingsWithLimit(qint64 limit)
    {
        auto settings = cloud.Settings();
        settings.storageLimit = limit;
        return settings;
    }

    QString Local(const QString& name, qint64 size)
    {
        WriteFile(folder.filePath(name), QByteArray(static_cast<int>(size), 'x'));
        return folder.filePath(name);
    }

    FolderUnderTest cloud;
    QTemporaryDir folder;
};

TEST_F(StorageTest, AnUploadBeyondTheLimitIsRefused)
{
    Client client(SettingsWithLimit(3 * MiB));
    ASSERT_TRUE(client.SignIn());
    ASSERT_TRUE(client.Upload(Local("a.pdf", 2 * MiB))->Succeeds());
    const auto upload = client.Upload(Local("b.pdf", MiB + 1));
    EXPECT_TRUE(upload->Fails());
    EXPECT_EQ(upload->payload.id, QString());
    ASSERT_EQ(client.failures.size(), 1U);
    EXPECT_THAT(client.failures[0].reason.toStdString(), HasSubstr("3 MiB"));
    EXPECT_EQ(cloud.Content(), QStringList("a.pdf"));
    EXPECT_TRUE(client.Upload(Local("c.pdf", MiB))->Succeeds());
}

TEST_F(StorageTest, AReplacementNeedsRoomForTheDifferenceOnly)
{
    Client client(SettingsWithLimit(3 * MiB));
    ASSERT_TRUE(client.SignIn());
    const auto upload = client.Upload(Local("a.pdf", 2 * MiB));
    ASSERT_TRUE(upload->Succeeds());
    EXPECT_TRUE(client.Upload(Local("a.pdf", 3 * MiB), upload->payload.id)->Succeeds());
    EXPECT_TRUE(client.Upload(Local("a.pdf", 3 * MiB + 1), upload->payload.id)->Fails());
    EXPECT_EQ(cloud.Get("a.pdf")->size(), 3 * MiB);
}

TEST_F(StorageTest, UploadsAtOnceDoNotExceedTheLimitTogether)
{
    Client client(SettingsWithLimit(5 * MiB));
    ASSERT_TRUE(client.SignIn());
    const QString path = Local("a.pdf", 2 * MiB);
    std::vector<AnswerPtr<Social::NorlisCloudSharingResult>> uploads;
    for (int count = 0; count < 4; ++count) {
        uploads.push_back(client.Upload(path));
    }
    int succeeded = 0;
    for (const auto& upload : uploads) {
        succeeded += upload->Succeeds() ? 1 : 0;
    }
    EXPECT_EQ(succeeded, 2);
    EXPECT_EQ(cloud.Content().size(), 2);
}

TEST_F(StorageTest, TheQuotaCountsUsedRoomUpAndTheLimitDown)
{
    Client client(SettingsWithLimit(10 * MiB - 1));
    ASSERT_TRUE(client.SignIn());
    auto quota = client.Quota();
    ASSERT_TRUE(quota->Succeeds());
    EXPECT_EQ(quota->payload["pdf"].used, 0);
    EXPECT_EQ(quota->payload["pdf"].total, 9);
    cloud.Put("a.pdf", "x");
    quota = client.Quota();
    ASSERT_TRUE(quota->Succeeds());
    EXPECT_EQ(quota->payload["pdf"].used, 1);
    cloud.PutLarge("b.pdf", MiB - 1);
    quota = client.Quota();
    ASSERT_TRUE(quota->Succeeds());
    EXPECT_EQ(quota->payload["pdf"].used, 1);
}

TEST_F(StorageTest, WithoutALimitTheDiskIsTheLimit)
{
    Client client(cloud.Settings());
    ASSERT_TRUE(client.SignIn());
    const LittleRoom disk(cloud.Folder(), 64 * MiB);
    Client other(cloud.Settings());
    ASSERT_TRUE(other.SignIn());
    cloud.PutLarge("a.pdf", 2 * MiB);
    const auto quota = other.Quota();
    ASSERT_TRUE(quota->Succeeds());
    EXPECT_EQ(quota->payload["pdf"].used, 2);
    const auto space = std::filesystem::space(QFile::encodeName(cloud.Folder()).toStdString());
    const qint64 available = static_cast<qint64>(space.available) / MiB;
    EXPECT_NEAR(quota->payload["pdf"].total, available + 2, available / 10 + 1);
}

TEST_F(StorageTest, AFullDiskRefusesAnUploadSaysWhyAndKeepsNothing)
{
    const QString path = Local("a.pdf", 6 * MiB);
    const LittleRoom disk(cloud.Folder(), 3 * MiB + 500'000);
    Client client(cloud.Settings());
    ASSERT_TRUE(client.SignIn());
    const auto upload = client.Upload(path);
    EXPECT_TRUE(upload->Fails());
    EXPECT_EQ(upload->payload.id, QString());
    EXPECT_THAT(cloud.Content(), IsEmpty());
    ASSERT_EQ(client.failures.size(), 1U);
    EXPECT_THAT(client.failures[0].reason.toStdString(),
                testing::AnyOf(HasSubstr("No space left"), HasSubstr("File too large")));
    EXPECT_TRUE(client.Upload(Local("small.pdf", 1000))->Succeeds());
}

TEST_F(StorageTest, AFullDiskKeepsTheDocumentThatWasToBeReplaced)
{
    const QString path = Local("a.pdf", 6 * MiB);
    const LittleRoom disk(cloud.Folder(), 3 * MiB + 500'000);
    cloud.Put("a.pdf", "old");
    Client client(cloud.Settings());
    ASSERT_TRUE(client.SignIn());
    EXPECT_TRUE(client.Upload(path, client.Entry("a.pdf").id)->Fails());
    EXPECT_EQ(cloud.Content(), QStringList("a.pdf"));
    EXPECT_EQ(cloud.Get("a.pdf"), QByteArray("old"));
}

} // namespace Norlis::Test
