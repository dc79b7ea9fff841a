#include "SessionRemovals.h"

#include "Later.h"
#include "Records.h"

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;

SessionRemovals::SessionRemovals(const SessionContext& context) : context(context)
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::RemoveFileFinished, this, &SessionRemovals::OnFinished);
    connect(&manager, &AbstractCloudManager::RemovingFileError, this, &SessionRemovals::OnError);
}

void SessionRemovals::Start(const QString& id)
{
    Later(this, [this, id] { Request(id); });
}

void SessionRemovals::Request(const QString& id)
{
    const auto record = context.documents.CloudRecordOf(id);
    if (!record) {
        context.cloud.Refuse(CloudProblem::Request::Remove, {id, id}, "it is not in the list of documents",
                             "Refresh the list.");
        return;
    }
    if (context.cloud.RequireSignIn(CloudProblem::Request::Remove, {id, NameOf(*record)})) {
        requested[record.get()] = record;
        context.cloud.Manager().RemoveFile(record);
    }
}

void SessionRemovals::OnFinished(const Record& record)
{
    if (!requested.remove(record.get())) {
        return;
    }
    const auto id = IdOf(*record);
    context.journal.NoteRemoval(id);
    const auto guard = lifetime.Watch();
    context.documents.Remove(id);
    if (guard) {
        emit context.session.DocumentRemoved(id);
    }
}

void SessionRemovals::OnError(const std::shared_ptr<const FileInfo>& record, const QString& message)
{
    const auto cause = context.cloud.Failures().Take();
    if (requested.remove(record.get())) {
        context.cloud.Fail(CloudProblem::Request::Remove, IdOf(*record), message, cause);
    }
}

} // namespace Norlis::Host
