#include "SessionPreviews.h"

#include "Later.h"
#include "Records.h"

#include <NorlisCloud/PreviewFile.h>

#include <QSize>

#include <algorithm>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;
using Request = CloudProblem::Request;

SessionPreviews::SessionPreviews(const SessionContext& context, std::function<void()> onWork)
    : context(context),
      onWork(std::move(onWork))
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewFinished, this, &SessionPreviews::OnFinished);
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewError, this, &SessionPreviews::OnError);
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewCanceled, this, &SessionPreviews::OnCanceled);
}

void SessionPreviews::Fetch(const QString& id)
{
    // As those that come with a files list: one file on disk holds both.
    for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
        Later(this, [this, id, size = size, edge = edge] { Fetch(id, size, edge); });
    }
}

void SessionPreviews::Fetch(const QString& id, Size size, int edge)
{
    const auto record = context.documents.RecordOf(id);
    if (!record) {
        context.cloud.Refuse(Request::Preview, {id, id}, "it is not in the list of documents", "Refresh the list.");
        return;
    }
    if (!context.cloud.RequireSignIn(Request::Preview, {id, NameOf(*record)})) {
        return;
    }
    wanted[record.get()] = record;
    context.cloud.Manager().RetrieveFilePreview(record, size, QSize(edge, edge));
}

bool SessionPreviews::HasWork() const
{
    return !waiting.isEmpty();
}

void SessionPreviews::Step()
{
    const auto id = waiting.dequeue();
    const auto previews = arrived.take(id);
    const auto localPath = context.documents.LocalPath(id);
    if (localPath.isEmpty()) {
        PutIntoList(id, previews);
    } else { // the update looks at the local copy too
        context.hashes.Prepare({localPath}, this, [this, id, previews] { PutIntoList(id, previews); });
    }
}

void SessionPreviews::PutIntoList(const QString& id, const Previews& previews)
{
    const auto guard = lifetime.Watch();
    const auto* document = context.documents.Find(id);
    const auto held = context.documents.RecordOf(id);
    if (!document || !held) {
        context.documents.Forget(id);
        for (const auto& preview : previews) {
            if (guard && preview.wasAskedFor) {
                context.cloud.Refuse(Request::Preview, {id, id}, "the document is no longer in the list", {});
            }
        }
        return;
    }
    Previews fresh;
    std::copy_if(previews.begin(), previews.end(), std::back_inserter(fresh),
                 [&](const Preview& preview) { return IsNew(*document, preview); });
    if (fresh.isEmpty()) {
        return;
    }
    const auto pathOf = [](const Preview& preview) {
        return preview.record->GetRedactableCloudInfo()->GetPreviewsSet()[preview.size];
    };
    std::map<Size, ioPath> paths;
    for (const auto& preview : qAsConst(fresh)) {
        paths[preview.size] = pathOf(preview);
    }
    context.documents.ShowPreviews(held, paths);
    for (const auto& preview : qAsConst(fresh)) {
        if (guard) {
            emit context.session.PreviewStored(id, QString::fromStdString(FileInfo::previewSizetoString(preview.size)),
                                               ToText(pathOf(preview)));
        }
    }
}

bool SessionPreviews::IsNew(const DocumentIndex::Entry& document, const Preview& preview)
{
    if (preview.wasAskedFor || !document.facts) {
        return true;
    }
    const CloudFacts shown(preview.record->GetRedactableCloudInfo().value());
    return document.facts->HasSameContent(shown) && !document.Shows(preview.size);
}

void SessionPreviews::OnFinished(const Record& record, Size size)
{
    const auto id = IdOf(*record);
    auto& previews = arrived[id];
    if (previews.isEmpty()) {
        waiting.enqueue(id);
    }
    previews.append({record, size, wanted.remove(record.get()) != 0});
    onWork();
}

void SessionPreviews::OnError(const std::shared_ptr<const FileInfo>& record, Size, const QString& message)
{
    const auto cause = context.cloud.Failures().Take();
    if (wanted.remove(record.get()) != 0) {
        context.cloud.Fail(Request::Preview, IdOf(*record), message, cause);
    }
}

void SessionPreviews::OnCanceled(const std::shared_ptr<const FileInfo>& record)
{
    if (wanted.remove(record.get()) != 0) {
        context.cloud.Fail(Request::Preview, IdOf(*record), "Retrieving file preview canceled", {});
    }
}

} // namespace Norlis::Host
