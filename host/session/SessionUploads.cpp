#include "SessionUploads.h"

#include <QFileInfo>

#include <algorithm>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;

namespace {

const auto notUploaded = QStringLiteral("The document was not uploaded");

QString NameOf(const QString& path)
{
    return QFileInfo(path).fileName();
}

/// Why a file cannot be sent and what to do; empty texts when nothing speaks against it.
std::pair<QString, QString> Obstacle(const QString& path)
{
    const QFileInfo file(path);
    if (path.isEmpty()) {
        return {"no file was named", "Choose a PDF file."};
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
        return {"you may not read the file", "Check its permissions."};
    }
    return {};
}

} // namespace

SessionUploads::SessionUploads(SessionContext& context) : context(context)
{
    const auto& cloud = *context.cloud;
    QObject::connect(&cloud, &AbstractCloudManager::UploadingFinished, &context,
                     [this](const std::shared_ptr<FileInfo>& uploaded) { OnFinished(uploaded); });
    QObject::connect(&cloud, &AbstractCloudManager::UploadingFileRequestError, &context,
                     [this](const QString& path, const QString& message) { OnError(path, message); });
    QObject::connect(&cloud, &AbstractCloudManager::UploadingCanceled, &context,
                     [this](const QString& path) { OnCanceled(path); });
}

void SessionUploads::Start(const QStringList& paths)
{
    context.Later([this] {
        if (!context.protocol->loggedIn()) {
            context.AskToSignIn(); // once, however many files there are
        }
    });
    for (const auto& path : paths.isEmpty() ? QStringList(QString()) : paths) {
        const auto run = std::make_shared<Run>();
        run->path = path;
        Enter(run);
    }
}

void SessionUploads::StartChanges(const QString& id)
{
    const auto held = context.documents->GetFileInfo(id);
    if (!held || held->GetPath().empty()) {
        const auto reason = held ? "it has no local copy" : "it is not in the list of documents";
        const auto advice = held ? "Download the document first." : "Refresh the list.";
        const auto name = held ? QString::fromStdString(held->GetRedactableCloudInfo()->GetFileName()) : id;
        context.Later([this, id, cause = Cause("Upload", name, reason, advice)] {
            context.Fail(CloudProblem::Request::Upload, id, notUploaded, cause);
        });
        return;
    }
    const auto run = std::make_shared<Run>();
    run->path = ToText(held->GetPath());
    run->document = id;
    context.Later([this] {
        if (!context.protocol->loggedIn()) {
            context.AskToSignIn();
        }
    });
    Enter(run);
}

void SessionUploads::Cancel(const QString& path)
{
    const auto normalizedPath = context.fileSystem->NormalizePath(ToPath(path));
    const auto found =
        std::find_if(runs.begin(), runs.end(), [&](const auto& run) { return run->normalizedPath == normalizedPath; });
    if (found == runs.end()) {
        return;
    }
    context.Later([this, run = *found] {
        if (run->isSent) {
            context.cloud->CancelUploading(run->path);
        } else if (End(run)) {
            emit context.session.UploadCanceled(run->path);
        }
    });
}

void SessionUploads::Enter(const RunPointer& run)
{
    run->normalizedPath = context.fileSystem->NormalizePath(ToPath(run->path));
    const bool isRunning = std::any_of(runs.begin(), runs.end(), [&](const auto& other) {
        return other->normalizedPath == run->normalizedPath && !run->path.isEmpty();
    });
    if (isRunning) {
        context.Later(
            [this, run] { Fail(run, "it is being uploaded already", "Wait until that is done, or cancel it."); });
        return;
    }
    runs.append(run);
    context.Later([this, run] { Begin(run); });
}

void SessionUploads::Begin(const RunPointer& run)
{
    if (!runs.contains(run)) {
        return;
    }
    const auto [reason, advice] = Obstacle(run->path);
    if (!reason.isEmpty()) {
        End(run);
        Fail(run, reason, advice);
        return;
    }
    if (!context.protocol->loggedIn()) {
        End(run);
        context.FailForSignIn(CloudProblem::Request::Upload, run->path, NameOf(run->path));
        return;
    }
    // The cloud manager hashes the path as it is when it sends, and normalised when the answer comes.
    context.hashes->Prepare({run->path, ToText(run->normalizedPath)}, &context, [this, run] { Send(run); });
}

