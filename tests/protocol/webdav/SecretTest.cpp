#include <tests/support/PdfFiles.h>
#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/NextcloudLikeServer.h>

namespace Norlis::Test {

namespace {

using testing::HasSubstr;

TEST(SecretWatchTest, KnowsASecretInEveryForm)
{
    const QByteArray canary = FaultServer::canary;
    for (int before = 0; before < 6; ++before) {
        EXPECT_TRUE(HoldsSecret((QByteArray(before, 'u') + canary + "tail").toBase64())) << before;
        EXPECT_TRUE(HoldsSecret((QByteArray(before, '?') + canary).toBase64(QByteArray::Base64UrlEncoding))) << before;
    }
    EXPECT_TRUE(HoldsSecret("a " + canary.toUpper()));
    EXPECT_TRUE(HoldsSecret(canary.toHex().toUpper()));
    EXPECT_TRUE(HoldsSecret("%63%34%6E%34%72%79"));
    EXPECT_FALSE(HoldsSecret("a canary"));
}

class SecretTest : public ServiceTest<NextcloudLikeServer> {
protected:
    SecretTest()
    {
        server.SetPassword(QString(FaultServer::canary) + "/w\u00f6rd +?%&<>\"' end");
        server.Put("a.pdf", PdfOfColor(Qt::red));
        local = LocalFile("b.pdf", "content");
        MakeFolder(Local("fetched"));
    }

    /// Asks for everything there is, whatever becomes of it.
    void AskForEverything(Client& client)
    {
        const auto came = [](const auto& answer) { EXPECT_TRUE(WaitUntil([&] { return answer->Came(); })); };
        const auto list = client.List();
        if (list->operation < 0) {
            return;
        }
        came(list);
        const QString id = list->payload.isEmpty() ? "1" : list->payload[0].id;
        for (const auto& ask : std::vector<std::function<void()>>{
                 [&] { came(client.Info(id)); }, [&] { came(client.Quota()); },
                 [&] {
                     came(client.Preview(id, {64, 64}));
                 },
                 [&] { came(client.Download(id, Local("fetched/a.pdf"))); }, [&] { came(client.Upload(local)); },
                 [&] { came(client.Upload(local, id)); }, [&] { came(client.Remove(id)); },
                 [&] {
                     const auto name = client.UserName();
                     came(name);
                     EXPECT_FALSE(HoldsSecret(name->payload.toUtf8()));
                 },
                 [&] {
                     const auto address = client.UserPicAddress();
                     came(address);
                     EXPECT_FALSE(HoldsSecret(address->payload.toUtf8()));
                 },
                 [&] {
                     const auto page = client.UserProfile();
                     came(page);
                     EXPECT_FALSE(HoldsSecret(page->payload.toEncoded()));
                 },
                 [&] {
                     const auto capabilities = client.Probe();
                     came(capabilities);
                     for (const auto& [capability, finding] : qAsConst(capabilities->payload)) {
                         EXPECT_FALSE(HoldsSecret(finding.toUtf8())) << capability.toStdString();
                     }
                 }}) {
            if (!client.Protocol()->loggedIn()) {
                ASSERT_TRUE(client.SignIn() || !client.Protocol()->loggedIn());
            }
            if (client.Protocol()->loggedIn()) {
                ask();
            }
        }
        for (const auto& failure : client.failures) {
            EXPECT_FALSE(HoldsSecret((failure.reason + failure.advice + failure.document).toUtf8()));
        }
    }

    QString local;
};

TEST_F(SecretTest, LogTellsOfRequestsWithoutThePassword)
{
    Client client(settings, server.Password());
    ASSERT_TRUE(client.SignIn());
    AskForEverything(client);
    for (const char* method : {"PROPFIND", "GET", "PUT", "MOVE", "DELETE"}) {
        EXPECT_THAT(WatchedLog().toStdString(), HasSubstr(method)); // so that the watch has something to look at
    }
}

TEST_F(SecretTest, ServerThatRepeatsThePasswordIsNotRepeated)
{
    for (const int status : {200, 207, 302, 401, 403, 404, 500}) {
        for (const bool isBearer : {false, true}) {
            server.BehaveAgain();
            settings.serviceUrl.setUserName(isBearer ? QString() : server.User());
            Client client(settings, server.Password());
            ASSERT_TRUE(client.SignIn());
            server.Misbehave(When("*").Always(), EchoesTheCredentials(status));
            AskForEverything(client);
            EXPECT_FALSE(client.failures.empty());
            Client other(settings, server.Password());
            EXPECT_TRUE(other.Authorize()->Fails());
        }
    }
}

TEST_F(SecretTest, PasswordThatIsCutOffInAMessageIsNotShown)
{
    Client client(settings, server.Password());
    ASSERT_TRUE(client.SignIn());
    const CloudFile file = client.Entry("a.pdf");
    for (int before = 290; before < 300; ++before) {
        server.BehaveAgain();
        server.Misbehave("DELETE", Refuses(403, "Exception", QByteArray(before, 'x') + server.Password().toUtf8()));
        EXPECT_TRUE(client.Remove(file.id)->Fails());
        EXPECT_THAT(LastReason(client), HasSubstr("xxx"));
    }
}

TEST_F(SecretTest, PasswordInAnAddressToGoToIsNotShown)
{
    const QByteArray password = QByteArray(FaultServer::canary) + "simple";
    server.SetPassword(password);
    for (const QByteArray& address : {"http://" + password + ".example/", "http://" + password + "@[::1]/",
                                      '/' + password + '/', "/nowhere/?token=" + password}) {
        server.BehaveAgain();
        server.Misbehave("PROPFIND", RedirectsTo(address));
        Client client(settings, server.Password());
        EXPECT_TRUE(client.Authorize()->Fails());
    }
    EXPECT_THAT(WatchedLog().toStdString(), HasSubstr("/***/"));
}

TEST_F(SecretTest, PasswordInPlacesThatAreKeptOnDiskIsNotKept)
{
    const QByteArray password = server.Password().toUtf8();
    server.With([&](MemoryTree& tree) {
        const auto others = tree.moreProperties;
        tree.moreProperties = [=](const MemoryNode& node, const PropertyName& name) -> std::optional<QByteArray> {
            if (name.second == "getetag") {
                return '"' + EscapedForXml(password) + '"';
            }
            return name.second == "fileid" ? EscapedForXml(password) : others(node, name);
        };
    });
    Client client(settings, server.Password());
    ASSERT_TRUE(client.SignIn());
    const CloudFile file = client.Entry("a.pdf");
    EXPECT_FALSE(HoldsSecret(file.id.toUtf8()));
    ASSERT_TRUE(client.Preview(file.id, {64, 64})->Succeeds());
    EXPECT_TRUE(WaitUntil([&] { return FilesBelow(settings.cacheFolder).size() == 1; })); // the picture
}

} // namespace

} // namespace Norlis::Test
