#pragma once

#include "ListState.h"
#include "SessionContext.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace Norlis::Host {

/// The session's removals of documents from the cloud. Each ends in DocumentRemoved or Failed, unless it is taken back
/// in time.
///
/// Only the version is removed that the list showed when it was asked for.
class SessionRemovals : public QObject {
public:
    SessionRemovals(const SessionContext& context, const ListState& list);

    void Start(const QString& id);

    /// See CloudSession::RemoveLater.
    void StartLater(const QStringList& ids, std::chrono::milliseconds delay);
    void Undo(const QStringList& ids);
    bool IsPending(const QString& id) const;
    bool IsAnyPending() const;

    /// See CloudSession::PrepareToClose.
    void Settle(std::chrono::milliseconds longest);

    /// Goes on with those that wait for the service.
    /// \param wasAway since they broke off
    void Resume(bool wasAway);

private:
    using Record = std::shared_ptr<PDF::FileInfo>;

    /// A document that views show no longer.
    struct Pending {
        CloudFacts seen;  ///< what the user has decided to remove
        quint64 turn = 0; ///< of several times, if it was taken back in between
        bool isSent = false;
        bool isWaiting = false; ///< for the service, and then to be sent
        int breaks = 0;         ///< that the service was there for
    };

    /// Sends the removal of a pending document.
    void Send(const QString& id, quint64 turn);

    /// Unless the document has another version by now than the one that was seen.
    void Request(const QString& id, const std::optional<CloudFacts>& seen);
    void RequestNow(const QString& id, const std::optional<CloudFacts>& seen);

    // Both emit as the last thing that they do, so the session may be gone afterwards.

    void Refuse(const QString& id, const QString& name, const QString& reason, const QString& advice,
                Social::OAuth2::FailureKind kind);
    void EndWithSuccess(const QString& id);

    /// Has views show the document of that id again, if it is pending. False when the session is gone.
    bool Show(const QString& id);
    void TellWhenSettled();

    /// Keeps a pending removal, which failed for that reason, until the service is there again. False if it has to end.
    bool Wait(const QString& id, Social::OAuth2::FailureKind reason);

    void OnFinished(const Record& record);
    void OnError(const std::shared_ptr<const PDF::FileInfo>& record, const QString& message);

    const SessionContext context;
    const ListState list;

    /// The records whose removal was requested. The cloud manager also removes, without being asked, what a failed
    /// upload may have left behind; nobody wants to hear of that.
    QHash<const PDF::FileInfo*, Record> requested;
    QHash<QString, Pending> pending; ///< by id
    QTimer longestWait;
    quint64 lastTurn = 0;
    bool isSettling = false;
    Lifetime lifetime;
};

} // namespace Norlis::Host
