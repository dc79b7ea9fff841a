#include "SessionDownloads.h"

#include "Later.h"
#include "Records.h"

#include <files/FilePlacing.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;

namespace {

/// Whether the name stays inside the folder that it is put into.
bool IsFileName(const QString& name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/') && !name.contains(QChar(0)) &&
           name == QFileInfo(name).fileName();
}

bool IsTaken(const QString& path)
{
    const QFileInfo file(path);
    return file.exists() || file.isSymLink(); // a link may lead nowhere
}

} // namespace

SessionDownloads::SessionDownloads(const SessionContext& context) : context(context)
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::DownloadingFinished, this, &SessionDownloads::OnFinished);
    connect(&manager, &AbstractCloudManager::DownloadingFileRequestError, this, &SessionDownloads::OnError);
    connect(&manager, &AbstractCloudManager::DownloadingCanceled, this, &SessionDownloads::OnCanceled);
}

void SessionDownloads::Start(const QString& id, const QString& folder)
{
    const auto run = std::make_shared<Run>();
    run->id = id;
    run->folder = folder;
    run->name = id; // until the document is found
    if (runs.contains(id)) {
        run->name = runs[id]->name;
        Later(this,
              [this, run] { Refuse(run, "it is already being downloaded", "Wait until that is done, or cancel it."); });
        return;
    }
    runs[id] = run;
    Later(this, [this, run] { Begin(run); });
}

void SessionDownloads::Cancel(const QString& id)
{
    const auto run = runs.value(id);
    if (!run) {
        return;
    }
    Later(this, [this, run] {
        if (!IsRunning(run)) {
            return;
        }
        switch (run->state) {
        case State::Preparing:
        case State::Arrived:
            End(run);
            emit context.session.DownloadCanceled(run->id);
            break;
        case State::Sent:
            context.cloud.Manager().CancelDownloading(run->record);
            break;
        case State::Placed:
            break; // too late: the document is there
        }
    });
}

void SessionDownloads::Begin(const RunPointer& run)
{
    if (!IsRunning(run)) {
        return;
    }
    const auto held = context.documents.RecordOf(run->id);
    if (!held) {
        EndWithFailure(run, "it is not in the list of documents", "Refresh the list.");
        return;
    }
    run->name = NameOf(*held);
    if (!IsFileName(run->name)) {
        EndWithFailure(run, "its name in the cloud is not valid as a file name", "Rename it in the cloud.");
        return;
    }
    const QFileInfo folder(run->folder);
    if (run->folder.isEmpty() || !folder.isDir()) {
        EndWithFailure(run, "there is no folder \"" + run->folder + '"', "Choose another folder.");
        return;
    }
    if (!folder.isWritable()) {
        EndWithFailure(run, "you do not have permission to write to the folder \"" + run->folder + '"',
                       "Choose another folder.");
        return;
    }
    run->target = QDir::cleanPath(QDir(run->folder).absoluteFilePath(run->name));
    QStringList paths;
    for (const auto& path : {run->target, ToText(held->GetPath())}) {
        if (!path.isEmpty() && QFileInfo(path).isFile()) {
            paths.append(path);
        }
    }
    if (paths.isEmpty()) {
        Send(run);
    } else {
        context.hashes.Prepare(paths, this, [this, run] { Send(run); });
    }
}

void SessionDownloads::Send(const RunPointer& run)
{
    if (!IsRunning(run)) {
        return;
    }
    const auto held = context.documents.RecordOf(run->id);
    if (!held) {
        EndWithFailure(run, "it is no longer in the list of documents", "Refresh the list.");
        return;
    }
    if (!MayTakeTarget(run)) {
        return;
    }
    if (!context.cloud.IsSignedIn()) {
        End(run);
        context.cloud.RequireSignIn(CloudProblem::Request::Download, run->id, run->name);
        return;
    }
    run->staging = std::make_unique<QTemporaryDir>(QDir(run->folder).absoluteFilePath(".norlis-download-"));
    if (!run->staging->isValid()) {
        EndWithFailure(run, "the folder cannot be written to: " + run->staging->errorString(),
                       "Choose another folder.");
        return;
    }
    // A copy, because the manager gives the record its path before a byte has arrived.
    run->record = held;
    run->state = State::Sent;
    context.documents.BeginTransfer(run->id);
    context.cloud.Manager().Download(run->record, run->staging->path());
}

