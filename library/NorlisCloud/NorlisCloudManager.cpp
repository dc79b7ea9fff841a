#include <NorlisCloud/NorlisCloudManager.h>

#include <base/Lifetime.h>
#include <base/Utf8.h>
#include <contracts/NorlisCloudProtocol.h>
#include <NorlisCloud/PreviewFile.h>

#include <QDateTime>
#include <QFileInfo>
#include <QPixmap>
#include <QScopeGuard>
#include <QTemporaryFile>
#include <QTimer>

#include <glog/logging.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <limits>

namespace Norlis::PDF::Cloud {

using Social::NorlisCloudProtocol;
using Social::NorlisCloudSharingResult;

namespace {

const auto applicationId = QStringLiteral("pdf");
const auto apiVersion = QStringLiteral("2");
const auto pdfMimeType = QStringLiteral("application/pdf");

constexpr qint64 notStarted = -1;

// By number, since the editor's record library may name its states differently.
constexpr int neverUploaded = 5;

QString IdOf(const std::shared_ptr<FileInfo>& file)
{
    return QString::fromStdString(file->GetId());
}

std::filesystem::path Native(const QString& path)
{
    return QFile::encodeName(path).toStdString();
}

/// Stores a picture for its owner alone. It is written to a file made for it, which then takes the name: what stands
/// there is replaced, and a link that somebody else has put there is not followed. A failure leaves nothing behind.
bool SavePicture(const QPixmap& picture, const QString& path)
{
    QTemporaryFile file(QFileInfo(path).path() + "/norlis-XXXXXX.png");
    if (!file.open()) {
        return false;
    }
    file.close();
    if (!picture.save(file.fileName(), nullptr, -1)) {
        return false;
    }
    std::error_code error;
    std::filesystem::rename(Native(file.fileName()), Native(path), error);
    file.setAutoRemove(bool(error));
    return !error;
}

} // namespace

NorlisCloudManager::NorlisCloudManager(const std::shared_ptr<ICloudProtocol>& protocol,
                                       const std::shared_ptr<IHashCalculator>& hashCalculator,
                                       const std::shared_ptr<IFileSystem>& fileSystem,
                                       const std::shared_ptr<Settings::ICloudAccountSettings>& accountSettings)
    : protocol(protocol),
      hashCalculator(hashCalculator),
      fileSystem(fileSystem),
      lifetime(std::make_unique<Lifetime>())
{
    const auto refreshTimer = new QTimer(this);
    if (accountSettings->IsAutoRefreshEnabled()) {
        refreshTimer->start(accountSettings->GetAutoRefreshInterval());
        connect(refreshTimer, &QTimer::timeout, this, &NorlisCloudManager::RetrieveFilesList);
    }
}

NorlisCloudManager::~NorlisCloudManager()
{
    lifetime->End(); // the protocol may still call back
    blockSignals(true);
    const auto requests = activeRequests;
    for (const qint64 id : requests) {
        if (!requestsInCancellation.contains(id)) {
            requestsInCancellation.insert(id);
            try {
                protocol->cancelOperation(id);
            } catch (...) { // a destructor has nobody to pass it on to
                LOG(ERROR) << "Cancel operation failed";
            }
        }
        activeRequests.remove(id);
        transfers.remove(id);
    }
}

// Sign-in and sign-out

void NorlisCloudManager::Authorization(const QString& token)
{
    if (token.isEmpty()) {
        LOG(ERROR) << "Norlis::PDF::Cloud::NorlisCloudManager::" << __func__ << ": invalid token";
        Q_EMIT AuthorizationFailed();
        return;
    }
    const auto fail = [this] {
        LOG(ERROR) << "Auth failed";
        Q_EMIT AuthorizationFailed();
    };
    const QMap<QString, QString> fields = {
        {NorlisCloudProtocol::API_VERSION, apiVersion},
        {NorlisCloudProtocol::SSO_TOKEN, token},
        {NorlisCloudProtocol::APP_ID_ON_CLOUD, applicationId},
    };
    auto done = OnCompleted([this, fail](qint64, RequestResult result) {
        if (result != Social::Success) {
            fail();
            return;
        }
        LOG(INFO) << "Auth completed";
        Q_EMIT AuthorizationCompleted();
    });
    Send([&](ICloudProtocol& cloud) { return cloud.auth(fields, std::move(done)); }, fail);
}

void NorlisCloudManager::Logout()
{
    const auto guard = lifetime->Watch();
    const auto cloud = protocol; // must outlive the calls even if the manager does not
    if (!cloud->loggedIn() || !guard) {
        return;
    }
    cloud->logout();
    if (guard) {
        Q_EMIT LoggedOut();
    }
}

bool NorlisCloudManager::IsLoggedIn()
{
    const auto cloud = protocol; // must outlive the call even if the manager does not
    return cloud->loggedIn();
}

// Files list

void NorlisCloudManager::RetrieveFilesList()
{
    if (!RequireLogin() || IsSyncInProgressWithCloud() || !Emit(&NorlisCloudManager::RetrievingFilesListStarted)) {
        return;
    }
    auto done = OnCompleted<QList<CloudFile>>([this](qint64, RequestResult result, const QList<CloudFile>& files) {
        OnRetrieveFilesListCompleted(result, files);
    });
    Send([&](ICloudProtocol& cloud) { return cloud.retriveFileList({}, std::move(done)); },
         [this] {
             ReportError("Retrieve files information failed", &NorlisCloudManager::RetrievingFilesListErrorRequested);
         });
}

void NorlisCloudManager::OnRetrieveFilesListCompleted(RequestResult result, QList<CloudFile> cloudFiles)
{
    switch (result) {
    case Social::Success: {
        const auto guard = lifetime->Watch();
        QList<std::shared_ptr<FileInfo>> files;
        files.reserve(cloudFiles.size());
        for (const auto& cloudFile : qAsConst(cloudFiles)) {
            const auto file = std::make_shared<FileInfo>(FileInfo::CloudInfo(
                cloudFile.id.toStdString(), cloudFile.name.toStdString(), static_cast<quint64>(cloudFile.size), true,
                QUrl(), QDateTime::fromString(cloudFile.createdAt, Qt::ISODate),
                QDateTime::fromString(cloudFile.modifiedAt, Qt::ISODate), std::numeric_limits<qint32>::max(),
                cloudFile.md5Hash.toStdString()));
            files.append(file);
            for (const auto& [previewSize, edge] : previewPixelSizes) {
                RetrieveFilePreview(file, previewSize, QSize(edge, edge));
                if (!guard) {
                    return;
                }
            }
        }
        Q_EMIT RetrievingFilesListFinished(files);
        break;
    }
    case Social::Error:
        ReportError("Files list request error", &NorlisCloudManager::RetrievingFilesListErrorRequested);
        break;
    case Social::Canceled:
        LOG(INFO) << "Files list request canceled";
        Q_EMIT RetrievingFilesListCanceled();
        break;
    }
}

// Upload

void NorlisCloudManager::Upload(const QList<QString>& paths)
{
    const auto pathsToSend = paths; // a slot may change the caller's list
    if (!RequireLogin()) {
        return;
    }
    const auto guard = lifetime->Watch();
    for (const auto& path : pathsToSend) {
        Upload(path);
        if (!guard) {
            return;
        }
    }
}

void NorlisCloudManager::Upload(const QString& localPath)
{
    const auto path = localPath; // a slot may change the caller's text
    if (RequireLogin()) {
        StartUpload(path, {});
    }
}

void NorlisCloudManager::Upload(const std::shared_ptr<FileInfo>& record)
{
    const auto file = record;
    if (!RequireLogin()) {
        return;
    }
    if (!file) {
        throw std::exception();
    }
    StartUpload(QString::fromStdString(file->GetPath().utf8string()), {{NorlisCloudProtocol::ID, IdOf(file)}});
}

void NorlisCloudManager::StartUpload(const QString& path, QMap<QString, QString> fields)
{
    const auto guard = lifetime->Watch();
    const auto calculator = hashCalculator; // must outlive the call even if the manager does not
    fields[NorlisCloudProtocol::FILE_MIME_TYPE] = pdfMimeType;
    fields[NorlisCloudProtocol::CHUNK_MIME_TYPE] = pdfMimeType;
    fields[NorlisCloudProtocol::MD5_HASH] =
        QString::fromStdString(calculator->CalculateHash(ioPath(path.toStdString())));
    if (!guard || !Emit(&NorlisCloudManager::UploadingStarted, path)) {
        return;
    }
    auto done = OnCompleted<const NorlisCloudSharingResult&>(
        [this, path](qint64 id, RequestResult result, const NorlisCloudSharingResult& sharing) {
            transfers.remove(id);
            OnUploadCompleted(path, result, sharing);
        });
    auto progress = OnProgress([this, path](int value) { Q_EMIT UploadingProgressValueChanged(path, value); });
    Send([&](ICloudProtocol& cloud) { return cloud.uploadFile(path, fields, std::move(done), std::move(progress)); },
         [&] { ReportError("Upload file failed", &NorlisCloudManager::UploadingFileRequestError, path); },
         [&](qint64 id) { transfers[id] = path.toStdString(); });
}

void NorlisCloudManager::OnUploadCompleted(const QString& path, RequestResult result,
                                           const NorlisCloudSharingResult& sharing)
{
    const auto guard = lifetime->Watch();
    const auto size = static_cast<quint64>(QFileInfo(path).size());
    const auto [normalizedPath, hash] = NormalizeAndHash(path);
    if (!guard) {
        return;
    }
    const auto file = std::make_shared<FileInfo>(
        FileInfo::CloudInfo(sharing.id.toStdString(), sharing.fileName.toStdString(), size, sharing.isPrivate,
                            sharing.downloadUrl, sharing.createdAt, sharing.modifiedAt, sharing.lifetime, hash));
    file->SetPath(normalizedPath, hash);

    switch (result) {
    case Social::Success:
        if (Emit(&NorlisCloudManager::UploadingFinished, file)) {
            UserQuota();
        }
        break;
    case Social::Error: {
        const auto message = QStringLiteral("Upload file error");
        LOG(ERROR) << message.toStdString();
        RemoveFile(file); // what the upload left in the cloud
        if (guard) {
            Q_EMIT UploadingFileRequestError(path, message);
        }
        break;
    }
    case Social::Canceled:
        LOG(INFO) << "Upload file canceled";
        RemoveFile(file);
        if (guard) {
            Q_EMIT UploadingCanceled(path);
        }
        break;
    }
}

void NorlisCloudManager::CancelUploading(const QString& localPath)
{
    const auto path = localPath;
    if (RequireLogin() && CancelTransfer(path.toStdString())) {
        Q_EMIT UploadingCanceled(path);
    }
}

// Download

void NorlisCloudManager::Download(const QList<std::shared_ptr<FileInfo>>& files, const QString& directory)
{
    const auto filesToFetch = files;
    const auto target = directory;
    if (!RequireLogin()) {
        return;
    }
    const auto guard = lifetime->Watch();
    for (const auto& file : filesToFetch) {
        Download(file, target);
        if (!guard) {
            return;
        }
    }
}

void NorlisCloudManager::Download(const std::shared_ptr<FileInfo>& record, const QString& targetDirectory)
{
    const auto file = record; // a slot may clear the caller's pointer
    const auto directory = targetDirectory;
    if (!RequireLogin()) {
        return;
    }
    if (!file) {
        throw std::exception();
    }
    const auto refused = [&] {
        ReportError("Download file failed", &NorlisCloudManager::DownloadingFileRequestError, file);
    };
    auto& cloudInfo = file->GetRedactableCloudInfo();
    if (!cloudInfo) { // the cloud cannot be asked for it
        if (Emit(&NorlisCloudManager::DownloadingStarted, file)) {
            refused();
        }
        return;
    }
    const auto target = directory + '/' + FromUtf8(cloudInfo->GetFileName());
    ICloudProtocol::FileFieldData data;
    data.fields[NorlisCloudProtocol::ID] = IdOf(file);
    data.fields[NorlisCloudProtocol::FILE_NAME] = target;
    data.fields[NorlisCloudProtocol::FILE_SIZE] = QString::number(cloudInfo->GetSize());

    if (!Emit(&NorlisCloudManager::DownloadingStarted, file)) {
        return;
    }
    auto done = OnCompleted([this, file, directory](qint64 id, RequestResult result) {
        transfers.remove(id);
        OnDownloadCompleted(directory, *file, result);
    });
    auto progress = OnProgress([this, file](int value) { Q_EMIT DownloadingProgressValueChanged(file, value); });
    Send([&](ICloudProtocol& cloud) { return cloud.downloadFile(data, std::move(done), std::move(progress)); }, refused,
         [&, guard = lifetime->Watch()](qint64 id) {
             const auto [path, hash] = NormalizeAndHash(target);
             if (guard) {
                 file->SetPath(path, hash);
                 transfers[id] = file->GetId();
             }
         });
}

void NorlisCloudManager::OnDownloadCompleted(const QString&, const FileInfo& file, RequestResult result)
{
    const auto copyOfFinished = [&file] {
        const auto copy = std::make_shared<FileInfo>(file);
        copy->SetIsSyncingInProgress(false);
        return copy;
    };
    switch (result) {
    case Social::Success:
        Q_EMIT DownloadingFinished(copyOfFinished());
        break;
    case Social::Error:
        ReportError("Download file error", &NorlisCloudManager::DownloadingFileRequestError, copyOfFinished());
        break;
    case Social::Canceled: {
        LOG(INFO) << "Download file canceled";
        const auto copy = copyOfFinished();
        if (copy->GetPath().exists()) {
            copy->GetPath().remove();
        }
        Q_EMIT DownloadingCanceled(copy);
        break;
    }
    }
}

void NorlisCloudManager::CancelDownloading(const std::shared_ptr<FileInfo>& record)
{
    const auto file = record;
    if (!RequireLogin()) {
        return;
    }
    if (!file) {
        throw std::exception();
    }
    if (!CancelTransfer(file->GetId())) {
        return;
    }
    if (file->GetPath().exists()) {
        file->GetPath().remove();
    }
    Q_EMIT DownloadingCanceled(file);
}

// Remove

void NorlisCloudManager::RemoveFile(const std::shared_ptr<FileInfo>& record)
{
    const auto file = record;
    if (!RequireLogin()) {
        return;
    }
    if (!file) {
        throw std::exception();
    }
    ICloudProtocol::FileFieldData data;
    data.fields[NorlisCloudProtocol::ID] = IdOf(file);
    auto done = OnCompleted([this, file](qint64 id, RequestResult result) {
        transfers.remove(id);
        if (result != Social::Success) {
            ReportError("Remove file error", &NorlisCloudManager::RemovingFileError, file);
        } else if (Emit(&NorlisCloudManager::RemoveFileFinished, file)) {
            UserQuota();
        }
    });
    Send([&](ICloudProtocol& cloud) { return cloud.deleteFile(data, std::move(done)); },
         [&] { ReportError("Remove file failed", &NorlisCloudManager::RemovingFileError, file); });
}

// Previews

void NorlisCloudManager::RetrieveFilePreview(const std::shared_ptr<FileInfo>& record, FileInfo::PreviewSize previewSize,
                                             const QSize& pixelSize)
{
    const auto file = record;
    const auto size = pixelSize;
    if (!RequireLogin()) {
        return;
    }
    if (!file) {
        throw std::exception();
    }
    if (static_cast<int>(file->GetCloudStatus()) == neverUploaded) {
        ReportError("Can`t retrieving preview for not upload files", &NorlisCloudManager::RetrieveFilePreviewError,
                    file, previewSize);
        return;
    }
    const QMap<QString, QString> fields = {
        {NorlisCloudProtocol::ID, IdOf(file)},
        {NorlisCloudProtocol::FILE_PREVIEW_HEIGHT, QString::number(size.height(), 10)},
        {NorlisCloudProtocol::FILE_PREVIEW_WIDTH, QString::number(size.width(), 10)},
    };
    if (!Emit(&NorlisCloudManager::RetrieveFilePreviewStarted, file, previewSize)) {
        return;
    }
    auto done = OnCompleted<QPixmap>([this, file, previewSize](qint64 id, RequestResult result, const QPixmap& pixmap) {
        transfers.remove(id);
        OnRetrieveFilePreviewCompleted(file, previewSize, result, pixmap);
    });
    Send([&](ICloudProtocol& cloud) { return cloud.retrievePreview(fields, std::move(done)); },
         [&] {
             ReportError("Retrieve file preview failed", &NorlisCloudManager::RetrieveFilePreviewError, file,
                         previewSize);
         });
}

void NorlisCloudManager::OnRetrieveFilePreviewCompleted(const std::shared_ptr<FileInfo>& file,
                                                        FileInfo::PreviewSize previewSize, RequestResult result,
                                                        const QPixmap& pixmap)
{
    switch (result) {
    case Social::Success: {
        const auto path = PreviewPath(IdOf(file), previewSize);
        auto& cloudInfo = file->GetRedactableCloudInfo();
        if (!cloudInfo || !SavePicture(pixmap, path)) {
            const auto size = QString::fromStdString(FileInfo::previewSizetoString(previewSize));
            ReportError("Cannot save preview for: " + IdOf(file) + " with size: " + size,
                        &NorlisCloudManager::RetrieveFilePreviewError, file, previewSize);
            break;
        }
        cloudInfo->SetPreviewPathBySize(ioPath(path.toStdString()), previewSize);
        Q_EMIT RetrieveFilePreviewFinished(file, previewSize);
        break;
    }
    case Social::Error:
        ReportError("Retrieving file preview error", &NorlisCloudManager::RetrieveFilePreviewError, file, previewSize);
        break;
    case Social::Canceled:
        LOG(INFO) << "Retrieving file preview canceled";
        Q_EMIT RetrieveFilePreviewCanceled(file);
        break;
    }
}

// Quota

void NorlisCloudManager::UserQuota()
{
    if (!RequireLogin() || !Emit(&NorlisCloudManager::RetrievingUserQuotaStarted)) {
        return;
    }
    auto done = OnCompleted<const QMap<QString, QuotaValue>&>(
        [this](qint64, RequestResult result, const QMap<QString, QuotaValue>& quota) {
            OnRetrieveUserQuotaCompleted(result, quota);
        });
    Send([&](ICloudProtocol& cloud) { return cloud.userQuota(std::move(done)); },
         [this] {
             ReportError("Retrieve user quota information failed",
                         &NorlisCloudManager::RetrievingUserQuotaErrorRequested);
         });
}

void NorlisCloudManager::OnRetrieveUserQuotaCompleted(RequestResult result, QMap<QString, QuotaValue> quota)
{
    switch (result) {
    case Social::Success: {
        const auto [used, total] = quota[applicationId];
        Q_EMIT RetrievingUserQuotaFinished(static_cast<int>(used), static_cast<int>(total));
        break;
    }
    case Social::Error:
        ReportError("User quota request error", &NorlisCloudManager::RetrievingUserQuotaErrorRequested);
        break;
    case Social::Canceled:
        LOG(INFO) << "User quota request canceled";
        Q_EMIT RetrievingUserQuotaCanceled();
        break;
    }
}

// The registry, and the pattern that all requests follow

bool NorlisCloudManager::IsSyncInProgressWithCloud() const
{
    return !transfers.isEmpty();
}

bool NorlisCloudManager::IsPending(qint64 id) const
{
    return activeRequests.contains(id) && !requestsInCancellation.contains(id);
}

bool NorlisCloudManager::RequireLogin()
{
    const auto guard = lifetime->Watch();
    const bool isLoggedIn = IsLoggedIn();
    if (guard && !isLoggedIn) {
        Q_EMIT AuthorizationRequired();
    }
    return guard && isLoggedIn;
}

template <typename Signal, typename... Args>
bool NorlisCloudManager::Emit(Signal signal, const Args&... args)
{
    const auto guard = lifetime->Watch();
    Q_EMIT(this->*signal)(args...);
    return bool(guard);
}

template <typename Signal, typename... Args>
void NorlisCloudManager::ReportError(const QString& message, Signal signal, const Args&... args)
{
    LOG(ERROR) << message.toStdString();
    Q_EMIT(this->*signal)(args..., message);
}

std::pair<ioPath, std::string> NorlisCloudManager::NormalizeAndHash(const QString& path) const
{
    const auto normalizer = fileSystem;
    const auto calculator = hashCalculator;
    const ioPath normalized = normalizer->NormalizePath(ioPath(path.toStdString()));
    return {normalized, calculator->CalculateHash(normalized)};
}

template <typename Request, typename Refused, typename Accepted>
void NorlisCloudManager::Send(Request request, Refused refused, Accepted accepted)
{
    const auto guard = lifetime->Watch();
    if (!guard) {
        return; // a manager in destruction starts nothing
    }
    const auto cloud = protocol; // must outlive the call even if the manager does not
    const qint64 id = request(*cloud);
    if (id == notStarted) {
        if (guard) {
            refused();
        }
        return;
    }
    std::function<void()> answer;
    if (guard) {
        earlyAnswers[id] = &answer;
        const auto forget = qScopeGuard([&] {
            if (guard) {
                earlyAnswers.remove(id);
            }
        });
        accepted(id);
    }
    if (!guard) {
        cloud->cancelOperation(id);
        return;
    }
    activeRequests.insert(id);
    if (answer) {
        QTimer::singleShot(0, this, answer);
    }
}

template <typename... Payload, typename Handler>
std::function<void(qint64, Social::RequestResult, Payload...)> NorlisCloudManager::OnCompleted(Handler handler)
{
    return [this, guard = lifetime->Watch(), handler](qint64 id, RequestResult result, Payload... payload) {
        // Holds copies: the protocol may drop this callback while it runs.
        const auto answer = [=] {
            if (guard && IsPending(id)) {
                activeRequests.remove(id);
                handler(id, result, payload...);
            }
        };
        const auto early = guard ? earlyAnswers.value(id) : nullptr;
        if (!early) {
            answer();
        } else if (!*early) { // the first one counts
            *early = answer;
        }
    };
}

template <typename Handler>
std::function<void(qint64, int)> NorlisCloudManager::OnProgress(Handler handler)
{
    return [this, guard = lifetime->Watch(), handler](qint64 id, int value) {
        if (guard && IsPending(id)) {
            const Handler heldHandler = handler;
            heldHandler(value);
        }
    };
}

bool NorlisCloudManager::CancelTransfer(const std::string& value)
{
    // A slot that runs inside cancelOperation may ask for the same transfer again.
    const auto found = std::find_if(transfers.keyValueBegin(), transfers.keyValueEnd(), [&](const auto& transfer) {
        return transfer.second == value && !requestsInCancellation.contains(transfer.first);
    });
    if (found == transfers.keyValueEnd()) {
        return false;
    }
    const qint64 id = (*found).first;
    const auto guard = lifetime->Watch();
    const auto cloud = protocol;
    {
        requestsInCancellation.insert(id);
        const auto unmark = qScopeGuard([&] { // when the protocol throws, too
            if (guard) {
                requestsInCancellation.remove(id);
            }
        });
        cloud->cancelOperation(id);
    }
    if (!guard) {
        return false;
    }
    activeRequests.remove(id);
    transfers.remove(id);
    return true;
}

} // namespace Norlis::PDF::Cloud
