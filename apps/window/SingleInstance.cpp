#include "SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QStandardPaths>

#include <stdexcept>

namespace Norlis::Window {

namespace {

constexpr int patience = 5000;      // milliseconds, while the other one starts or is busy
constexpr int shortWait = 50;       // milliseconds; it has just started, or is about to end
constexpr int maxMessage = 1 << 20; // bytes; who sends more is no window

/// In a folder of the user's own, whose path is short enough for a socket.
QString SocketFor(const QString& dataFolder)
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    const QByteArray name = QFileInfo(dataFolder).canonicalFilePath().toUtf8();
    const QByteArray hash = QCryptographicHash::hash(name, QCryptographicHash::Md5).toHex();
    return (runtime.isEmpty() ? QDir::tempPath() : runtime) + "/norlis-documents-" + QString::fromLatin1(hash);
}

QString ReadyFolder(const QString& folder)
{
    if (QFileInfo::exists(folder)) {
        return folder;
    }
    if (!QDir().mkpath(folder)) {
        throw std::runtime_error("The folder " + folder.toStdString() + " cannot be created.");
    }
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return folder;
}

/// Whether the window that listens there has taken the files over.
bool HandOver(const QString& socket, const QStringList& files)
{
    QLocalSocket other;
    other.connectToServer(socket);
    if (!other.waitForConnected(patience)) {
        return false;
    }
    other.write(QJsonDocument(QJsonArray::fromStringList(files)).toJson(QJsonDocument::Compact) + '\n');
    return other.waitForBytesWritten(patience) && other.waitForReadyRead(patience); // its answer is a line
}

} // namespace

SingleInstance::SingleInstance(const QString& dataFolder)
    : lock(ReadyFolder(dataFolder) + "/window.lock"),
      socket(SocketFor(dataFolder))
{
    lock.setStaleLockTime(0); // it is stale when its process is gone, and not after some time
    server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server, &QLocalServer::newConnection, this, &SingleInstance::Receive);
}

bool SingleInstance::IsFirst(const QStringList& files)
{
    QElapsedTimer waited;
    waited.start();
    while (!lock.tryLock(shortWait)) {
        if (lock.error() != QLockFile::LockFailedError) {
            throw std::runtime_error("The data folder cannot be written to.");
        }
        if (HandOver(socket, files)) {
            return false;
        }
        if (waited.hasExpired(patience)) {
            throw std::runtime_error("Another window uses this data folder, and does not answer. End it first.");
        }
    }
    QLocalServer::removeServer(socket); // left by one that was killed
    server.listen(socket);              // without it a second window cannot hand over; this one works
    return true;
}

void SingleInstance::Receive()
{
    const auto connection = server.nextPendingConnection();
    connect(connection, &QLocalSocket::disconnected, connection, &QObject::deleteLater);
    connect(connection, &QLocalSocket::readyRead, this, [this, connection] {
        if (connection->bytesAvailable() > maxMessage) {
            connection->abort();
        }
        if (!connection->canReadLine()) {
            return;
        }
        QStringList files;
        const auto message = QJsonDocument::fromJson(connection->readLine()).array();
        for (const auto& file : message) {
            files.append(file.toString());
        }
        connection->write("taken\n");
        emit Called(files);
    });
}

} // namespace Norlis::Window
