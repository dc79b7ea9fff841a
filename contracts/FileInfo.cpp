#include <contracts/FileInfo.h>

#include <filesystem>

namespace Norlis::PDF {

namespace {

quint64 SizeOnDisk(const ioPath& path)
{
    std::error_code error;
    const auto size = std::filesystem::file_size(std::filesystem::u8path(path.utf8string()), error);
    return error ? 0 : size;
}

} // namespace

FileInfo::CloudInfo::CloudInfo(const std::string& id, const std::string& fileName, quint64 size, bool isPrivate,
                               const QUrl& downloadUrl, const QDateTime& createdAt, const QDateTime& modifyTime,
                               int lifeTime, const std::string& md5Hash)
    : id(id),
      fileName(fileName),
      size(size),
      isPrivate(isPrivate),
      downloadUrl(downloadUrl),
      createdAt(createdAt),
      modifyTime(modifyTime),
      lifeTime(lifeTime),
      md5Hash(md5Hash)
{
}

std::string FileInfo::CloudInfo::GetId() const
{
    return id;
}

std::string FileInfo::CloudInfo::GetFileName()
{
    return fileName;
}

quint64 FileInfo::CloudInfo::GetSize() const
{
    return size;
}

bool FileInfo::CloudInfo::IsPrivate() const
{
    return isPrivate;
}

QUrl FileInfo::CloudInfo::GetDownloadUrl()
{
    return downloadUrl;
}

QDateTime FileInfo::CloudInfo::GetCreatedAt()
{
    return createdAt;
}

QDateTime FileInfo::CloudInfo::GetModifyTime()
{
    return modifyTime;
}

int FileInfo::CloudInfo::GetLifeTime() const
{
    return lifeTime;
}

std::string FileInfo::CloudInfo::GetMd5Hash()
{
    return md5Hash;
}

std::map<FileInfo::PreviewSize, ioPath> FileInfo::CloudInfo::GetPreviewsSet()
{
    return previews;
}

void FileInfo::CloudInfo::SetPreviewsSet(const std::map<PreviewSize, ioPath>& newPreviews)
{
    previews = newPreviews;
}

void FileInfo::CloudInfo::SetPreviewPathBySize(const ioPath& path, PreviewSize previewSize)
{
    previews[previewSize] = path;
}

bool operator==(const FileInfo::CloudInfo& left, const FileInfo::CloudInfo& right)
{
    return left.id == right.id && left.fileName == right.fileName && left.size == right.size &&
           left.isPrivate == right.isPrivate && left.downloadUrl == right.downloadUrl &&
           left.createdAt == right.createdAt && left.modifyTime == right.modifyTime &&
           left.lifeTime == right.lifeTime && left.md5Hash == right.md5Hash && left.previews == right.previews;
}

FileInfo::FileInfo(const CloudInfo& cloudInfo) : id(cloudInfo.GetId()), cloudInfo(cloudInfo) {}

FileInfo::FileInfo(const ioPath& path, const std::string& md5Hash)
{
    SetPath(path, md5Hash);
}

FileInfo::~FileInfo() = default;

std::string FileInfo::GetId()
{
    return id.empty() && cloudInfo ? cloudInfo->GetId() : id;
}

ioPath FileInfo::GetPath()
{
    return path;
}

void FileInfo::SetPath(const ioPath& newPath, const std::string& newMd5Hash)
{
    path = newPath;
    size = path.empty() ? 0 : SizeOnDisk(path);
    md5Hash = path.empty() ? std::string() : newMd5Hash;
}

void FileInfo::SetPath(const ioPath& newPath, const std::string& newMd5Hash,
                       const std::string& newCloudHashBeforeChange)
{
    SetPath(newPath, newMd5Hash);
    cloudHashBeforeChange = newCloudHashBeforeChange;
}

quint64 FileInfo::GetSize() const
{
    return size;
}

std::string FileInfo::GetMd5Hash()
{
    return md5Hash;
}

std::string FileInfo::GetCloudHashBeforeChange()
{
    return cloudHashBeforeChange;
}

std::optional<const FileInfo::CloudInfo> FileInfo::GetCloudInfo()
{
    return cloudInfo;
}

std::optional<FileInfo::CloudInfo>& FileInfo::GetRedactableCloudInfo()
{
    return cloudInfo;
}

bool FileInfo::UpdateCloudInfo(const CloudInfo& newer)
{
    id = GetId();
    CloudInfo merged = newer;
    if (cloudInfo) {
        auto previewsOfBoth = merged.GetPreviewsSet();
        previewsOfBoth.merge(cloudInfo->GetPreviewsSet());
        merged.SetPreviewsSet(previewsOfBoth);
    }
    const bool changed = !cloudInfo || !(*cloudInfo == merged);
    cloudInfo = merged;
    if (id.empty()) {
        id = newer.GetId();
    }
    return changed;
}

FileInfo::CloudStatus FileInfo::GetCloudStatus()
{
    if (!cloudInfo) {
        return CloudStatus::NotUploaded;
    }
    // A path without a hash is a copy that could not be read, for instance one that is still being downloaded.
    if (path.empty() || md5Hash.empty()) {
        return CloudStatus::OnlyInCloud;
    }
    const std::string cloudHash = cloudInfo->GetMd5Hash();
    if (md5Hash == cloudHash) {
        return CloudStatus::InSync;
    }
    // A cloud that gives no hash gives no sign of a change either.
    const bool changedInCloud = !cloudHash.empty() && cloudHash != cloudHashBeforeChange;
    const bool changedLocally = md5Hash != cloudHashBeforeChange;
    if (changedInCloud) {
        return changedLocally ? CloudStatus::ChangedOnBothSides : CloudStatus::ChangedInCloud;
    }
    return changedLocally ? CloudStatus::ChangedLocally : CloudStatus::InSync;
}

bool FileInfo::IsSyncingInProgress() const
{
    return syncingInProgress;
}

void FileInfo::SetIsSyncingInProgress(bool inProgress)
{
    syncingInProgress = inProgress;
}

std::map<FileInfo::PreviewSize, ioPath> FileInfo::GetPreviewsSet()
{
    return previews;
}

void FileInfo::SetPreviewsSet(const std::map<PreviewSize, ioPath>& newPreviews)
{
    previews = newPreviews;
}

std::string FileInfo::previewSizetoString(PreviewSize previewSize)
{
    switch (previewSize) {
    case PreviewSize::Small:
        return "small";
    case PreviewSize::Medium:
        return "medium";
    case PreviewSize::Large:
        return "large";
    }
    return {};
}

} // namespace Norlis::PDF
