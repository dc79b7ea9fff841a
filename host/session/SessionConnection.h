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

    /// Emits, so the session may be gone afterwards.
    void SetState(CloudSession::Connection newState);
    void TryLater();

    const SessionContext context;
    const std::function<void(bool)> resume;
    NetworkWatch network;
    QTimer retry;
    QString token; ///< empty unless the session is to stay signed in
    CloudSession::Connection state = CloudSession::Connection::SignedOut;
    int failedAttempts = 0; ///< since the last answer
    bool isListing = false; ///< an attempt is under way, by a list
    Lifetime lifetime;
};

} // namespace Norlis::Host
