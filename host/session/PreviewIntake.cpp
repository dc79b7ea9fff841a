#include "PreviewIntake.h"

#include <NorlisCloud/PreviewFile.h>

#include <QPointer>
#include <QSize>

#include <algorithm>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;

namespace {

const auto notFetched = QStringLiteral("The preview was not fetched");

unsigned Bit(FileInfo::PreviewSize size)
{
    return 1U << static_cast<unsigned>(size);
}

QString IdOf(const FileInfo& record)
{
    return QString::fromStdString(FileInfo(record).GetId());
}

} // namespace

PreviewIntake::PreviewIntake(SessionContext& context) : context(context)
{
    using ConstRecord = std::shared_ptr<const FileInfo>;
    const auto& cloud = *context.cloud;
    QObject::connect(&cloud, &AbstractCloudManager::RetrieveFilePreviewFinished, &context,
                     [this](const Record& record, Size size) { OnFinished(record, size); });
    QObject::connect(&cloud, &AbstractCloudManager::RetrieveFilePreviewError, &context,
                     [this](const ConstRecord& record, Size, const QString& message) { OnError(record, message); });
    QObject::connect(&cloud, &AbstractCloudManager::RetrieveFilePreviewCanceled, &context,
                     [this](const ConstRecord& record) { OnCanceled(record); });
}

void PreviewIntake::Fetch(const QString& id)
{
    // As those that come with a files list: one file on disk holds both.
    for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
        context.Later([this, id, size = size, edge = edge] { Fetch(id, size, edge); });
    }
}

void PreviewIntake::Fetch(const QString& id, Size size, int edge)
{
    const auto record = context.documents->GetFileInfo(id);
    if (!record) {
        Fail(id, notFetched, Cause("Preview", id, "it is not in the list of documents", "Refresh the list."));
        return;
    }
    const auto name = QString::fromStdString(record->GetRedactableCloudInfo()->GetFileName());
    if (!context.RequireSignIn(CloudProblem::Request::Preview, id, name)) {
        return;
    }
    wanted[record.get()] = record;
    context.cloud->RetrieveFilePreview(record, size, QSize(edge, edge));
}

bool PreviewIntake::HasWork() const
{
    return !waiting.isEmpty();
}

void PreviewIntake::Step()
{
    const auto id = waiting.dequeue();
    const auto pictures = arrived.take(id);
    const auto localPath = context.known.value(id).localPath;
    if (localPath.isEmpty()) {
        Show(id, pictures);
    } else { // the update looks at the local copy too
        context.hashes->Prepare({localPath}, &context, [this, id, pictures] { Show(id, pictures); });
    }
}

void PreviewIntake::Show(const QString& id, const Pictures& pictures)
{
    const QPointer<SessionContext> alive(&context);
    const auto held = context.documents->GetFileInfo(id);
    const auto known = context.known.find(id);
    if (!held || known == context.known.end()) {
        context.Forget(id);
        for (const auto& picture : pictures) {
            if (alive && picture.wasAskedFor) {
                Fail(id, notFetched, Cause("Preview", id, "the document is no longer in the list"));
            }
        }
        return;
    }
    Pictures news;
    std::copy_if(pictures.begin(), pictures.end(), std::back_inserter(news),
                 [&](const Picture& picture) { return IsNews(*known, picture); });
    if (news.isEmpty()) {
        return;
    }
    const auto pathOf = [](const Picture& picture) {
        return picture.record->GetRedactableCloudInfo()->GetPreviewsSet()[picture.size];
    };
    for (const auto& picture : qAsConst(news)) {
        held->GetRedactableCloudInfo()->SetPreviewPathBySize(pathOf(picture), picture.size);
        known->shownPreviews |= Bit(picture.size);
    }
    held->SetIsSyncingInProgress(context.IsTransferring(id));
    CloudSession& session = context.session;
    context.documents->Update(held);
    for (const auto& picture : qAsConst(news)) {
        if (alive) {
            emit session.PreviewStored(id, QString::fromStdString(FileInfo::previewSizetoString(picture.size)),
                                       ToText(pathOf(picture)));
        }
    }
}

bool PreviewIntake::IsNews(const KnownDocument& document, const Picture& picture) const
{
    if (picture.wasAskedFor || !document.facts) {
        return true;
    }
    const CloudFacts shown(picture.record->GetRedactableCloudInfo().value());
    return document.facts->HasSameContent(shown) && (document.shownPreviews & Bit(picture.size)) == 0;
}

void PreviewIntake::Fail(const QString& id, const QString& message, const Social::OAuth2::Failure& cause)
{
    context.Fail(CloudProblem::Request::Preview, id, message, cause);
}

void PreviewIntake::OnFinished(const Record& record, Size size)
{
    const auto id = IdOf(*record);
    auto& pictures = arrived[id];
    if (pictures.isEmpty()) {
        waiting.enqueue(id);
    }
    pictures.append({record, size, wanted.remove(record.get()) != 0});
    context.slices.start();
}

void PreviewIntake::OnError(const std::shared_ptr<const FileInfo>& record, const QString& message)
{
    const auto cause = context.TakeCause();
    if (wanted.remove(record.get()) != 0) {
        Fail(IdOf(*record), message, cause);
    }
}

void PreviewIntake::OnCanceled(const std::shared_ptr<const FileInfo>& record)
{
    if (wanted.remove(record.get()) != 0) {
        Fail(IdOf(*record), "Retrieving file preview canceled", {});
    }
}

} // namespace Norlis::Host
