#include "SessionUploads.h"

#include "Later.h"
#include "Records.h"

#include <QFileInfo>

#include <algorithm>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;

namespace {

QString FileNameOf(const QString& path)
{
    return QFileInfo(path).fileName();
}

/// Why a file cannot be sent and what to do; empty texts when nothing speaks against it.
std::pair<QString, QString> Obstacle(const QString& path)
{
    const QFileInfo file(path);
    if (path.isEmpty()) {
        return {"no file was given", "Choose a PDF file."};
    }
    if (!file.exists()) {
        return {"there is no such file", "Check the name, or whether the file was moved."};
    }
    if (file.isDir()) {
        return {"it is a folder", "Choose the PDF files in it."};
    }
    if (!file.isFile()) {
        return {"it is not a regular file", "Choose a PDF file."};
    }
    if (!file.isReadable()) {
        return {"you do not have permission to read the file", "Check its permissions."};
    }
    return {};
}

} // namespace

SessionUploads::SessionUploads(const SessionContext& context) : context(context)
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::UploadingFinished, this, &SessionUploads::OnFinished);
    connect(&manager, &AbstractCloudManager::UploadingFileRequestError, this, &SessionUploads::OnError);
    connect(&manager, &AbstractCloudManager::UploadingCanceled, this, &SessionUploads::OnCanceled);
}

void SessionUploads::Start(const QStringList& paths)
{
    AskToSignIn();
    for (const auto& path : paths.isEmpty() ? QStringList(QString()) : paths) {
        const auto run = std::make_shared<Run>();
        run->path = path;
        Enter(run);
    }
}

void SessionUploads::StartChanges(const QString& id)
{
    const auto held = context.documents.RecordOf(id);
    if (!held || held->GetPath().empty()) {
        const QString reason = held ? "it has no local copy" : "it is not in the list of documents";
        const QString advice = held ? "Download the document first." : "Refresh the list.";
        const QString name = held ? NameOf(*held) : id;
        Later(this, [this, id, name, reason, advice] {
            context.cloud.Refuse(CloudProblem::Request::Upload, id, name, reason, advice);
        });
        return;
    }
    const auto run = std::make_shared<Run>();
    run->path = ToText(held->GetPath());
    run->document = id;
    AskToSignIn();
    Enter(run);
}

void SessionUploads::AskToSignIn()
{
    Later(this, [this] {
        if (!context.cloud.IsSignedIn()) {
            context.cloud.AskToSignIn();
        }
    });
}

void SessionUploads::Cancel(const QString& path)
{
    const auto normalizedPath = context.fileSystem.NormalizePath(ToPath(path));
    const auto found =
        std::find_if(runs.begin(), runs.end(), [&](const auto& run) { return run->normalizedPath == normalizedPath; });
    if (found == runs.end()) {
        return;
    }
    Later(this, [this, run = *found] {
        if (run->isSent) {
            context.cloud.Manager().CancelUploading(run->path);
        } else if (End(run)) {
            emit context.session.UploadCanceled(run->path);
        }
    });
}

void SessionUploads::Enter(const RunPointer& run)
{
    run->normalizedPath = context.fileSystem.NormalizePath(ToPath(run->path));
    const bool isRunning = std::any_of(runs.begin(), runs.end(), [&](const auto& other) {
        return other->normalizedPath == run->normalizedPath && !run->path.isEmpty();
    });
    if (isRunning) {
        Later(this,
              [this, run] { Refuse(run, "it is already being uploaded", "Wait until that is done, or cancel it."); });
        return;
    }
    runs.append(run);
    Later(this, [this, run] { Begin(run); });
}

void SessionUploads::Begin(const RunPointer& run)
{
    if (!runs.contains(run)) {
        return;
    }
    const auto [reason, advice] = Obstacle(run->path);
    if (!reason.isEmpty()) {
        End(run);
        Refuse(run, reason, advice);
        return;
    }
    if (!context.cloud.IsSignedIn()) {
        End(run);
        context.cloud.RefuseSignedOut(CloudProblem::Request::Upload, run->path, FileNameOf(run->path));
        return;
    }
    // The cloud manager hashes the path as it is when it sends, and normalised when the answer comes.
    context.hashes.Prepare({run->path, ToText(run->normalizedPath)}, this, [this, run] { Send(run); });
}

