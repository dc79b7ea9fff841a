#include "FolderTransfers.h"

#include <files/DocumentNames.h>
#include <files/LocalTarget.h>

#include <QDir>
#include <QFileInfo>

#include <limits>

namespace Norlis::Social {

namespace {

constexpr qint64 bytesPerMiB = 1024 * 1024;
const auto download = QStringLiteral("Download");
const auto upload = QStringLiteral("Upload");
const auto freeSpace = QStringLiteral("Free some space in the cloud and try again.");

} // namespace

FolderTransfers::FolderTransfers(FolderStore& store, qint64 storageLimit) : store(store), storageLimit(storageLimit) {}

FolderTransfers::Plan FolderTransfers::Download(const Request::Download& request)
{
    const auto document = store.Find(request.document);
    if (!document) {
        return NoSuchDocument(download, store);
    }
    if (const auto problem = Files::ValidateTarget(request.localPath)) {
        return FailureReply(download, document->name, problem->reason, problem->advice);
    }
    CopyJob::Task task;
    task.what = download;
    task.document = document->name;
    task.source = document->path;
    task.temporaryFolder = QFileInfo(request.localPath).path();
    task.expectedMd5 = store.KnownHash(*document);
    task.publish = [this, request, document = *document](Files::AtomicFile& copy, const Files::FileReader& source) {
        return PublishDownload(request, document, copy, source);
    };
    return task;
}

Reply FolderTransfers::PublishDownload(const Request::Download& request, const FolderDocument& document,
                                       Files::AtomicFile& copy, const Files::FileReader& source)
{
    bool isWritten = false;
    const bool isWanted = request.token->Commit([&] {
        isWritten = copy.CommitReplacing(request.localPath);
        return QString();
    });
    if (!isWanted) {
        return {}; // nobody waits for it
    }
    if (!isWritten) {
        return FailureReply(download, document.name,
                            QStringLiteral("%1 cannot be written: %2").arg(request.localPath, copy.ErrorText()));
    }
    Files::AtomicFile::SyncFolderOf(request.localPath);
    store.RememberHash(document.id, source.Version(), source.Md5());
    return {};
}

FolderTransfers::Plan FolderTransfers::Upload(const Request::Upload& request)
{
    QString name = QFileInfo(request.localPath).fileName();
    if (const auto reason = store.Validate()) {
        return FailureReply(upload, name, *reason, "Make the folder available again.");
    }
    if (!request.document.isEmpty()) {
        const auto replaced = store.Find(request.document);
        if (!replaced) {
            return FailureReply(upload, name, "The document to replace is no longer in the cloud",
                                "Upload the file as a new document.");
        }
        name = replaced->name;
    }
    if (const auto badName = Files::ValidateName(name)) {
        return FailureReply(upload, name, QStringLiteral("The name %1").arg(*badName), "Give the file another name.");
    }
    if (const auto reason = ValidateSize(QFileInfo(request.localPath).size(), request.document)) {
        return FailureReply(upload, name, *reason, freeSpace);
    }
    QDir().mkpath(store.TemporaryFolder()); // a failure shows when the copy is opened
    CopyJob::Task task;
    task.what = upload;
    task.document = name;
    task.source = request.localPath;
    task.temporaryFolder = store.TemporaryFolder();
    task.expectedMd5 = request.md5Hash.toLower();
    task.publish = [this, request, name](Files::AtomicFile& copy, const Files::FileReader& source) {
        return PublishUpload(request, name, copy, source);
    };
    return task;
}

Reply FolderTransfers::PublishUpload(const Request::Upload& request, const QString& wantedName, Files::AtomicFile& copy,
                                     const Files::FileReader& source)
{
    // Checked again: minutes may have passed, and another upload may have taken the room.
    auto reason = store.Validate();
    if (!reason) {
        reason = ValidateSize(source.Version().size, request.document);
    }
    if (reason) {
        return FailureReply(upload, wantedName, *reason, freeSpace);
    }
    QString name = wantedName;
    auto outcome = Files::AtomicFile::Outcome::Failed;
    const bool isWanted = request.token->Commit([&]() -> QString {
        if (request.document.isEmpty()) {
            outcome = CommitNumbered(copy, wantedName, name);
            return outcome == Files::AtomicFile::Outcome::Done ? Files::IdOfName(name) : QString();
        }
        if (copy.CommitReplacing(store.PathOf(name))) {
            outcome = Files::AtomicFile::Outcome::Done;
        }
        return {};
    });
    if (!isWanted) {
        return {}; // nobody waits for it
    }
    if (outcome != Files::AtomicFile::Outcome::Done) {
        return FailureReply(upload, wantedName, copy.ErrorText(), "Check that you may write to the folder.");
    }
    Files::AtomicFile::SyncFolderOf(store.PathOf(name));
    return Uploaded(name, copy, source.Md5());
}

Files::AtomicFile::Outcome FolderTransfers::CommitNumbered(Files::AtomicFile& copy, const QString& wantedName,
                                                           QString& name) const
{
    constexpr int maxNumber = 10'000;
    name = wantedName;
    auto outcome = copy.CommitNew(store.PathOf(name));
    for (int number = 2; outcome == Files::AtomicFile::Outcome::NameTaken && number < maxNumber; ++number) {
        name = Files::NumberedName(wantedName, number);
        outcome = copy.CommitNew(store.PathOf(name));
    }
    return outcome;
}

Reply FolderTransfers::Uploaded(const QString& name, const Files::AtomicFile& copy, const QString& md5Hash)
{
    const FolderDocument document{Files::IdOfName(name), name, store.PathOf(name),
                                  Files::FileIdentity::OfPath(store.PathOf(name))};
    store.RememberOwnHash(document.id, copy.CommittedVersion(), md5Hash); // not of what may have replaced it by now
    const CloudFile entry = EntryOf(document, md5Hash);
    NorlisCloudSharingResult result;
    result.id = document.id;
    result.fileName = document.name;
    result.downloadUrl = QUrl::fromLocalFile(document.path);
    result.createdAt = QDateTime::fromString(entry.createdAt, Qt::ISODate);
    result.modifiedAt = QDateTime::fromString(entry.modifiedAt, Qt::ISODate);
    result.lifetime = std::numeric_limits<int>::max();
    return {Success, result, {}};
}

std::optional<QString> FolderTransfers::ValidateSize(qint64 size, const QString& replacedDocument)
{
    if (storageLimit <= 0 || store.UsedBytes(replacedDocument) + size <= storageLimit) {
        return std::nullopt;
    }
    return QStringLiteral("The storage limit of %1 MiB does not leave room for it").arg(storageLimit / bytesPerMiB);
}

Reply NoSuchDocument(const QString& what, const FolderStore& store)
{
    if (const auto reason = store.Validate()) {
        return FailureReply(what, {}, *reason,
                            "Make the folder available again, for instance by connecting its drive.");
    }
    return FailureReply(what, {}, "The document is no longer in the cloud", "Refresh the list.");
}

} // namespace Norlis::Social
