#include "SessionPreviews.h"

#include "Later.h"
#include "Records.h"

#include <NorlisCloud/PreviewFile.h>

#include <QFile>
#include <QSize>

#include <algorithm>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;
using Request = CloudProblem::Request;
using Size = FileInfo::PreviewSize;

namespace {

constexpr int maxRunning = 4;

// The one that is good enough for any view comes first. The smallest can wait for those of other documents.
const QVector<Size> sizesAtOnce = {Size::Medium, Size::Large};
const QVector<Size> sizesLater = {Size::Small};

QSize PixelsOf(Size size)
{
    const auto found = std::find_if(std::begin(PDF::Cloud::previewPixelSizes), std::end(PDF::Cloud::previewPixelSizes),
                                    [&](const auto& each) { return each.first == size; });
    return QSize(found->second, found->second);
}

} // namespace

SessionPreviews::SessionPreviews(const SessionContext& context, std::function<void()> onWork)
    : context(context),
      onWork(std::move(onWork))
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewFinished, this, &SessionPreviews::OnFinished);
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewError, this, &SessionPreviews::OnError);
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewCanceled, this, &SessionPreviews::OnCanceled);
    connect(&manager, &AbstractCloudManager::AuthorizationCompleted, this, &SessionPreviews::SendSoon);
    connect(&context.session, &CloudSession::ListRefreshed, this, [this](const auto&, const QStringList& changed) {
        for (auto each = failed.begin(); each != failed.end();) {
            each = *each && !changed.contains(each.key()) ? std::next(each) : failed.erase(each);
        }
        SendSoon();
    });
    connect(&context.session, &CloudSession::ConnectionChanged, this, [this] {
        const bool isAway = this->context.session.ConnectionState() == CloudSession::Connection::Offline;
        if (std::exchange(wasAway, isAway) && !isAway) {
            failed.clear(); // what is said of a document while its service goes is no word about the document
            SendSoon();
        }
    });
}

void SessionPreviews::Show(const QStringList& ids)
{
    const QSet<QString> wereShown(shown.begin(), shown.end());
    shown = ids;
    std::stable_partition(shown.begin(), shown.end(), [&](const QString& id) { return !wereShown.contains(id); });
    const QSet<QString> areShown(ids.begin(), ids.end());
    for (auto each = failed.begin(); each != failed.end();) {
        each = areShown.contains(each.key()) ? std::next(each) : failed.erase(each);
    }
    for (const auto& id : ids) {
        EnqueueStored(id);
    }
    SendSoon();
}

void SessionPreviews::SendSoon()
{
    if (!std::exchange(isSendingSoon, true)) {
        Later(this, [this] { Send(); });
    }
}

void SessionPreviews::Send()
{
    isSendingSoon = false;
    const auto guard = lifetime.Watch();
    for (auto wish = Next(); !wish.id.isEmpty() && context.cloud.IsSignedIn(); wish = Next()) {
        if (running.size() + wish.sizes.size() > maxRunning) {
            return;
        }
        for (const auto size : qAsConst(wish.sizes)) {
            const auto record = context.documents.CloudRecordOf(wish.id);
            if (!record) {
                break; // a slot has taken it out
            }
            running.insert(record.get(), {record, wish.id, size});
            context.cloud.Manager().FetchPreview(record, size, PixelsOf(size));
            if (!guard) {
                return;
            }
        }
    }
}

SessionPreviews::Wish SessionPreviews::Next() const
{
    for (const auto& sizes : {sizesAtOnce, sizesLater}) {
        for (const auto& id : shown) {
            const auto missing = Missing(id, sizes);
            if (!missing.isEmpty()) {
                return {id, missing};
            }
        }
    }
    return {};
}

QVector<Size> SessionPreviews::Missing(const QString& id, const QVector<Size>& sizes) const
{
    QVector<Size> missing;
    const auto* document = context.documents.Find(id);
    if (document && !failed.contains(id)) {
        std::copy_if(sizes.begin(), sizes.end(), std::back_inserter(missing),
                     [&](Size size) { return !document->HasStored(size) && !IsRunning(id, size); });
    }
    return missing;
}

bool SessionPreviews::IsRunning(const QString& id, Size size) const
{
    return std::any_of(running.begin(), running.end(),
                       [&](const Running& each) { return each.id == id && each.size == size; });
}

