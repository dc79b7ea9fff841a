#include <NorlisCloud/NorlisCloudFilesManager.h>

#include <base/Lifetime.h>
#include <base/Utf8.h>
#include <NorlisCloud/RecordKeys.h>
#include <NorlisCloud/StoredNumber.h>

#include <QUrl>

#include <glog/logging.h>

#include <algorithm>
#include <exception>
#include <map>

namespace Norlis::PDF::Cloud {

namespace {

using Fields = std::map<std::string, std::string>;

constexpr auto previewSeparator = ';';

// By number, since the editor's record library may name its states differently.
constexpr int noSuchDocument = 4;

/// The getters of a record are not declared const, although they change nothing.
FileInfo& Readable(const FileInfo& record)
{
    return const_cast<FileInfo&>(record);
}

/// Empty when the key is missing.
std::string Text(const Fields& fields, const char* key)
{
    const auto field = fields.find(key);
    return field == fields.end() ? std::string() : field->second;
}

QDateTime StoredTime(const Fields& fields, const char* key)
{
    return QDateTime::fromString(QString::fromStdString(Text(fields, key)), Qt::TextDate);
}

/// Whether a stored number is there and not 0.
bool IsNonZero(const Fields& fields, const char* key)
{
    const auto field = fields.find(key);
    return field != fields.end() && StoredInt(field->second) != 0;
}

FileInfo::CloudInfo CloudInfoOf(const std::string& id, const Fields& fields)
{
    // Read one after the other, so that of two malformed numbers always the same one is reported.
    const auto sizeText = fields.find(RecordKey::cloudSize);
    const quint64 size = sizeText == fields.end() ? 0 : StoredUnsigned(sizeText->second);
    const bool isPrivate = IsNonZero(fields, RecordKey::isPrivate);
    const int lifetime = IsNonZero(fields, RecordKey::lifetime) ? 1 : 0; // the number of seconds is not restored
    const QUrl downloadUrl(QString::fromStdString(Text(fields, RecordKey::downloadUrl)), QUrl::TolerantMode);
    return FileInfo::CloudInfo(id, Text(fields, RecordKey::fileName), size, isPrivate, downloadUrl,
                               StoredTime(fields, RecordKey::createdAt), StoredTime(fields, RecordKey::modifiedTime),
                               lifetime, Text(fields, RecordKey::fileHash));
}

} // namespace

NorlisCloudFilesManager::NorlisCloudFilesManager(const std::shared_ptr<ICloudInfoStorage>& cloudInfoStorage,
                                                 const std::shared_ptr<IFileSystem>& fileSystem,
                                                 const std::shared_ptr<IHashCalculator>& hashCalculator)
    : cloudInfoStorage(cloudInfoStorage),
      fileSystem(fileSystem),
      hashCalculator(hashCalculator),
      lifetime(std::make_unique<Lifetime>())
{
    Load();
}

NorlisCloudFilesManager::~NorlisCloudFilesManager()
{
    Save();
}

void NorlisCloudFilesManager::SetImageGetCallback(const std::function<QImage(const QString&)>&) {}

std::string NorlisCloudFilesManager::GetIdByPath(const ioPath& path) const
{
    // Normalising may run an event loop, in which the list is changed or deleted.
    const auto searched = files;
    const auto normalizer = fileSystem;
    const ioPath wanted = normalizer->NormalizePath(path);
    const auto found = std::find_if(searched.begin(), searched.end(), [&](const auto& file) {
        return normalizer->NormalizePath(file->GetPath()) == wanted;
    });
    return found == searched.end() ? std::string() : (*found)->GetId();
}

void NorlisCloudFilesManager::Add(const std::shared_ptr<FileInfo>& file)
{
    if (!file) {
        throw std::exception();
    }
    const auto added = file; // a slot may clear the caller's own pointer
    const auto guard = lifetime->Watch();
    files.push_front(added);
    removedFileIds.erase(added->GetId());
    Q_EMIT FileAdded(added);
    if (guard) {
        Q_EMIT FileAdded();
    }
}

void NorlisCloudFilesManager::Remove(const std::shared_ptr<FileInfo>& file)
{
    if (!file) {
        throw std::exception();
    }
    const auto removed = file;
    const auto guard = lifetime->Watch();
    if (removed->GetRedactableCloudInfo()) {
        const auto store = cloudInfoStorage; // must outlive the call even if the list does not
        store->RemoveRecord(removed->GetId());
    }
    if (!guard || !RemoveImpl(removed)) {
        return;
    }
    Q_EMIT FileRemoved(std::shared_ptr<const FileInfo>(removed));
    if (guard) {
        Q_EMIT FileRemoved();
    }
}

void NorlisCloudFilesManager::Rename(const QStringList&, const QString&) {}

void NorlisCloudFilesManager::Clear() {}

void NorlisCloudFilesManager::Update(const std::shared_ptr<const FileInfo>& newer)
{
    if (!newer) {
        return;
    }
    const auto incoming = newer;
    const auto found = FindById(Readable(*incoming).GetId());
    if (found == files.end()) {
        return;
    }
    const auto held = *found;
    const auto guard = lifetime->Watch();
    TryToUpdate(held, incoming);
    if (!guard) {
        return;
    }
    Q_EMIT FileUpdated(held->GetId());
    if (!guard) {
        return;
    }
    // The slots may have moved the record, or taken it out.
    const auto current = std::find(files.begin(), files.end(), held);
    if (current != files.end()) {
        Q_EMIT FileUpdated(static_cast<int>(current - files.begin()));
    }
}

int NorlisCloudFilesManager::FilesCount() const
{
    return static_cast<int>(files.size());
}

int NorlisCloudFilesManager::Limit() const
{
    return 0;
}

std::shared_ptr<FileInfo> NorlisCloudFilesManager::GetFileInfo(const QString& id) const
{
    const auto found = FindById(id.toStdString());
    return found == files.end() ? nullptr : std::make_shared<FileInfo>(**found);
}

QString NorlisCloudFilesManager::GetDocumentName(int index) const
{
    const auto file = FindByIndex(index, __func__);
    if (!file || !file->GetRedactableCloudInfo()) {
        return {};
    }
    return FromUtf8(file->GetRedactableCloudInfo()->GetFileName());
}

QMap<QString, QVariant> NorlisCloudFilesManager::GetPreviewsSet(int index) const
{
    QMap<QString, QVariant> urls;
    const auto file = FindByIndex(index, __func__);
    const auto cloudInfo = file ? file->GetCloudInfo() : std::nullopt;
    if (!cloudInfo) {
        return urls;
    }
    auto previews = FileInfo::CloudInfo(*cloudInfo).GetPreviewsSet();
    for (auto& [size, path] : previews) {
        urls.insert(QString::fromStdString(FileInfo::previewSizetoString(size)),
                    QUrl::fromLocalFile(QString::fromStdString(path.utf8string())));
    }
    return urls;
}

QString NorlisCloudFilesManager::GetDocumentId(int index) const
{
    const auto file = FindByIndex(index, __func__);
    return file ? QString::fromStdString(file->GetId()) : QString();
}

QString NorlisCloudFilesManager::GetDocumentPath(int index) const
{
    const auto file = FindByIndex(index, __func__);
    return file ? QString::fromStdString(file->GetPath().utf8string()) : QString();
}

QDateTime NorlisCloudFilesManager::GetModifiedDateTime(int index) const
{
    const auto file = FindByIndex(index, __func__);
    const auto cloudInfo = file ? file->GetCloudInfo() : std::nullopt;
    return cloudInfo ? FileInfo::CloudInfo(*cloudInfo).GetModifyTime() : QDateTime();
}

int NorlisCloudFilesManager::GetDocumentState(int index) const
{
    const auto file = FindByIndex(index, __func__);
    return file ? static_cast<int>(file->GetCloudStatus()) : noSuchDocument;
}

int NorlisCloudFilesManager::GetFileSize(int index) const
{
    const auto file = FindByIndex(index, __func__);
    if (!file) {
        return 0;
    }
    if (file->GetSize() != 0) {
        return static_cast<int>(file->GetSize());
    }
    const auto& cloudInfo = file->GetRedactableCloudInfo();
    return cloudInfo ? static_cast<int>(cloudInfo->GetSize()) : 0;
}

void NorlisCloudFilesManager::Load()
{
    for (const auto& [id, fields] : cloudInfoStorage->ReadAll()) {
        const auto file = std::make_shared<FileInfo>(CloudInfoOf(id, fields));
        const ioPath path = fileSystem->NormalizePath(ioPath(Text(fields, RecordKey::filePath)));
        if (fileSystem->Exists(path)) {
            file->SetPath(path, Text(fields, RecordKey::localFileHash), Text(fields, RecordKey::lastSyncFileHash));
            // The file may have changed while nobody looked.
            file->SetPath(path, hashCalculator->CalculateHash(path));

            const auto previews = QString::fromStdString(Text(fields, RecordKey::previewPath))
                                      .split(previewSeparator, Qt::KeepEmptyParts, Qt::CaseSensitive);
            if (previews.size() == 3) {
                std::map<FileInfo::PreviewSize, ioPath> pathBySize;
                for (int size = 0; size < previews.size(); ++size) {
                    pathBySize[static_cast<FileInfo::PreviewSize>(size)] = ioPath(previews[size].toStdString());
                }
                file->GetRedactableCloudInfo()->SetPreviewsSet(pathBySize);
            }
        }
        files.push_front(file);
    }
}

void NorlisCloudFilesManager::Save()
{
    for (const auto& id : removedFileIds) {
        cloudInfoStorage->RemoveRecord(id);
    }
    for (const auto& file : files) {
        const std::string id = file->GetId();
        const auto store = [&](const char* key, const std::string& value) {
            cloudInfoStorage->SetValue(id, key, value);
        };
        auto& cloudInfo = file->GetRedactableCloudInfo().value();
        if (!file->GetPath().empty()) {
            store(RecordKey::filePath, file->GetPath().utf8string());
            store(RecordKey::localFileHash, file->GetMd5Hash());
        }
        store(RecordKey::fileHash, cloudInfo.GetMd5Hash());
        store(RecordKey::lastSyncFileHash, file->GetCloudHashBeforeChange());
        store(RecordKey::fileName, cloudInfo.GetFileName());
        store(RecordKey::isPrivate, cloudInfo.IsPrivate() ? "1" : "0");
        store(RecordKey::downloadUrl, cloudInfo.GetDownloadUrl().toString().toStdString());
        store(RecordKey::createdAt, cloudInfo.GetCreatedAt().toString(Qt::TextDate).toStdString());
        store(RecordKey::lifetime, std::to_string(cloudInfo.GetLifeTime()));
        store(RecordKey::cloudSize, std::to_string(cloudInfo.GetSize()));

        std::string previews;
        auto pathBySize = cloudInfo.GetPreviewsSet();
        for (auto& [size, path] : pathBySize) {
            previews += path.utf8string() + previewSeparator;
        }
        store(RecordKey::previewPath, previews);
    }
}

bool NorlisCloudFilesManager::RemoveImpl(const std::shared_ptr<FileInfo>& file)
{
    const auto found = FindById(file->GetId());
    if (found == files.end()) {
        return false;
    }
    removedFileIds.insert(file->GetId());
    files.erase(found);
    return true;
}

bool NorlisCloudFilesManager::TryToUpdate(const std::shared_ptr<FileInfo>& held,
                                          const std::shared_ptr<const FileInfo>& incoming)
{
    FileInfo& newer = Readable(*incoming);
    const bool cloudInfoChanged = held->UpdateCloudInfo(newer.GetCloudInfo().value());

    // Either may run an event loop, in which the list is deleted: from here on it is not touched.
    const auto normalizer = fileSystem;
    const auto calculator = hashCalculator;
    const ioPath path = normalizer->NormalizePath(newer.GetPath());
    const std::string hash = calculator->CalculateHash(path);
    if (held->GetPath() != newer.GetPath() || held->GetMd5Hash() != hash) {
        held->SetPath(path, hash);
    }

    const auto previews = newer.GetPreviewsSet();
    if (!previews.empty() && previews != held->GetPreviewsSet()) {
        held->SetPreviewsSet(previews);
    }

    held->SetIsSyncingInProgress(newer.IsSyncingInProgress());
    return cloudInfoChanged;
}

std::deque<std::shared_ptr<FileInfo>>::const_iterator NorlisCloudFilesManager::FindById(const std::string& id) const
{
    return std::find_if(files.begin(), files.end(), [&](const auto& file) { return file->GetId() == id; });
}

std::shared_ptr<FileInfo> NorlisCloudFilesManager::FindByIndex(int index, const char* operation) const
{
    if (index >= 0 && static_cast<std::size_t>(index) < files.size()) {
        return files[static_cast<std::size_t>(index)];
    }
    LOG(ERROR) << "Norlis::PDF::Cloud::NorlisCloudFilesManager::" << operation
               << ": Invalid index requested: " << std::to_string(index)
               << "; max index: " << std::to_string(files.size()); // in no locale's digits
    return nullptr;
}

} // namespace Norlis::PDF::Cloud
