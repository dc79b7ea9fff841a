#include "DocumentIndex.h"

#include "Later.h"
#include "Records.h"

#include <NorlisCloud/PreviewFile.h>
#include <NorlisCloud/RecordKeys.h>

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace Norlis::Host {

using PDF::FileInfo;
namespace RecordKey = PDF::Cloud::RecordKey;

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

bool DocumentIndex::Entry::HasStored(Size size) const
{
    return (storedPreviews & Bit(size)) != 0;
}

bool DocumentIndex::Entry::Shows(Size size) const
{
    return (shownPreviews & Bit(size)) != 0;
}

DocumentIndex::Entry DocumentIndex::EntryOf(const Record& record)
{
    Entry entry;
    entry.facts = FactsOf(*record);
    entry.localPath = ToText(record->GetPath());
    entry.localHash = record->GetMd5Hash();
    entry.syncHash = record->GetCloudHashBeforeChange();
    entry.record = record;
    return entry;
}

QString DocumentIndex::StoredPath(const QString& id, Size size) const
{
    return pictures.PathOf(id, size) + ';';
}

unsigned DocumentIndex::PicturesIn(const std::string& stored, const QString& id) const
{
    unsigned bits = 0;
    if (!stored.empty()) {
        const auto text = QString::fromStdString(stored);
        for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
            bits |= text.contains(StoredPath(id, size)) ? Bit(size) : 0;
        }
    }
    return bits;
}

DocumentIndex::DocumentIndex(const QString& file, const PictureFolder& pictures,
                             const std::shared_ptr<LocalFileSystem>& fileSystem,
                             const std::shared_ptr<Md5HashCalculator>& hashes)
    : pictures(pictures),
      hashes(hashes),
      storage(std::make_shared<SqliteCloudInfoStorage>(file)),
      listStorage(std::make_shared<ListStorage>(storage)),
      listHashes(std::make_shared<ListHashes>(hashes)),
      copies(storage),
      copiesLeft(copies, hashes, [this](const QString& path) { return !DocumentAt(path).isEmpty(); }),
      list(std::make_unique<PDF::Cloud::NorlisCloudFilesManager>(listStorage, fileSystem, listHashes))
{
    auto stored = listStorage->TakeRest();
    entries.reserve(list->FilesCount());
    for (int index = list->FilesCount() - 1; index >= 0; --index) {
        const auto id = list->GetDocumentId(index);
        auto& rest = stored[id.toStdString()];
        Entry entry;
        entry.facts.name = std::move(rest.name);
        entry.facts.size = rest.size;
        entry.facts.hash = std::move(rest.hash);
        entry.facts.modifiedAt = list->GetModifiedDateTime(index);
        entry.localPath = list->GetDocumentPath(index);
        if (!entry.localPath.isEmpty()) {
            entry.localHash = listHashes->Told(entry.localPath.toStdString());
            entry.syncHash = std::move(rest.syncHash);
        } else if (!rest.path.empty()) {
            missingCopies.insert(QString::fromStdString(rest.path), id);
        }
        entry.storedPreviews = PicturesIn(rest.pictures, id);
        SetEntry(id, entry);
        if (const auto record = rest.isLarge ? RecordOf(id) : nullptr) {
            SetSize(*record, rest.size);
            list->Update(record);
        }
    }
}

void DocumentIndex::Close()
{
    if (list) {
        list.reset(); // saves
        StoreTheRest();
        storage->Commit();
    }
}

void DocumentIndex::StoreTheRest()
{
    for (const auto& documentId : listStorage->Changed()) {
        const auto id = QString::fromStdString(documentId);
        const auto* entry = Find(id);
        if (!entry) {
            continue;
        }
        QString paths;
        for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
            paths += entry->HasStored(size) ? StoredPath(id, size) : QString();
        }
        const auto modifiedAt = entry->facts.modifiedAt.toUTC().toString(Qt::TextDate);
        listStorage->SetValue(documentId, RecordKey::fileHash, entry->facts.hash);
        listStorage->SetValue(documentId, RecordKey::modifiedTime, modifiedAt.toStdString());
        listStorage->SetValue(documentId, RecordKey::previewPath, paths.toStdString());
    }
}

