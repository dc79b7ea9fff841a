#include "FilesListModel.h"

#include <QStringList>

#include <algorithm>

namespace Norlis::Test {

namespace {

using PreviewSize = PDF::FileInfo::PreviewSize;

std::string ValueOf(const FilesListSurroundings::Fields& fields, const std::string& key)
{
    const auto found = fields.find(key);
    return found == fields.end() ? std::string() : found->second;
}

QString TextOf(const FilesListSurroundings::Fields& fields, const std::string& key)
{
    return QString::fromStdString(ValueOf(fields, key));
}

/// The conversions of the standard library, with messages in full; 0 in place of a missing number.
template <typename Number>
Number NumberOf(const FilesListSurroundings::Fields& fields, const std::string& key,
                Number (*convert)(const std::string&), const std::string& conversion)
{
    try {
        return fields.count(key) == 0 ? 0 : convert(fields.at(key));
    } catch (const std::invalid_argument&) {
        throw std::invalid_argument("invalid " + conversion + " argument");
    } catch (const std::out_of_range&) {
        throw std::out_of_range(conversion + " argument out of range");
    }
}

int IntOf(const FilesListSurroundings::Fields& fields, const std::string& key)
{
    return NumberOf<int>(
        fields, key, [](const std::string& text) { return std::stoi(text); }, "stoi");
}

/// As where a long has 32 bits: a sign wraps, and what does not fit is out of range.
quint32 SizeOf(const FilesListSurroundings::Fields& fields)
{
    const auto convert = [](const std::string& text) -> quint32 {
        const unsigned long value = std::stoul(text);
        const bool isNegative = text.find('-') < text.find_first_of("0123456789");
        if ((isNegative ? 0 - value : value) > 0xffffffff) {
            throw std::out_of_range(text);
        }
        return static_cast<quint32>(value);
    };
    return NumberOf<quint32>(fields, "cloud_size", convert, "stoul");
}

std::shared_ptr<PDF::FileInfo> RecordOf(const std::string& id, const FilesListSurroundings::Fields& fields)
{
    const quint32 size = SizeOf(fields);
    const bool isPrivate = IntOf(fields, "is_private") != 0;
    const int lifetime = IntOf(fields, "lifetime_in_sec") != 0 ? 1 : 0;
    return std::make_shared<PDF::FileInfo>(PDF::FileInfo::CloudInfo(
        id, ValueOf(fields, "file_name"), size, isPrivate, QUrl(TextOf(fields, "download_url"), QUrl::TolerantMode),
        QDateTime::fromString(TextOf(fields, "created_at"), Qt::TextDate),
        QDateTime::fromString(TextOf(fields, "modified_time"), Qt::TextDate), lifetime, ValueOf(fields, "file_hash")));
}

} // namespace

void FilesListModel::Load()
{
    for (const auto& [id, fields] : surroundings.ReadAll()) {
        const File record = RecordOf(id, fields);
        const ioPath path = surroundings.Normalized(ValueOf(fields, "file_path"));
        if (surroundings.Exists(path)) {
            record->SetPath(path, ValueOf(fields, "local_file_hash"), ValueOf(fields, "last_sync_file_hash"));
            record->SetPath(path, surroundings.HashOf(path));
            const QStringList previews = TextOf(fields, "preview_path").split(';');
            if (previews.size() == 3) {
                std::map<PreviewSize, ioPath> set;
                for (int size = 0; size < 3; ++size) {
                    set[PreviewSize(size)] = ioPath(previews[size].toStdString());
                }
                record->GetRedactableCloudInfo()->SetPreviewsSet(set);
            }
        }
        files.push_back(record);
    }
}

void FilesListModel::SaveAndDelete()
{
    isGone = true;
    for (const auto& id : removed) {
        surroundings.RemoveRecord(id);
    }
    for (auto file = files.rbegin(); file != files.rend(); ++file) {
        FileInfo& record = **file;
        auto& cloud = record.GetRedactableCloudInfo().value();
        const auto set = [&](const std::string& key, const std::string& value) {
            surroundings.SetValue(record.GetId(), key, value);
        };
        if (!record.GetPath().empty()) {
            set("file_path", record.GetPath().utf8string());
            set("local_file_hash", record.GetMd5Hash());
        }
        set("file_hash", cloud.GetMd5Hash());
        set("last_sync_file_hash", record.GetCloudHashBeforeChange());
        set("file_name", cloud.GetFileName());
        set("is_private", cloud.IsPrivate() ? "1" : "0");
        set("download_url", cloud.GetDownloadUrl().toString().toStdString());
        set("created_at", cloud.GetCreatedAt().toString(Qt::TextDate).toStdString());
        set("lifetime_in_sec", std::to_string(cloud.GetLifeTime()));
        set("cloud_size", std::to_string(cloud.GetSize()));
        std::string previews;
        for (const auto& [size, path] : cloud.GetPreviewsSet()) {
            previews += path.utf8string() + ';';
        }
        set("preview_path", previews);
    }
}

void FilesListModel::Signal(const std::string& text)
{
    surroundings.Signal(text);
    if (isGone) {
        throw Gone();
    }
}

void FilesListModel::Add(const File& givenFile)
{
    const File file = givenFile;
    if (!file) {
        throw std::exception();
    }
    files.push_back(file);
    removed.erase(file->GetId());
    Signal("FileAdded(" + file->GetId() + ')');
    Signal("FileAdded()");
}

FilesListModel::File FilesListModel::First(const std::string& id) const
{
    const auto found =
        std::find_if(files.rbegin(), files.rend(), [&](const File& file) { return file->GetId() == id; });
    return found == files.rend() ? nullptr : *found;
}

void FilesListModel::Remove(const File& givenFile)
{
    const File file = givenFile;
    if (!file) {
        throw std::exception();
    }
    const std::string id = file->GetId();
    if (file->GetRedactableCloudInfo()) {
        surroundings.RemoveRecord(id);
    }
    const auto found =
        std::find_if(files.rbegin(), files.rend(), [&](const File& held) { return held->GetId() == id; });
    if (found == files.rend()) {
        return;
    }
    files.erase(std::next(found).base());
    removed.insert(id);
    Signal("FileRemoved(" + id + ')');
    Signal("FileRemoved()");
}

void FilesListModel::Update(const std::shared_ptr<const FileInfo>& file)
{
    const auto newer = std::const_pointer_cast<FileInfo>(file);
    const File held = newer ? First(newer->GetId()) : nullptr;
    if (!held) {
        return;
    }
    Merge(*held, *newer);
    Signal("FileUpdated(\"" + held->GetId() + "\")");
    // The position of this moment; a slot may have changed it, or taken the record out.
    const auto position = std::find(files.rbegin(), files.rend(), held);
    if (position != files.rend()) {
        Signal("FileUpdated(" + std::to_string(position - files.rbegin()) + ')');
    }
}

void FilesListModel::Merge(FileInfo& held, FileInfo& newer)
{
    held.UpdateCloudInfo(newer.GetCloudInfo().value());
    const ioPath path = surroundings.Normalized(newer.GetPath());
    const std::string hash = surroundings.HashOf(path);
    if (held.GetPath() != newer.GetPath() || held.GetMd5Hash() != hash) {
        held.SetPath(path, hash);
    }
    if (!newer.GetPreviewsSet().empty()) {
        held.SetPreviewsSet(newer.GetPreviewsSet());
    }
    held.SetIsSyncingInProgress(newer.IsSyncingInProgress());
}

int FilesListModel::FilesCount() const
{
    return static_cast<int>(files.size());
}

std::string FilesListModel::GetIdByPath(const ioPath& path) const
{
    const ioPath wanted = surroundings.Normalized(path);
    for (auto file = files.rbegin(); file != files.rend(); ++file) {
        if (surroundings.Normalized((*file)->GetPath()) == wanted) {
            return (*file)->GetId();
        }
    }
    return {};
}

FilesListModel::File FilesListModel::GetFileInfo(const QString& id) const
{
    const File found = First(id.toStdString());
    return found ? std::make_shared<FileInfo>(*found) : nullptr;
}

FilesListModel::File FilesListModel::At(int index, const std::string& question) const
{
    if (index >= 0 && index < FilesCount()) {
        return files[files.size() - 1 - std::size_t(index)];
    }
    surroundings.Log("ERROR Norlis::PDF::Cloud::NorlisCloudFilesManager::" + question + ": Invalid index requested: " +
                     std::to_string(index) + "; max index: " + std::to_string(files.size()));
    return nullptr;
}

// A record that has no cloud part answers as a missing one does where the cloud part would be needed.

QString FilesListModel::GetDocumentName(int index) const
{
    const File file = At(index, "GetDocumentName");
    return file && file->GetRedactableCloudInfo()
               ? QString::fromStdString(file->GetRedactableCloudInfo()->GetFileName())
               : QString();
}

QMap<QString, QVariant> FilesListModel::GetPreviewsSet(int index) const
{
    QMap<QString, QVariant> previews;
    const File file = At(index, "GetPreviewsSet");
    if (file && file->GetRedactableCloudInfo()) {
        for (const auto& [size, path] : file->GetRedactableCloudInfo()->GetPreviewsSet()) {
            previews[QString::fromStdString(FileInfo::previewSizetoString(size))] =
                QUrl::fromLocalFile(QString::fromStdString(path.utf8string()));
        }
    }
    return previews;
}

QString FilesListModel::GetDocumentId(int index) const
{
    const File file = At(index, "GetDocumentId");
    return file ? QString::fromStdString(file->GetId()) : QString();
}

QString FilesListModel::GetDocumentPath(int index) const
{
    const File file = At(index, "GetDocumentPath");
    return file ? QString::fromStdString(file->GetPath().utf8string()) : QString();
}

QDateTime FilesListModel::GetModifiedDateTime(int index) const
{
    const File file = At(index, "GetModifiedDateTime");
    return file && file->GetRedactableCloudInfo() ? file->GetRedactableCloudInfo()->GetModifyTime() : QDateTime();
}

int FilesListModel::GetDocumentState(int index) const
{
    const File file = At(index, "GetDocumentState");
    return file ? static_cast<int>(file->GetCloudStatus()) : 4;
}

int FilesListModel::GetFileSize(int index) const
{
    const File file = At(index, "GetFileSize");
    if (!file) {
        return 0;
    }
    const auto& cloud = file->GetRedactableCloudInfo();
    const quint64 cloudSize = cloud ? cloud->GetSize() : 0;
    return static_cast<qint32>(file->GetSize() != 0 ? file->GetSize() : cloudSize);
}

} // namespace Norlis::Test
