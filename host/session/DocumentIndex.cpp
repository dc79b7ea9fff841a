#include "DocumentIndex.h"

#include "Later.h"
#include "Records.h"

#include <host/store/RestorableStorage.h>
#include <NorlisCloud/PreviewFile.h>

#include <QFile>
#include <QFileInfo>

#include <limits>

namespace Norlis::Host {

using PDF::FileInfo;

namespace {

unsigned Bit(FileInfo::PreviewSize size)
{
    return 1U << static_cast<unsigned>(size);
}

CloudFacts FactsOf(FileInfo& record)
{
    return CloudFacts(record.GetRedactableCloudInfo().value());
}

void SetSize(FileInfo& record, quint64 size)
{
    auto& cloudInfo = record.GetRedactableCloudInfo().value();
    auto previews = cloudInfo.GetPreviewsSet();
    cloudInfo = FileInfo::CloudInfo(cloudInfo.GetId(), cloudInfo.GetFileName(), size, cloudInfo.IsPrivate(),
                                    cloudInfo.GetDownloadUrl(), cloudInfo.GetCreatedAt(), cloudInfo.GetModifyTime(),
                                    cloudInfo.GetLifeTime(), cloudInfo.GetMd5Hash());
    cloudInfo.SetPreviewsSet(previews);
}

KeptCopy CopyOf(FileInfo& record)
{
    return {record.GetPath().utf8string(), record.GetId(), record.GetRedactableCloudInfo()->GetFileName(),
            record.GetCloudHashBeforeChange()};
}

} // namespace

bool DocumentIndex::Entry::Shows(Size size) const
{
    return (shownPreviews & Bit(size)) != 0;
}

DocumentIndex::DocumentIndex(const QString& file, const std::shared_ptr<LocalFileSystem>& fileSystem,
                             const std::shared_ptr<Md5HashCalculator>& hashes)
    : hashes(hashes),
      storage(std::make_shared<SqliteCloudInfoStorage>(file)),
      copies(storage)
{
    const auto restorable = std::make_shared<RestorableStorage>(storage);
    list = std::make_unique<PDF::Cloud::NorlisCloudFilesManager>(restorable, fileSystem, hashes);
    for (const auto& [id, size] : restorable->LargeSizes()) {
        if (const auto record = RecordOf(QString::fromStdString(id))) {
            SetSize(*record, size);
            list->Update(record);
            restoredSizes.insert(IdOf(*record), size);
        }
    }
    for (int index = list->FilesCount() - 1; index >= 0; --index) {
        Entry entry;
        entry.localPath = list->GetDocumentPath(index);
        SetEntry(list->GetDocumentId(index), entry);
    }
}

void DocumentIndex::Close()
{
    if (list) {
        list.reset();
        storage->Commit();
    }
}

PDF::AbstractFileManager& DocumentIndex::List()
{
    return *list;
}

const DocumentIndex::Entry* DocumentIndex::Find(const QString& id) const
{
    const auto found = entries.constFind(id);
    return found == entries.constEnd() ? nullptr : &*found;
}

DocumentIndex::Record DocumentIndex::RecordOf(const QString& id) const
{
    return list->GetFileInfo(id);
}

QStringList DocumentIndex::Ids() const
{
    return entries.keys();
}

QHash<QString, quint64> DocumentIndex::LargeSizes() const
{
    QHash<QString, quint64> sizes;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        const quint64 size = entry->facts ? entry->facts->size : restoredSizes.value(entry.key());
        const auto record = size > std::numeric_limits<quint32>::max() ? RecordOf(entry.key()) : nullptr;
        if (record) {
            sizes.insert(entry.key(), record->GetSize() != 0 ? record->GetSize() : size);
        }
    }
    return sizes;
}

QStringList DocumentIndex::LocalPaths() const
{
    QStringList paths;
    for (const auto& entry : entries) {
        if (!entry.localPath.isEmpty()) {
            paths.append(entry.localPath);
        }
    }
    return paths + copies.Paths();
}

QString DocumentIndex::LocalPath(const QString& id) const
{
    return entries.value(id).localPath;
}

QString DocumentIndex::DocumentAt(const QString& path) const
{
    const auto shown = idsByPath.value(path); // the one that took the file last
    if (!shown.isEmpty()) {
        return shown;
    }
    const auto* copy = copies.At(path);
    const auto id = copy ? QString::fromStdString(copy->documentId) : QString();
    return entries.contains(id) ? id : QString();
}

bool DocumentIndex::IsCopy(const QString& path) const
{
    return idsByPath.contains(path) || copies.At(path);
}

std::optional<std::string> DocumentIndex::SyncHashAt(const QString& id, const QString& path) const
{
    if (!path.isEmpty() && LocalPath(id) == path) {
        return RecordOf(id)->GetCloudHashBeforeChange();
    }
    const auto* copy = copies.At(path);
    return copy && copy->documentId == id.toStdString() ? std::optional(copy->syncHash) : std::nullopt;
}

const KeptCopy* DocumentIndex::KeptCopyOf(const Record& record) const
{
    const auto* copy = copies.Of(IdOf(*record), NameOf(*record), record->GetRedactableCloudInfo()->GetMd5Hash());
    return copy && !idsByPath.contains(QString::fromStdString(copy->path)) ? copy : nullptr;
}

bool DocumentIndex::HasKeptCopy(const Record& record) const
{
    return KeptCopyOf(record) != nullptr;
}

