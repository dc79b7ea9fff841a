#pragma once

#include <NorlisTestKit/FaultServer.h>
#include <NorlisTestKit/Loopback.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Norlis::Test {

using namespace TestKit;

/// Talks to the server in plain bytes, so that nothing of what it does is smoothed over.
class FaultServerTest : public testing::Test {
protected:
    QByteArray Request(const QByteArray& method, const QByteArray& target, const QByteArray& headers = {},
                       const QByteArray& body = {}) const
    {
        return method + ' ' + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\nAuthorization: " +
               BasicAuthorization("norlis", server.Password().toUtf8()) +
               "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" + body;
    }

    /// The answer to one request on a connection of its own.
    std::string Ask(const QByteArray& method, const QByteArray& target, const QByteArray& headers = {},
                    const QByteArray& body = {}) const
    {
        return Exchange(server.Port(), Request(method, target, headers + "Connection: close\r\n", body)).toStdString();
    }

    /// What comes within a short while; for answers after which the connection stays.
    std::string AskBriefly(const QByteArray& request) const
    {
        return Exchange(server.Port(), request, 200).toStdString();
    }

    FaultServer server;
};

} // namespace Norlis::Test
