#include "SessionLists.h"

#include "Later.h"

#include <utility>

namespace Norlis::Host {

using PDF::Cloud::AbstractCloudManager;

namespace {

constexpr int catchUpInterval = 500; // milliseconds

} // namespace

SessionLists::SessionLists(const SessionContext& context, ListMerge& merge) : context(context), merge(merge)
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::RetrievingFilesListStarted, this, &SessionLists::OnStarted);
    connect(&manager, &AbstractCloudManager::RetrievingFilesListFinished, this, &SessionLists::OnFinished);
    connect(&manager, &AbstractCloudManager::RetrievingFilesListErrorRequested, this, &SessionLists::OnError);
    connect(&manager, &AbstractCloudManager::RetrievingFilesListCanceled, this, &SessionLists::OnCanceled);

    connect(&manager, &AbstractCloudManager::AuthorizationCompleted, this, [this] { isMerged = false; });
    connect(&context.session, &CloudSession::ListRefreshed, this, [this] {
        isMerged = true;
        if (!IsUnderWay()) {
            TellWaiting(true);
        }
    });

    poll.setSingleShot(true);
    connect(&poll, &QTimer::timeout, this, &SessionLists::Poll);
    catchUp.setSingleShot(true);
    catchUp.setInterval(catchUpInterval);
    connect(&catchUp, &QTimer::timeout, this, &SessionLists::CatchUp);
}

void SessionLists::RefreshEvery(std::chrono::milliseconds interval)
{
    isAutomatic = interval > interval.zero();
    if (isAutomatic) {
        poll.setInterval(interval);
        StartPolling();
    } else {
        poll.stop();
        catchUp.stop();
        isOutdated = false;
    }
}

void SessionLists::Refresh()
{
    Later(this, [this] {
        if (context.cloud.RequireSignIn(CloudProblem::Request::List, {})) {
            context.cloud.Manager().RetrieveFilesList();
        }
    });
}

bool SessionLists::IsUnderWay() const
{
    return !requestedAt.isEmpty() || merge.IsActive();
}

bool SessionLists::IsCurrent() const
{
    return isMerged && !IsUnderWay();
}

bool SessionLists::IsMerged() const
{
    return isMerged;
}

void SessionLists::WhenCurrent(std::function<void(bool)> then)
{
    if (IsCurrent()) {
        then(true);
        return;
    }
    waiting.push_back(std::move(then));
    if (!IsUnderWay()) {
        isOutdated = true;
        CatchUp(); // again and again while a transfer is under way
    }
}

void SessionLists::TellWaiting(bool isCurrentNow)
{
    const auto told = std::exchange(waiting, {});
    for (const auto& then : told) {
        Later(this, [then, isCurrentNow] { then(isCurrentNow); });
    }
}

void SessionLists::OnStarted()
{
    if (requestedAt.isEmpty() && !merge.IsActive()) {
        context.journal.Clear();
    }
    requestedAt.enqueue(context.journal.NoteRequest());
    isOutdated = false;
    catchUp.stop();
    if (isAutomatic) {
        AwaitChange(); // before the list is sent: nothing may change unnoticed between the two
    }
}

void SessionLists::OnFinished(const ListMerge::Files& files)
{
    merge.Start(files, End(), context.cloud.MayListLackDocuments());
}

void SessionLists::OnError(const QString& message)
{
    End();
    TellWaiting(isMerged);
    context.cloud.Fail(CloudProblem::Request::List, {}, message, context.cloud.Failures().Take());
}

void SessionLists::OnCanceled()
{
    End();
    TellWaiting(isMerged);
    context.cloud.Fail(CloudProblem::Request::List, {}, "Files list request canceled", {});
}

ChangeJournal::Time SessionLists::End()
{
    StartPolling();
    return requestedAt.isEmpty() ? context.journal.Now() : requestedAt.dequeue();
}

void SessionLists::AwaitChange()
{
    if (isAwaitingChange) {
        return;
    }
    isAwaitingChange = true;
    poll.stop();
    context.cloud.AwaitChange([this, guard = lifetime.Watch()](bool hasChanged) {
        if (!guard) {
            return;
        }
        isAwaitingChange = false;
        if (hasChanged && isAutomatic) {
            isOutdated = true;
            CatchUp();
        } else {
            StartPolling();
        }
    });
}

void SessionLists::StartPolling()
{
    if (isAutomatic && !isAwaitingChange) {
        poll.start();
    }
}

void SessionLists::Poll()
{
    StartPolling(); // the manager sends nothing while a transfer runs
    if (requestedAt.isEmpty() && context.cloud.IsSignedIn()) {
        context.cloud.Manager().RetrieveFilesList();
    }
}

void SessionLists::CatchUp()
{
    if (!isOutdated || !context.cloud.IsSignedIn()) {
        isOutdated = false; // whoever signs in asks for the list
        TellWaiting(isMerged);
        return;
    }
    catchUp.start();
    if (requestedAt.isEmpty() && !merge.IsActive()) {
        context.cloud.Manager().RetrieveFilesList();
    }
}

} // namespace Norlis::Host