bool DocumentIndex::AttachKeptCopy(const Record& record) const
{
    const auto* copy = KeptCopyOf(record);
    if (copy) {
        const ioPath path(copy->path);
        record->SetPath(path, hashes->CalculateHash(path), copy->syncHash);
    }
    return copy != nullptr;
}

void DocumentIndex::KeepCopy(const QString& id, const QString& path, const std::string& syncHash)
{
    if (const auto record = RecordOf(id)) {
        copies.Keep({path.toStdString(), id.toStdString(), NameOf(*record).toStdString(), syncHash});
    }
}

void DocumentIndex::SetEntry(const QString& id, const Entry& entry)
{
    const auto path = LocalPath(id);
    if (path != entry.localPath) {
        idsByPath.remove(path, id);
    }
    entries[id] = entry;
    if (!entry.localPath.isEmpty() && path != entry.localPath) {
        idsByPath.insert(entry.localPath, id);
        copies.Drop(entry.localPath);
    }
}

void DocumentIndex::Add(const Record& record)
{
    const auto id = IdOf(*record);
    Entry entry;
    entry.facts = FactsOf(*record);
    entry.localPath = ToText(record->GetPath());
    SetEntry(id, entry);
    copies.NoteFound(id);
    list->Add(record);
}

void DocumentIndex::Update(const Record& record, bool hasSameContent)
{
    auto& entry = entries[IdOf(*record)];
    entry.facts = FactsOf(*record);
    if (!hasSameContent) {
        entry.shownPreviews = 0;
    }
    list->Update(record);
}

bool DocumentIndex::Replace(const Record& record)
{
    const auto guard = lifetime.Watch();
    const auto id = IdOf(*record);
    auto& cloudInfo = record->GetRedactableCloudInfo().value();
    Entry entry{CloudFacts(cloudInfo), ToText(record->GetPath())};

    const auto held = entries.contains(id) ? RecordOf(id) : nullptr; // the list walks past all others to find none
    if (held) {
        auto& heldCloudInfo = held->GetRedactableCloudInfo().value();
        if (entry.facts->HasSameContent(CloudFacts(heldCloudInfo))) {
            cloudInfo.SetPreviewsSet(heldCloudInfo.GetPreviewsSet());
            record->SetPreviewsSet(held->GetPreviewsSet());
            entry.shownPreviews = entries.value(id).shownPreviews;
        }
    }
    record->SetIsSyncingInProgress(IsTransferring(id));
    if (held && held->GetPath() != record->GetPath() && QFileInfo(LocalPath(id)).isFile()) {
        copies.Keep(CopyOf(*held));
    }
    SetEntry(id, entry);
    if (held) {
        list->Remove(held);
    } else {
        copies.NoteFound(id);
    }
    if (guard) {
        list->Add(record);
    }
    return static_cast<bool>(guard);
}

void DocumentIndex::ShowCopy(const QString& id, const QString& path)
{
    const auto record = RecordOf(id);
    const auto syncHash = SyncHashAt(id, path);
    if (!record || !syncHash) {
        return;
    }
    record->SetPath(ToPath(path), hashes->CalculateHash(ToPath(path)), *syncHash);
    if (LocalPath(id) == path) {
        record->SetIsSyncingInProgress(IsTransferring(id));
        list->Update(record);
    } else {
        Replace(record);
    }
}

void DocumentIndex::ShowPreviews(const Record& record, const std::map<Size, ioPath>& previews)
{
    const auto id = IdOf(*record);
    for (const auto& [size, path] : previews) {
        record->GetRedactableCloudInfo()->SetPreviewPathBySize(path, size);
        entries[id].shownPreviews |= Bit(size);
    }
    record->SetIsSyncingInProgress(IsTransferring(id));
    list->Update(record);
}

void DocumentIndex::Remove(const QString& id)
{
    copies.DropAllOf(id);
    TakeOut(id);
}

void DocumentIndex::Lose(const QString& id)
{
    const auto held = RecordOf(id);
    if (held && !held->GetPath().empty()) {
        copies.Keep(CopyOf(*held));
    }
    copies.NoteLost(id);
    TakeOut(id);
}

void DocumentIndex::TakeOut(const QString& id)
{
    Forget(id);
    if (const auto held = RecordOf(id)) {
        list->Remove(held);
    }
}

void DocumentIndex::Forget(const QString& id)
{
    SetEntry(id, {});
    entries.remove(id);
    if (id.contains('/')) {
        return; // which may lead out of the folder
    }
    // The cloud manager keeps its previews for ever.
    for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
        QFile::remove(PDF::Cloud::PreviewPath(id, size));
    }
}

void DocumentIndex::BeginTransfer(const QString& id)
{
    ++transfers[id];
    LookAgain(id);
}

void DocumentIndex::EndTransfer(const QString& id)
{
    if (--transfers[id] == 0) {
        transfers.remove(id);
    }
    LookAgain(id);
}

bool DocumentIndex::IsTransferring(const QString& id) const
{
    return transfers.contains(id);
}

void DocumentIndex::LookAgain(const QString& id)
{
    const auto look = [this, id] {
        if (const auto held = RecordOf(id)) {
            held->SetIsSyncingInProgress(IsTransferring(id));
            list->Update(held);
        }
    };
    const auto path = LocalPath(id);
    if (path.isEmpty()) {
        Later(this, look);
    } else {
        hashes->Prepare({path}, this, look);
    }
}

} // namespace Norlis::Host
