#include "FaultServer.h"

#include "FaultConnection.h"
#include "Loopback.h"

#include <QRandomGenerator>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>

#include <algorithm>
#include <stdexcept>

namespace Norlis::TestKit {

namespace {

constexpr const char* collection = "/documents";
constexpr int maxBodyInLog = 64 * 1024;

/// Makes sockets that encrypt when there is a certificate.
class Listener : public QTcpServer {
public:
    explicit Listener(const std::optional<ServerCertificate>& certificate) : certificate(certificate) {}

private:
    void incomingConnection(qintptr descriptor) override
    {
        auto* const socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        if (certificate) {
            socket->setLocalCertificate(QSslCertificate(certificate->certificate));
            socket->setPrivateKey(QSslKey(certificate->key, QSsl::Ec));
            socket->startServerEncryption();
        }
        addPendingConnection(socket);
    }

    const std::optional<ServerCertificate> certificate;
};

} // namespace

class FaultServer::Handler : public RequestHandler {
public:
    explicit Handler(FaultServer* server) : server(server) {}

    std::size_t OnHead(const ServerRequest& request, int connection) override
    {
        const std::lock_guard guard(server->mutex);
        server->log.push_back({request.method, request.target, request.headers, {}, 0, false, connection, 0});
        return server->log.size() - 1 + server->forgotten;
    }

    void OnBody(std::size_t entry, const ServerRequest& request, bool isComplete) override
    {
        server->Note(entry, [&](SeenRequest& seen) {
            seen.bodyBytes = request.body.size();
            seen.isComplete = isComplete;
            seen.body = request.body.left(maxBodyInLog);
        });
    }

    std::optional<Misbehaviour> Claim(const ServerRequest& request) override
    {
        const std::lock_guard guard(server->mutex);
        return server->faults.Claim(request.method, request.target);
    }

