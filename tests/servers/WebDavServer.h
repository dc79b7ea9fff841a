#pragma once

#include "ServerProcess.h"

#include <QString>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>
#include <string>
#include <vector>

namespace Norlis::Test {

enum class ServerKind { Apache, Nginx, Lighttpd, Rclone, Sabre };

/// Of all kinds that there are.
const std::vector<ServerKind>& AllServerKinds();

/// "Apache", "Nginx" ...
std::string NameOf(ServerKind kind);

/// A real WebDAV server on 127.0.0.1, at a port and with a folder of its own. It lets in one user, with a password that
/// is made up for it (Basic authentication).
///
/// Lives on one thread, which outlives it. Every failure is a std::runtime_error that holds what the server wrote.
class WebDavServer {
public:
    /// Starts the server and waits until it answers.
    ///
    /// \param documents folder to serve; empty makes one that goes with the server. Apache, started by root, acts as
    /// the
    ///        user "nobody", to whom the folder is given then.
    explicit WebDavServer(ServerKind kind, const QString& documents = {});
    ~WebDavServer();

    WebDavServer(const WebDavServer&) = delete;
    WebDavServer& operator=(const WebDavServer&) = delete;

    ServerKind Kind() const;
    quint16 Port() const;
    QString User() const;
    QString Password() const;

    /// The served folder. What is in it is served at the paths that it has there.
    QString Folder() const;

    /// Makes a folder in the served one, in which the server may write. Returns its path.
    QString MakeCollection(const QString& name) const;

    /// Address with the user, without the password, of a folder in the served one; of that itself without a name.
    QUrl Address(const QString& collection = {}) const;

    bool IsRunning() const;

    /// Ends the server: nobody listens at the port then, and open connections are closed.
    void Stop();

    /// Starts it again at the same port and waits until it answers.
    void Start();

    /// What the server has written, to show with a test that fails; since the last ForgetLog, if there was one.
    QByteArray Log() const;
    void ForgetLog();

private:
    QStringList LogFiles() const;
    bool Answers() const;
    bool TryToStart();

    const ServerKind kind;
    QTemporaryDir state; ///< in memory where there is room for that: a disk that is slow for a moment fails no test
    QString documents;
    QString password;
    quint16 port = 0;
    std::unique_ptr<ServerProcess> process;
};

} // namespace Norlis::Test
