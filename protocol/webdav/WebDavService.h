#pragma once

#include "Directory.h"
#include "HashKeeper.h"
#include "Operation.h"
#include "Sweeper.h"
#include <protocol/preview/PreviewQueue.h>
#include <protocol/service/CloudService.h>

#include <QTemporaryDir>
#include <QThreadPool>

#include <deque>
#include <map>
#include <set>

namespace Norlis::Social {

/// A collection on a WebDAV server as a cloud (RFC 4918): its direct members are the documents.
class WebDavService : public CloudService, private PreviewSource {
public:
    /// \param programName tells the server who asks
    WebDavService(const OAuth2::AuthInfo& authInfo, const std::string& programName, const Listener& listener);

    /// Waits a moment for the server to delete what transfers have left behind.
    ~WebDavService() override;

    void Start(qint64 id, const Request::Any& request) override;
    void Cancel(qint64 id) override;

    /// Why there cannot be such a service; empty when there can.
    static QString WhyNoService(const OAuth2::AuthInfo& authInfo);

private:
    /// One sign-in, with what goes when it ends. Requests that run by then hold on to it.
    struct Session {
        explicit Session(const std::shared_ptr<WebDavServer>& server);
        bool IsIdle() const;

        const std::shared_ptr<WebDavServer> server;
        Directory directory;
        Sweeper sweeper;
        HashKeeper hashKeeper;
    };
    struct Work {
        std::shared_ptr<Session> session;
        std::unique_ptr<Operation> operation;
        bool isTransfer = false;
        bool isGivenUp = false;
    };

    void Begin(qint64 id, const Request::SignIn& request);
    void Begin(qint64 id, const Request::SignOut& request);
    void Begin(qint64 id, const Request::UserName& request);
    void Begin(qint64 id, const Request::UserPage& request);
    void Begin(qint64 id, const Request::UserPictureAddress& request);
    void Begin(qint64 id, const Request::UserPicture& request);
    void Begin(qint64 id, const Request::Info& request);
    void Begin(qint64 id, const Request::List& request);
    void Begin(qint64 id, const Request::Download& request);
    void Begin(qint64 id, const Request::Upload& request);
    void Begin(qint64 id, const Request::Remove& request);
    void Begin(qint64 id, const Request::Quota& request);
    void Begin(qint64 id, const Request::Capabilities& request);
    void Begin(qint64 id, const Request::Preview& request);

    std::shared_ptr<Session> NewSession(const QString& token);

    /// The server takes a session's password no longer. Whether that ends the present sign-in; of an earlier one it
    /// says nothing.
    bool EndSession(const std::shared_ptr<Session>& refused);

    /// To be called with a session that may be one of the past. It goes when nothing of it is under way any more, and
    /// not before the event loop comes round: it may be what is calling.
    void LetGo(const std::shared_ptr<Session>& left);
    void DropFormer();

    /// What an operation calls at its end.
    Operation::Finish Finisher(qint64 id);
    void OnFinished(qint64 id, Reply&& reply);
    void Run(qint64 id, std::unique_ptr<Operation> operation);
    void RunTransfer(qint64 id, std::unique_ptr<Operation> operation);
    void StartNextTransfers();
    std::unique_ptr<Fetch> FetchForPreview(const PreviewSubject& subject, const QSize& box, Done done) override;
    void Sweep(Session& session, const QList<QByteArray>& names);
    bool IsAtRest() const;

    const OAuth2::AuthInfo authInfo;
    const QString user;
    const QByteArray programName;
    const Listener listener;
    QTemporaryDir previewFolder;      ///< documents that are rendered
    QThreadPool pool;                 ///< disk and hashes of transfers
    std::shared_ptr<Session> session; ///< null while nobody is signed in
    int signOuts = 0;
    std::set<std::shared_ptr<Session>> former; ///< of earlier sign-ins
    QTimer formerTimer;
    PreviewQueue previews;
    std::map<qint64, Work> works;
    std::deque<qint64> waitingTransfers;
    int runningTransfers = 0;
};

} // namespace Norlis::Social
