#include "Loopback.h"

#include <QHostAddress>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>

#include <stdexcept>

namespace Norlis::TestKit {

quint16 FreePort()
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        const auto port = static_cast<quint16>(QRandomGenerator::system()->bounded(20'000, 32'000));
        QTcpServer probe;
        if (probe.listen(QHostAddress::LocalHost, port)) {
            return port;
        }
    }
    throw std::runtime_error("There is no free port");
}

QByteArray Exchange(quint16 port, const QByteArray& request, int timeout)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    if (!socket.waitForConnected(timeout)) {
        return {};
    }
    socket.write(request);
    QByteArray answer;
    while (socket.waitForReadyRead(timeout)) {
        answer += socket.readAll();
    }
    return answer + socket.readAll();
}

QByteArray BasicAuthorization(const QByteArray& user, const QByteArray& password)
{
    return "Basic " + (user + ':' + password).toBase64();
}

} // namespace Norlis::TestKit
