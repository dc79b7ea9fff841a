#pragma once

#include "ListMerge.h"
#include "SessionContext.h"

#include <base/Lifetime.h>

#include <QQueue>
#include <QTimer>

#include <chrono>
#include <functional>
#include <vector>

namespace Norlis::Host {

/// The session's files lists: remembers when each was requested, and hands over to the merge what arrives.
///
/// Automatic refreshes are made here and not by the cloud manager, which knows nothing but an interval: where the
/// service tells of changes, a list is requested when there are some, and else never.
class SessionLists : public QObject {
public:
    /// \param merge must outlive this
    SessionLists(const SessionContext& context, ListMerge& merge);

    /// See CloudSession::RefreshEvery.
    void RefreshEvery(std::chrono::milliseconds interval);

    void Refresh();

    // See ListState.

    bool IsCurrent() const;
    bool IsMerged() const;
    void WhenCurrent(std::function<void(bool isCurrent)> then);

private:
    void OnStarted();
    void OnFinished(const ListMerge::Files& files);
    void OnError(const QString& message);
    void OnCanceled();

    /// When the list was requested that has just ended; lists arrive in the order of their requests.
    ChangeJournal::Time End();

    /// Whether a list has been requested, or has come and is not merged yet.
    bool IsUnderWay() const;
    void TellWaiting(bool isCurrentNow);

    void AwaitChange();
    void StartPolling();
    void Poll();

    /// Requests the list that a change asks for, as soon as neither another one nor a transfer is under way. May emit:
    /// the session may be gone afterwards.
    void CatchUp();

    const SessionContext context;
    ListMerge& merge;
    QQueue<ChangeJournal::Time> requestedAt;
    std::vector<std::function<void(bool)>> waiting; ///< see WhenCurrent
    bool isMerged = true;                           ///< a list, since the sign-in
    bool isAutomatic = false;
    bool isAwaitingChange = false; ///< the service will tell
    bool isOutdated = false;       ///< it has told of a change since the last list was requested
    QTimer poll;                   ///< runs where it does not tell
    QTimer catchUp;
    Lifetime lifetime;
};

} // namespace Norlis::Host
