#include "FolderJobs.h"

#include <protocol/service/MimeType.h>

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace Norlis::Social {

namespace {

QDateTime ModifiedAt(const Files::FileIdentity& version)
{
    if (version.modifiedNanoseconds == Files::FileIdentity::unknownTime) {
        return {};
    }
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
    file.mimeType = MimeTypeOf(document.name.toUtf8());
    file.md5Hash = md5Hash.isEmpty() ? "version:" + document.version.ToString() : md5Hash;
    file.createdAt = IsoText(QFileInfo(document.path).birthTime());
    file.modifiedAt = IsoText(ModifiedAt(document.version));
    return file;
}

Hashing::Hashing(FolderStore& store) : store(store) {}

void Hashing::Begin(std::vector<FolderDocument> unhashed)
{
    std::sort(unhashed.begin(), unhashed.end(), [](const FolderDocument& left, const FolderDocument& right) {
        return left.version.size > right.version.size;
    });
    // What is being read goes on, or a large document would never come to its end beside frequent lists.
    const auto current = std::find_if(unhashed.begin(), unhashed.end(), [this](const FolderDocument& document) {
        return reader && document.id == documents.back().id && document.version == documents.back().version;
    });
    if (current == unhashed.end()) {
        reader.reset();
    } else {
        std::rotate(current, current + 1, unhashed.end());
    }
    documents = std::move(unhashed);
}

bool Hashing::Step()
{
    if (documents.empty()) {
        return false;
    }
    const FolderDocument& document = documents.back();
    if (!reader) {
        reader = std::make_unique<Files::FileReader>();
        if (reader->Open(document.path)) {
            return true;
        }
    } else if (!reader->Next().isEmpty()) {
        return true;
    } else if (!reader->Failed() && reader->IsUnchanged() && reader->Version() == document.version) {
        store.RememberHash(document.id, document.version, reader->Md5(), reader->IsLasting());
    }
    reader.reset();
    documents.pop_back();
    SaveNowAndThen();
    return true;
}

void Hashing::SaveNowAndThen()
{
    constexpr qint64 interval = 10'000; // milliseconds
    if (!sinceSaved.isValid()) {
        sinceSaved.start();
    }
    if (sinceSaved.hasExpired(interval) || documents.empty()) {
        store.SaveHashes();
        sinceSaved.restart();
    }
}

ListJob::ListJob(FolderStore& store, SeenVersions& seen, Unhashed onUnhashed)
    : store(store),
      seen(seen),
      onUnhashed(std::move(onUnhashed)),
      begin(seen.Now()),
      hashing(store)
{
}

std::optional<Reply> ListJob::Step()
{
    constexpr int entriesPerStep = 200;
    if (!documents) {
        documents = store.Documents();
        return documents ? std::nullopt : std::optional(Unusable());
    }
    if (isChosen && !isHashed) {
        isHashed = !hashing.Step();
        return std::nullopt;
    }
    for (int count = 0; count < entriesPerStep && position < documents->size(); ++count, ++position) {
        const auto& document = (*documents)[position];
        const auto hash = store.HashOf(document);
        if (isHashed) {
            files.append(EntryOf(document, hash.md5Hash));
            shown.push_back({document.version, hash.md5Hash, document.isSettled});
        }
        if (!hash.isCertain) {
            unhashed.push_back(document);
        }
    }
    if (position < documents->size()) {
        return std::nullopt;
    }
    if (isHashed) {
        return Listed();
    }
    ChooseWhatToHash();
    return std::nullopt;
}

void ListJob::ChooseWhatToHash()
{
    constexpr qint64 maxBytes = 64 * 1024 * 1024; // a fraction of a second on most drives
    std::sort(unhashed.begin(), unhashed.end(), [](const FolderDocument& left, const FolderDocument& right) {
        return left.version.size < right.version.size;
    });
    qint64 bytes = 0;
    const auto end = std::find_if(unhashed.begin(), unhashed.end(), [&](const FolderDocument& document) {
        bytes += document.version.size;
        return bytes > maxBytes;
    });
    unhashed.erase(end, unhashed.end());
    hashing.Begin(std::exchange(unhashed, {}));
    isChosen = true;
    position = 0;
}

Reply ListJob::Listed()
{
    if (store.Validate()) {
        return Unusable(); // it vanished while the documents were read
    }
    for (std::size_t index = 0; index < documents->size(); ++index) {
        seen.ShowInList((*documents)[index].id, shown[index], begin);
    }
    store.KeepHashesOf(*documents);
    store.SaveHashes();
    onUnhashed(std::move(unhashed));
    return {Success, files, {}};
}

Reply UnavailableReply(const QString& what, const QString& document, const QString& reason)
{
    return FailureReply(what, document, reason,
                        "Make the folder available again, for instance by connecting its drive.",
                        OAuth2::FailureKind::Unavailable);
}

Reply ListJob::Unusable() const
{
    return UnavailableReply("Fetching the list of documents", {}, store.Validate().value_or(QString()));
}

CopyJob::CopyJob(Task task) : task(std::move(task)) {}

std::optional<Reply> CopyJob::Step()
{
    if (!copy) {
        return Open();
    }
    if (!isWhole) {
        return CopyNextPiece();
    }
    auto reply = task.target->Step(copy->file, copy->source);
    if (reply && reply->result == Success) {
        task.progress(100);
    }
    return reply;
}

bool CopyJob::IsWaiting() const
{
    return task.target->IsWaiting();
}

std::optional<Reply> CopyJob::Open()
{
    copy = std::make_unique<Copy>();
    if (!copy->source.Open(task.source)) {
        return FailureReply(task.what, task.document,
                            QStringLiteral("%1 cannot be read: %2").arg(task.source, copy->source.ErrorText()),
                            "Check that the file is there and that you may read it.");
    }
    if (const auto problem = task.ownFolder ? task.ownFolder->Prepare() : std::nullopt) {
        return FailureReply(task.what, task.document, *problem, "Check that you may write to the folder.");
    }
    if (!copy->file.Open(task.ownFolder ? task.ownFolder->Path() : task.temporaryFolder, task.permissions)) {
        return FailureReply(
            task.what, task.document,
            QStringLiteral("Nothing can be written to %1: %2").arg(task.temporaryFolder, copy->file.ErrorText()),
            "Check that the folder is there and that you may write to it.");
    }
    ReportProgress();
    return std::nullopt;
}

std::optional<Reply> CopyJob::CopyNextPiece()
{
    const QByteArray& piece = copy->source.Next();
    if (copy->source.Failed()) {
        return FailureReply(task.what, task.document,
                            QStringLiteral("%1 cannot be read: %2").arg(task.source, copy->source.ErrorText()));
    }
    if (piece.isEmpty()) {
        return Check();
    }
    if (!copy->file.Write(piece.constData(), piece.size())) {
        return FailureReply(
            task.what, task.document,
            QStringLiteral("%1 cannot be written: %2").arg(task.temporaryFolder, copy->file.ErrorText()),
            "Free some space on the drive and try again.");
    }
    ReportProgress();
    return std::nullopt;
}

std::optional<Reply> CopyJob::Check()
{
    const bool isUnchanged = copy->source.IsUnchanged();
    const bool isExpected = task.expectedMd5.isEmpty() || task.expectedMd5 == copy->source.Md5();
    if (isUnchanged && !isExpected && task.onWrongExpectation) {
        std::exchange(task.onWrongExpectation, {})();
        task.expectedMd5 = copy->source.Md5(); // if it was read rightly, it is read so again
        copy.reset();
        return std::nullopt;
    }
    if (!isUnchanged || !isExpected) {
        return FailureReply(task.what, task.document, QStringLiteral("%1 has changed in the meantime").arg(task.source),
                            "Try again.");
    }
    if (!copy->file.Sync()) {
        return FailureReply(
            task.what, task.document,
            QStringLiteral("%1 cannot be written: %2").arg(task.temporaryFolder, copy->file.ErrorText()),
            "Free some space on the drive and try again.");
    }
    isWhole = true;
    return std::nullopt;
}

void CopyJob::ReportProgress()
{
    const qint64 size = qMax<qint64>(copy->source.Version().size, 1);
    const int percent = static_cast<int>(qMin<qint64>(copy->source.Position() * 100 / size, 99));
    if (percent > reportedPercent) {
        reportedPercent = percent;
        task.progress(percent);
    }
}

} // namespace Norlis::Social
