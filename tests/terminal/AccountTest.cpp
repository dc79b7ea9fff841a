#include <apps/terminal/Account.h>
#include <host/account/ServiceAddress.h>

#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <stdexcept>

namespace Norlis::Test {

namespace {

using Host::ServiceAddress;
using Terminal::Account;
using Terminal::Arguments;
using testing::HasSubstr;

const QByteArray certificate = "Some words\n-----BEGIN CERTIFICATE-----\nMIIB\n-----END CERTIFICATE-----\n";

class AccountTest : public testing::Test {
protected:
    /// A run of the program with a command and, unless they are empty, a service and options. Stays valid until the
    /// next one.
    Account& Run(const QString& command, const QString& service = {}, const Host::ServiceAccess& options = {})
    {
        arguments = {};
        arguments.certificateFile = options.certificateFile;
        arguments.allowPlainHttp = options.allowPlainHttp;
        arguments.command = command;
        if (!service.isEmpty()) {
            arguments.service = ServiceAddress(service);
        }
        return Started();
    }

    Account& Started()
    {
        account.reset();
        account =
            std::make_unique<Account>(arguments, std::make_shared<Host::CloudAccountSettings>(folder.filePath("data")));
        return *account;
    }

    QString MakeFile(const QString& name, const QByteArray& content)
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    std::string ProblemWithCertificates(const QString& path)
    {
        Run("login", server, {path});
        try {
            account->AuthInfo();
        } catch (const std::runtime_error& problem) {
            return problem.what();
        }
        return {};
    }

    const QTemporaryDir folder;
    const QString server = "https://anna@cloud.example/dav/";
    Arguments arguments;
    std::unique_ptr<Account> account;
};

TEST_F(AccountTest, NobodyIsSignedInAtFirst)
{
    EXPECT_TRUE(Run("list").Service().isEmpty());
    EXPECT_EQ(account->SignedOutText(), "You are not signed in. Run: norlis-cloud login --service URL");
    EXPECT_EQ(Run("list", server).Token(), "");
    EXPECT_EQ(account->SignedOutText(), "You are not signed in. Run: norlis-cloud login --service " + server);
}

TEST_F(AccountTest, FolderNeedsNoSignIn)
{
    EXPECT_NE(Run("list", "/srv/Cloud").Token(), "");
    EXPECT_EQ(account->AuthInfo().serviceUrl, QUrl("file:///srv/Cloud"));
}

TEST_F(AccountTest, SignInIsThereForLaterCommandsWithEverythingThatBelongsToIt)
{
    const QString certificates = MakeFile("our own, authority.pem", certificate);
    Run("login", server, {certificates, true});
    EXPECT_EQ(account->AuthInfo().certificateFile, certificates);
    account->Remember("pass word");

    Run("list");
    EXPECT_EQ(account->Service(), QUrl(server));
    EXPECT_EQ(account->Token(), "pass word");
    const auto authInfo = account->AuthInfo();
    EXPECT_EQ(authInfo.serviceUrl, QUrl(server));
    EXPECT_EQ(authInfo.certificateFile, certificates);
    EXPECT_TRUE(authInfo.allowPlainHttp);
    EXPECT_EQ(Run("list", "HTTPS://anna@Cloud.Example:443/dav").Token(), "pass word");
}

TEST_F(AccountTest, OptionsOfOneServiceAreNotThoseOfAnother)
{
    Run("login", server, {{}, true});
    account->Remember("token");
    EXPECT_FALSE(Run("list", "https://bob@cloud.example/dav/").AuthInfo().allowPlainHttp);
}

TEST_F(AccountTest, NewSignInKeepsTheOptionsUntilTheSignOut)
{
    Run("login", server, {{}, true});
    account->Remember("old");
    Run("login", server).Remember("new");
    EXPECT_TRUE(Run("list").AuthInfo().allowPlainHttp);
    EXPECT_EQ(account->Token(), "new");

    Run("logout").Forget();
    EXPECT_TRUE(Run("list").Service().isEmpty());
    EXPECT_FALSE(Run("list", server).AuthInfo().allowPlainHttp);
    EXPECT_EQ(account->Token(), "");
}

TEST_F(AccountTest, AddressWithoutUserStandsForTheUserWhoSignedInLast)
{
    Run("login", server).Remember("token");
    EXPECT_EQ(Run("list", "https://cloud.example/dav").Service(), QUrl(server));
    EXPECT_EQ(Run("list", "https://cloud.example/").Service(), QUrl("https://cloud.example/"));
    EXPECT_EQ(Run("list", "https://bob@cloud.example/dav/").Token(), "");
    EXPECT_EQ(Run("login", "https://cloud.example/dav").Service(), QUrl("https://cloud.example/dav/"))
        << "who signs in says as whom";
}

TEST_F(AccountTest, AddressWithoutUserWhereOneSignedInWithoutANameStandsForThat)
{
    Run("login", "https://cloud.example/dav/").Remember("bearer");
    Run("login", server).Remember("password");
    EXPECT_EQ(Run("list", "https://cloud.example/dav/").Token(), "bearer");
}

TEST_F(AccountTest, UnusableCertificateFileIsNamed)
{
    const QString missing = folder.filePath("nowhere.pem");
    EXPECT_THAT(ProblemWithCertificates(missing), HasSubstr(missing.toStdString()));
    EXPECT_THAT(ProblemWithCertificates(folder.path()), HasSubstr(folder.path().toStdString()));
    EXPECT_THAT(ProblemWithCertificates(MakeFile("letter.pem", "Dear Anna,\n")), HasSubstr("no certificate"));
    EXPECT_EQ(ProblemWithCertificates(MakeFile("good.pem", certificate)), "");
}

TEST_F(AccountTest, CertificateFileThatHasGoneIsNoticedByLaterCommands)
{
    const QString file = MakeFile("good.pem", certificate);
    Run("login", server, {file});
    account->Remember("token");
    ASSERT_TRUE(QFile::remove(file));
    EXPECT_THROW(Run("list").AuthInfo(), std::runtime_error);
}

TEST_F(AccountTest, PasswordStandsInTheTokenFileAlone)
{
    Run("login", server);
    account->DataFolder();
    account->Remember("c4n4ry");
    account.reset(); // the settings are on the disk
    int count = 0;
    QDirIterator files(folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const bool isTokenFile = files.filePath().startsWith(folder.filePath("data/tokens/"));
        EXPECT_EQ(file.readAll().contains("c4n4ry"), isTokenFile) << files.filePath().toStdString();
        ++count;
    }
    EXPECT_EQ(count, 2) << "settings and token";
}

} // namespace

} // namespace Norlis::Test
