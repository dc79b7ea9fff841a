#include <tests/support/Rounds.h>
#include <tests/support/ServerTest.h>

#include <QDir>
#include <QDirIterator>

#include <algorithm>
#include <vector>

namespace Norlis::Test {

namespace {

class ServerSecretsTest : public ServerTest {
protected:
    void SetUp() override
    {
        server.SetPassword("c4n4ry/wörd +?%");
        SignIn();
        ASSERT_TRUE(QFile::remove(PasswordFile()));
        forms = {server.Password().toUtf8(), QUrl::toPercentEncoding(server.Password()), "c4n4ry",
                 (server.User() + ':' + server.Password()).toUtf8().toBase64()};
    }

    bool HoldsSecret(const QByteArray& text) const
    {
        return std::any_of(forms.begin(), forms.end(), [&](const QByteArray& form) { return text.contains(form); });
    }

    /// Runs every command that talks to the server.
    void RunAll()
    {
        ASSERT_TRUE(QDir(Home()).mkpath("elsewhere"));
        const QString file = MakeFile("report.pdf", ContentOf(Sample("ferry-ticket.pdf")));
        for (const QStringList& words : {QStringList{"upload", file},
                                         {"list"},
                                         {"list", "--json"},
                                         {"preview", "report.pdf"},
                                         {"quota"},
                                         {"doctor"},
                                         {"doctor", "--json"},
                                         {"download", "report.pdf", "--to", "elsewhere"},
                                         {"remove", "report.pdf"},
                                         {"list", "--offline"}}) {
            const Outcome outcome = Run(words);
            EXPECT_FALSE(HoldsSecret(outcome.output.toUtf8())) << outcome.output.toStdString();
            EXPECT_FALSE(HoldsSecret(outcome.errors.toUtf8())) << outcome.errors.toStdString();
        }
    }

    /// Looks into everything that the program has written, below the home folder.
    void ExpectNoSecretInFiles() const
    {
        int count = 0;
        QDirIterator files(Home(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            EXPECT_EQ(HoldsSecret(ContentOf(path)), path.startsWith(Data() + "/tokens/")) << path.toStdString();
            ++count;
        }
        EXPECT_GE(count, 4) << "token, settings, log and records";
    }

    QByteArrayList forms;
};

TEST_F(ServerSecretsTest, PasswordIsInItsFileAloneWhenAllGoesWell)
{
    RunAll();
    ExpectNoSecretInFiles();
}

TEST_F(ServerSecretsTest, PasswordIsInItsFileAloneWhenTheServerRepeatsIt)
{
    for (const int status : IsThorough() ? std::vector<int>{200, 302, 403, 500} : std::vector<int>{302}) {
        server.BehaveAgain();
        server.Misbehave(When("*").From(2).Always(), EchoesTheCredentials(status)); // the sign-in goes well
        RunAll();
        server.BehaveAgain();
        server.Misbehave(When("*").Always(), EchoesTheCredentials(status));
        RunAll();
    }
    ExpectNoSecretInFiles();
}

TEST_F(ServerSecretsTest, PasswordIsInItsFileAloneWhenTheSignInFails)
{
    server.SetPassword("another one");
    RunAll();
    ExpectNoSecretInFiles();
}

} // namespace

} // namespace Norlis::Test
