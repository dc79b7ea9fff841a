#include <tests/support/ServiceTest.h>

#include <NorlisTestKit/NextcloudLikeServer.h>

#include <QBuffer>
#include <QPixmap>

namespace Norlis::Test {

namespace {

QByteArray Png(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    return png;
}

class NextcloudAccountTest : public SignedInServiceTest<NextcloudLikeServer> {
protected:
    /// The name that is shown when the server's user page is this.
    QString NameWith(const Misbehaviour& page)
    {
        server.BehaveAgain();
        server.Misbehave(When("GET", "/cloud/user").Always(), page);
        const auto name = client.UserName();
        EXPECT_TRUE(name->Succeeds()) << LastReason(client);
        return name->payload;
    }

    static Misbehaviour Says(const QByteArray& displayName)
    {
        return AnswersWith(200, {}, R"({"ocs":{"data":{"id":"u","display-name":)" + displayName + "}}}");
    }
};

TEST_F(NextcloudAccountTest, NameIsTheOneThatIsToldToPeople)
{
    const auto name = client.UserName();
    ASSERT_TRUE(name->Succeeds());
    EXPECT_EQ(name->payload, "Zo\u00eb Norlis");
    EXPECT_EQ(server.Requests("GET")[0].headers.Value("OCS-APIRequest"), "true");
}

TEST_F(NextcloudAccountTest, WithoutANameItIsTheOneOfTheSignIn)
{
    for (const Misbehaviour& page :
         {AnswersWith(404), AnswersWith(500), ShowsAPage(200), AnswersWith(200), AnswersWith(200, {}, "{\"ocs\":"),
          AnswersWith(200, {}, "[]"), AnswersWith(200, {}, R"({"ocs":{"data":null}})"),
          AnswersWith(200, {}, QByteArray("[").repeated(100'000)), Says("17"), Says("[\"a\"]"), Says("\"\""),
          Says("\" \\n \"")}) {
        EXPECT_EQ(NameWith(page), "norlis");
    }
}

TEST_F(NextcloudAccountTest, NameIsOneShortLineWithoutControlCharacters)
{
    EXPECT_EQ(NameWith(Says("\"Zo\u00eb\\n\\u001b[31m \u202eNorlis\"")), "Zo\u00eb [31m Norlis");
    EXPECT_LE(NameWith(Says('"' + QByteArray(100'000, 'x') + '"')).size(), 200);
}

TEST_F(NextcloudAccountTest, PictureIsAddressedByTheUsersId)
{
    server.SetAvatar(Png({64, 64}));
    const auto address = client.UserPicAddress();
    ASSERT_TRUE(address->Succeeds());
    EXPECT_EQ(address->payload, server.Origin() + "/index.php/avatar/" + server.UserId() + "/64");
    const auto picture = client.UserPic();
    ASSERT_TRUE(picture->Succeeds());
    EXPECT_EQ(picture->payload.size(), QSize(64, 64));
}

TEST_F(NextcloudAccountTest, NotEverybodyHasAPicture)
{
    const auto picture = client.UserPic();
    EXPECT_TRUE(picture->Succeeds());
    EXPECT_TRUE(picture->payload.isNull());
}

TEST_F(NextcloudAccountTest, WhatIsNoPictureIsNone)
{
    QByteArray huge = Png({64, 64});
    huge.replace(16, 8, QByteArray("\0\0\xff\xff\0\0\xff\xff", 8)); // the size that its head claims
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("x"), QByteArray("<html>Sign in</html>"), Png({64, 64}).left(100), huge,
          Png({5000, 2}), QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8\" height=\"8\"/>"),
          QByteArray("/* XPM */\nstatic char* a[] = {\"1 1 1 1\", \". c red\", \".\"};\n"),
          QByteArray("P1 2 2 1 0 0 1")}) {
        server.SetAvatar(bytes);
        const auto picture = client.UserPic();
        EXPECT_TRUE(picture->Succeeds()) << bytes.left(20).constData();
        EXPECT_TRUE(picture->payload.isNull()) << bytes.left(20).constData();
    }
}

TEST_F(NextcloudAccountTest, PictureThatCannotBeFetchedIsAnError)
{
    server.Misbehave(When("GET", "/avatar/").Always(), AnswersWith(403));
    EXPECT_TRUE(client.UserPic()->Fails());
    EXPECT_EQ(LastFailure(client).what, "Fetching the user's picture");
}

class AccountFaultTest : public SignedInServiceTest<> {};

TEST_F(AccountFaultTest, ServerWithoutUserPagesIsNotAskedForThem)
{
    const auto name = client.UserName();
    const auto address = client.UserPicAddress();
    const auto picture = client.UserPic();
    const auto page = client.UserProfile();
    ASSERT_TRUE(name->Succeeds() && address->Succeeds() && picture->Succeeds() && page->Succeeds());
    EXPECT_EQ(name->payload, "norlis");
    EXPECT_EQ(address->payload, QString());
    EXPECT_TRUE(picture->payload.isNull());
    EXPECT_EQ(page->payload, QUrl(server.Origin() + "/documents/"));
    EXPECT_EQ(server.Requests().size(), 0U);
}

TEST_F(AccountFaultTest, UserOfATokenIsCalledByTheServersName)
{
    settings.serviceUrl.setUserName({});
    Client user(settings, server.Password());
    ASSERT_TRUE(user.SignIn());
    const auto name = user.UserName();
    ASSERT_TRUE(name->Succeeds());
    EXPECT_EQ(name->payload, "127.0.0.1");
}

} // namespace

} // namespace Norlis::Test
