#include "SessionUploads.h"

#include "Later.h"
#include "OtherName.h"
#include "Records.h"

#include <base/Utf8.h>
#include <files/FileIdentity.h>
#include <files/PrivateFolder.h>

#include <QFileInfo>
#include <QSysInfo>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace Norlis::Host {

using PDF::FileInfo;
using PDF::Cloud::AbstractCloudManager;
using Social::OAuth2::FailureKind;

namespace {

const auto notListed = QStringLiteral("It is not in the list of documents");
const auto refreshTheList = QStringLiteral("Refresh the list.");
constexpr std::chrono::nanoseconds longestWait = std::chrono::seconds(3); // some files are written all the time

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
        return {"There is no such file", "Check the name, or whether the file was moved."};
    }
    if (file.isDir()) {
        return {"It is a folder", "Choose the PDF files in it."};
    }
    if (!file.isFile()) {
        return {"It is not a regular file", "Choose a PDF file."};
    }
    if (!file.isReadable()) {
        return {"you do not have permission to read the file", "Check its permissions."};
    }
    return {};
}

} // namespace

SessionUploads::SessionUploads(const SessionContext& context, const ListState& list, const QString& linkFolder)
    : context(context),
      list(list),
      linkFolder(linkFolder)
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::UploadingFinished, this, &SessionUploads::OnFinished);
    connect(&manager, &AbstractCloudManager::UploadingFileRequestError, this, &SessionUploads::OnError);
    connect(&manager, &AbstractCloudManager::UploadingCanceled, this, &SessionUploads::OnCanceled);
    connect(&manager, &AbstractCloudManager::UploadingProgressValueChanged, this,
            [this](const QString& path, int percent) {
                if (const auto upload = FindSent(path)) {
                    emit this->context.session.UploadProgress(upload->subject, percent);
                }
            });
}

void SessionUploads::Start(const QStringList& paths)
{
    AskToSignIn();
    for (const auto& path : paths.isEmpty() ? QStringList(QString()) : paths) {
        const auto upload = std::make_shared<ActiveUpload>();
        upload->path = path;
        upload->subject = path;
        Enter(upload);
    }
}

void SessionUploads::StartChanges(const QString& id, bool isNewerSeen)
{
    const auto held = context.documents.RecordOf(id);
    if (!held || held->GetPath().empty()) {
        RefuseWithoutCopy(id);
        return;
    }
    const auto upload = std::make_shared<ActiveUpload>();
    upload->path = ToText(held->GetPath());
    upload->subject = upload->path;
    upload->document = id;
    if (const auto* document = context.documents.Find(id); document && isNewerSeen) {
        upload->seen = document->facts;
    }
    AskToSignIn();
    Enter(upload);
}

void SessionUploads::StartReplacement(const QString& id, const QString& path)
{
    const auto* document = context.documents.Find(id);
    if (!document) {
        RefuseLater({path, FileNameOf(path)}, notListed, refreshTheList);
        return;
    }
    const auto upload = std::make_shared<ActiveUpload>();
    upload->path = path;
    upload->subject = path;
    upload->document = id;
    upload->isCopy = false;
    upload->seen = document->facts;
    AskToSignIn();
    Enter(upload);
}

void SessionUploads::StartKeepingBoth(const QString& id)
{
    const auto* document = context.documents.Find(id);
    if (!document || document->localPath.isEmpty()) {
        RefuseWithoutCopy(id);
        return;
    }
    const auto upload = std::make_shared<ActiveUpload>();
    Files::MakePrivateFolder(linkFolder);
    upload->link = std::make_unique<QTemporaryDir>(linkFolder + "/XXXXXX");
    const QString name = OtherNameOf(FromUtf8(document->facts.name), QSysInfo::machineHostName(), QDate::currentDate(),
                                     [this](const QString& other) { return IsNameTaken(other); });
    upload->path = upload->link->filePath(name);
    upload->subject = document->localPath;
    upload->origin = id;
    if (!upload->link->isValid() || !QFile::link(upload->subject, upload->path)) {
        RefuseLater({upload->subject, FromUtf8(document->facts.name)},
                    QStringLiteral("Nothing can be written to %1").arg(linkFolder),
                    "Check its permissions, and the disk that it is on.");
        return;
    }
    AskToSignIn();
    Enter(upload);
}

