#include "FolderJobs.h"

#include <QFileInfo>
#include <QMimeDatabase>

namespace Norlis::Social {

namespace {

QDateTime ModifiedAt(const Files::FileIdentity& version)
{
    return QDateTime::fromMSecsSinceEpoch(version.modifiedNanoseconds / 1'000'000, Qt::UTC);
}

QString IsoText(const QDateTime& time)
{
    return time.isValid() ? time.toUTC().toString(Qt::ISODateWithMs) : QString();
}

} // namespace

CloudFile EntryOf(const FolderDocument& document, const QString& md5Hash)
{
    CloudFile file;
    file.id = document.id;
    file.name = document.name;
    file.size = document.version.size;
    file.mimeType = QMimeDatabase().mimeTypeForFile(document.name, QMimeDatabase::MatchExtension).name();
    file.md5Hash = md5Hash;
    file.createdAt = IsoText(QFileInfo(document.path).birthTime());
    file.modifiedAt = IsoText(ModifiedAt(document.version));
    return file;
}

ListJob::ListJob(FolderStore& store) : store(store) {}

std::optional<Reply> ListJob::Step()
{
    if (!documents) {
        documents = store.Documents();
        if (!documents) {
            return Unusable();
        }
        return std::nullopt;
    }
    if (reader) {
        HashNextPiece();
        return std::nullopt;
    }
    constexpr int entriesPerStep = 200;
    for (int count = 0; count < entriesPerStep; ++count) {
        if (position == documents->size()) {
            if (store.Validate()) {
                return Unusable(); // it vanished while the documents were read
            }
            store.SaveHashes(*documents);
            return Reply{Success, files, {}};
        }
        const auto& document = (*documents)[position];
        const QString md5Hash = store.KnownHash(document);
        if (md5Hash.isEmpty()) {
            reader = std::make_unique<Files::FileReader>();
            if (reader->Open(document.path)) {
                return std::nullopt;
            }
            reader.reset(); // unreadable or gone: listed without a hash
        }
        files.append(EntryOf(document, md5Hash));
        ++position;
    }
    return std::nullopt;
}

Reply ListJob::Unusable() const
{
    return FailureReply("Fetching the list of documents", {}, store.Validate().value_or(QString()),
                        "Make the folder available again, for instance by connecting its drive.");
}

void ListJob::HashNextPiece()
{
    if (!reader->Next().isEmpty()) {
        return;
    }
    const auto& document = (*documents)[position];
    QString md5Hash;
    if (!reader->Failed() && reader->IsUnchanged() && reader->Version() == document.version) {
        md5Hash = reader->Md5();
        store.RememberHash(document.id, document.version, md5Hash);
    }
    files.append(EntryOf(document, md5Hash));
    ++position;
    reader.reset();
}

CopyJob::CopyJob(Task task) : task(std::move(task)) {}

std::optional<Reply> CopyJob::Step()
{
    return isOpen ? CopyNextPiece() : Open();
}

std::optional<Reply> CopyJob::Open()
{
    if (!reader.Open(task.source)) {
        return FailureReply(task.what, task.document,
                            QStringLiteral("%1 cannot be read: %2").arg(task.source, reader.ErrorText()),
                            "Check that the file is there and that you may read it.");
    }
    if (!copy.Open(task.temporaryFolder)) {
        return FailureReply(
            task.what, task.document,
            QStringLiteral("Nothing can be written to %1: %2").arg(task.temporaryFolder, copy.ErrorText()),
            "Check that the folder is there and that you may write to it.");
    }
    isOpen = true;
    ReportProgress();
    return std::nullopt;
}

std::optional<Reply> CopyJob::CopyNextPiece()
{
    const QByteArray& piece = reader.Next();
    if (reader.Failed()) {
        return FailureReply(task.what, task.document,
                            QStringLiteral("%1 cannot be read: %2").arg(task.source, reader.ErrorText()));
    }
    if (piece.isEmpty()) {
        return Finish();
    }
    if (!copy.Write(piece.constData(), piece.size())) {
        return FailureReply(task.what, task.document,
                            QStringLiteral("%1 cannot be written: %2").arg(task.temporaryFolder, copy.ErrorText()),
                            "Free some space on the drive and try again.");
    }
    ReportProgress();
    return std::nullopt;
}

Reply CopyJob::Finish()
{
    if (!reader.IsUnchanged() || (!task.expectedMd5.isEmpty() && task.expectedMd5 != reader.Md5())) {
        return FailureReply(task.what, task.document, QStringLiteral("%1 has changed in the meantime").arg(task.source),
                            "Try again.");
    }
    if (!copy.Sync()) {
        return FailureReply(task.what, task.document,
                            QStringLiteral("%1 cannot be written: %2").arg(task.temporaryFolder, copy.ErrorText()),
                            "Free some space on the drive and try again.");
    }
    Reply reply = task.publish(copy, reader);
    if (reply.result == Success) {
        task.progress(100);
    }
    return reply;
}

void CopyJob::ReportProgress()
{
    const qint64 size = qMax<qint64>(reader.Version().size, 1);
    const int percent = static_cast<int>(qMin<qint64>(reader.Position() * 100 / size, 99));
    if (percent != reportedPercent) {
        reportedPercent = percent;
        task.progress(percent);
    }
}

} // namespace Norlis::Social
