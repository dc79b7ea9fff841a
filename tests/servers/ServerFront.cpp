#include "ServerFront.h"

#include "ServerRecipes.h"

#include <NorlisTestKit/Loopback.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QTcpSocket>
#include <QThread>

#include <array>
#include <stdexcept>

namespace Norlis::Test {

using namespace TestKit;

std::string NameOf(FrontKind kind)
{
    static constexpr std::array<const char*, 10> names = {
        "NginxTls",       "HaproxyTls",    "NginxGzip",    "NginxRateLimit", "NginxUnbuffered",
        "NginxBodyLimit", "NginxDotFiles", "NginxSubPath", "Tinyproxy",      "Squid"};
    return names.at(static_cast<std::size_t>(kind));
}

ServerFront::ServerFront(FrontKind kind, const WebDavServer& behind, const QByteArray& certificate) : kind(kind)
{
    QFile file(state.filePath("certificate.pem"));
    if (!file.open(QIODevice::WriteOnly) || file.write(certificate) != certificate.size()) {
        throw std::runtime_error("No folder for a server");
    }
    file.close();
    LetEverybodyThrough(QDir::tempPath());
    LetEverybodyThrough(state.path()); // squid's helper asks who signs in as a user of its own
    // Somebody else may take the port before the program does.
    for (int attempt = 0; attempt < 3; ++attempt) {
        port = FreePort();
        const ServerPlan plan{state.path(), {}, behind.User(), behind.Password(), port, behind.Port()};
        process = std::make_unique<ServerProcess>(Prepare(kind, plan), state.filePath("output.log"));
        const QDeadlineTimer deadline(20'000);
        while (!deadline.hasExpired() && process->IsRunning()) {
            if (Listens()) {
                return;
            }
            QThread::msleep(2); // programs do not tell when they begin to listen
        }
    }
    throw std::runtime_error(NameOf(kind) + " does not start: " + Log().toStdString());
}

ServerFront::~ServerFront() = default;

quint16 ServerFront::Port() const
{
    return port;
}

QUrl ServerFront::Address(QUrl addressBehind) const
{
    const bool isSecure = kind == FrontKind::NginxTls || kind == FrontKind::HaproxyTls;
    addressBehind.setScheme(isSecure ? "https" : "http");
    addressBehind.setPort(port);
    if (kind == FrontKind::NginxSubPath) {
        addressBehind.setPath("/cloud" + addressBehind.path(QUrl::FullyDecoded), QUrl::DecodedMode);
    }
    return addressBehind;
}

bool ServerFront::Listens() const
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    return socket.waitForConnected();
}

QByteArray ServerFront::Log() const
{
    QByteArray text;
    for (const QString& name : QDir(state.path()).entryList({"*.log"}, QDir::Files)) {
        QFile file(state.filePath(name));
        text += file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    return text;
}

} // namespace Norlis::Test
