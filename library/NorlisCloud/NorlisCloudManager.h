#pragma once

#include <contracts/AbstractCloudManager.h>
#include <contracts/ICloudAccountSettings.h>
#include <contracts/ICloudProtocol.h>
#include <contracts/IFileSystem.h>
#include <contracts/IHashCalculator.h>
#include <NorlisCloud/Export.h>

#include <QMap>
#include <QSet>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace Norlis {
class Lifetime;
}

namespace Norlis::PDF::Cloud {

/// Signs the user in and out and runs every exchange with the cloud as an asynchronous request.
///
/// A request is registered from the moment in which the protocol accepts it until its callback runs or it is cancelled;
/// a callback for a request that is not registered, or that comes when the manager is gone, does nothing.
class NORLIS_CLOUD_EXPORT NorlisCloudManager : public AbstractCloudManager {
    Q_OBJECT

public:
    /// Keeps the first three collaborators for its whole life. The account settings are asked once, for the automatic
    /// refresh of the files list.
    NorlisCloudManager(const std::shared_ptr<ICloudProtocol>& protocol,
                       const std::shared_ptr<IHashCalculator>& hashCalculator,
                       const std::shared_ptr<IFileSystem>& fileSystem,
                       const std::shared_ptr<Settings::ICloudAccountSettings>& accountSettings);

    /// Cancels every registered request and emits nothing.
    ~NorlisCloudManager() override;

    void Authorization(const QString& token) override;
    void Logout() override;
    void Upload(const std::shared_ptr<FileInfo>& file) override;
    void Upload(const QString& path) override;
    void Upload(const QList<QString>& paths) override;
    void Download(const std::shared_ptr<FileInfo>& file, const QString& directory) override;
    void Download(const QList<std::shared_ptr<FileInfo>>& files, const QString& directory) override;
    void RetrieveFilesList() override;
    void RemoveFile(const std::shared_ptr<FileInfo>& file) override;
    void CancelUploading(const QString& path) override;
    void CancelDownloading(const std::shared_ptr<FileInfo>& file) override;
    void UserQuota() override;
    void RetrieveFilePreview(const std::shared_ptr<FileInfo>& file, FileInfo::PreviewSize previewSize,
                             const QSize& size) override;

    /// Whether an upload or a download is running.
    bool IsSyncInProgressWithCloud() const;

private:
    using RequestResult = Social::RequestResult;
    using CloudFile = ICloudProtocol::FileInfo;
    using QuotaValue = ICloudProtocol::QuotaValue;

    bool IsLoggedIn();

    void OnRetrieveFilesListCompleted(RequestResult result, QList<CloudFile> cloudFiles);
    void OnUploadCompleted(const QString& path, RequestResult result, const Social::NorlisCloudSharingResult& sharing);
    void OnDownloadCompleted(const QString& directory, const FileInfo& file, RequestResult result);
    void OnRetrieveFilePreviewCompleted(const std::shared_ptr<FileInfo>& file, FileInfo::PreviewSize previewSize,
                                        RequestResult result, const QPixmap& pixmap);
    void OnRetrieveUserQuotaCompleted(RequestResult result, QMap<QString, QuotaValue> quota);

    // The pattern that all requests follow: the login is required, "started" is emitted, the request is sent with
    // callbacks made by OnCompleted and OnProgress.

    /// False, after AuthorizationRequired, when nobody is signed in; and when the manager was deleted meanwhile.
    bool RequireLogin();

    /// Emits a signal and tells whether the manager is still there: a slot may have deleted it.
    template <typename Signal, typename... Args>
    bool Emit(Signal signal, const Args&... args);

    /// Logs an error and emits it as the last argument of a signal.
    template <typename Signal, typename... Args>
    void ReportError(const QString& message, Signal signal, const Args&... args);

    /// Calls request(protocol), which returns an operation id; then refused() when it is -1, else accepted(id),
    /// whereupon the id is registered. A request that was accepted while the manager was deleted is cancelled.
    template <typename Request, typename Refused, typename Accepted = void (*)(qint64)>
    void Send(
        Request request, Refused refused, Accepted accepted = [](qint64) {});

    /// A completion callback: calls handler(id, result, payload...), once, while the request is registered.
    template <typename... Payload, typename Handler>
    std::function<void(qint64, RequestResult, Payload...)> OnCompleted(Handler handler);

    /// A progress callback: calls handler(value) while the request is registered.
    template <typename Handler>
    std::function<void(qint64, int)> OnProgress(Handler handler);

    /// \param fields those that not every upload carries
    void StartUpload(const QString& path, QMap<QString, QString> fields);

    /// The normalised form of a path, and the hash of what is there. Either collaborator may run an event loop, in
    /// which the manager is deleted.
    std::pair<ioPath, std::string> NormalizeAndHash(const QString& path) const;

    /// Whether callbacks of the request are to be heard.
    bool IsPending(qint64 id) const;

    /// Cancels the first transfer of a value. False when there is none, and when the manager was deleted meanwhile.
    /// When the protocol throws, the transfer goes on as if it had not been asked.
    bool CancelTransfer(const std::string& value);

    std::shared_ptr<ICloudProtocol> protocol;
    std::shared_ptr<IHashCalculator> hashCalculator;
    std::shared_ptr<IFileSystem> fileSystem;
    QSet<qint64> activeRequests;         ///< every request that was started and has not ended
    QMap<qint64, std::string> transfers; ///< those that are uploads (local path) and downloads (document id)
    QSet<qint64> requestsInCancellation; ///< those that the protocol is being asked to cancel at this moment

    /// Where to leave the answer to a request that is accepted but not yet registered: it may come when a collaborator
    /// runs an event loop in between, and is told afterwards.
    QMap<qint64, std::function<void()>*> earlyAnswers;

    /// Watched by whatever outlives an emit, or the call of a collaborator, or waits in the protocol.
    std::unique_ptr<Lifetime> lifetime;
};

} // namespace Norlis::PDF::Cloud
