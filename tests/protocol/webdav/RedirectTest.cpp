#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/Loopback.h>

namespace Norlis::Test {

namespace {

using testing::AnyOf;
using testing::HasSubstr;

class RedirectTest : public ServiceTest<> {
protected:
    RedirectTest()
    {
        server.With([](MemoryTree& tree) {
            tree.MakeCollection("/moved");
            tree.Put("/moved/a.pdf", "moved content");
        });
    }

    /// Redirects what is asked of the collection, and of a document of that name in it.
    void Redirect(const QByteArray& address, int status = 302)
    {
        server.BehaveAgain();
        server.Misbehave(When("*", "/documents/").Always(), RedirectsTo(address, status));
    }
};

TEST_F(RedirectTest, PlaceOnTheSameServerIsAskedInTheSameWay)
{
    for (const int status : {301, 302, 307, 308}) {
        for (const QByteArray& address : {QByteArray("/moved/"), server.Origin() + "/moved/", QByteArray("../moved/"),
                                          server.Origin().replace("http:", "HTTP:") + "/moved/"}) {
            Redirect(address, status);
            server.ForgetRequests();
            Client client(settings, server.Password());
            ASSERT_TRUE(client.SignIn()) << status << address.constData();
            const auto requests = server.Requests();
            ASSERT_EQ(requests.size(), 3U); // the second shows how to sign in, the third does it
            for (const int repeated : {1, 2}) {
                EXPECT_EQ(requests[repeated].target, "/moved/");
                EXPECT_EQ(requests[repeated].method, "PROPFIND");
                EXPECT_EQ(requests[repeated].body, requests[0].body);
                for (const char* name : {"Depth", "Content-Type"}) {
                    EXPECT_EQ(requests[repeated].headers.Value(name), requests[0].headers.Value(name));
                }
            }
            EXPECT_FALSE(requests[0].headers.Has("Authorization"));
            EXPECT_TRUE(requests[2].headers.Has("Authorization"));
        }
    }
}

TEST_F(RedirectTest, CollectionIsWhereTheSignInWasSentTo)
{
    Redirect("/moved/", 301);
    Client client(settings, server.Password());
    ASSERT_TRUE(client.SignIn());
    server.ForgetRequests();
    const CloudFile file = client.Entry("a.pdf");
    ASSERT_TRUE(client.Download(file.id, Local("a.pdf"))->Succeeds());
    EXPECT_EQ(ReadFile(Local("a.pdf")), QByteArray("moved content"));
    EXPECT_EQ(client.UserProfile()->Succeeds(), true);
    for (const SeenRequest& request : server.Requests()) {
        EXPECT_THAT(request.target.toStdString(), HasSubstr("/moved/"));
    }
}

TEST_F(RedirectTest, ARemovalIsNotRedirectedToAnotherFolder)
{
    server.Put("a.pdf", "content");
    Client client(settings, server.Password());
    ASSERT_TRUE(client.SignIn());
    const QString id = client.Entry("a.pdf").id;
    server.With([](MemoryTree& tree) { // it is the same version
        tree.Find("/moved/a.pdf")->etag = tree.Find("/documents/a.pdf")->etag;
    });
    server.Misbehave("DELETE", RedirectsTo("/moved/a.pdf", 307));
    EXPECT_TRUE(client.Remove(id)->Fails());
    server.With([](MemoryTree& tree) { EXPECT_NE(tree.Find("/moved/a.pdf"), nullptr); });
    EXPECT_EQ(server.Names(), QStringList("a.pdf"));
}

TEST_F(RedirectTest, AChangeOfADocumentIsNoneOfSomethingElse)
{
    server.Put("a.pdf", "content");
    server.Put("b.pdf", "content");
    Client client(settings, server.Password());
    ASSERT_TRUE(client.SignIn());
    const QString id = client.Entry("b.pdf").id;
    for (const QByteArray& address : {server.CollectionPath(), QByteArray("/"), QByteArray("/documents/a.pdf")}) {
        server.BehaveAgain();
        server.Misbehave("DELETE", RedirectsTo(address));
        server.Misbehave("PUT", RedirectsTo(address, 307));
        client.failures.clear();
        EXPECT_TRUE(client.Remove(id)->Fails());
        EXPECT_EQ(LastReason(client), "The server redirects to something else");
        EXPECT_TRUE(client.Upload(LocalFile("c.pdf", "new"))->Fails());
        EXPECT_EQ(LastReason(client), "The server redirects to something else");
        EXPECT_EQ(server.Names(), (QStringList{"a.pdf", "b.pdf"}));
        EXPECT_EQ(server.Get("a.pdf"), QByteArray("content"));
    }
}

TEST_F(RedirectTest, AnotherPlaceIsNamedAndNotAsked)
{
    FaultServer other;
    other.SetPassword(server.Password());
    const QByteArray port = QByteArray::number(server.Port());
    for (const int status : {301, 302, 303, 307, 308}) {
        for (const QByteArray& origin : {other.Origin(), QByteArray("http://localhost:") + port,
                                         QByteArray("https://127.0.0.1:") + port, QByteArray("http://127.0.0.1")}) {
            Redirect(origin + "/documents/", status);
            Client client(settings, server.Password());
            ASSERT_TRUE(client.Authorize()->Fails());
            if (status != 303) {
                EXPECT_THAT(LastReason(client), HasSubstr("another address: " + origin.toStdString()));
                EXPECT_THAT(LastAdvice(client), HasSubstr("sign in with it"));
            }
        }
    }
    EXPECT_EQ(other.Connections(), 0);
}

TEST_F(RedirectTest, AnotherPlaceIsNotAskedForDocumentsEither)
{
    FaultServer other;
    other.SetPassword(server.Password());
    other.Put("a.pdf", "foreign content");
    server.Put("a.pdf", "content");
    Client client(settings, server.Password());
    ASSERT_TRUE(client.SignIn());
    const QString id = client.Entry("a.pdf").id;
    Redirect(other.Origin() + "/documents/a.pdf");
    EXPECT_TRUE(client.List()->Fails());
    EXPECT_TRUE(client.Info(id)->Fails());
    EXPECT_TRUE(client.Download(id, Local("b.pdf"))->Fails());
    EXPECT_TRUE(client.Remove(id)->Fails());
    EXPECT_TRUE(client.Preview(id, {64, 64})->Fails());
    EXPECT_TRUE(client.Upload(LocalFile("c.pdf", "content"))->Fails());
    EXPECT_EQ(ReadFile(Local("b.pdf")), std::nullopt);
    EXPECT_EQ(client.failures.size(), 6U);
    EXPECT_TRUE(client.Protocol()->loggedIn());
    EXPECT_EQ(other.Connections(), 0);
}

TEST_F(RedirectTest, WhatIsNoWebAddressIsNotFollowed)
{
    for (const QByteArray& address : {QByteArray("file:///etc/passwd"), QByteArray("javascript:alert(1)"),
                                      QByteArray("ftp://127.0.0.1/"), QByteArray("//127.0.0.1:1/documents/"),
                                      QByteArray("http://127.0.0.1:" + QByteArray::number(server.Port()) + "@[::1]/"),
                                      QByteArray("http://[broken/"), QByteArray("\x80\xff\x01")}) {
        Redirect(address);
        server.ForgetRequests();
        Client client(settings, server.Password());
        EXPECT_TRUE(client.Authorize()->Fails()) << address.constData();
        EXPECT_NE(LastReason(client), "");
        EXPECT_LE(server.Requests().size(), 6U); // what is taken for a relative address leads here again
    }
}

TEST_F(RedirectTest, RedirectionWithoutATargetIsSaid)
{
    server.Misbehave("PROPFIND", AnswersWith(302));
    Client client(settings, server.Password());
    ASSERT_TRUE(client.Authorize()->Fails());
    EXPECT_EQ(LastReason(client), "The server redirects without saying where");
}

TEST_F(RedirectTest, AnswerThatIsElsewhereIsNotTakenForTheCollection)
{
    // 303 asks for a GET of another page (RFC 9110, 15.4.4), which would be answered with something readable.
    Redirect("/moved/", 303);
    Client client(settings, server.Password());
    ASSERT_TRUE(client.Authorize()->Fails());
    EXPECT_THAT(LastReason(client), HasSubstr("page"));
    EXPECT_EQ(server.Requests().size(), 1U);
}

TEST_F(RedirectTest, CirclesAreLeft)
{
    server.Misbehave(When("PROPFIND").Always(), RedirectsToItself());
    Client client(settings, server.Password());
    ASSERT_TRUE(client.Authorize()->Fails());
    EXPECT_EQ(LastReason(client), "The server redirects in circles");
    EXPECT_EQ(server.Requests().size(), 6U);
}

TEST_F(RedirectTest, UserInATargetIsNotUsed)
{
    QByteArray address = server.Origin() + "/moved/";
    Redirect(address.replace("http://", "http://somebody:else@"));
    Client client(settings, server.Password());
    ASSERT_TRUE(client.SignIn());
    ASSERT_TRUE(client.List()->Succeeds());
    for (const SeenRequest& request : server.Requests()) {
        EXPECT_THAT(request.headers.Value("Authorization"),
                    AnyOf(QByteArray(), BasicAuthorization("norlis", server.Password().toUtf8())));
    }
    const auto page = client.UserProfile();
    ASSERT_TRUE(page->Succeeds());
    EXPECT_EQ(page->payload.userInfo(), QString());
}

} // namespace

} // namespace Norlis::Test