    ServerResponse Do(std::size_t entry, const ServerRequest& request) override
    {
        const ServerResponse answer = server->Do(request);
        server->Note(entry, [&](SeenRequest& seen) { seen.status = answer.status; });
        return answer;
    }

private:
    FaultServer* const server;
};

FaultServer::FaultServer() : FaultServer(std::nullopt) {}

FaultServer::FaultServer(const ServerCertificate& certificate) : FaultServer(std::optional(certificate)) {}

FaultServer::FaultServer(std::optional<ServerCertificate> certificate)
    : port(FreePort()),
      certificate(std::move(certificate))
{
    tree.MakeCollection(collection);
    std::array<quint32, 4> numbers;
    QRandomGenerator::system()->fillRange(numbers.data(), numbers.size());
    password = canary + QByteArray(reinterpret_cast<const char*>(numbers.data()), sizeof(numbers)).toHex();
    handler = std::make_unique<Handler>(this);
    context.moveToThread(&thread);
    thread.start();
    Start();
}

FaultServer::~FaultServer()
{
    Stop();
    thread.quit();
    thread.wait();
}

quint16 FaultServer::Port() const
{
    return port;
}

QString FaultServer::User() const
{
    return "norlis";
}

QString FaultServer::Password() const
{
    const std::lock_guard guard(mutex);
    return QString::fromUtf8(password);
}

void FaultServer::SetPassword(const QString& newPassword)
{
    const std::lock_guard guard(mutex);
    password = newPassword.toUtf8();
}

QByteArray FaultServer::Origin() const
{
    return (certificate ? "https" : "http") + QByteArray("://127.0.0.1:") + QByteArray::number(port);
}

QUrl FaultServer::Address() const
{
    QUrl address(QString::fromLatin1(Origin() + CollectionPath()));
    address.setUserName(User());
    return address;
}

QByteArray FaultServer::CollectionPath() const
{
    return QByteArray(collection) + '/';
}

void FaultServer::Put(const QString& name, const QByteArray& content)
{
    const std::lock_guard guard(mutex);
    tree.Put(PathOf(name), content);
}

std::optional<QByteArray> FaultServer::Get(const QString& name) const
{
    const std::lock_guard guard(mutex);
    const MemoryNode* node = tree.Find(PathOf(name));
    return node == nullptr ? std::nullopt : std::optional(node->content);
}

void FaultServer::Remove(const QString& name)
{
    const std::lock_guard guard(mutex);
    tree.Remove(PathOf(name));
}

QStringList FaultServer::Names() const
{
    const std::lock_guard guard(mutex);
    return tree.NamesIn(DecodedPath(CollectionPath()));
}

void FaultServer::With(const std::function<void(MemoryTree&)>& action)
{
    const std::lock_guard guard(mutex);
    action(tree);
}

void FaultServer::Misbehave(const When& when, const Misbehaviour& misbehaviour)
{
    const std::lock_guard guard(mutex);
    faults.Add(when, misbehaviour);
}

void FaultServer::BehaveAgain()
{
    const std::lock_guard guard(mutex);
    faults.Clear();
}

std::vector<SeenRequest> FaultServer::Requests() const
{
    const std::lock_guard guard(mutex);
    return log;
}

std::vector<SeenRequest> FaultServer::Requests(const QByteArray& method) const
{
    std::vector<SeenRequest> requests = Requests();
    requests.erase(std::remove_if(requests.begin(), requests.end(),
                                  [&](const SeenRequest& request) { return request.method != method; }),
                   requests.end());
    return requests;
}

int FaultServer::Count(const QByteArray& method) const
{
    const std::lock_guard guard(mutex);
    return static_cast<int>(
        std::count_if(log.begin(), log.end(), [&](const SeenRequest& request) { return request.method == method; }));
}

int FaultServer::Connections() const
{
    const std::lock_guard guard(mutex);
    return connections;
}

int FaultServer::OpenConnections() const
{
    int count = 0;
    OnThread([&] {
        const auto sockets = listener ? listener->findChildren<QTcpSocket*>() : QList<QTcpSocket*>();
        for (const auto* socket : sockets) {
            count += socket->state() == QAbstractSocket::ConnectedState ? 1 : 0;
        }
    });
    return count;
}

void FaultServer::ForgetRequests()
{
    const std::lock_guard guard(mutex);
    forgotten += log.size();
    log.clear();
}

void FaultServer::Stop()
{
    OnThread([this] { listener.reset(); });
}

void FaultServer::Start()
{
    OnThread([this] {
        auto server = std::make_unique<Listener>(certificate);
        QObject::connect(server.get(), &QTcpServer::newConnection, server.get(), [this, server = server.get()] {
            while (QTcpSocket* socket = server->nextPendingConnection()) {
                const std::lock_guard guard(mutex);
                new FaultConnection(socket, ++connections, handler.get(), server);
            }
        });
        if (server->listen(QHostAddress::LocalHost, port)) {
            listener = std::move(server);
        }
    });
    if (!listener) {
        throw std::runtime_error("The port is in use");
    }
}

void FaultServer::OnThread(const std::function<void()>& action) const
{
    QMetaObject::invokeMethod(&context, action, Qt::BlockingQueuedConnection);
}

ServerResponse FaultServer::Serve(const ServerRequest& request)
{
    return tree.Answer(request);
}

bool FaultServer::IsPublic(const ServerRequest&) const
{
    return false;
}

ServerResponse FaultServer::Do(const ServerRequest& request)
{
    const std::lock_guard guard(mutex);
    if (!IsPublic(request) && !IsAllowed(request)) {
        return {401, {{"WWW-Authenticate", "Basic realm=\"Norlis\", charset=\"UTF-8\""}}, {}};
    }
    return Serve(request);
}

bool FaultServer::IsAllowed(const ServerRequest& request) const
{
    const QByteArray authorization = request.headers.Value("Authorization");
    return password.isEmpty() || authorization == BasicAuthorization(User().toUtf8(), password) ||
           authorization == "Bearer " + password;
}

void FaultServer::Note(std::size_t entry, const std::function<void(SeenRequest&)>& change)
{
    const std::lock_guard guard(mutex);
    if (entry >= forgotten) {
        change(log[entry - forgotten]);
    }
}

QByteArray FaultServer::PathOf(const QString& name) const
{
    return CollectionPath() + name.toUtf8();
}

} // namespace Norlis::TestKit
