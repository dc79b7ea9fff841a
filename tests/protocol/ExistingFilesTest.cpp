#include <tests/support/ServiceContractTest.h>

namespace Norlis::Test {

/// What a download finds at its target.
class ExistingFilesTest : public ServiceContractTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(user.SignIn());
    }

    QString Put(const QString& name, const QByteArray& content)
    {
        cloud->Put(name, content);
        return user.Entry(name).id;
    }

    /// It is refused at once, with a reason, and the file is as it was.
    void ExpectRefused(Client& by, const QString& id, const QString& path, const QByteArray& content)
    {
        const auto failures = by.failures.size();
        const auto download = by.Download(id, path);
        EXPECT_EQ(download->operation, -1);
        ASSERT_EQ(by.failures.size(), failures + 1);
        EXPECT_EQ(by.failures.back().operation, -1);
        EXPECT_EQ(by.failures.back().what, "Download");
        EXPECT_EQ(by.failures.back().kind, Social::OAuth2::FailureKind::NameTaken);
        EXPECT_EQ(by.failures.back().reason, path + " is there already, and is not an unchanged copy of the document");
        EXPECT_NE(by.failures.back().advice, QString());
        ASSERT_TRUE(by.List()->Succeeds());
        EXPECT_FALSE(download->Came());
        EXPECT_EQ(ReadFile(path), content);
    }

    Client user{Service().SettingsOf("anna"), cloud->Token()};
};
NORLIS_FOR_EVERY_CLOUD(ExistingFilesTest);

TEST_P(ExistingFilesTest, AForeignFileIsLeftAlone)
{
    const QString id = Put("report.pdf", "content");
    ExpectRefused(user, id, LocalFile("mine.pdf", "mine"), "mine");
    MakeLink(Local("mine.pdf"), Local("link.pdf"));
    ExpectRefused(user, id, Local("link.pdf"), "mine");
    ASSERT_TRUE(user.Download(id, Local("free.pdf"))->Succeeds());
}

TEST_P(ExistingFilesTest, AnUnchangedCopyIsReplaced)
{
    const QString id = Put("report.pdf", "content");
    ASSERT_TRUE(user.Download(id, Local("copy.pdf"))->Succeeds());
    Put("report.pdf", "newer content");
    ASSERT_TRUE(user.Download(id, Local("copy.pdf"))->Succeeds());
    EXPECT_EQ(ReadFile(Local("copy.pdf")), QByteArray("newer content"));
}

TEST_P(ExistingFilesTest, AChangedCopyIsLeftAlone)
{
    const QString id = Put("report.pdf", "content");
    ASSERT_TRUE(user.Download(id, Local("copy.pdf"))->Succeeds());
    LocalFile("copy.pdf", "CONTENT");
    ExpectRefused(user, id, Local("copy.pdf"), "CONTENT");
}

TEST_P(ExistingFilesTest, TheCopyOfAnotherDocumentIsLeftAlone)
{
    const QString id = Put("report.pdf", "content");
    const QString other = Put("letter.pdf", "letter");
    ASSERT_TRUE(user.Download(id, Local("copy.pdf"))->Succeeds());
    ExpectRefused(user, other, Local("copy.pdf"), "content");
}

TEST_P(ExistingFilesTest, AFileThatWasSentIsReplacedWhileItIsUnchanged)
{
    const auto upload = user.Upload(LocalFile("report.pdf", "content"));
    ASSERT_TRUE(upload->Succeeds());
    Put("report.pdf", "newer content");
    ASSERT_TRUE(user.Download(upload->payload.id, Local("report.pdf"))->Succeeds());
    EXPECT_EQ(ReadFile(Local("report.pdf")), QByteArray("newer content"));
    LocalFile("report.pdf", "edited");
    ExpectRefused(user, upload->payload.id, Local("report.pdf"), "edited");
}

TEST_P(ExistingFilesTest, ACopyIsKnownAfterARestartIfThereIsADataFolder)
{
    const QString id = Put("report.pdf", "content");
    ASSERT_TRUE(user.Download(id, Local("copy.pdf"))->Succeeds());
    user.Destroy();
    auto settings = Service().SettingsOf("anna");
    Client next(settings, cloud->Token());
    ASSERT_TRUE(next.SignIn());
    ASSERT_TRUE(next.Download(id, Local("copy.pdf"))->Succeeds());
    settings.dataFolder.clear();
    Client forgetful(settings, cloud->Token());
    ASSERT_TRUE(forgetful.SignIn());
    ExpectRefused(forgetful, id, Local("copy.pdf"), "content");
}

TEST_P(ExistingFilesTest, ACopyIsKnownUnderTheNameThatItGetsLater)
{
    const QString id = Put("report.pdf", "content");
    ASSERT_TRUE(user.Download(id, Local("first.pdf"))->Succeeds());
    ASSERT_TRUE(QFile::rename(Local("first.pdf"), Local("second.pdf")));
    user.Protocol()->copyMoved(id, Local("first.pdf"), Local("second.pdf"));
    ASSERT_TRUE(user.Download(id, Local("second.pdf"))->Succeeds());
}

TEST_P(ExistingFilesTest, AFileThatComesMeanwhileIsLeftAlone)
{
    const QString id = Put("report.pdf", QByteArray(3'000'000, 'x'));
    const auto download = user.Download(id, Local("copy.pdf"));
    EXPECT_NE(download->operation, -1);
    download->onProgress = [this](int) { LocalFile("copy.pdf", "mine"); };
    EXPECT_TRUE(download->Fails());
    EXPECT_EQ(ReadFile(Local("copy.pdf")), QByteArray("mine"));
    EXPECT_EQ(FilesBelow(folder.path()), QStringList("copy.pdf"));
}

} // namespace Norlis::Test
