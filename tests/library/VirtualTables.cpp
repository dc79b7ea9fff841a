// Compiled to assembly text, never linked: a test reads the tables of virtual operations from it.
//
// An abstract class has no name in its slots, so each has a heir here that implements all of it. The slots of the heir
// then name its operations in the order in which the abstract class declares them.

#include <contracts/ICloudAccountSettings.h>
#include <contracts/ICloudInfoStorage.h>
#include <contracts/IFileSystem.h>
#include <contracts/IHashCalculator.h>
#include <NorlisCloud/NorlisCloudFilesManager.h>
#include <NorlisCloud/NorlisCloudManager.h>
#include <NorlisCloud/NorlisCloudProtocolProxy.h>

using namespace Norlis;
using namespace Norlis::PDF;
using namespace Norlis::PDF::Cloud;
using namespace Norlis::Social;

using Fields = QMap<QString, QString>;
using File = Ability::File<NorlisCloudSharingResult>;

template <typename... Payload>
using Done = std::function<void(qint64, RequestResult, Payload...)>;

struct CancelHeir : Ability::Cancel {
    void cancelOperation(qint64) override;
};
void CancelHeir::cancelOperation(qint64) {}

struct AuthHeir : Ability::Auth {
    qint64 auth(const Fields&, Done<>&&) override;
    void logout() override;
    bool loggedIn() override;
    qint64 userName(Done<QString>&&) override;
    qint64 userProfile(Done<QUrl>&&) override;
    qint64 userPic(Done<QString>&&) override;
    qint64 userPic(Done<QPixmap>&&) override;
    void cancelOperation(qint64) override;
};
qint64 AuthHeir::auth(const Fields&, Done<>&&)
{
    return 0;
}

struct FileHeir : File {
    qint64 retriveFileInfo(const FileFieldData&, Done<FileInfo>&&) override;
    qint64 retriveFileList(const FileFieldData&, Done<QList<FileInfo>>&&) override;
    qint64 downloadFile(const FileFieldData&, Done<>&&, ProgressCallback&&) override;
    qint64 deleteFile(const FileFieldData&, Done<>&&) override;
    qint64 uploadFile(const QString&, const Fields&, Done<const NorlisCloudSharingResult&>&&,
                      ProgressCallback&&) override;
    void cancelOperation(qint64) override;
};
qint64 FileHeir::retriveFileInfo(const FileFieldData&, Done<FileInfo>&&)
{
    return 0;
}

struct QuotaHeir : Ability::Quota {
    qint64 userQuota(Done<const QMap<QString, QuotaValue>&>&&) override;
    void cancelOperation(qint64) override;
};
qint64 QuotaHeir::userQuota(Done<const QMap<QString, QuotaValue>&>&&)
{
    return 0;
}

struct PreviewHeir : Ability::Preview {
    qint64 retrievePreview(const Fields&, Done<QPixmap>&&) override;
    void cancelOperation(qint64) override;
};
qint64 PreviewHeir::retrievePreview(const Fields&, Done<QPixmap>&&)
{
    return 0;
}

struct StorageHeir : ICloudInfoStorage {
    void RemoveRecord(const std::string&) override;
    void SetValue(const std::string&, const std::string&, const std::string&) override;
    std::map<std::string, std::map<std::string, std::string>> ReadAll() override;
};
void StorageHeir::RemoveRecord(const std::string&) {}

struct FileSystemHeir : IFileSystem {
    bool Exists(const ioPath&) override;
    ioPath NormalizePath(const ioPath&) override;
};
bool FileSystemHeir::Exists(const ioPath&)
{
    return false;
}

struct HashCalculatorHeir : IHashCalculator {
    std::string CalculateHash(const ioPath&) override;
};
std::string HashCalculatorHeir::CalculateHash(const ioPath&)
{
    return {};
}

struct SettingsHeir : Settings::ICloudAccountSettings {
    bool IsAutoRefreshEnabled() override;
    int GetAutoRefreshInterval() override;
};
bool SettingsHeir::IsAutoRefreshEnabled()
{
    return false;
}

struct AbstractFileManagerHeir : AbstractFileManager {
    void SetImageGetCallback(const std::function<QImage(const QString&)>&) override;
    std::string GetIdByPath(const ioPath&) const override;
    void Add(const std::shared_ptr<PDF::FileInfo>&) override;
    void Remove(const std::shared_ptr<PDF::FileInfo>&) override;
    void Rename(const QStringList&, const QString&) override;
    void Clear() override;
    void Update(const std::shared_ptr<const PDF::FileInfo>&) override;
    int FilesCount() const override;
    int Limit() const override;
    std::shared_ptr<PDF::FileInfo> GetFileInfo(const QString&) const override;
    QString GetDocumentName(int) const override;
    QMap<QString, QVariant> GetPreviewsSet(int) const override;
    QString GetDocumentId(int) const override;
    QString GetDocumentPath(int) const override;
    QDateTime GetModifiedDateTime(int) const override;
    int GetDocumentState(int) const override;
    int GetFileSize(int) const override;
};
void AbstractFileManagerHeir::SetImageGetCallback(const std::function<QImage(const QString&)>&) {}

struct AbstractCloudManagerHeir : AbstractCloudManager {
    void Authorization(const QString&) override;
    void Logout() override;
    void Upload(const std::shared_ptr<PDF::FileInfo>&) override;
    void Upload(const QString&) override;
    void Upload(const QList<QString>&) override;
    void Download(const std::shared_ptr<PDF::FileInfo>&, const QString&) override;
    void Download(const QList<std::shared_ptr<PDF::FileInfo>>&, const QString&) override;
    void RetrieveFilesList() override;
    void RemoveFile(const std::shared_ptr<PDF::FileInfo>&) override;
    void CancelUploading(const QString&) override;
    void CancelDownloading(const std::shared_ptr<PDF::FileInfo>&) override;
    void UserQuota() override;
    void RetrieveFilePreview(const std::shared_ptr<PDF::FileInfo>&, PDF::FileInfo::PreviewSize, const QSize&) override;
};
void AbstractCloudManagerHeir::Authorization(const QString&) {}

// These override nothing, so that their slots name the library's own operations.
struct FilesManagerHeir : NorlisCloudFilesManager {
    using NorlisCloudFilesManager::NorlisCloudFilesManager;
    ~FilesManagerHeir() override;
};
FilesManagerHeir::~FilesManagerHeir() = default;

struct CloudManagerHeir : NorlisCloudManager {
    using NorlisCloudManager::NorlisCloudManager;
    ~CloudManagerHeir() override;
};
CloudManagerHeir::~CloudManagerHeir() = default;

struct ProxyHeir : NorlisCloudProtocolProxy {
    using NorlisCloudProtocolProxy::NorlisCloudProtocolProxy;
    ~ProxyHeir() override;
};
ProxyHeir::~ProxyHeir() = default;
