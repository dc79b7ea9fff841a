#pragma once

#include "ServerProcess.h"

#include <QString>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>
#include <string>
#include <vector>

namespace Norlis::Test {

enum class ServerKind { Apache, Nginx, Lighttpd, Rclone, Sabre, ApacheDigest, Tomcat, Nephele, NpmWebdav, Go, Chezdav };

const std::vector<ServerKind>& AllServerKinds();

/// Those that tests run against: all of them if the environment has NORLIS_ALL_SERVERS, and otherwise the first five.
std::vector<ServerKind> TestedServerKinds();

/// Whether it takes no Basic authentication.
bool TakesOnlyDigests(ServerKind kind);

/// "Apache", "Nginx" ...
std::string NameOf(ServerKind kind);

/// A real WebDAV server on 127.0.0.1, at a port and with a folder of its own. It has one user, with a
/// random password.
///
/// Lives on one thread, which outlives it. Every failure is a std::runtime_error that holds what the server wrote.
class WebDavServer {
public:
    /// Starts the server and waits until it answers.
    ///
    /// \param documents folder to serve; empty makes one that goes with the server. Apache, started by root, acts as
    ///        the user "nobody", who then becomes the owner of the folder.
    explicit WebDavServer(ServerKind kind, const QString& documents = {});
    ~WebDavServer();

    WebDavServer(const WebDavServer&) = delete;
    WebDavServer& operator=(const WebDavServer&) = delete;

    ServerKind Kind() const;
    quint16 Port() const;
    QString User() const;
    QString Password() const;

    /// The served folder; paths in addresses are relative to it.
    QString Folder() const;

    /// Makes a folder in the served one, in which the server may write. Returns its path.
    QString MakeCollection(const QString& name) const;

    /// Address with the user, without the password, of a folder in the served one; of that itself without a name.
    QUrl Address(const QString& collection = {}) const;

    bool IsRunning() const;

    /// Ends the server and closes its connections.
    void Stop();

    /// Starts it again on the same port and waits until it answers.
    void Start();

    /// What the server has logged since the last ForgetLog, for a test that fails.
    QByteArray Log() const;
    void ForgetLog();

private:
    QStringList LogFiles() const;
    bool Answers() const;
    bool TryToStart();

    const ServerKind kind;
    QTemporaryDir state; ///< in memory if possible, so that a slow disk fails no test
    QString documents;
    QString password;
    quint16 port = 0;
    std::unique_ptr<ServerProcess> process;
};

} // namespace Norlis::Test
