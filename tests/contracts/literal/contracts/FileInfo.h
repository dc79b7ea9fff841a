#pragma once

#include <contracts/ioPath.h>

#include <QDateTime>
#include <QUrl>

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace Norlis::PDF {

/// The least that a document record offers. Only what the contract names const is const, enumerators have no names, and
/// the cloud part has no getter for its id.
class FileInfo {
public:
    enum class PreviewSize {};
    enum class CloudStatus {};

    class CloudInfo {
    public:
        CloudInfo(const std::string& id, const std::string& fileName, quint64 size, bool isPrivate,
                  const QUrl& downloadUrl, const QDateTime& createdAt, const QDateTime& modifyTime, int lifeTime,
                  const std::string& md5Hash);
        CloudInfo(const CloudInfo&);
        CloudInfo& operator=(const CloudInfo&);
        ~CloudInfo();

        std::string GetFileName();
        quint64 GetSize() const;
        bool IsPrivate() const;
        QUrl GetDownloadUrl();
        QDateTime GetCreatedAt();
        QDateTime GetModifyTime();
        int GetLifeTime() const;
        std::string GetMd5Hash();
        std::map<PreviewSize, ioPath> GetPreviewsSet();
        void SetPreviewsSet(const std::map<PreviewSize, ioPath>& previews);
        void SetPreviewPathBySize(const ioPath& path, PreviewSize size);
    };

    explicit FileInfo(const CloudInfo& cloudInfo);
    FileInfo(const FileInfo&);
    virtual ~FileInfo();

    std::string GetId();
    ioPath GetPath();
    void SetPath(const ioPath& path, const std::string& md5Hash);
    void SetPath(const ioPath& path, const std::string& md5Hash, const std::string& cloudHashBeforeChange);
    quint64 GetSize() const;
    std::string GetMd5Hash();
    std::string GetCloudHashBeforeChange();
    std::optional<const CloudInfo> GetCloudInfo();
    std::optional<CloudInfo>& GetRedactableCloudInfo();
    bool UpdateCloudInfo(const CloudInfo& newer);
    CloudStatus GetCloudStatus();
    bool IsSyncingInProgress() const;
    void SetIsSyncingInProgress(bool inProgress);
    std::map<PreviewSize, ioPath> GetPreviewsSet();
    void SetPreviewsSet(const std::map<PreviewSize, ioPath>& previews);
    static std::string previewSizetoString(PreviewSize size);
};

} // namespace Norlis::PDF
