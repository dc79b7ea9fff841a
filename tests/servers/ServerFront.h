#pragma once

#include "WebDavServer.h"

namespace Norlis::Test {

/// What people put before their servers.
enum class FrontKind {
    NginxTls,        ///< ends TLS; http to the server
    HaproxyTls,      ///< the same
    NginxGzip,       ///< compresses answers
    NginxRateLimit,  ///< answers 429 when there are more than two requests in a second
    NginxUnbuffered, ///< passes on bodies of requests and answers as they come
    NginxBodyLimit,  ///< takes bodies of up to 1 MiB
    NginxDotFiles,   ///< forbids names with a leading dot
    NginxSubPath,    ///< has the server's root at /cloud/, and leaves answers as they are
    Tinyproxy,       ///< a proxy for the client, with the user and password of the server
    Squid,           ///< the same
};

/// "NginxTls" ...
std::string NameOf(FrontKind kind);

/// A program on 127.0.0.1, at a port of its own, through which clients reach a server.
///
/// Lives on one thread, which outlives it. Every failure is a std::runtime_error that holds what the program wrote.
class ServerFront {
public:
    /// Starts the program and waits until it listens.
    ///
    /// \param certificate certificate and key, PEM; for one that ends TLS
    ServerFront(FrontKind kind, const WebDavServer& behind, const QByteArray& certificate = {});
    ~ServerFront();

    ServerFront(const ServerFront&) = delete;
    ServerFront& operator=(const ServerFront&) = delete;

    quint16 Port() const;

    /// Address, through the front, of what has another address on the server behind it.
    QUrl Address(QUrl addressBehind) const;

    /// What the program has logged, for a test that fails.
    QByteArray Log() const;

private:
    bool Listens() const;

    const FrontKind kind;
    QTemporaryDir state;
    quint16 port = 0;
    std::unique_ptr<ServerProcess> process;
};

} // namespace Norlis::Test
