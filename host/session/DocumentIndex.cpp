#include "DocumentIndex.h"

#include "Later.h"
#include "Records.h"

#include <host/store/RestorableStorage.h>
#include <NorlisCloud/PreviewFile.h>

#include <QFile>

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

} // namespace

bool DocumentIndex::Entry::Shows(Size size) const
{
    return (shownPreviews & Bit(size)) != 0;
}

DocumentIndex::DocumentIndex(const QString& file, const std::shared_ptr<LocalFileSystem>& fileSystem,
                             const std::shared_ptr<Md5HashCalculator>& hashes)
    : hashes(hashes),
      storage(std::make_shared<SqliteCloudInfoStorage>(file)),
      list(std::make_unique<PDF::Cloud::NorlisCloudFilesManager>(std::make_shared<RestorableStorage>(storage),
                                                                 fileSystem, hashes))
{
    for (int index = 0; index < list->FilesCount(); ++index) {
        entries[list->GetDocumentId(index)].localPath = list->GetDocumentPath(index);
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

QStringList DocumentIndex::LocalPaths() const
{
    QStringList paths;
    for (const auto& entry : entries) {
        if (!entry.localPath.isEmpty()) {
            paths.append(entry.localPath);
        }
    }
    return paths;
}

QString DocumentIndex::LocalPath(const QString& id) const
{
    return entries.value(id).localPath;
}

void DocumentIndex::Add(const Record& record)
{
    entries[IdOf(*record)].facts = FactsOf(*record);
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

    const auto held = RecordOf(id);
    if (held) {
        auto& heldCloudInfo = held->GetRedactableCloudInfo().value();
        if (entry.facts->HasSameContent(CloudFacts(heldCloudInfo))) {
            cloudInfo.SetPreviewsSet(heldCloudInfo.GetPreviewsSet());
            record->SetPreviewsSet(held->GetPreviewsSet());
            entry.shownPreviews = entries.value(id).shownPreviews;
        }
    }
    record->SetIsSyncingInProgress(IsTransferring(id));
    entries[id] = entry;
    if (held) {
        list->Remove(held);
    }
    if (guard) {
        list->Add(record);
    }
    return static_cast<bool>(guard);
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
    Forget(id);
    if (const auto held = RecordOf(id)) {
        list->Remove(held);
    }
}

void DocumentIndex::Forget(const QString& id)
{
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
