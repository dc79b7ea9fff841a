#pragma once

#include "ListMerge.h"
#include "SessionContext.h"

#include <QQueue>

namespace Norlis::Host {

/// The session's files lists, those of automatic refreshes included: remembers when each was requested, and hands over
/// to the merge what arrives.
class SessionLists : public QObject {
public:
    /// \param merge must outlive this
    SessionLists(const SessionContext& context, ListMerge& merge);

    void Refresh();

private:
    void OnStarted();
    void OnFinished(const ListMerge::Files& files);
    void OnError(const QString& message);
    void OnCanceled();

    /// When the list was requested that has just ended; lists arrive in the order of their requests.
    ChangeJournal::Time End();

    const SessionContext context;
    ListMerge& merge;
    QQueue<ChangeJournal::Time> requestedAt;
};

} // namespace Norlis::Host
