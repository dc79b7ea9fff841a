#include "WebDavServer.h"

#include "ServerRecipes.h"

#include <NorlisTestKit/Loopback.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QThread>

#include <array>
#include <stdexcept>

#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Test {

using namespace TestKit;

namespace {

constexpr const char* userName = "norlis";

QString SomePassword()
{
    std::array<quint32, 4> numbers;
    QRandomGenerator::system()->fillRange(numbers.data(), numbers.size());
    return QByteArray(reinterpret_cast<const char*>(numbers.data()), sizeof(numbers)).toHex();
}

QString StateTemplate(ServerKind kind)
{
    const QString memory = QStringLiteral("/dev/shm");
    // chezdav keeps properties in extended attributes, which files in memory have since Linux 6.6 only.
    const bool isForMemory = kind != ServerKind::Chezdav && QFileInfo(memory).isWritable();
    return (isForMemory ? memory : QDir::tempPath()) + "/norlis-server-";
}

} // namespace

const std::vector<ServerKind>& AllServerKinds()
{
    static const std::vector<ServerKind> kinds = {ServerKind::Apache,  ServerKind::Nginx,     ServerKind::Lighttpd,
                                                  ServerKind::Rclone,  ServerKind::Sabre,     ServerKind::Tomcat,
                                                  ServerKind::Nephele, ServerKind::NpmWebdav, ServerKind::ApacheDigest,
                                                  ServerKind::Go,      ServerKind::Chezdav};
    return kinds;
}

std::vector<ServerKind> TestedServerKinds()
{
    const std::vector<ServerKind>& all = AllServerKinds();
    return qEnvironmentVariableIsSet("NORLIS_ALL_SERVERS") ? all : std::vector(all.begin(), all.begin() + 5);
}

bool TakesOnlyDigests(ServerKind kind)
{
    return kind == ServerKind::ApacheDigest || kind == ServerKind::Chezdav;
}

std::string NameOf(ServerKind kind)
{
    static constexpr std::array<const char*, 11> names = {"Apache",    "Nginx",        "Lighttpd", "Rclone",
                                                          "Sabre",     "ApacheDigest", "Tomcat",   "Nephele",
                                                          "NpmWebdav", "Go",           "Chezdav"};
    return names.at(static_cast<std::size_t>(kind));
}

WebDavServer::WebDavServer(ServerKind kind, const QString& documents)
    : kind(kind),
      state(StateTemplate(kind)),
      documents(documents.isEmpty() ? state.filePath("documents") : QDir(documents).absolutePath()),
      password(SomePassword())
{
    if (!state.isValid() || !QDir().mkpath(this->documents)) {
        throw std::runtime_error("No folder for a server");
    }
    LetEverybodyThrough(QDir::tempPath());
    LetEverybodyThrough(state.path());
    GiveToServer(kind, this->documents);

    // Somebody else may take the port before the server does.
    for (int attempt = 0; attempt < 3; ++attempt) {
        port = FreePort();
        if (TryToStart()) {
            return;
        }
    }
    throw std::runtime_error(NameOf(kind) + " does not start: " + Log().toStdString());
}

WebDavServer::~WebDavServer() = default;

ServerKind WebDavServer::Kind() const
{
    return kind;
}

quint16 WebDavServer::Port() const
{
    return port;
}

QString WebDavServer::User() const
{
    return userName;
}

QString WebDavServer::Password() const
{
    return password;
}

QString WebDavServer::Folder() const
{
    return documents;
}

QString WebDavServer::MakeCollection(const QString& name) const
{
    const QString path = documents + '/' + name;
    if (!QDir().mkpath(path)) {
        throw std::runtime_error("No folder " + path.toStdString());
    }
    GiveToServer(kind, path);
    return path;
}

QUrl WebDavServer::Address(const QString& collection) const
{
    QUrl address;
    address.setScheme("http");
    address.setUserName(userName);
    address.setHost("127.0.0.1");
    address.setPort(port);
    address.setPath(collection.isEmpty() ? "/" : '/' + collection + '/', QUrl::DecodedMode);
    return address;
}

bool WebDavServer::IsRunning() const
{
    return process && process->IsRunning();
}

void WebDavServer::Stop()
{
    process.reset();
}

void WebDavServer::Start()
{
    if (!TryToStart()) {
        throw std::runtime_error(NameOf(kind) + " does not start again: " + Log().toStdString());
    }
}

bool WebDavServer::TryToStart()
{
    process.reset();
    const ProgramStart start = Prepare(kind, {state.path(), documents, userName, password, port});
    process = std::make_unique<ServerProcess>(start, state.filePath("output.log"));
    const QDeadlineTimer deadline(60'000);
    while (!deadline.hasExpired() && process->IsRunning()) {
        if (Answers()) {
            return true;
        }
        QThread::msleep(2); // servers do not tell when they begin to listen
    }
    process.reset();
    return false;
}

bool WebDavServer::Answers() const
{
    // With the password, so that nobody else's server is taken for this one.
    const QByteArray answer = Exchange(
        port, "PROPFIND / HTTP/1.1\r\nHost: 127.0.0.1\r\nDepth: 0\r\nConnection: close\r\nContent-Length: 0\r\n"
              "Authorization: " +
                  BasicAuthorization(userName, password.toUtf8()) + "\r\n\r\n");
    return answer.startsWith("HTTP/1.1 207") ||
           (TakesOnlyDigests(kind) && answer.startsWith("HTTP/1.1 401") && answer.contains("Digest realm="));
}

QByteArray WebDavServer::Log() const
{
    QByteArray text;
    for (const QString& path : LogFiles()) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly)) {
            text += file.readAll();
        }
    }
    return text;
}

void WebDavServer::ForgetLog()
{
    for (const QString& path : LogFiles()) {
        QFile::resize(path, 0);
    }
}

QStringList WebDavServer::LogFiles() const
{
    QStringList paths;
    for (const QString& name : QDir(state.path()).entryList({"*.log"}, QDir::Files)) {
        paths << state.filePath(name);
    }
    return paths;
}

} // namespace Norlis::Test
