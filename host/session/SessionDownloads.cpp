#include "SessionDownloads.h"

#include <files/FilePlacing.h>

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;

namespace {

const auto notDownloaded = QStringLiteral("The document was not downloaded");

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

std::string IdOf(const FileInfo& file)
{
    return FileInfo(file).GetId();
}

} // namespace

SessionDownloads::SessionDownloads(SessionContext& context) : context(context)
{
    using Record = std::shared_ptr<const FileInfo>;
    const auto& cloud = *context.cloud;
    QObject::connect(&cloud, &AbstractCloudManager::DownloadingFinished, &context,
                     [this](const Record& file) { OnFinished(file); });
    QObject::connect(&cloud, &AbstractCloudManager::DownloadingFileRequestError, &context,
                     [this](const Record& file, const QString& message) { OnError(file, message); });
    QObject::connect(&cloud, &AbstractCloudManager::DownloadingCanceled, &context,
                     [this](const Record& file) { OnCanceled(file); });
}

void SessionDownloads::Start(const QString& id, const QString& folder)
{
    const auto run = std::make_shared<Run>();
    run->id = id;
    run->folder = folder;
    run->name = id; // until the document is found
    if (runs.contains(id)) {
        run->name = runs[id]->name;
        context.Later([this, run] {
            context.Fail(CloudProblem::Request::Download, run->id, notDownloaded,
                         Cause("Download", run->name, "it is being downloaded already",
                               "Wait until that is done, or cancel it."));
        });
        return;
    }
    runs[id] = run;
    context.Later([this, run] { Begin(run); });
}

void SessionDownloads::Cancel(const QString& id)
{
    const auto run = runs.value(id);
    if (!run) {
        return;
    }
    context.Later([this, run] {
        if (!IsRunning(run)) {
            return;
        }
        switch (run->stage) {
        case Stage::Preparing:
        case Stage::Arrived:
            End(run);
            emit context.session.DownloadCanceled(run->id);
            break;
        case Stage::Sent:
            context.cloud->CancelDownloading(run->record);
            break;
        case Stage::Placed:
            break; // too late: the document is there
        }
    });
}

void SessionDownloads::Begin(const RunPointer& run)
{
    if (!IsRunning(run)) {
        return;
    }
    const auto held = context.documents->GetFileInfo(run->id);
    if (!held) {
        EndWithFailure(run, "it is not in the list of documents", "Refresh the list.");
        return;
    }
    run->name = QString::fromStdString(held->GetRedactableCloudInfo()->GetFileName());
    if (!IsFileName(run->name)) {
        EndWithFailure(run, "its name in the cloud cannot be the name of a file", "Rename it in the cloud.");
        return;
    }
    const QFileInfo folder(run->folder);
    if (run->folder.isEmpty() || !folder.isDir()) {
        EndWithFailure(run, "there is no folder \"" + run->folder + '"', "Choose another folder.");
        return;
    }
    if (!folder.isWritable()) {
        EndWithFailure(run, "you may not write to the folder \"" + run->folder + '"', "Choose another folder.");
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
        context.hashes->Prepare(paths, &context, [this, run] { Send(run); });
    }
}

void SessionDownloads::Send(const RunPointer& run)
{
    if (!IsRunning(run)) {
        return;
    }
    const auto held = context.documents->GetFileInfo(run->id);
    if (!held) {
        EndWithFailure(run, "it is no longer in the list of documents", "Refresh the list.");
        return;
    }
    if (!MayTakeTarget(run)) {
        return;
    }
    if (!context.protocol->loggedIn()) {
        End(run);
        context.RequireSignIn(CloudProblem::Request::Download, run->id, run->name);
        return;
    }
    run->staging = std::make_unique<QTemporaryDir>(QDir(run->folder).absoluteFilePath(".norlis-download-"));
    if (!run->staging->isValid()) {
        EndWithFailure(run, "the folder cannot be written: " + run->staging->errorString(), "Choose another folder.");
        return;
    }
    // A copy, because the manager gives the record its path before a byte has arrived.
    run->record = held;
    run->stage = Stage::Sent;
    context.BeginTransfer(run->id);
    context.cloud->Download(run->record, run->staging->path());
}