CopiesLeft& DocumentIndex::Left()
{
    return copiesLeft;
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
    const auto* known = Find(id);
    if (!known) {
        return nullptr; // the list would go through all documents to find none
    }
    auto record = known->record ? std::make_shared<FileInfo>(*known->record) : list->GetFileInfo(id);
    if (record && record->GetRedactableCloudInfo()->GetMd5Hash() != known->facts.hash) {
        SetCloudHash(*record, known->facts.hash);
    }
    return record;
}

int DocumentIndex::Count() const
{
    return entries.size();
}

QStringList DocumentIndex::Ids() const
{
    return entries.keys();
}

QHash<QString, quint64> DocumentIndex::CloudSizes() const
{
    QHash<QString, quint64> sizes;
    sizes.reserve(entries.size());
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        sizes.insert(entry.key(), entry->facts.size);
    }
    return sizes;
}

QStringList DocumentIndex::LocalPaths() const
{
    return idsByPath.uniqueKeys() + copies.Paths();
}

QString DocumentIndex::LocalPath(const QString& id) const
{
    const auto* known = Find(id);
    return known ? known->localPath : QString();
}

QString DocumentIndex::DocumentAt(const QString& path) const
{
    const auto shown = idsByPath.value(path);
    if (!shown.isEmpty()) {
        return shown;
    }
    const auto* copy = copies.At(path);
    const auto id = copy ? QString::fromStdString(copy->documentId) : QString();
    return entries.contains(id) ? id : QString();
}

QString DocumentIndex::DocumentNamed(const QString& name) const
{
    const auto wanted = name.toStdString();
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (entry->facts.name == wanted) {
            return entry.key();
        }
    }
    return {};
}

bool DocumentIndex::IsCopy(const QString& path) const
{
    return idsByPath.contains(path) || copies.At(path);
}