void SessionPreviews::EnqueueStored(const QString& id)
{
    const auto* document = context.documents.Find(id);
    if (!document || document->storedPreviews == document->shownPreviews || arrived.contains(id)) {
        return;
    }
    const auto sizes = sizesAtOnce + sizesLater;
    for (const auto size : sizes) {
        if (!document->HasStored(size) || document->Shows(size)) {
            continue;
        }
        if (QFile::exists(context.pictures.PathOf(id, size))) {
            Enqueue(id, {size, false});
        } else {
            context.documents.DropPreview(id, size);
        }
    }
}

void SessionPreviews::Fetch(const QString& id)
{
    // As those that a view shows: one file on disk holds both.
    for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
        Later(this, [this, id, size = size, edge = edge] { Fetch(id, size, edge); });
    }
}

void SessionPreviews::Fetch(const QString& id, Size size, int edge)
{
    const auto record = context.documents.CloudRecordOf(id);
    if (!record) {
        context.cloud.Refuse(Request::Preview, {id, id}, "It is not in the list of documents", "Refresh the list.");
        return;
    }
    if (!context.cloud.RequireSignIn(Request::Preview, {id, NameOf(*record)})) {
        return;
    }
    wanted[record.get()] = record;
    context.cloud.Manager().FetchPreview(record, size, QSize(edge, edge));
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
    if (!document) {
        context.documents.Forget(id);
        for (const auto& preview : previews) {
            if (guard && preview.wasAskedFor) {
                context.cloud.Refuse(Request::Preview, {id, id}, "The document is no longer in the list", {});
            }
        }
        return;
    }
    Previews fresh;
    std::copy_if(previews.begin(), previews.end(), std::back_inserter(fresh),
                 [&](const Preview& preview) { return IsNew(*document, preview); });
    const auto held = fresh.isEmpty() ? nullptr : context.documents.RecordOf(id);
    if (!held) {
        return;
    }
    std::map<Size, ioPath> paths;
    for (const auto& preview : qAsConst(fresh)) {
        paths[preview.size] = ToPath(context.pictures.PathOf(id, preview.size));
    }
    context.documents.ShowPreviews(held, paths);
    for (const auto& preview : qAsConst(fresh)) {
        if (guard) {
            emit context.session.PreviewStored(id, QString::fromStdString(FileInfo::previewSizetoString(preview.size)),
                                               ToText(paths[preview.size]));
        }
    }
}

bool SessionPreviews::IsNew(const DocumentIndex::Entry& document, const Preview& preview)
{
    return preview.wasAskedFor || (document.HasStored(preview.size) && !document.Shows(preview.size));
}

void SessionPreviews::Enqueue(const QString& id, const Preview& preview)
{
    auto& previews = arrived[id];
    if (previews.isEmpty()) {
        waiting.enqueue(id);
    }
    previews.append(preview);
    onWork();
}

void SessionPreviews::OnFinished(const Record& record, Size size)
{
    const auto id = IdOf(*record);
    const bool wasAskedFor = wanted.remove(record.get()) != 0;
    running.remove(record.get());
    SendSoon();
    const auto* document = context.documents.Find(id);
    if (document && document->facts.IsSameVersionAs(CloudFacts(record->GetRedactableCloudInfo().value()))) {
        context.documents.NoteStored(id, size);
    } else if (document && !wasAskedFor) {
        context.documents.DropPreview(id, size); // the document has other content by now
        return;
    }
    Enqueue(id, {size, wasAskedFor});
}

void SessionPreviews::OnError(const std::shared_ptr<const FileInfo>& record, Size, const QString& message)
{
    using Kind = Social::OAuth2::FailureKind;
    const auto cause = context.cloud.Failures().Take();
    const bool isLasting = cause.kind != Kind::Unavailable && cause.kind != Kind::NotSignedIn;
    const bool isFirst = OnFailed(record.get(), isLasting);
    if (wanted.remove(record.get()) != 0) {
        context.cloud.Fail(Request::Preview, IdOf(*record), message, cause);
    } else if (isLasting && isFirst) {
        emit context.session.PreviewMissing(IdOf(*record));
    }
}

void SessionPreviews::OnCanceled(const std::shared_ptr<const FileInfo>& record)
{
    OnFailed(record.get(), false);
    if (wanted.remove(record.get()) != 0) {
        context.cloud.Fail(Request::Preview, IdOf(*record), "Retrieving file preview canceled", {});
    }
}

bool SessionPreviews::OnFailed(const FileInfo* record, bool isLasting)
{
    const auto found = running.find(record);
    if (found == running.end()) {
        return false;
    }
    const bool isFirst = shown.contains(found->id) && !failed.value(found->id, false);
    if (isFirst) {
        failed[found->id] = isLasting;
    }
    running.erase(found);
    SendSoon();
    return isFirst;
}

} // namespace Norlis::Host
