#pragma once

#include "Gone.h"

#include <contracts/FileInfo.h>
#include <contracts/ICloudProtocol.h>

#include <QSize>

#include <map>
#include <memory>
#include <set>
#include <string>

namespace Norlis::Test {

/// What a request of the model remembers for its callbacks.
struct ModelRequest {
    enum Kind { Auth, FilesList, Upload, Download, Removal, Preview, Quota };

    Kind kind;
    QString path = {};
    std::shared_ptr<PDF::FileInfo> file = {};
    PDF::FileInfo::PreviewSize size = PDF::FileInfo::PreviewSize::Small;
};

/// What a protocol answers; each kind of request reads the part that is meant for it.
struct ModelAnswer {
    Social::RequestResult result = Social::Success;
    Social::NorlisCloudSharingResult sharing = {};
    QList<PDF::Cloud::ICloudProtocol::FileInfo> files = {};
    QMap<QString, PDF::Cloud::ICloudProtocol::QuotaValue> quota = {};
    QPixmap picture = {};
};

class CloudManagerModel;

/// What the model of the cloud manager acts on.
class CloudManagerSurroundings {
public:
    using Fields = QMap<QString, QString>;
    using Records = std::vector<std::shared_ptr<PDF::FileInfo>>;

    virtual ~CloudManagerSurroundings() = default;

    virtual bool IsLoggedIn() = 0;
    virtual void Logout() = 0;
    virtual qint64 Send(CloudManagerModel& sender, const std::string& operation, const ModelRequest& request,
                        const Fields& fields) = 0;
    virtual void Cancel(qint64 id) = 0;
    virtual std::string HashOf(const ioPath& path) = 0;
    virtual ioPath Normalized(const ioPath& path) = 0;
    virtual void Log(const std::string& record) = 0;

    /// \param records that the signal carries
    virtual void Signal(const std::string& text, const Records& records) = 0;
};

/// The cloud manager as a table of requests: what it says and sends for each operation and each callback. Written from
/// what is promised of the manager, not from its code; a slot that deletes it ends the operation by an exception.
class CloudManagerModel {
public:
    using FileInfo = PDF::FileInfo;
    using File = std::shared_ptr<FileInfo>;

    explicit CloudManagerModel(CloudManagerSurroundings& surroundings) : surroundings(surroundings) {}

    void Delete();

    void Authorization(const QString& token);
    void Logout();
    void Upload(const File& file);
    void Upload(const QString& path);
    void Upload(const QList<QString>& paths);
    void Download(const File& file, const QString& directory);
    void Download(const QList<File>& files, const QString& directory);
    void RetrieveFilesList();
    void RemoveFile(const File& file);
    void CancelUploading(const QString& path);
    void CancelDownloading(const File& file);
    void UserQuota();
    void RetrieveFilePreview(const File& file, FileInfo::PreviewSize size, const QSize& box);
    bool IsSyncInProgressWithCloud() const;

    // Callbacks: the id is the one that the protocol tells.
    void Progress(const ModelRequest& request, qint64 id, int value);
    void Completed(const ModelRequest& request, qint64 id, const ModelAnswer& answer);

private:
    using Fields = CloudManagerSurroundings::Fields;

    bool RequireLogin();
    void Signal(const std::string& text, const CloudManagerSurroundings::Records& records = {});
    void Started(const ModelRequest& request);
    void Send(const ModelRequest& request, const Fields& fields);
    void SendUpload(const QString& path, Fields fields);
    void Fail(const ModelRequest& request, const std::string& message);
    bool CancelTransfer(const std::string& value);

    void Succeeded(const ModelRequest& request, const ModelAnswer& answer);
    void FilesListSucceeded(const ModelAnswer& answer);
    void PreviewSucceeded(const ModelRequest& request, const QPixmap& picture);
    void UploadCompleted(const QString& path, const ModelAnswer& answer);
    void DownloadCompleted(const File& file, Social::RequestResult result);

    CloudManagerSurroundings& surroundings;
    std::set<qint64> active;
    std::map<qint64, std::string> transfers;
    std::set<qint64> inCancellation; ///< still registered, no longer heard
    bool isGone = false;
};

} // namespace Norlis::Test