std::optional<std::string> DocumentIndex::SyncHashAt(const QString& id, const QString& path) const
{
    if (const auto* known = Find(id); known && !path.isEmpty() && known->localPath == path) {
        return known->syncHash;
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

bool DocumentIndex::IsCopyOutdated(const Entry& document, const std::string& copyHash)
{
    const auto& cloudHash = document.facts.hash;
    return copyHash != document.localHash ||
           (!cloudHash.empty() && document.localHash == cloudHash && document.syncHash != cloudHash);
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

bool DocumentIndex::KeepCopy(const QString& id, const QString& path, const std::string& syncHash)
{
    const auto* known = Find(id);
    if (!known) {
        return true;
    }
    copies.Keep({path.toStdString(), id.toStdString(), known->facts.name, syncHash});
    return TakeFromOthers(id, path);
}

bool DocumentIndex::TakeFromOthers(const QString& id, const QString& path)
{
    const auto guard = lifetime.Watch();
    const QStringList holders =
        path.isEmpty() ? QStringList() : QStringList(idsByPath.values(path)) + missingCopies.values(path);
    missingCopies.remove(path);
    for (const auto& holder : holders) {
        if (guard && holder != id) {
            ForgetCopy(holder);
        }
    }
    return static_cast<bool>(guard);
}

void DocumentIndex::LearnHash(const QString& id, const std::string& hash)
{
    entries[id].facts.hash = hash;
    listStorage->NoteChange(id.toStdString());
}

DocumentIndex::Record DocumentIndex::CloudRecordOf(const QString& id) const
{
    const auto* known = Find(id);
    return known ? std::make_shared<FileInfo>(FileInfo::CloudInfo(id.toStdString(), known->facts.name,
                                                                  known->facts.size, true, QUrl(), QDateTime(),
                                                                  known->facts.modifiedAt, 0, known->facts.hash))
                 : nullptr;
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
    SetEntry(id, EntryOf(record));
    copies.NoteFound(id);
    listStorage->NoteChange(id.toStdString());
    const auto guard = lifetime.Watch();
    list->Add(record);
    if (guard) {
        TakeFromOthers(id, ToText(record->GetPath()));
    }
}

void DocumentIndex::Update(const Record& record, bool isSameVersion, const std::string& copyHash)
{
    const auto id = IdOf(*record);
    auto& entry = entries[id];
    entry.facts = FactsOf(*record);
    if (!isSameVersion) {
        DropPreviews(id, entry);
    }
    listHashes->Know(record->GetPath(), copyHash);
    UpdateList(record);
}

void DocumentIndex::UpdateList(const Record& record)
{
    const auto id = IdOf(*record);
    listStorage->NoteChange(id.toStdString());
    const auto guard = lifetime.Watch();
    list->Update(record);
    if (!guard) {
        return;
    }
    const auto known = entries.find(id);
    if (known != entries.end() && !known->localPath.isEmpty()) {
        known->localHash = listHashes->Told(known->localPath.toStdString());
    }
}

bool DocumentIndex::Replace(const Record& record)
{
    const auto guard = lifetime.Watch();
    const auto id = IdOf(*record);
    auto& cloudInfo = record->GetRedactableCloudInfo().value();
    auto entry = EntryOf(record);

    const auto held = RecordOf(id);
    if (held) {
        auto& heldCloudInfo = held->GetRedactableCloudInfo().value();
        auto& known = entries[id];
        if (entry.facts.IsSameVersionAs(known.facts)) {
            cloudInfo.SetPreviewsSet(heldCloudInfo.GetPreviewsSet());
            record->SetPreviewsSet(held->GetPreviewsSet());
            entry.storedPreviews = known.storedPreviews;
            entry.shownPreviews = known.shownPreviews;
        } else {
            DropPreviews(id, known);
        }
    }
    record->SetIsSyncingInProgress(IsTransferring(id));
    if (held && !record->GetPath().empty() && held->GetPath() != record->GetPath() &&
        QFileInfo(LocalPath(id)).isFile()) {
        copies.Keep(CopyOf(*held));
    }
    SetEntry(id, entry);
    listStorage->NoteChange(id.toStdString());
    if (held) {
        list->Remove(held);
    } else {
        copies.NoteFound(id);
    }
    if (guard) {
        list->Add(record);
    }
    return guard && TakeFromOthers(id, entry.localPath);
}

void DocumentIndex::ForgetCopy(const QString& id)
{
    if (const auto record = RecordOf(id)) {
        record->SetPath({}, {}, {});
        Replace(record);
    }
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
        UpdateList(record);
    } else {
        Replace(record);
    }
}

void DocumentIndex::ShowPreviews(const Record& record, const std::map<Size, ioPath>& previews)
{
    const auto id = IdOf(*record);
    auto& entry = entries[id];
    for (const auto& [size, path] : previews) {
        record->GetRedactableCloudInfo()->SetPreviewPathBySize(path, size);
        entry.storedPreviews |= Bit(size);
        entry.shownPreviews |= Bit(size);
    }
    record->SetIsSyncingInProgress(IsTransferring(id));
    UpdateList(record);
}

void DocumentIndex::NoteStored(const QString& id, Size size)
{
    entries[id].storedPreviews |= Bit(size);
    listStorage->NoteChange(id.toStdString());
}

void DocumentIndex::DropPreview(const QString& id, Size size)
{
    entries[id].storedPreviews &= ~Bit(size);
    pictures.Delete(id, size);
    listStorage->NoteChange(id.toStdString());
}

void DocumentIndex::DropPreviews(const QString& id, Entry& entry)
{
    for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
        if (entry.HasStored(size)) {
            pictures.Delete(id, size);
        }
    }
    entry.storedPreviews = 0;
    entry.shownPreviews = 0;
}

void DocumentIndex::Remove(const QString& id)
{
    copies.DropAllOf(id);
    TakeOut(id);
}

void DocumentIndex::Lose(const QString& id)
{
    if (const auto* known = Find(id); known && !known->localPath.isEmpty()) {
        copies.Keep({known->localPath.toStdString(), id.toStdString(), known->facts.name, known->syncHash});
    }
    copies.NoteLost(id);
    TakeOut(id);
}

void DocumentIndex::TakeOut(const QString& id)
{
    if (const auto* known = Find(id); known && !known->localPath.isEmpty()) {
        copiesLeft.Look(known->localPath, known->syncHash);
    }
    const auto held = CloudRecordOf(id);
    Forget(id);
    if (held) {
        list->Remove(held);
    }
}

void DocumentIndex::Forget(const QString& id)
{
    SetEntry(id, {});
    entries.remove(id);
    for (const auto& [size, edge] : PDF::Cloud::previewPixelSizes) {
        pictures.Delete(id, size);
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
            UpdateList(held);
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
