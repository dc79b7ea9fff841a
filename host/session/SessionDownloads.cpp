#include "SessionDownloads.h"

#include "Later.h"
#include "Records.h"

#include <base/Utf8.h>
#include <files/FilePlacing.h>

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;
using Social::OAuth2::FailureKind;

SessionDownloads::SessionDownloads(const SessionContext& context, const QString& stagingList)
    : context(context),
      targets(context),
      stagingFolders(stagingList)
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::DownloadingFinished, this, &SessionDownloads::OnFinished);
    connect(&manager, &AbstractCloudManager::DownloadingFileRequestError, this, &SessionDownloads::OnError);
    connect(&manager, &AbstractCloudManager::DownloadingCanceled, this, &SessionDownloads::OnCanceled);
    connect(&manager, &AbstractCloudManager::DownloadingProgressValueChanged, this,
            [this](const std::shared_ptr<const FileInfo>& file, int percent) {
                emit this->context.session.DownloadProgress(IdOf(*file), percent);
            });
}

void SessionDownloads::Start(const QString& id, const QString& folder)
{
    const auto download = std::make_shared<ActiveDownload>();
    download->id = id;
    download->folder = folder;
    Enter(download);
}

void SessionDownloads::StartBeside(const QString& id, const QString& folder)
{
    const auto download = std::make_shared<ActiveDownload>();
    download->id = id;
    download->folder = folder;
    download->isBeside = true;
    Enter(download);
}

void SessionDownloads::StartInPlace(const QString& id)
{
    const auto download = std::make_shared<ActiveDownload>();
    download->id = id;
    download->isInPlace = true;
    if (const auto* document = context.documents.Find(id)) {
        download->discardedHash = document->localHash;
    }
    Enter(download);
}

void SessionDownloads::Enter(const DownloadPointer& download)
{
    const QString& id = download->id;
    download->name = id; // until the document is found
    if (downloads.contains(id)) {
        download->name = downloads[id]->name;
        Later(this, [this, download] {
            Refuse(download, "It is already being downloaded", "Wait until that is done, or cancel it.");
        });
        return;
    }
    downloads[id] = download;
    Later(this, [this, download] { Begin(download); });
}

QString SessionDownloads::ObstacleTo(const QString& id, const QString& folder) const
{
    const auto* document = context.documents.Find(id);
    const QString name = document ? FromUtf8(document->facts.name) : QString();
    if (!DownloadTargets::IsFileName(name)) {
        return {};
    }
    const QString target = targets.In(folder, id, name);
    return DownloadTargets::IsTaken(target) && !targets.SyncHashOf(id, target) ? target : QString();
}

void SessionDownloads::Cancel(const QString& id)
{
    const auto download = downloads.value(id);
    if (!download) {
        return;
    }
    Later(this, [this, download] {
        if (!IsCurrent(download)) {
            return;
        }
        switch (download->state) {
        case State::Preparing:
        case State::Arrived:
            End(download);
            emit context.session.DownloadCanceled(download->id);
            break;
        case State::Requested:
            context.cloud.Manager().CancelDownloading(download->record);
            break;
        case State::Placed:
            break; // too late: the document is there
        }
    });
}

void SessionDownloads::Resume(bool wasAway)
{
    for (const auto& download : qAsConst(downloads)) {
        if (download->isWaiting) {
            download->isWaiting = false;
            download->breaks = wasAway ? 0 : download->breaks;
            Later(this, [this, download = download] { Begin(download); });
        }
    }
}