void SessionUploads::Send(const RunPointer& run)
{
    if (!runs.contains(run)) {
        return;
    }
    run->sentHash = context.hashes->CalculateHash(ToPath(run->path));
    run->sentSize = static_cast<quint64>(QFileInfo(run->path).size());
    if (run->sentHash.empty()) {
        End(run);
        Fail(run, "the file could not be read", "Check its permissions, and the disk that it is on.");
        return;
    }
    std::shared_ptr<FileInfo> replaced;
    if (!run->document.isEmpty()) {
        replaced = context.documents->GetFileInfo(run->document);
        if (!replaced || replaced->GetPath() != ToPath(run->path)) {
            End(run);
            Fail(run, "it is no longer the local copy of a document in the list",
                 "Upload it as a new document, or refresh the list.");
            return;
        }
    }
    if (!context.protocol->loggedIn()) {
        End(run);
        context.RequireSignIn(CloudProblem::Request::Upload, run->path, NameOf(run->path));
        return;
    }
    run->isSent = true;
    if (replaced) {
        context.BeginTransfer(run->document);
        context.cloud->Upload(replaced);
    } else {
        context.cloud->Upload(run->path);
    }
}

bool SessionUploads::End(const RunPointer& run)
{
    if (!runs.removeOne(run)) {
        return false;
    }
    if (run->isSent && !run->document.isEmpty()) {
        context.EndTransfer(run->document);
    }
    return true;
}

SessionUploads::RunPointer SessionUploads::FindSent(const QString& path) const
{
    const auto found =
        std::find_if(runs.begin(), runs.end(), [&](const auto& run) { return run->isSent && run->path == path; });
    return found == runs.end() ? nullptr : *found;
}

void SessionUploads::Fail(const RunPointer& run, const QString& reason, const QString& advice)
{
    context.Fail(CloudProblem::Request::Upload, run->path, notUploaded,
                 Cause("Upload", NameOf(run->path), reason, advice));
}

void SessionUploads::OnFinished(const std::shared_ptr<FileInfo>& uploaded)
{
    // Normalised again, as the manager has just done it: a link may point elsewhere by now.
    const auto found = std::find_if(runs.begin(), runs.end(), [&](const auto& run) {
        return run->isSent && context.fileSystem->NormalizePath(ToPath(run->path)) == uploaded->GetPath();
    });
    if (found == runs.end()) {
        return;
    }
    const RunPointer run = *found;
    End(run);
    const auto id = QString::fromStdString(uploaded->GetId());
    if (id.isEmpty()) {
        Fail(run, "the service did not say under which id it keeps the document", "Refresh the list.");
        return;
    }
    // The record describes the file as it is now. The cloud has what was sent, which is something else when the file
    // was saved meanwhile.
    FileInfo::CloudInfo told = uploaded->GetRedactableCloudInfo().value();
    const auto record = std::make_shared<FileInfo>(
        FileInfo::CloudInfo(told.GetId(), told.GetFileName(), run->sentSize, told.IsPrivate(), told.GetDownloadUrl(),
                            told.GetCreatedAt(), told.GetModifyTime(), told.GetLifeTime(), run->sentHash));
    record->SetPath(uploaded->GetPath(), uploaded->GetMd5Hash(), run->sentHash);

    context.uploadedAt[id] = ++context.clock;
    CloudSession& session = context.session;
    if (context.Replace(record)) {
        emit session.DocumentUploaded(run->path, id);
    }
}

void SessionUploads::OnError(const QString& path, const QString& message)
{
    const auto cause = context.TakeCause();
    const auto run = FindSent(path);
    if (run && End(run)) {
        context.Fail(CloudProblem::Request::Upload, path, message, cause);
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