bool SessionDownloads::MayTakeTarget(const RunPointer& run)
{
    run->replaces = false;
    if (!IsTaken(run->target)) {
        return true;
    }
    const auto target = ToPath(run->target);
    const auto held = context.documents->GetFileInfo(run->id);
    const auto normalized = [this](const ioPath& path) { return context.fileSystem->NormalizePath(path); };
    const bool isOwnCopy = held && !held->GetPath().empty() && !QFileInfo(run->target).isSymLink() &&
                           normalized(held->GetPath()) == normalized(target);
    if (!isOwnCopy) {
        EndWithFailure(run, "there is something else of this name in the folder already",
                       "Choose another folder, or move that file away.");
        return false;
    }
    const auto synchronizedHash = held->GetCloudHashBeforeChange();
    if (synchronizedHash.empty() || context.hashes->CalculateHash(target) != synchronizedHash) {
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
    run->hash = context.hashes->CalculateHash(ToPath(run->stagedPath));
    const auto cloudHash = run->record->GetRedactableCloudInfo()->GetMd5Hash();
    if (run->hash.empty()) {
        EndWithFailure(run, "what arrived could not be read", "Try again.");
        return;
    }
    if (!cloudHash.empty() && cloudHash != run->hash) {
        EndWithFailure(run, "what arrived is not what the list of documents announced",
                       "Refresh the list and try again.");
        return;
    }
    if (!MayTakeTarget(run)) { // it may have changed while the document came
        return;
    }
    const auto error = run->replaces ? Files::MoveReplacing(run->stagedPath, run->target)
                                     : Files::MoveUnlessTaken(run->stagedPath, run->target);
    if (error) {
        EndWithFailure(run, "it could not be put into the folder: " + QString::fromStdString(error.message()),
                       "Choose another folder.");
        return;
    }
    run->stage = Stage::Placed;
    context.hashes->Prepare({run->target}, &context, [this, run] { Complete(run); });
}

void SessionDownloads::Complete(const RunPointer& run)
{
    End(run);
    CloudSession& session = context.session;
    // Read again: the list may have learned something meanwhile, and may even have lost the document.
    const auto held = context.documents->GetFileInfo(run->id);
    if (held) {
        const auto path = context.fileSystem->NormalizePath(ToPath(run->target));
        held->SetPath(path, context.hashes->CalculateHash(path), run->hash);
        if (!context.Replace(held)) {
            return;
        }
    }
    emit session.DocumentDownloaded(run->id, run->target);
}

bool SessionDownloads::IsRunning(const RunPointer& run) const
{
    return runs.value(run->id) == run;
}

SessionDownloads::RunPointer SessionDownloads::FindSent(const std::shared_ptr<const FileInfo>& file) const
{
    const auto run = runs.value(QString::fromStdString(IdOf(*file)));
    return run && run->stage == Stage::Sent ? run : nullptr;
}

void SessionDownloads::End(const RunPointer& run)
{
    runs.remove(run->id);
    if (run->staging) {
        leftovers.push_back(std::move(run->staging));
    }
    RemoveLeftovers();
    if (run->stage != Stage::Preparing) {
        context.EndTransfer(run->id);
    }
}

void SessionDownloads::EndWithFailure(const RunPointer& run, const QString& reason, const QString& advice)
{
    End(run);
    context.Fail(CloudProblem::Request::Download, run->id, notDownloaded, Cause("Download", run->name, reason, advice));
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
    run->stage = Stage::Arrived;
    run->stagedPath = ToText(FileInfo(*file).GetPath());
    QStringList paths = {run->stagedPath};
    if (run->replaces) {
        paths.append(run->target);
    }
    context.hashes->Prepare(paths, &context, [this, run] { Place(run); });
}

void SessionDownloads::OnError(const std::shared_ptr<const FileInfo>& file, const QString& message)
{
    const auto cause = context.TakeCause();
    const auto run = FindSent(file);
    if (run) {
        End(run);
        context.Fail(CloudProblem::Request::Download, run->id, message, cause);
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