bool SessionUploads::IsNameTaken(const QString& name) const
{
    return !context.documents.DocumentNamed(name).isEmpty() ||
           std::any_of(uploads.begin(), uploads.end(),
                       [&](const UploadPointer& upload) { return FileNameOf(upload->path) == name; });
}

void SessionUploads::RefuseWithoutCopy(const QString& id)
{
    if (const auto* document = context.documents.Find(id)) {
        RefuseLater({id, FromUtf8(document->facts.name)}, "It has no local copy", "Download the document first.");
    } else {
        RefuseLater({id, id}, notListed, refreshTheList);
    }
}

void SessionUploads::RefuseLater(const SessionCloud::Subject& about, const QString& reason, const QString& advice)
{
    Later(this, [this, about, reason, advice] {
        context.cloud.Refuse(CloudProblem::Request::Upload, about, reason, advice);
    });
}

void SessionUploads::AskToSignIn()
{
    Later(this, [this] {
        if (!context.cloud.IsSignedIn() && !context.cloud.IsPatient()) {
            context.cloud.AskToSignIn();
        }
    });
}

void SessionUploads::Resume(bool wasAway)
{
    for (const auto& upload : uploads) {
        if (upload->isWaiting) {
            upload->isWaiting = false;
            upload->breaks = wasAway ? 0 : upload->breaks;
            Later(this, [this, upload = upload] { Begin(upload); });
        }
    }
}

void SessionUploads::Cancel(const QString& path)
{
    const auto found = uploadsByFile.value(ToText(context.fileSystem.NormalizePath(ToPath(path))));
    if (!found) {
        return;
    }
    Later(this, [this, upload = found] {
        if (upload->isSent) {
            context.cloud.Manager().CancelUploading(upload->path);
        } else if (End(upload)) {
            emit context.session.UploadCanceled(upload->subject);
        }
    });
}

void SessionUploads::Enter(const UploadPointer& upload)
{
    upload->normalizedPath = ToText(context.fileSystem.NormalizePath(ToPath(upload->path)));
    if (uploadsByFile.contains(upload->normalizedPath)) {
        Later(this, [this, upload] {
            Refuse(upload, "It is already being uploaded", "Wait until that is done, or cancel it.");
        });
        return;
    }
    uploads.insert(upload);
    if (!upload->path.isEmpty()) {
        uploadsByFile[upload->normalizedPath] = upload;
    }
    Later(this, [this, upload] { Begin(upload); });
}

void SessionUploads::Begin(const UploadPointer& upload)
{
    if (uploads.count(upload) == 0) {
        return;
    }
    const auto [reason, advice] = Obstacle(upload->path);
    if (!reason.isEmpty()) {
        End(upload);
        Refuse(upload, reason, advice);
        return;
    }
    if (!context.cloud.IsSignedIn() && context.cloud.IsPatient()) {
        Wait(upload);
        return;
    }
    if (!context.cloud.IsSignedIn()) {
        End(upload);
        context.cloud.RefuseSignedOut(CloudProblem::Request::Upload, {upload->subject, FileNameOf(upload->path)});
        return;
    }
    const auto send = [this, upload] { Send(upload); };
    // The list asks for the hashes of local copies at any time.
    const bool isCopy = !upload->document.isEmpty() || context.documents.IsCopy(upload->normalizedPath);
    upload->isHashExpected = !isCopy && context.cloud.TellsHashes();
    if (upload->isHashExpected) {
        // The hash of a file that was written just now could not be kept.
        const auto wait = Files::FileIdentity::OfTarget(upload->normalizedPath.toStdString()).TimeUntilSettled();
        const auto bounded = std::clamp(wait, std::chrono::nanoseconds(0), longestWait);
        QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(bounded), this, send);
    } else { // what is sent is what is in the file, whatever its time stamps say
        context.hashes.Prepare(PathsOf(*upload), this, send, Md5HashCalculator::Reading::Always);
    }
}