void SessionDownloads::Begin(const DownloadPointer& download)
{
    if (!IsCurrent(download)) {
        return;
    }
    const auto* document = context.documents.Find(download->id);
    if (!document) {
        EndWithFailure(download, "It is not in the list of documents", "Refresh the list.");
        return;
    }
    const QString localPath = document->localPath;
    download->name = FromUtf8(document->facts.name);
    if (!DownloadTargets::IsFileName(download->name)) {
        EndWithFailure(download, "its name in the cloud is not valid as a file name", "Rename it in the cloud.");
        return;
    }
    if (download->isInPlace && localPath.isEmpty()) {
        EndWithFailure(download, "It has no local copy", "Download the document.");
        return;
    }
    if (download->isInPlace) {
        download->folder = QFileInfo(localPath).path();
    }
    const QFileInfo folder(download->folder);
    if (download->folder.isEmpty() || !folder.isDir()) {
        EndWithFailure(download, QStringLiteral("There is no folder \"%1\"").arg(download->folder),
                       "Choose another folder.");
        return;
    }
    if (!folder.isWritable()) {
        EndWithFailure(download,
                       QStringLiteral("you do not have permission to write to the folder \"%1\"").arg(download->folder),
                       "Choose another folder.");
        return;
    }
    download->target = TargetOf(*download);
    QStringList paths;
    for (const auto& path : {download->target, localPath}) {
        if (!path.isEmpty() && QFileInfo(path).isFile()) {
            paths.append(path);
        }
    }
    if (paths.isEmpty()) {
        Request(download);
    } else {
        Read(paths, [this, download] { Request(download); });
    }
}

void SessionDownloads::Request(const DownloadPointer& download)
{
    if (!IsCurrent(download)) {
        return;
    }
    const auto record = context.documents.CloudRecordOf(download->id);
    if (!record) {
        EndWithFailure(download, "It is no longer in the list of documents", "Refresh the list.");
        return;
    }
    if (!MayTakeTarget(download)) {
        return;
    }
    if (!context.cloud.IsSignedIn() && context.cloud.IsPatient()) {
        Wait(download);
        return;
    }
    if (!context.cloud.IsSignedIn()) {
        End(download);
        context.cloud.RequireSignIn(CloudProblem::Request::Download, {download->id, download->name});
        return;
    }
    download->staging = stagingFolders.Open(download->folder, download->name);
    if (!download->staging->IsValid()) {
        EndWithFailure(download, "the folder cannot be written to: " + download->staging->ErrorText(),
                       "Choose another folder.");
        return;
    }
    // Not the list's, because the manager gives the record its path before a byte has arrived.
    download->record = record;
    download->listedHash = record->GetRedactableCloudInfo()->GetMd5Hash();
    download->state = State::Requested;
    download->stagedPath = download->staging->Path() + '/' + download->name;
    staged[download->stagedPath] = download;
    context.documents.BeginTransfer(download->id);
    const auto stagedPath = ToPath(download->stagedPath);
    context.cloud.Manager().Download(record, download->staging->Path()); // the session may be gone afterwards
    record->SetPath(stagedPath, {}, {}); // what is cancelled is removed there, not where the folder once was
}

QString SessionDownloads::TargetOf(const ActiveDownload& download) const
{
    return download.isInPlace  ? context.documents.LocalPath(download.id)
           : download.isBeside ? targets.BesideIn(download.folder, download.id, download.name)
                               : targets.In(download.folder, download.id, download.name);
}

bool SessionDownloads::MayTakeTarget(const DownloadPointer& download)
{
    download->replaces = false;
    if (!DownloadTargets::IsTaken(download->target)) {
        return true;
    }
    const auto target = ToPath(download->target);
    const auto synchronizedHash = targets.SyncHashOf(download->id, download->target);
    if (!synchronizedHash) {
        EndWithNameTaken(download);
        return false;
    }
    const auto version = Files::FileIdentity::OfPath(download->target);
    const auto hash = context.hashes.CalculateHash(target);
    const auto& mayGo = download->isInPlace ? download->discardedHash : *synchronizedHash;
    if (mayGo.empty() || hash != mayGo) {
        EndWithChangedCopy(download);
        return false;
    }
    download->replaces = true;
    download->replaced = version;
    return true;
}