void SessionUploads::Send(const RunPointer& run)
{
    if (!runs.contains(run)) {
        return;
    }
    run->sentHash = context.hashes.CalculateHash(ToPath(run->path));
    run->sentSize = static_cast<quint64>(QFileInfo(run->path).size());
    if (run->sentHash.empty()) {
        End(run);
        Refuse(run, "the file could not be read", "Check its permissions, and the disk that it is on.");
        return;
    }
    std::shared_ptr<FileInfo> replaced;
    if (!run->document.isEmpty()) {
        replaced = context.documents.RecordOf(run->document);
        if (!replaced || replaced->GetPath() != ToPath(run->path)) {
            End(run);
            Refuse(run, "it is no longer the local copy of a document in the list",
                   "Upload it as a new document, or refresh the list.");
            return;
        }
    }
    if (!context.cloud.IsSignedIn()) {
        End(run);
        context.cloud.RequireSignIn(CloudProblem::Request::Upload, run->path, FileNameOf(run->path));
        return;
    }
    run->isSent = true;
    if (replaced) {
        context.documents.BeginTransfer(run->document);
        context.cloud.Manager().Upload(replaced);
    } else {
        context.cloud.Manager().Upload(run->path);
    }
}

bool SessionUploads::End(const RunPointer& run)
{
    if (!runs.removeOne(run)) {
        return false;
    }
    if (run->isSent && !run->document.isEmpty()) {
        context.documents.EndTransfer(run->document);
    }
    return true;
}

SessionUploads::RunPointer SessionUploads::FindSent(const QString& path) const
{
    const auto found =
        std::find_if(runs.begin(), runs.end(), [&](const auto& run) { return run->isSent && run->path == path; });
    return found == runs.end() ? nullptr : *found;
}

void SessionUploads::Refuse(const RunPointer& run, const QString& reason, const QString& advice)
{
    context.cloud.Refuse(CloudProblem::Request::Upload, run->path, FileNameOf(run->path), reason, advice);
}

void SessionUploads::OnFinished(const std::shared_ptr<FileInfo>& uploaded)
{
    // Normalised again, as the manager has just done it: a link may point elsewhere by now.
    const auto found = std::find_if(runs.begin(), runs.end(), [&](const auto& run) {
        return run->isSent && context.fileSystem.NormalizePath(ToPath(run->path)) == uploaded->GetPath();
    });
    if (found == runs.end()) {
        return;
    }
    const RunPointer run = *found;
    End(run);
    const auto id = IdOf(*uploaded);
    if (id.isEmpty()) {
        Refuse(run, "the service did not report the id of the document", "Refresh the list.");
        return;
    }
    // The record describes the file as it is now. The cloud has what was sent, which is something else when the file
    // was saved meanwhile.
    FileInfo::CloudInfo told = uploaded->GetRedactableCloudInfo().value();
    const auto record = std::make_shared<FileInfo>(
        FileInfo::CloudInfo(told.GetId(), told.GetFileName(), run->sentSize, told.IsPrivate(), told.GetDownloadUrl(),
                            told.GetCreatedAt(), told.GetModifyTime(), told.GetLifeTime(), run->sentHash));
    record->SetPath(uploaded->GetPath(), uploaded->GetMd5Hash(), run->sentHash);

    context.journal.NoteUpload(id);
    if (context.documents.Replace(record)) {
        emit context.session.DocumentUploaded(run->path, id);
    }
}

void SessionUploads::OnError(const QString& path, const QString& message)
{
    const auto cause = context.cloud.Failures().Take();
    const auto run = FindSent(path);
    if (run && End(run)) {
        context.cloud.Fail(CloudProblem::Request::Upload, path, message, cause);
    }
}

void SessionUploads::OnCanceled(const QString& path)
{
    const auto run = FindSent(path);
    if (run && End(run)) {
        emit context.session.UploadCanceled(run->path);
    }
}

} // namespace Norlis::Host