/// The cloud manager hashes the path as it is when it sends, and normalised when the answer comes.
QStringList SessionUploads::PathsOf(const ActiveUpload& upload)
{
    return upload.path == upload.normalizedPath ? QStringList{upload.path}
                                                : QStringList{upload.path, upload.normalizedPath};
}

void SessionUploads::Send(const UploadPointer& upload)
{
    if (uploads.count(upload) == 0) {
        return;
    }
    upload->sentSize = static_cast<quint64>(QFileInfo(upload->path).size());
    if (!upload->isHashExpected) {
        upload->sentHash = context.hashes.CalculateHash(ToPath(upload->path));
    }
    if (upload->sentHash.empty() && !upload->isHashExpected) {
        End(upload);
        Refuse(upload, "The file could not be read", "Check its permissions, and the disk that it is on.");
        return;
    }
    std::shared_ptr<FileInfo> replaced;
    if (!upload->document.isEmpty()) {
        replaced = context.documents.RecordOf(upload->document);
        if (!replaced || (upload->isCopy && replaced->GetPath() != ToPath(upload->path))) {
            End(upload);
            Refuse(upload, "It is no longer the local copy of a document in the list",
                   "Upload it as a new document, or refresh the list.");
            return;
        }
        // The protocol knows that too, unless its memory of the copy is lost.
        const auto status = replaced->GetCloudStatus();
        const bool isNewerThere =
            status == FileInfo::CloudStatus::ChangedInCloud || status == FileInfo::CloudStatus::ChangedOnBothSides;
        const auto* document = context.documents.Find(upload->document);
        const bool isOther = upload->seen && document && !document->facts.IsSameVersionAs(*upload->seen);
        if (isOther || (!upload->seen && upload->isCopy && isNewerThere)) {
            End(upload);
            Refuse(upload, "The document in the cloud has changed since you last saw it",
                   "Look at the version in the cloud first. To keep both, upload yours under another name.",
                   FailureKind::Conflict);
            return;
        }
        if (!upload->isCopy) {
            replaced->SetPath(ToPath(upload->normalizedPath), upload->sentHash, {});
        }
    }
    if (!context.cloud.IsSignedIn() && context.cloud.IsPatient()) {
        Wait(upload);
        return;
    }
    if (!context.cloud.IsSignedIn()) {
        End(upload);
        context.cloud.RequireSignIn(CloudProblem::Request::Upload, {upload->subject, FileNameOf(upload->path)});
        return;
    }
    // What the copy was made from is remembered by the protocol; what the user has seen is in the list.
    if (replaced && !(upload->seen ? list.isCurrent() : list.isMerged())) {
        list.whenCurrent([this, guard = lifetime.Watch(), upload](bool isCurrent) {
            if (guard && isCurrent) {
                Begin(upload);
            } else if (guard && End(upload)) {
                Refuse(upload, "The list of documents is not up to date", "Refresh the list, and upload it again.",
                       FailureKind::Unavailable);
            }
        });
        return;
    }
    if (replaced && upload->seen) {
        context.cloud.AcceptListedVersion(upload->document, upload->path, upload->seen->hash);
    }
    upload->isSent = true;
    sentUploads[upload->path] = upload;
    if (upload->isHashExpected) {
        const auto paths = PathsOf(*upload);
        for (const auto& path : paths) {
            context.hashes.Expect(path);
        }
    }
    if (replaced) {
        context.documents.BeginTransfer(upload->document);
        context.cloud.Manager().Upload(replaced);
    } else {
        context.cloud.Manager().Upload(upload->path);
    }
}

void SessionUploads::TakeBack(const UploadPointer& upload)
{
    sentUploads.remove(upload->path);
    if (upload->isHashExpected) {
        const auto paths = PathsOf(*upload);
        for (const auto& path : paths) {
            context.hashes.StopExpecting(path);
        }
    }
    if (upload->isSent && !upload->document.isEmpty()) {
        context.documents.EndTransfer(upload->document);
    }
    upload->isSent = false;
}