void SessionDownloads::EndWithNameTaken(const DownloadPointer& download)
{
    EndWithFailure(download, "the folder already contains something else with this name",
                   "Choose another folder, or move that file away.", FailureKind::NameTaken);
}

void SessionDownloads::EndWithChangedCopy(const DownloadPointer& download)
{
    // The user decides by what the list shows.
    Later(&context.documents, [&documents = context.documents, id = download->id,
                               path = targets.Normalized(download->target)] { documents.ShowCopy(id, path); });
    EndWithFailure(download, "the local copy has changes that are not in the cloud",
                   "Upload the changes, or choose another folder.", FailureKind::Conflict);
}

void SessionDownloads::Place(const DownloadPointer& download)
{
    if (!IsCurrent(download)) {
        return;
    }
    const auto arrived = Files::FileIdentity::OfPath(download->stagedPath);
    const bool isTold = arrived.IsFile() && arrived == download->arrivedAs;
    if (!isTold) {
        download->hash = context.hashes.CalculateHash(ToPath(download->stagedPath));
    }
    const auto cloudHash = download->record->GetRedactableCloudInfo()->GetMd5Hash();
    if (download->hash.empty()) {
        EndWithFailure(download, "the downloaded file could not be read", "Try again.");
        return;
    }
    if (IsMd5(cloudHash) && cloudHash != download->hash) {
        EndWithFailure(download, "the downloaded file does not match the list of documents",
                       "Refresh the list and try again.");
        return;
    }
    if (download->isBeside && !download->replaces) {
        download->target = TargetOf(*download); // something may have come there meanwhile
    }
    if (!MayTakeTarget(download)) { // it may have changed while the document came
        return;
    }
    // As the service knows it, which hears of the move when the folder may be gone.
    const auto arrivedAt = QFileInfo(download->staging->Path()).canonicalFilePath() + '/' + download->name;
    const auto error = download->replaces
                           ? Files::MoveReplacing(download->stagedPath, download->target, download->replaced)
                           : Files::MoveUnlessTaken(download->stagedPath, download->target);
    if (error == std::errc::file_exists) {
        download->replaces ? EndWithChangedCopy(download) : EndWithNameTaken(download);
        return;
    }
    if (error) {
        EndWithFailure(download, "it could not be moved into the folder: " + QString::fromStdString(error.message()),
                       "Choose another folder.");
        return;
    }
    context.cloud.NoteCopyMoved(download->id, arrivedAt, download->target);
    download->state = State::Placed;
    download->place = targets.Normalized(download->target);
    const auto placed = Files::FileIdentity::OfPath(download->target);
    if (isTold && placed.HasContentOf(arrived)) {
        context.hashes.Tell(download->place, placed.ToString(), download->hash, download->isArrivedLasting);
        Complete(download);
    } else {
        context.hashes.Prepare({download->target}, this, [this, download] { Complete(download); });
    }
}

bool SessionDownloads::HasOtherChangedCopy(const DownloadPointer& download) const
{
    const auto path = context.documents.LocalPath(download->id);
    if (path == download->place || !QFileInfo(path).isFile()) {
        return false;
    }
    const auto synchronizedHash = context.documents.SyncHashAt(download->id, path);
    return synchronizedHash && context.hashes.CalculateHash(ToPath(path)) != *synchronizedHash;
}

void SessionDownloads::Read(const QStringList& paths, const std::function<void()>& done)
{
    context.hashes.Prepare(paths, this, done, Md5HashCalculator::Reading::Always);
}

void SessionDownloads::Complete(const DownloadPointer& download)
{
    End(download);
    // Read again: the list may have learned something meanwhile, and may even have lost the document.
    const auto held = context.documents.RecordOf(download->id);
    if (HasOtherChangedCopy(download)) {
        if (!context.documents.KeepCopy(download->id, download->place, download->hash)) {
            return;
        }
    } else if (held) {
        const auto path = ToPath(download->place);
        held->SetPath(path, context.hashes.CalculateHash(path), download->hash);
        const auto cloudHash = held->GetRedactableCloudInfo()->GetMd5Hash();
        if (!IsMd5(cloudHash) && cloudHash == download->listedHash) {
            SetCloudHash(*held, download->hash);
        }
        if (!context.documents.Replace(held)) {
            return;
        }
    }
    emit context.session.DocumentDownloaded(download->id, download->target);
}

