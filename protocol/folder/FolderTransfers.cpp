#include "FolderTransfers.h"

#include <files/DocumentNames.h>
#include <files/LocalTarget.h>

#include <QFile>
#include <QFileInfo>

#include <limits>

#include <sys/stat.h>

namespace Norlis::Social {

namespace {

constexpr qint64 bytesPerMiB = 1024 * 1024;
const auto download = QStringLiteral("Download");
const auto upload = QStringLiteral("Upload");
const auto removal = QStringLiteral("Removal");
const auto freeSpace = QStringLiteral("Free some space in the cloud and try again.");
const auto checkWriting = QStringLiteral("Check that you may write to the folder.");

/// Who may read a copy: nobody who may not read the file.
unsigned PermissionsOf(const QString& path)
{
    struct stat status = {};
    const bool isKnown = stat(QFile::encodeName(path).constData(), &status) == 0;
    return isKnown ? status.st_mode & 0666 : 0600;
}

DocumentChange::Task ChangeOf(const FolderStore& store, const std::shared_ptr<OwnFolder>& ownFolder,
                              const QString& name, const SeenVersion& expected)
{
    DocumentChange::Task task;
    task.folder = store.Folder();
    task.ownFolder = ownFolder;
    task.name = name;
    task.expected = expected;
    task.commit = [](const std::function<void()>& change) {
        change();
        return true;
    };
    return task;
}

Reply Busy(const QString& what, const QString& name)
{
    return FailureReply(what, name, "Another program is changing documents of the folder",
                        "Try again in a moment. If that does not help, end the other program.");
}

const auto beforeReplacing =
    QStringLiteral("Look at the version in the cloud first. To keep both, upload yours under another name.");
const auto beforeRemoving = QStringLiteral("Refresh the list, and remove it again if you still want to.");

/// The reply to a change that was not made.
Reply NotChanged(DocumentChange::Outcome outcome, const QString& what, const QString& name, const QString& error,
                 const QString& adviceOnConflict)
{
    switch (outcome) {
    case DocumentChange::Outcome::Gone:
        return FailureReply(what, name, "The document is no longer in the cloud", "Refresh the list.",
                            OAuth2::FailureKind::Conflict);
    case DocumentChange::Outcome::Changed:
        return FailureReply(what, name, "The document in the cloud has changed since you last saw it", adviceOnConflict,
                            OAuth2::FailureKind::Conflict);
    case DocumentChange::Outcome::Busy:
        return Busy(what, name);
    case DocumentChange::Outcome::Failed:
        return FailureReply(what, name, error, checkWriting);
    case DocumentChange::Outcome::Done:
    case DocumentChange::Outcome::Unwanted:
        break;
    }
    return {}; // nobody waits for it
}

} // namespace

/// Gives a downloaded document the name of its target.
class FolderTransfers::Delivery : public CopyTarget {
public:
    Delivery(FolderTransfers& transfers, const Request::Download& request, const FolderDocument& document)
        : transfers(transfers),
          request(request),
          document(document)
    {
    }

    std::optional<Reply> Step(Files::AtomicFile& copy, const Files::FileReader& source) override
    {
        std::optional<Files::TargetProblem> problem;
        const bool isWanted = request.token->Commit([&] {
            problem = Files::PutInPlace(copy, request.localPath, request.replaceable);
            return QString();
        });
        if (!isWanted) {
            return Reply(); // nobody waits for it
        }
        if (problem) {
            return TargetReply(download, document.name, *problem);
        }
        Files::AtomicFile::SyncFolderOf(request.localPath);
        const bool isCertain = source.IsLasting();
        transfers.store.RememberHash(document.id, source.Version(), source.Md5(), isCertain);
        transfers.seen.Deliver(document.id, request.localPath, {source.Version(), source.Md5(), isCertain});
        const auto file = DeliveredFileOf(request.localPath, source.Md5(), copy.CommittedVersion());
        return Reply{Success, {}, {}, false, false, file};
    }

private:
    FolderTransfers& transfers;
    const Request::Download request;
    const FolderDocument document;
};

/// Gives an upload the name of the document that it replaces.
class FolderTransfers::Replacement : public CopyTarget {
public:
    Replacement(FolderTransfers& transfers, const std::shared_ptr<OwnFolder>& ownFolder, const Request::Upload& request,
                const QString& name, const SeenVersion& expected)
        : transfers(transfers),
          ownFolder(ownFolder),
          request(request),
          name(name),
          expected(expected)
    {
    }

