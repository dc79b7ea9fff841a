#include "WebDavServer.h"

#include <NorlisTestKit/Loopback.h>

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace Norlis::Test {

using namespace TestKit;

using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::vector<ServerKind> KindsWithBasicAuthentication()
{
    std::vector<ServerKind> kinds = TestedServerKinds();
    kinds.erase(std::remove_if(kinds.begin(), kinds.end(), TakesOnlyDigests), kinds.end());
    return kinds;
}

} // namespace

class WebDavServerTest : public testing::TestWithParam<ServerKind> {
protected:
    std::string Ask(const QByteArray& method, const QByteArray& target, const QByteArray& headers = {},
                    const QByteArray& body = {}) const
    {
        return Exchange(server.Port(),
                        method + ' ' + target + " HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(server.Port()) +
                            "\r\nConnection: close\r\nAuthorization: " +
                            BasicAuthorization("norlis", server.Password().toUtf8()) +
                            "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body)
            .toStdString();
    }

    WebDavServer server{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Kinds, WebDavServerTest, testing::ValuesIn(KindsWithBasicAuthentication()),
                         [](const auto& info) { return NameOf(info.param); });

TEST_P(WebDavServerTest, WhatIsSentIsInTheFolderAndWhatIsThereIsListed)
{
    const QString folder = server.MakeCollection("my documents");
    EXPECT_THAT(Ask("PUT", "/my%20documents/a.pdf", {}, "content"), StartsWith("HTTP/1.1 201")) << server.Log().data();
    QFile file(folder + "/a.pdf");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "content");
    EXPECT_THAT(Ask("MOVE", "/my%20documents/a.pdf",
                    "Overwrite: F\r\nDestination: " +
                        server.Address("my documents").toString(QUrl::RemoveUserInfo | QUrl::FullyEncoded).toUtf8() +
                        "b.pdf\r\n"),
                StartsWith("HTTP/1.1 20"));
    QFile other(folder + "/c.pdf");
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.close();
    const std::string listing = Ask("PROPFIND", "/my%20documents/", "Depth: 1\r\n");
    EXPECT_THAT(listing, HasSubstr("/my%20documents/b.pdf<"));
    EXPECT_THAT(listing, HasSubstr("/my%20documents/c.pdf<"));
}

TEST_P(WebDavServerTest, NobodyIsLetInWithoutThePassword)
{
    const QByteArray request = "PROPFIND / HTTP/1.1\r\nHost: 127.0.0.1\r\nDepth: 0\r\nConnection: close\r\n";
    EXPECT_THAT(Exchange(server.Port(), request + "\r\n").toStdString(), StartsWith("HTTP/1.1 401"));
    const QByteArray wrong = "Authorization: " + BasicAuthorization("norlis", "wrong") + "\r\n\r\n";
    EXPECT_THAT(Exchange(server.Port(), request + wrong).toStdString(), StartsWith("HTTP/1.1 401"));
}

TEST_P(WebDavServerTest, AServerThatIsStoppedComesBackAtTheSameAddress)
{
    const QUrl address = server.Address();
    server.Stop();
    EXPECT_FALSE(server.IsRunning());
    EXPECT_EQ(Ask("PROPFIND", "/", "Depth: 0\r\n"), "");
    server.Start();
    EXPECT_EQ(server.Address(), address);
    EXPECT_THAT(Ask("PROPFIND", "/", "Depth: 0\r\n"), StartsWith("HTTP/1.1 207"));
}

} // namespace Norlis::Test
