#pragma once

#include <NorlisTestKit/Certificates.h>
#include <NorlisTestKit/Faults.h>
#include <NorlisTestKit/MemoryTree.h>
#include <NorlisTestKit/Misbehaviour.h>

#include <QObject>
#include <QTcpServer>
#include <QThread>
#include <QUrl>

#include <memory>
#include <mutex>
#include <vector>

namespace Norlis::TestKit {

class RequestHandler;

/// A request that a server received.
struct SeenRequest {
    QByteArray method;       ///< "GET"
    QByteArray target;       ///< path and query, percent-encoded
    ServerHeaders headers;   ///< in the order in which they came
    QByteArray body;         ///< up to 64 KiB of it
    qint64 bodyBytes = 0;    ///< all of it
    bool isComplete = false; ///< the whole body has come
    int connection = 0;      ///< number of the connection, from 1
    int status = 0;          ///< of the ordinary answer; 0 when there was none

    /// The target's path, decoded, without a slash at its end.
    QByteArray Path() const
    {
        return DecodedPath(target);
    }
};

/// A WebDAV server in this process, with documents in memory. It behaves well unless it is told otherwise, and keeps a
/// log of the requests.
///
///     FaultServer server;
///     server.Put("report.pdf", "content");
///     server.Misbehave("GET", CutsAfterBytes(3));
///     server.Misbehave(When("PUT").From(2).Times(3), AnswersWith(503));
///
/// HTTP/1.1 over 127.0.0.1 with persistent connections and Basic or bearer authentication, on a thread of its own: it
/// needs no event loop of the test. Its functions may be called on any thread; from inside a misbehaviour, which runs
/// on the server's own, all but Stop, Start and OpenConnections. A derived class calls Stop in its destructor.
class FaultServer {
public:
    /// What every password of such a server begins with: tests search for it where no password may be.
    static constexpr auto canary = "c4n4ry";

    /// Listens at once, on a free port. Throws std::runtime_error when there is none.
    FaultServer();

    /// The same, encrypted (HTTPS); clients have to trust the certificate's authority.
    explicit FaultServer(const ServerCertificate& certificate);
    virtual ~FaultServer();

    FaultServer(const FaultServer&) = delete;
    FaultServer& operator=(const FaultServer&) = delete;

    /// On 127.0.0.1.
    quint16 Port() const;

    /// The only user.
    QString User() const;

    /// The password of the user (RFC 7617), and as good as a bearer token (RFC 6750).
    QString Password() const;

    /// From the next request on. An empty one lets everybody in.
    void SetPassword(const QString& newPassword);

    /// "http://127.0.0.1:1234" or "https://...", without a slash at the end.
    QByteArray Origin() const;

    /// Address, with the user, of the collection that the documents are in.
    virtual QUrl Address() const;

    /// Path of the same: "/documents/"
    virtual QByteArray CollectionPath() const;

    /// Adds or replaces a document in the collection, as another client would.
    void Put(const QString& name, const QByteArray& content);

    /// A document's content; nothing when there is no such document.
    std::optional<QByteArray> Get(const QString& name) const;

    /// Removes a document, if it is there.
    void Remove(const QString& name);

    /// Of all documents in the collection, sorted.
    QStringList Names() const;

    /// Runs something with the tree while no request is being handled.
    void With(const std::function<void(MemoryTree&)>& action);

    /// For the next requests of that kind, which When names by method and by a part of the target.
    void Misbehave(const When& when, const Misbehaviour& misbehaviour);

    /// Removes all faults. Requests that hang already go on hanging.
    void BehaveAgain();

    /// The requests since the start, or since ForgetRequests, in order.
    std::vector<SeenRequest> Requests() const;

    /// Those of one method.
    std::vector<SeenRequest> Requests(const QByteArray& method) const;

    /// How many requests of one method have come.
    int Count(const QByteArray& method) const;
    int Connections() const;     ///< made so far
    int OpenConnections() const; ///< that neither side has closed

    /// Clears the log.
    void ForgetRequests();

    /// Closes all connections and stops listening. Start listens on the same port again, and throws std::runtime_error
    /// when it is in use by then.
    void Stop();

    /// After Stop.
    void Start();

protected:
    /// The ordinary answer to a request, once the user is known. By default that of the tree. Called with the lock
    /// held, on the server's thread.
    virtual ServerResponse Serve(const ServerRequest& request);

    /// Whether a request needs no credentials.
    virtual bool IsPublic(const ServerRequest& request) const;

    mutable MemoryTree tree; ///< guarded
    QByteArray password;     ///< guarded

    /// Encrypted if there is a certificate.
    explicit FaultServer(std::optional<ServerCertificate> certificate);

private:
    class Handler;

    ServerResponse Do(const ServerRequest& request);
    bool IsAllowed(const ServerRequest& request) const;
    void Note(std::size_t entry, const std::function<void(SeenRequest&)>& change);
    QByteArray PathOf(const QString& name) const;

    /// Runs something on the server's thread and waits for it.
    void OnThread(const std::function<void()>& action) const;

    mutable std::mutex mutex;
    Faults<Misbehaviour> faults;  ///< guarded
    std::vector<SeenRequest> log; ///< guarded
    std::size_t forgotten = 0;    ///< guarded; entries that have been cleared
    int connections = 0;          ///< guarded

    const quint16 port;
    const std::optional<ServerCertificate> certificate;
    QThread thread;
    mutable QObject context; ///< lives on the thread, as do the connections
    std::unique_ptr<RequestHandler> handler;
    std::unique_ptr<QTcpServer> listener; ///< touched on the thread only
};

} // namespace Norlis::TestKit
