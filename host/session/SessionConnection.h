#pragma once

#include "NetworkWatch.h"
#include "SessionContext.h"

#include <QDateTime>
#include <QTimer>

#include <functional>

namespace Norlis::Host {

/// Keeps a session signed in: signs in again, or asks for the list again, when the service was away.
class SessionConnection : public QObject {
public:
    /// \param resume goes on with the transfers that wait, when the service answers again; told whether it has been
    ///               away since they broke off
    SessionConnection(const SessionContext& context, std::function<void(bool wasAway)> resume);

    /// See CloudSession::StaySignedIn and SignOut.
    void Start(const QString& token);
    void Stop();

    void TryNow();

    CloudSession::Connection State() const;
    QDateTime NextAttempt() const;

private:
    void OnAnswered();
    void OnFailed(const CloudProblem& problem);
    void OnBroken();

    /// Asks whether the service is there: a picture may come from it, or from the protocol's cache.
    void OnPicture();

    /// Emits, so the session may be gone afterwards.
    void SetState(CloudSession::Connection newState);
    void TryLater();

    const SessionContext context;
    const std::function<void(bool)> resume;
    NetworkWatch network;
    QTimer retry;
    QString token; ///< empty unless the session is to stay signed in
    CloudSession::Connection state = CloudSession::Connection::SignedOut;
    bool isAway = false;         ///< an attempt has failed since the last answer
    int failedAttempts = 0;      ///< of those made by itself, since then
    bool hasSeenPicture = false; ///< since the last of them
    bool isListing = false;      ///< an attempt is under way, by a list
    Lifetime lifetime;
};

} // namespace Norlis::Host
