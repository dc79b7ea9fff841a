#include <NorlisTestKit/Loopback.h>
#include <NorlisTestKit/NextcloudLikeServer.h>

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class NextcloudLikeServerTest : public testing::Test {
protected:
    std::string Ask(const QByteArray& method, const QByteArray& target, const QByteArray& headers = {},
                    const QByteArray& body = {}) const
    {
        return Exchange(server.Port(),
                        method + ' ' + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\nAuthorization: " +
                            BasicAuthorization("norlis", server.Password().toUtf8()) +
                            "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body)
            .toStdString();
    }

    std::string Property(const QByteArray& target, const QByteArray& element) const
    {
        return Ask(
            "PROPFIND", target, "Depth: 0\r\n",
            "<propfind xmlns='DAV:' xmlns:oc='http://owncloud.org/ns' xmlns:nc='http://nextcloud.org/ns'><prop>" +
                element + "</prop></propfind>");
    }

    NextcloudLikeServer server;
    const QByteArray documents = server.CollectionPath();
    const QByteArray destination = "Destination: " + server.Origin() + documents + "b.pdf\r\n";
};

TEST_F(NextcloudLikeServerTest, AnUploadIsHashedAndIdentified)
{
    const std::string answer =
        Ask("PUT", documents + "a.pdf", "X-Hash: md5\r\nX-OC-Mtime: 1600000000\r\nOC-Checksum: MD5:never compared\r\n",
            "content");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 201"));
    const QByteArray md5 = QCryptographicHash::hash("content", QCryptographicHash::Md5).toHex();
    EXPECT_THAT(answer, HasSubstr("X-Hash-MD5: " + md5.toStdString() + "\r\n"));
    EXPECT_THAT(answer, HasSubstr("X-OC-Mtime: accepted\r\n"));
    EXPECT_THAT(answer, HasSubstr("OC-ETag: \"e"));
    EXPECT_THAT(answer, HasSubstr("OC-FileId: 0000"));
    EXPECT_THAT(Property(documents + "a.pdf", "<oc:checksums/>"), HasSubstr(">MD5:never compared</oc:checksum>"));
    EXPECT_THAT(Property(documents + "a.pdf", "<getlastmodified/>"), HasSubstr("Sun, 13 Sep 2020 12:26:40 GMT"));
}

TEST_F(NextcloudLikeServerTest, AnOverwritingUploadKeepsTheFileIdAndAMoveDoesNot)
{
    Ask("PUT", documents + "b.pdf", "OC-Checksum: MD5:old\r\n", "old");
    const qint64 id = server.FileId("b.pdf");
    Ask("PUT", documents + "b.pdf", {}, "new");
    EXPECT_EQ(server.FileId("b.pdf"), id);
    EXPECT_THAT(Property(documents + "b.pdf", "<oc:checksums/>"), Not(HasSubstr("MD5:old")));
    Ask("PUT", documents + "a.pdf", {}, "other");
    EXPECT_THAT(Ask("MOVE", documents + "a.pdf", destination), HasSubstr("OC-FileId: "));
    EXPECT_NE(server.FileId("b.pdf"), id);
}

TEST_F(NextcloudLikeServerTest, DocumentsHaveThePropertiesOfTheDialect)
{
    server.Put("a.pdf", "content");
    server.SetPermissions("a.pdf", "SGR");
    server.SetPreview("a.pdf", "a picture");
    server.SetQuota(5, -2);
    const std::string listing =
        Property(documents + "a.pdf", "<oc:fileid/><oc:id/><oc:permissions/><oc:size/><nc:has-preview/>");
    EXPECT_THAT(listing, HasSubstr(">" + std::to_string(server.FileId("a.pdf")) + "</x:fileid>"));
    EXPECT_THAT(listing, HasSubstr("ocnorlis</x:id>"));
    EXPECT_THAT(listing, HasSubstr(">SGR</x:permissions>"));
    EXPECT_THAT(listing, HasSubstr(">true</x:has-preview>"));
    EXPECT_THAT(Property(documents, "<quota-available-bytes/>"), HasSubstr(">-2</x:quota-available-bytes>"));
}

TEST_F(NextcloudLikeServerTest, ErrorsCarryAMessage)
{
    const std::string answer = Ask("DELETE", documents + "none.pdf");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 404"));
    EXPECT_THAT(answer, HasSubstr("<s:exception>Sabre\\DAV\\Exception\\NotFound</s:exception><s:message>DELETE of "));
}

TEST_F(NextcloudLikeServerTest, PicturesAreSentWhereThereAreSome)
{
    server.Put("a.pdf", "content");
    const QByteArray id = QByteArray::number(server.FileId("a.pdf"));
    const QByteArray target = "/index.php/core/preview?fileId=" + id + "&x=100&y=100&a=1";
    EXPECT_THAT(Ask("GET", target + "&forceIcon=0"), StartsWith("HTTP/1.1 404"));
    EXPECT_THAT(Ask("GET", target), EndsWith("an icon"));
    server.SetPreview("a.pdf", "a picture");
    EXPECT_THAT(Ask("GET", target + "&forceIcon=0"), EndsWith("a picture"));
    EXPECT_THAT(Ask("GET", "/index.php/core/preview?x=0&fileId=" + id), StartsWith("HTTP/1.1 400"));
    EXPECT_THAT(Ask("GET", "/index.php/avatar/u-4711/64"), StartsWith("HTTP/1.1 404"));
    server.SetAvatar("a face");
    EXPECT_THAT(Ask("GET", "/index.php/avatar/u-4711/64"), EndsWith("a face"));
}

TEST_F(NextcloudLikeServerTest, ChunksBecomeADocument)
{
    const QByteArray folder = "/remote.php/dav/uploads/u-4711/1234";
    EXPECT_THAT(Ask("MKCOL", folder), StartsWith("HTTP/1.1 400")); // without a destination
    EXPECT_THAT(Ask("MKCOL", folder, destination), StartsWith("HTTP/1.1 201"));
    Ask("PUT", folder + "/00002", destination, "world");
    Ask("PUT", folder + "/00001", destination, "hello ");
    EXPECT_THAT(Ask("MOVE", folder + "/.file", destination + "OC-Total-Length: 12\r\n"), StartsWith("HTTP/1.1 400"));
    EXPECT_THAT(Ask("MOVE", folder + "/.file", destination + "OC-Total-Length: 11\r\nX-OC-Mtime: 1600000000\r\n"),
                HasSubstr("X-OC-Mtime: accepted"));
    EXPECT_EQ(server.Get("b.pdf"), QByteArray("hello world"));
    EXPECT_THAT(Ask("PROPFIND", folder, "Depth: 0\r\n"), StartsWith("HTTP/1.1 404"));
}

TEST_F(NextcloudLikeServerTest, TheInterfaceBesideWebDavAnswers)
{
    const QByteArray header = "OCS-APIRequest: true\r\n";
    EXPECT_THAT(Ask("GET", "/ocs/v1.php/cloud/user?format=json"), StartsWith("HTTP/1.1 412"));
    EXPECT_THAT(Ask("GET", "/ocs/v1.php/cloud/user?format=json", header),
                testing::AllOf(HasSubstr("\"statuscode\":100"), HasSubstr("\"id\":\"u-4711\"")));
    EXPECT_THAT(Ask("GET", "/ocs/v2.php/cloud/capabilities?format=json", header),
                testing::AllOf(HasSubstr("\"statuscode\":200"), HasSubstr("\"chunking\":\"1.0\"")));
    EXPECT_THAT(Ask("DELETE", "/ocs/v2.php/core/apppassword", header), StartsWith("HTTP/1.1 200"));
}

TEST_F(NextcloudLikeServerTest, ABrowserSignsAProgramInOnce)
{
    const QByteArray begin = "POST /index.php/login/v2 HTTP/1.1\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
    const QByteArray answer = Exchange(server.Port(), begin);
    const auto json = QJsonDocument::fromJson(answer.mid(answer.indexOf("\r\n\r\n"))).object();
    const QByteArray token = "token=" + json["poll"]["token"].toString().toLatin1();
    const auto poll = [&] { return Ask("POST", "/index.php/login/v2/poll", {}, token); };
    EXPECT_THAT(poll(), StartsWith("HTTP/1.1 404"));
    server.ApproveSignIn();
    EXPECT_THAT(poll(), HasSubstr("\"appPassword\":\"" + server.Password().toStdString()));
    EXPECT_THAT(poll(), StartsWith("HTTP/1.1 404"));
}

} // namespace Norlis::Test