bool SessionDownloads::IsCurrent(const DownloadPointer& download) const
{
    return downloads.value(download->id) == download;
}

SessionDownloads::DownloadPointer SessionDownloads::FindRequested(const std::shared_ptr<const FileInfo>& file) const
{
    const auto download = downloads.value(IdOf(*file));
    return download && download->state == State::Requested ? download : nullptr;
}

void SessionDownloads::Wait(const DownloadPointer& download)
{
    TakeBack(download);
    download->arrivedAs = {};
    download->isWaiting = true;
    emit context.session.DownloadWaiting(download->id);
}

void SessionDownloads::End(const DownloadPointer& download)
{
    downloads.remove(download->id);
    TakeBack(download);
}

void SessionDownloads::TakeBack(const DownloadPointer& download)
{
    if (download->staging) {
        staged.remove(download->stagedPath);
        if (download->state != State::Placed && !download->stagedPath.isEmpty()) {
            QFile::remove(download->stagedPath);
        }
        stagingFolders.Close(std::move(download->staging), download->folder, download->name);
    }
    if (download->state != State::Preparing) {
        context.documents.EndTransfer(download->id);
    }
    download->state = State::Preparing;
}

void SessionDownloads::EndWithFailure(const DownloadPointer& download, const QString& reason, const QString& advice,
                                      FailureKind kind)
{
    End(download);
    Refuse(download, reason, advice, kind);
}

void SessionDownloads::Refuse(const DownloadPointer& download, const QString& reason, const QString& advice,
                              FailureKind kind)
{
    context.cloud.Refuse(CloudProblem::Request::Download, {download->id, download->name}, reason, advice, kind);
}

void SessionDownloads::NoteArrived(const Social::OAuth2::TransferredFile& file)
{
    if (const auto download = staged.value(file.localPath)) {
        download->hash = file.md5Hash.toStdString();
        download->arrivedAs = Files::FileIdentity::FromString(file.identity);
        download->isArrivedLasting = file.isLasting;
    }
}

void SessionDownloads::OnFinished(const std::shared_ptr<const FileInfo>& file)
{
    const auto download = FindRequested(file);
    if (!download) {
        return;
    }
    download->state = State::Arrived;
    QStringList paths = {context.documents.LocalPath(download->id)};
    if (!download->arrivedAs.IsFile()) {
        paths.append(download->stagedPath);
    }
    if (download->replaces) {
        paths.append(download->target);
    }
    paths.removeDuplicates();
    paths.removeAll({});
    if (paths.isEmpty()) {
        Place(download);
    } else {
        Read(paths, [this, download] { Place(download); });
    }
}

void SessionDownloads::OnError(const std::shared_ptr<const FileInfo>& file, const QString& message)
{
    auto cause = context.cloud.Failures().Take();
    const auto download = FindRequested(file);
    if (download) { // the user knows of the target only
        cause.reason.replace(download->stagedPath, download->target);
    }
    if (download && context.cloud.IsPatient() && cause.kind == FailureKind::Unavailable &&
        ++download->breaks <= mostBreaks) {
        Wait(download);
    } else if (download) {
        End(download);
        context.cloud.Fail(CloudProblem::Request::Download, download->id, message, cause);
    }
}

void SessionDownloads::OnCanceled(const std::shared_ptr<const FileInfo>& file)
{
    const auto download = FindRequested(file);
    if (download) {
        End(download);
        emit context.session.DownloadCanceled(download->id);
    }
}

} // namespace Norlis::Host