void SessionUploads::Wait(const UploadPointer& upload)
{
    TakeBack(upload);
    upload->isWaiting = true;
    emit context.session.UploadWaiting(upload->subject);
}

bool SessionUploads::End(const UploadPointer& upload)
{
    if (uploads.erase(upload) == 0) {
        return false;
    }
    uploadsByFile.remove(upload->normalizedPath);
    TakeBack(upload);
    return true;
}

SessionUploads::UploadPointer SessionUploads::FindSent(const QString& path) const
{
    return sentUploads.value(path);
}

SessionUploads::UploadPointer SessionUploads::FindSent(const ioPath& normalizedPath) const
{
    const auto upload = uploadsByFile.value(ToText(normalizedPath));
    if (upload && upload->isSent) {
        return upload;
    }
    // Normalised when the answer came: a link may have been turned elsewhere since the upload began.
    const auto found = std::find_if(sentUploads.begin(), sentUploads.end(), [&](const auto& sent) {
        return context.fileSystem.NormalizePath(ToPath(sent->path)) == normalizedPath;
    });
    return found == sentUploads.end() ? nullptr : *found;
}

void SessionUploads::Refuse(const UploadPointer& upload, const QString& reason, const QString& advice, FailureKind kind)
{
    context.cloud.Refuse(CloudProblem::Request::Upload, {upload->subject, FileNameOf(upload->path)}, reason, advice,
                         kind);
}

void SessionUploads::NoteSent(const Social::OAuth2::TransferredFile& file)
{
    const auto upload = FindSent(file.localPath);
    if (!upload) {
        return;
    }
    const auto identity = Files::FileIdentity::FromString(file.identity);
    upload->sentHash = file.md5Hash.toStdString();
    upload->sentSize = static_cast<quint64>(identity.size);
    const auto paths = PathsOf(*upload);
    for (const auto& path : paths) {
        context.hashes.Tell(path, file.identity, upload->sentHash, file.isLasting);
    }
}

void SessionUploads::OnFinished(const std::shared_ptr<FileInfo>& uploaded)
{
    const auto upload = FindSent(uploaded->GetPath());
    if (!upload) {
        return;
    }
    End(upload);
    const auto id = IdOf(*uploaded);
    if (id.isEmpty()) {
        Refuse(upload, "The service did not report the id of the document", "Refresh the list.");
        return;
    }
    // The record describes the file as it is now. The cloud has what was sent, which is something else when the file
    // was saved meanwhile.
    FileInfo::CloudInfo told = uploaded->GetRedactableCloudInfo().value();
    const auto record = std::make_shared<FileInfo>(
        FileInfo::CloudInfo(told.GetId(), told.GetFileName(), upload->sentSize, told.IsPrivate(), told.GetDownloadUrl(),
                            told.GetCreatedAt(), told.GetModifyTime(), told.GetLifeTime(), upload->sentHash));
    record->SetPath(uploaded->GetPath(), uploaded->GetMd5Hash(), upload->sentHash);

    context.journal.NoteUpload(id);
    if (upload->link) {
        context.cloud.NoteCopyMoved(id, upload->path, upload->normalizedPath);
    }
    const auto guard = lifetime.Watch();
    if (!context.documents.Replace(record)) {
        return;
    }
    if (!upload->origin.isEmpty()) {
        context.documents.ForgetCopy(upload->origin);
    }
    if (guard) {
        emit context.session.DocumentUploaded(upload->subject, id);
    }
}

void SessionUploads::OnError(const QString& path, const QString& message)
{
    const auto cause = context.cloud.Failures().Take();
    const auto upload = FindSent(path);
    if (upload && context.cloud.IsPatient() && cause.kind == Social::OAuth2::FailureKind::Unavailable &&
        ++upload->breaks <= mostBreaks) {
        Wait(upload);
    } else if (upload && End(upload)) {
        context.cloud.Fail(CloudProblem::Request::Upload, upload->subject, message, cause);
    }
}

void SessionUploads::OnCanceled(const QString& path)
{
    const auto upload = FindSent(path);
    if (upload && End(upload)) {
        emit context.session.UploadCanceled(upload->subject);
    }
}

} // namespace Norlis::Host
