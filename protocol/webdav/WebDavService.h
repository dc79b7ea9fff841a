#pragma once

#include "DocumentOperations.h"
#include "Operation.h"
#include "WebDavSession.h"
#include <protocol/preview/PreviewQueue.h>
#include <protocol/service/CloudService.h>
#include <protocol/service/QuotaRequests.h>
#include <protocol/service/ServiceKind.h>
#include <protocol/streams/DiskFlush.h>

#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>

#include <deque>
#include <map>
#include <set>

namespace Norlis::Social {

/// A collection on a WebDAV server as a cloud (RFC 4918): its direct members are the documents.
class WebDavService : public CloudService, private PreviewSource {
public:
    /// \param programName sent to the server as the user agent
    WebDavService(const OAuth2::AuthInfo& authInfo, const std::string& programName, const Listener& listener);
    ~WebDavService() override;

    void Start(qint64 id, const Request::Any& request) override;
    void Cancel(qint64 id) override;

    /// Deletes what cancelled transfers have left on the server, as far as that takes a moment only. The next sign-in
    /// does the rest.
    void Shutdown(std::function<void()> done) override;

    static ServiceKind Kind();

private:
    struct Active {
        std::shared_ptr<WebDavSession> session;
        std::unique_ptr<Operation> operation;
        bool isTransfer = false;
        bool isGivenUp = false;
        bool isSettling = false; ///< a transfer whose bytes are through
    };

    void Begin(qint64 id, const Request::SignIn& request);
    void Begin(qint64 id, const Request::SignOut& request);
    void Begin(qint64 id, const Request::UserName& request);
    void Begin(qint64 id, const Request::UserPage& request);
    void Begin(qint64 id, const Request::UserPictureAddress& request);
    void Begin(qint64 id, const Request::UserPicture& request);
    void Begin(qint64 id, const Request::Info& request);
    void Begin(qint64 id, const Request::List& request);
    void Begin(qint64 id, const Request::Change& request);
    void Begin(qint64 id, const Request::Download& request);
    void Begin(qint64 id, const Request::Upload& request);
    void Begin(qint64 id, const Request::Remove& request);
    void Begin(qint64 id, const Request::CopyMoved& request);
    void Begin(qint64 id, const Request::AcceptVersion& request);
    void Begin(qint64 id, const Request::Quota& request);
    void Begin(qint64 id, const Request::Capabilities& request);
    void Begin(qint64 id, const Request::Preview& request);
    void Begin(qint64 id, const Request::LocalPreview& request);

    std::shared_ptr<WebDavSession> NewSession(const QString& token);

    /// The server no longer accepts a session's password. Returns whether that ends the current sign-in: about a newer
    /// one it says nothing.
    bool EndSession(const std::shared_ptr<WebDavSession>& refused);

    /// To be called with a session that may have ended. It is let go of when nothing of it is under way, and only from
    /// the event loop, since it may be the caller. A preview that is being fetched keeps it a little longer.
    void Retire(const std::shared_ptr<WebDavSession>& ended);

    /// Destroys ended sessions that are idle, and completes the shutdown when nothing else is under way.
    void CleanUp();

    /// What an operation calls at its end.
    Operation::Finish Finisher(qint64 id);
    void OnFinished(qint64 id, Reply&& reply);
    void Run(qint64 id, std::unique_ptr<Operation> operation);
    void RunTransfer(qint64 id, std::unique_ptr<Operation> operation);
    void StartNextTransfers();

    /// The bytes of a transfer are through. What remains of it waits for others, which may begin now.
    void Settle(qint64 id);
    void FindQuota(const std::function<void(Reply)>& found);
    std::unique_ptr<Fetch> FetchForPreview(const PreviewSubject& subject, const QSize& box, Done done) override;

    const OAuth2::AuthInfo authInfo;
    const QString user;
    const QByteArray programName;
    const Listener listener;
    VersionMemory versions;
    QTemporaryDir previewFolder; ///< documents that are rendered
    QThreadPool pool;            ///< disk and hashes of transfers
    DiskFlush disk{pool};
    QTimer cleanUpTimer; ///< started by sessions, which are destroyed first
    QTimer shutdownTimer;
    std::function<void()> onShutDown;       ///< set once the shutdown has begun
    std::shared_ptr<WebDavSession> session; ///< null while nobody is signed in
    int signOuts = 0;
    std::set<std::shared_ptr<WebDavSession>> endedSessions; ///< of which something may still be under way
    PreviewQueue previews;
    std::map<qint64, Active> active; ///< operations, by request
    std::deque<qint64> waitingTransfers;
    int runningTransfers = 0;
    int settlingTransfers = 0;
    std::unique_ptr<QuotaOperation> quota; ///< under way; null otherwise
    QuotaRequests quotas;
};

} // namespace Norlis::Social
