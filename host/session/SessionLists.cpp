#include "SessionLists.h"

#include "Later.h"

namespace Norlis::Host {

using PDF::Cloud::AbstractCloudManager;

SessionLists::SessionLists(const SessionContext& context, ListMerge& merge) : context(context), merge(merge)
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::RetrievingFilesListStarted, this, &SessionLists::OnStarted);
    connect(&manager, &AbstractCloudManager::RetrievingFilesListFinished, this, &SessionLists::OnFinished);
    connect(&manager, &AbstractCloudManager::RetrievingFilesListErrorRequested, this, &SessionLists::OnError);
    connect(&manager, &AbstractCloudManager::RetrievingFilesListCanceled, this, &SessionLists::OnCanceled);
}

void SessionLists::Refresh()
{
    Later(this, [this] {
        if (context.cloud.RequireSignIn(CloudProblem::Request::List, {})) {
            context.cloud.Manager().RetrieveFilesList();
        }
    });
}

void SessionLists::OnStarted()
{
    if (requestedAt.isEmpty() && !merge.IsActive()) {
        context.journal.Clear();
    }
    requestedAt.enqueue(context.journal.NoteRequest());
}

void SessionLists::OnFinished(const ListMerge::Files& files)
{
    merge.Start(files, End(), context.cloud.MayListLackDocuments());
}

void SessionLists::OnError(const QString& message)
{
    End();
    context.cloud.Fail(CloudProblem::Request::List, {}, message, context.cloud.Failures().Take());
}

void SessionLists::OnCanceled()
{
    End();
    context.cloud.Fail(CloudProblem::Request::List, {}, "Files list request canceled", {});
}

ChangeJournal::Time SessionLists::End()
{
    return requestedAt.isEmpty() ? context.journal.Now() : requestedAt.dequeue();
}

} // namespace Norlis::Host