    std::optional<Reply> Step(Files::AtomicFile& copy, const Files::FileReader& source) override
    {
        if (!change || change->IsWaiting()) {
            if (auto refusal = transfers.Refusal(name, source.Version().size, request.document)) {
                return refusal;
            }
        }
        if (!change) {
            auto task = ChangeOf(transfers.store, ownFolder, name, expected);
            task.freshMd5 = source.Md5();
            task.commit = [this](const std::function<void()>& publish) {
                return request.token->Commit([&] {
                    publish();
                    return QString();
                });
            };
            change = std::make_unique<DocumentChange>(std::move(task));
        }
        const auto outcome = change->Replace(copy);
        if (!outcome) {
            return std::nullopt;
        }
        if (outcome == DocumentChange::Outcome::Done) {
            return transfers.Uploaded(request, name, change->Version(), source);
        }
        return NotChanged(*outcome, upload, name, change->ErrorText(), beforeReplacing);
    }

    bool IsWaiting() const override
    {
        return change && change->IsWaiting();
    }

private:
    FolderTransfers& transfers;
    const std::shared_ptr<OwnFolder> ownFolder; ///< that holds the copy
    const Request::Upload request;
    const QString name;
    const SeenVersion expected;
    std::unique_ptr<DocumentChange> change;
};

/// Gives an upload the first free name.
class FolderTransfers::NewDocument : public CopyTarget {
public:
    NewDocument(FolderTransfers& transfers, const std::shared_ptr<OwnFolder>& ownFolder, const Request::Upload& request,
                const QString& name)
        : transfers(transfers),
          request(request),
          wantedName(name),
          turn(transfers.store.Folder(), ownFolder)
    {
    }

    std::optional<Reply> Step(Files::AtomicFile& copy, const Files::FileReader& source) override
    {
        if (auto refusal = transfers.Refusal(wantedName, source.Version().size, {})) {
            return refusal;
        }
        switch (turn.Take()) { // not every file system can refuse a name that is taken
        case FolderTurn::Outcome::Taken:
            return Publish(copy, source);
        case FolderTurn::Outcome::Waiting:
            return std::nullopt;
        case FolderTurn::Outcome::TimedOut:
            return Busy(upload, wantedName);
        case FolderTurn::Outcome::Failed:
            break;
        }
        return FailureReply(upload, wantedName, turn.ErrorText(), checkWriting);
    }

    bool IsWaiting() const override
    {
        return turn.IsWaiting();
    }

private:
    Reply Publish(Files::AtomicFile& copy, const Files::FileReader& source)
    {
        QString name = wantedName;
        auto outcome = Files::AtomicFile::Outcome::Failed;
        const bool isWanted = request.token->Commit([&] {
            outcome = Commit(copy, name);
            return outcome == Files::AtomicFile::Outcome::Done ? Files::IdOfName(name) : QString();
        });
        if (!isWanted) {
            return {}; // nobody waits for it
        }
        if (outcome != Files::AtomicFile::Outcome::Done) {
            return FailureReply(upload, wantedName, copy.ErrorText(), checkWriting);
        }
        const QString path = transfers.store.PathOf(name);
        Files::AtomicFile::SyncFolderOf(path);
        if (!Files::FileIdentity::OfPath(path).IsFile()) {
            return FailureReply(upload, name, "The folder does not show the document", "Refresh the list.");
        }
        return transfers.Uploaded(request, name, copy.CommittedVersion(), source);
    }

    Files::AtomicFile::Outcome Commit(Files::AtomicFile& copy, QString& name) const
    {
        constexpr int maxNumber = 10'000;
        auto outcome = copy.CommitNew(transfers.store.PathOf(name));
        for (int number = 2; outcome == Files::AtomicFile::Outcome::NameTaken && number < maxNumber; ++number) {
            name = Files::NumberedName(wantedName, number);
            outcome = copy.CommitNew(transfers.store.PathOf(name));
        }
        return outcome;
    }

    FolderTransfers& transfers;
    const Request::Upload request;
    const QString wantedName;
    FolderTurn turn;
};

class FolderTransfers::Removal : public FolderJob {
public:
    Removal(const FolderStore& store, const QString& name, const SeenVersion& expected)
        : name(name),
          change(ChangeOf(store, std::make_shared<OwnFolder>(store.Folder()), name, expected))
    {
    }

    std::optional<Reply> Step() override
    {
        const auto outcome = change.Remove();
        if (!outcome) {
            return std::nullopt;
        }
        return outcome == DocumentChange::Outcome::Done
                   ? Reply()
                   : NotChanged(*outcome, removal, name, change.ErrorText(), beforeRemoving);
    }