bool SessionDownloads::MayTakeTarget(const RunPointer& run)
{
    run->replaces = false;
    if (!IsTaken(run->target)) {
        return true;
    }
    const auto target = ToPath(run->target);
    const auto held = context.documents.RecordOf(run->id);
    const auto normalized = [this](const ioPath& path) { return context.fileSystem.NormalizePath(path); };
    const bool isOwnCopy = held && !held->GetPath().empty() && !QFileInfo(run->target).isSymLink() &&
                           normalized(held->GetPath()) == normalized(target);
    if (!isOwnCopy) {
        EndWithFailure(run, "the folder already contains something else with this name",
                       "Choose another folder, or move that file away.");
        return false;
    }
    const auto synchronizedHash = held->GetCloudHashBeforeChange();
    if (synchronizedHash.empty() || context.hashes.CalculateHash(target) != synchronizedHash) {
        EndWithFailure(run, "the local copy has changes that are not in the cloud",
                       "Upload the changes, or choose another folder.");
        return false;
    }
    run->replaces = true;
    return true;
}

void SessionDownloads::Place(const RunPointer& run)
{
    if (!IsRunning(run)) {
        return;
    }
    run->hash = context.hashes.CalculateHash(ToPath(run->stagedPath));
    const auto cloudHash = run->record->GetRedactableCloudInfo()->GetMd5Hash();
    if (run->hash.empty()) {
        EndWithFailure(run, "the downloaded file could not be read", "Try again.");
        return;
    }
    if (!cloudHash.empty() && cloudHash != run->hash) {
        EndWithFailure(run, "the downloaded file does not match the list of documents",
                       "Refresh the list and try again.");
        return;
    }
    if (!MayTakeTarget(run)) { // it may have changed while the document came
        return;
    }
    const auto error = run->replaces ? Files::MoveReplacing(run->stagedPath, run->target)
                                     : Files::MoveUnlessTaken(run->stagedPath, run->target);
    if (error) {
        EndWithFailure(run, "it could not be moved into the folder: " + QString::fromStdString(error.message()),
                       "Choose another folder.");
        return;
    }
    run->state = State::Placed;
    context.hashes.Prepare({run->target}, this, [this, run] { Complete(run); });
}

void SessionDownloads::Complete(const RunPointer& run)
{
    End(run);
    // Read again: the list may have learned something meanwhile, and may even have lost the document.
    const auto held = context.documents.RecordOf(run->id);
    if (held) {
        const auto path = context.fileSystem.NormalizePath(ToPath(run->target));
        held->SetPath(path, context.hashes.CalculateHash(path), run->hash);
        if (!context.documents.Replace(held)) {
            return;
        }
    }
    emit context.session.DocumentDownloaded(run->id, run->target);
}

bool SessionDownloads::IsRunning(const RunPointer& run) const
{
    return runs.value(run->id) == run;
}

SessionDownloads::RunPointer SessionDownloads::FindSent(const std::shared_ptr<const FileInfo>& file) const
{
    const auto run = runs.value(IdOf(*file));
    return run && run->state == State::Sent ? run : nullptr;
}

void SessionDownloads::End(const RunPointer& run)
{
    runs.remove(run->id);
    if (run->staging) {
        leftovers.push_back(std::move(run->staging));
    }
    RemoveLeftovers();
    if (run->state != State::Preparing) {
        context.documents.EndTransfer(run->id);
    }
}

void SessionDownloads::EndWithFailure(const RunPointer& run, const QString& reason, const QString& advice)
{
    End(run);
    Refuse(run, reason, advice);
}

void SessionDownloads::Refuse(const RunPointer& run, const QString& reason, const QString& advice)
{
    context.cloud.Refuse(CloudProblem::Request::Download, run->id, run->name, reason, advice);
}

void SessionDownloads::RemoveLeftovers()
{
    leftovers.erase(std::remove_if(leftovers.begin(), leftovers.end(),
                                   [](const auto& folder) { return !folder->isValid() || folder->remove(); }),
                    leftovers.end());
}

void SessionDownloads::OnFinished(const std::shared_ptr<const FileInfo>& file)
{
    const auto run = FindSent(file);
    if (!run) {
        return;
    }
    run->state = State::Arrived;
    run->stagedPath = ToText(FileInfo(*file).GetPath());
    QStringList paths = {run->stagedPath};
    if (run->replaces) {
        paths.append(run->target);
    }
    context.hashes.Prepare(paths, this, [this, run] { Place(run); });
}

void SessionDownloads::OnError(const std::shared_ptr<const FileInfo>& file, const QString& message)
{
    const auto cause = context.cloud.Failures().Take();
    const auto run = FindSent(file);
    if (run) {
        End(run);
        context.cloud.Fail(CloudProblem::Request::Download, run->id, message, cause);
    }
}

void SessionDownloads::OnCanceled(const std::shared_ptr<const FileInfo>& file)
{
    const auto run = FindSent(file);
    if (run) {
        End(run);
        emit context.session.DownloadCanceled(run->id);
    }
}

} // namespace Norlis::Host
