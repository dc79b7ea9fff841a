#include "SessionRemovals.h"

#include "Later.h"
#include "Records.h"

#include <base/Utf8.h>

#include <algorithm>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;
using Social::OAuth2::FailureKind;

SessionRemovals::SessionRemovals(const SessionContext& context, const ListState& list) : context(context), list(list)
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::RemoveFileFinished, this, &SessionRemovals::OnFinished);
    connect(&manager, &AbstractCloudManager::RemovingFileError, this, &SessionRemovals::OnError);
    longestWait.setSingleShot(true);
    connect(&longestWait, &QTimer::timeout, this, [this] {
        isSettling = false;
        emit this->context.session.ReadyToClose();
    });
}

void SessionRemovals::Start(const QString& id)
{
    const auto* document = context.documents.Find(id);
    Later(this, [this, id, seen = document ? std::optional(document->facts) : std::nullopt] { Request(id, seen); });
}

void SessionRemovals::StartLater(const QStringList& ids, std::chrono::milliseconds delay)
{
    for (const auto& id : ids) {
        const auto* document = context.documents.Find(id);
        if (pending.contains(id)) {
            continue;
        }
        if (!document || !context.cloud.IsSignedIn()) {
            Start(id); // which fails, and says why
            continue;
        }
        const quint64 turn = ++lastTurn;
        pending.insert(id, {document->facts, turn});
        Later(this, [this, id] { emit context.session.RemovalPendingChanged(id, pending.contains(id)); });
        QTimer::singleShot(delay, this, [this, id, turn] { Send(id, turn); });
    }
}

void SessionRemovals::Undo(const QStringList& ids)
{
    for (const auto& id : ids) {
        const auto found = pending.constFind(id);
        if (found != pending.constEnd() && !found->isSent) {
            pending.erase(found);
            Later(this, [this, id] { emit context.session.RemovalPendingChanged(id, pending.contains(id)); });
        }
    }
}

bool SessionRemovals::IsPending(const QString& id) const
{
    return pending.contains(id);
}

bool SessionRemovals::IsAnyPending() const
{
    return !pending.isEmpty();
}

void SessionRemovals::Settle(std::chrono::milliseconds longest)
{
    isSettling = true;
    longestWait.start(longest);
    for (auto each = pending.cbegin(); each != pending.cend(); ++each) {
        Later(this, [this, id = each.key(), turn = each->turn] { Send(id, turn); });
    }
    Later(this, [this] { TellWhenSettled(); });
}

void SessionRemovals::Send(const QString& id, quint64 turn)
{
    const auto found = pending.find(id);
    if (found == pending.end() || found->turn != turn || found->isSent) {
        return;
    }
    if (!context.cloud.IsSignedIn() && context.cloud.IsPatient()) {
        found->isWaiting = true;
        TellWhenSettled();
        return;
    }
    found->isSent = true;
    found->isWaiting = false;
    Request(id, found->seen);
}

bool SessionRemovals::Wait(const QString& id, FailureKind reason)
{
    const auto found = pending.find(id);
    if (found == pending.end() || reason != FailureKind::Unavailable || isSettling || !context.cloud.IsPatient() ||
        ++found->breaks > mostBreaks) {
        return false;
    }
    found->isSent = false;
    found->isWaiting = true;
    Later(this, [this] { context.session.Refresh(); }); // which finds out whether the service is there
    return true;
}

void SessionRemovals::Resume(bool wasAway)
{
    const QStringList ids = pending.keys();
    for (const auto& id : ids) {
        auto& removal = pending[id];
        if (removal.isWaiting) {
            removal.breaks = wasAway ? 0 : removal.breaks;
            Later(this, [this, id, turn = removal.turn] { Send(id, turn); });
        }
    }
}

void SessionRemovals::Request(const QString& id, const std::optional<CloudFacts>& seen)
{
    if (!context.cloud.IsSignedIn()) {
        RequestNow(id, seen); // which fails, and says why
        return;
    }
    list.whenCurrent([this, guard = lifetime.Watch(), id, seen](bool isCurrent) {
        if (guard && isCurrent) {
            RequestNow(id, seen);
        } else if (guard) {
            const auto* document = context.documents.Find(id);
            Refuse(id, document ? FromUtf8(document->facts.name) : id, "The list of documents is not up to date",
                   "Refresh the list, and remove it again.", FailureKind::Unavailable);
        }
    });
}

void SessionRemovals::RequestNow(const QString& id, const std::optional<CloudFacts>& seen)
{
    const auto* document = context.documents.Find(id);
    if (!document && pending.contains(id)) {
        EndWithSuccess(id); // somebody else was faster
        return;
    }
    if (!document) {
        Refuse(id, id, "It is not in the list of documents", "Refresh the list.", FailureKind::Other);
        return;
    }
    const QString name = FromUtf8(document->facts.name);
    if (seen && !document->facts.IsSameVersionAs(*seen)) {
        Refuse(id, name, "It has changed in the cloud since you removed it", "Look at the newer version first.",
               FailureKind::Conflict);
        return;
    }
    if (!context.cloud.IsSignedIn() && !Show(id)) {
        return;
    }
    if (context.cloud.RequireSignIn(CloudProblem::Request::Remove, {id, name})) {
        const auto record = context.documents.CloudRecordOf(id);
        requested[record.get()] = record;
        context.cloud.Manager().RemoveFile(record);
    }
}

void SessionRemovals::Refuse(const QString& id, const QString& name, const QString& reason, const QString& advice,
                             FailureKind kind)
{
    if (!Wait(id, kind) && Show(id)) {
        context.cloud.Refuse(CloudProblem::Request::Remove, {id, name}, reason, advice, kind);
    }
}

void SessionRemovals::EndWithSuccess(const QString& id)
{
    if (Show(id)) { // another one that gets its id is not the one that was removed
        emit context.session.DocumentRemoved(id);
    }
}

bool SessionRemovals::Show(const QString& id)
{
    const auto guard = lifetime.Watch();
    if (pending.remove(id)) {
        Later(this, [this] { TellWhenSettled(); });
        emit context.session.RemovalPendingChanged(id, false);
    }
    return static_cast<bool>(guard);
}

void SessionRemovals::TellWhenSettled()
{
    const bool isAnyToEnd =
        std::any_of(pending.cbegin(), pending.cend(), [](const Pending& each) { return !each.isWaiting; });
    if (isSettling && !isAnyToEnd && requested.isEmpty()) {
        isSettling = false;
        longestWait.stop();
        emit context.session.ReadyToClose();
    }
}

void SessionRemovals::OnFinished(const Record& record)
{
    if (!requested.remove(record.get())) {
        return;
    }
    const auto id = IdOf(*record);
    context.journal.NoteRemoval(id);
    Later(this, [this] { TellWhenSettled(); });
    const auto guard = lifetime.Watch();
    context.documents.Remove(id);
    if (guard) {
        EndWithSuccess(id);
    }
}

void SessionRemovals::OnError(const std::shared_ptr<const FileInfo>& record, const QString& message)
{
    const auto cause = context.cloud.Failures().Take();
    if (!requested.remove(record.get())) {
        return;
    }
    Later(this, [this] { TellWhenSettled(); });
    const auto id = IdOf(*record);
    if (!Wait(id, cause.kind) && Show(id)) {
        context.cloud.Fail(CloudProblem::Request::Remove, id, message, cause);
    }
}

} // namespace Norlis::Host