    bool IsWaiting() const override
    {
        return change.IsWaiting();
    }

private:
    const QString name;
    DocumentChange change;
};

FolderTransfers::FolderTransfers(FolderStore& store, SeenVersions& seen, qint64 storageLimit)
    : store(store),
      seen(seen),
      storageLimit(storageLimit)
{
}

FolderTransfers::Plan FolderTransfers::Download(const Request::Download& request)
{
    const auto document = store.Find(request.document);
    if (!document) {
        return NoSuchDocument(download, store);
    }
    if (const auto problem = Files::ValidateTarget(request.localPath)) {
        return TargetReply(download, document->name, *problem);
    }
    CopyJob::Task task;
    task.what = download;
    task.document = document->name;
    task.source = document->path;
    task.temporaryFolder = QFileInfo(request.localPath).path();
    task.permissions = PermissionsOf(QFileInfo::exists(request.localPath) ? request.localPath : document->path);
    if (const auto hash = store.HashOf(*document); hash.isCertain) {
        task.expectedMd5 = hash.md5Hash;
        task.onWrongExpectation = [this, id = document->id] { store.ForgetHash(id); };
    }
    task.target = std::make_unique<Delivery>(*this, request, *document);
    return task;
}

FolderTransfers::Plan FolderTransfers::Upload(const Request::Upload& request)
{
    QString name = QFileInfo(request.localPath).fileName();
    if (const auto reason = store.Validate()) {
        return UnavailableReply(upload, name, *reason);
    }
    std::optional<FolderDocument> replaced;
    if (!request.document.isEmpty()) {
        replaced = store.Find(request.document);
        if (!replaced) {
            return FailureReply(upload, name, "The document to replace is no longer in the cloud",
                                "Upload the file as a new document.", OAuth2::FailureKind::Conflict);
        }
        name = replaced->name;
    }
    if (const auto badName = Files::ValidateName(name)) {
        return FailureReply(upload, name, QStringLiteral("The name %1").arg(*badName), "Give the file another name.");
    }
    if (const auto reason = ValidateSize(QFileInfo(request.localPath).size(), request.document)) {
        return FailureReply(upload, name, *reason, freeSpace);
    }
    CopyJob::Task task;
    task.what = upload;
    task.document = name;
    task.source = request.localPath;
    task.temporaryFolder = store.Folder();
    task.ownFolder = std::make_shared<OwnFolder>(store.Folder());
    task.permissions = PermissionsOf(replaced ? replaced->path : request.localPath);
    task.expectedMd5 = request.md5Hash.toLower();
    if (replaced) {
        const auto ofFile = seen.ForUpload(replaced->id, request.localPath);
        const auto expected = Expected(ofFile ? ofFile : seen.ForRemoval(replaced->id));
        if (!expected) {
            return NotChanged(DocumentChange::Outcome::Changed, upload, name, {}, beforeReplacing);
        }
        task.target = std::make_unique<Replacement>(*this, task.ownFolder, request, name, *expected);
    } else {
        task.target = std::make_unique<NewDocument>(*this, task.ownFolder, request, name);
    }
    return task;
}

std::variant<std::unique_ptr<FolderJob>, Reply> FolderTransfers::Remove(const Request::Remove& request)
{
    const auto document = store.Find(request.document);
    if (!document) {
        return NoSuchDocument(removal, store);
    }
    const auto expected = Expected(seen.ForRemoval(document->id));
    if (!expected) {
        return NotChanged(DocumentChange::Outcome::Changed, removal, document->name, {}, beforeRemoving);
    }
    return std::make_unique<Removal>(store, document->name, *expected);
}

std::optional<SeenVersion> FolderTransfers::Expected(const std::optional<QString>& seenVersion)
{
    return SeenVersion::FromText(seenVersion.value_or(QString()));
}

std::optional<Reply> FolderTransfers::Refusal(const QString& name, qint64 size, const QString& replacedDocument)
{
    if (const auto reason = store.Validate()) {
        return UnavailableReply(upload, name, *reason);
    }
    if (const auto reason = ValidateSize(size, replacedDocument)) {
        return FailureReply(upload, name, *reason, freeSpace);
    }
    return std::nullopt;
}

Reply FolderTransfers::Uploaded(const Request::Upload& request, const QString& name, const Files::FileIdentity& version,
                                const Files::FileReader& source)
{
    const QString md5Hash = source.Md5();
    const FolderDocument document{Files::IdOfName(name), name, store.PathOf(name),
                                  Files::FileIdentity::OfPath(store.PathOf(name)), false};
    store.RememberHash(document.id, version, md5Hash, false); // not of what may have replaced it by now
    seen.Upload(document.id, request.localPath, {version, md5Hash, false});
    const CloudFile entry = EntryOf(document, md5Hash);
    NorlisCloudSharingResult result;
    result.id = document.id;
    result.fileName = document.name;
    result.downloadUrl = QUrl::fromLocalFile(document.path);
    result.createdAt = QDateTime::fromString(entry.createdAt, Qt::ISODate);
    result.modifiedAt = QDateTime::fromString(entry.modifiedAt, Qt::ISODate);
    result.lifetime = std::numeric_limits<int>::max();
    const auto file = TransferredFileOf(request.localPath, md5Hash, source.Version(), source.IsLasting());
    return {Success, result, {}, false, false, file};
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
        return UnavailableReply(what, {}, *reason);
    }
    return FailureReply(what, {}, "The document is no longer in the cloud", "Refresh the list.");
}

} // namespace Norlis::Social
