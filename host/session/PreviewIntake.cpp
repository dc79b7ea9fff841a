#include "PreviewIntake.h"

#include "Later.h"
#include "Records.h"

#include <NorlisCloud/PreviewFile.h>

#include <QSize>

#include <algorithm>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;
using Request = CloudProblem::Request;

PreviewIntake::PreviewIntake(const SessionContext& context, std::function<void()> onWork)
    : context(context),
      onWork(std::move(onWork))
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewFinished, this, &PreviewIntake::OnFinished);
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewError, this, &PreviewIntake::OnError);
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewCanceled, this, &PreviewIntake::OnCanceled);
}

void PreviewIntake::Fetch(const QString& id)
{
    // As those that come with a files list: one file on disk holds both.
    for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
        Later(this, [this, id, size = size, edge = edge] { Fetch(id, size, edge); });
    }
}

void PreviewIntake::Fetch(const QString& id, Size size, int edge)
{
    const auto record = context.documents.RecordOf(id);
    if (!record) {
        context.cloud.Refuse(Request::Preview, id, id, "it is not in the list of documents", "Refresh the list.");
        return;
    }
    if (!context.cloud.RequireSignIn(Request::Preview, id, NameOf(*record))) {
        return;
    }
    wanted[record.get()] = record;
    context.cloud.Manager().RetrieveFilePreview(record, size, QSize(edge, edge));
}

bool PreviewIntake::HasWork() const
{
    return !waiting.isEmpty();
}

void PreviewIntake::Step()
{
    const auto id = waiting.dequeue();
    const auto pictures = arrived.take(id);
    const auto localPath = context.documents.LocalPath(id);
    if (localPath.isEmpty()) {
        Show(id, pictures);
    } else { // the update looks at the local copy too
        context.hashes.Prepare({localPath}, this, [this, id, pictures] { Show(id, pictures); });
    }
}

void PreviewIntake::Show(const QString& id, const Pictures& pictures)
{
    const auto guard = lifetime.Watch();
    const auto* document = context.documents.Find(id);
    const auto held = context.documents.RecordOf(id);
    if (!document || !held) {
        context.documents.Forget(id);
        for (const auto& picture : pictures) {
            if (guard && picture.wasAskedFor) {
                context.cloud.Refuse(Request::Preview, id, id, "the document is no longer in the list", {});
            }
        }
        return;
    }
    Pictures fresh;
    std::copy_if(pictures.begin(), pictures.end(), std::back_inserter(fresh),
                 [&](const Picture& picture) { return IsNew(*document, picture); });
    if (fresh.isEmpty()) {
        return;
    }
    const auto pathOf = [](const Picture& picture) {
        return picture.record->GetRedactableCloudInfo()->GetPreviewsSet()[picture.size];
    };
    std::map<Size, ioPath> paths;
    for (const auto& picture : qAsConst(fresh)) {
        paths[picture.size] = pathOf(picture);
    }
    context.documents.ShowPreviews(held, paths);
    for (const auto& picture : qAsConst(fresh)) {
        if (guard) {
            emit context.session.PreviewStored(id, QString::fromStdString(FileInfo::previewSizetoString(picture.size)),
                                               ToText(pathOf(picture)));
        }
    }
}

bool PreviewIntake::IsNew(const DocumentIndex::Entry& document, const Picture& picture)
{
    if (picture.wasAskedFor || !document.facts) {
        return true;
    }
    const CloudFacts shown(picture.record->GetRedactableCloudInfo().value());
    return document.facts->HasSameContent(shown) && !document.Shows(picture.size);
}

void PreviewIntake::OnFinished(const Record& record, Size size)
{
    const auto id = IdOf(*record);
    auto& pictures = arrived[id];
    if (pictures.isEmpty()) {
        waiting.enqueue(id);
    }
    pictures.append({record, size, wanted.remove(record.get()) != 0});
    onWork();
}

void PreviewIntake::OnError(const std::shared_ptr<const FileInfo>& record, Size, const QString& message)
{
    const auto cause = context.cloud.Failures().Take();
    if (wanted.remove(record.get()) != 0) {
        context.cloud.Fail(Request::Preview, IdOf(*record), message, cause);
    }
}

void PreviewIntake::OnCanceled(const std::shared_ptr<const FileInfo>& record)
{
    if (wanted.remove(record.get()) != 0) {
        context.cloud.Fail(Request::Preview, IdOf(*record), "Retrieving file preview canceled", {});
    }
}

} // namespace Norlis::Host
