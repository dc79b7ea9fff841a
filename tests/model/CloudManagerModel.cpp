#include "CloudManagerModel.h"

#include <contracts/NorlisCloudProtocol.h>

#include <QDir>
#include <QFileInfo>

#include <limits>

namespace Norlis::Test {

namespace {

using Key = Social::NorlisCloudProtocol;
using PreviewSize = PDF::FileInfo::PreviewSize;

/// What is fixed for a kind of request. The one without a text of its own for a cancellation counts it as an error.
struct Row {
    std::string operation;
    std::string failed;
    std::string error;
    std::string canceled;
    bool entersTransfers;
    bool leavesTransfers;
};

const Row& RowOf(const ModelRequest& request)
{
    static const std::map<ModelRequest::Kind, Row> rows = {
        {ModelRequest::Auth, {"auth", "Auth failed", "Auth failed", "", false, false}},
        {ModelRequest::FilesList,
         {"retriveFileList", "Retrieve files information failed", "Files list request error",
          "Files list request canceled", false, false}},
        {ModelRequest::Upload,
         {"uploadFile", "Upload file failed", "Upload file error", "Upload file canceled", true, true}},
        {ModelRequest::Download,
         {"downloadFile", "Download file failed", "Download file error", "Download file canceled", true, true}},
        {ModelRequest::Removal, {"deleteFile", "Remove file failed", "Remove file error", "", false, true}},
        {ModelRequest::Preview,
         {"retrievePreview", "Retrieve file preview failed", "Retrieving file preview error",
          "Retrieving file preview canceled", false, true}},
        {ModelRequest::Quota,
         {"userQuota", "Retrieve user quota information failed", "User quota request error",
          "User quota request canceled", false, false}},
    };
    return rows.at(request.kind);
}

std::string Number(PreviewSize size)
{
    return std::to_string(static_cast<int>(size));
}

/// "UploadingCanceled(/a.pdf)"
std::string CanceledSignal(const ModelRequest& request)
{
    switch (request.kind) {
    case ModelRequest::FilesList:
        return "RetrievingFilesListCanceled()";
    case ModelRequest::Upload:
        return "UploadingCanceled(" + request.path.toStdString() + ')';
    case ModelRequest::Download:
        return "DownloadingCanceled(" + request.file->GetId() + ')';
    case ModelRequest::Preview:
        return "RetrieveFilePreviewCanceled(" + request.file->GetId() + ')';
    case ModelRequest::Quota:
        return "RetrievingUserQuotaCanceled()";
    default:
        return {};
    }
}

std::string ErrorSignal(const ModelRequest& request, const std::string& message)
{
    switch (request.kind) {
    case ModelRequest::Auth:
        return "AuthorizationFailed()";
    case ModelRequest::FilesList:
        return "RetrievingFilesListErrorRequested(" + message + ')';
    case ModelRequest::Upload:
        return "UploadingFileRequestError(" + request.path.toStdString() + ", " + message + ')';
    case ModelRequest::Download:
        return "DownloadingFileRequestError(" + request.file->GetId() + ", " + message + ')';
    case ModelRequest::Removal:
        return "RemovingFileError(" + request.file->GetId() + ", " + message + ')';
    case ModelRequest::Preview:
        return "RetrieveFilePreviewError(" + request.file->GetId() + ", " + Number(request.size) + ", " + message + ')';
    case ModelRequest::Quota:
        return "RetrievingUserQuotaErrorRequested(" + message + ')';
    }
    return {};
}

CloudManagerSurroundings::Records RecordsOf(const ModelRequest& request)
{
    return request.file ? CloudManagerSurroundings::Records{request.file} : CloudManagerSurroundings::Records{};
}

void RequireRecord(const std::shared_ptr<PDF::FileInfo>& file)
{
    if (!file) {
        throw std::exception();
    }
}

} // namespace

void CloudManagerModel::Delete()
{
    isGone = true;
    for (const qint64 id : active) {
        if (inCancellation.count(id) == 0) {
            surroundings.Cancel(id);
        }
    }
}

bool CloudManagerModel::IsSyncInProgressWithCloud() const
{
    return !transfers.empty();
}

void CloudManagerModel::Signal(const std::string& text, const CloudManagerSurroundings::Records& records)
{
    surroundings.Signal(text, records);
    if (isGone) {
        throw Gone();
    }
}

bool CloudManagerModel::RequireLogin()
{
    if (surroundings.IsLoggedIn()) {
        return true;
    }
    Signal("AuthorizationRequired()");
    return false;
}

void CloudManagerModel::Fail(const ModelRequest& request, const std::string& message)
{
    surroundings.Log("ERROR " + message);
    Signal(ErrorSignal(request, message), RecordsOf(request));
}

void CloudManagerModel::Send(const ModelRequest& request, const Fields& fields)
{
    const qint64 id = surroundings.Send(*this, RowOf(request).operation, request, fields);
    if (isGone) {
        if (id != -1) {
            surroundings.Cancel(id);
        }
        throw Gone();
    }
    if (id == -1) {
        return Fail(request, RowOf(request).failed);
    }
    if (request.kind == ModelRequest::Download) {
        const ioPath target = surroundings.Normalized(fields[Key::FILE_NAME].toStdString());
        request.file->SetPath(target, surroundings.HashOf(target));
    }
    active.insert(id);
    if (RowOf(request).entersTransfers) {
        transfers[id] = request.file ? request.file->GetId() : request.path.toStdString();
    }
}

void CloudManagerModel::Authorization(const QString& token)
{
    if (token.isEmpty()) {
        surroundings.Log("ERROR Norlis::PDF::Cloud::NorlisCloudManager::Authorization: invalid token");
        return Signal("AuthorizationFailed()");
    }
    Send({ModelRequest::Auth}, {{Key::API_VERSION, "2"}, {Key::SSO_TOKEN, token}, {Key::APP_ID_ON_CLOUD, "pdf"}});
}

void CloudManagerModel::Logout()
{
    if (!surroundings.IsLoggedIn()) {
        return;
    }
    surroundings.Logout();
    if (isGone) {
        throw Gone();
    }
    Signal("LoggedOut()");
}

void CloudManagerModel::Upload(const QList<QString>& paths)
{
    if (RequireLogin()) {
        for (const QString& path : QList<QString>(paths)) {
            Upload(path);
        }
    }
}

void CloudManagerModel::Upload(const QString& path)
{
    if (RequireLogin()) {
        SendUpload(path, {});
    }
}

void CloudManagerModel::Upload(const File& file)
{
    if (RequireLogin()) {
        RequireRecord(file);
        const auto path = QString::fromStdString(file->GetPath().utf8string());
        SendUpload(path, {{Key::ID, QString::fromStdString(file->GetId())}});
    }
}

void CloudManagerModel::SendUpload(const QString& givenPath, Fields fields)
{
    const QString path = givenPath;
    fields[Key::FILE_MIME_TYPE] = "application/pdf";
    fields[Key::CHUNK_MIME_TYPE] = "application/pdf";
    fields[Key::MD5_HASH] = QString::fromStdString(surroundings.HashOf(path.toStdString()));
    Signal("UploadingStarted(" + path.toStdString() + ')');
    Send({ModelRequest::Upload, path}, fields);
}

void CloudManagerModel::Download(const QList<File>& files, const QString& directory)
{
    if (RequireLogin()) {
        const QString target = directory;
        for (const File& file : QList<File>(files)) {
            Download(file, target);
        }
    }
}

void CloudManagerModel::Download(const File& givenFile, const QString& directory)
{
    const File file = givenFile;
    if (!RequireLogin()) {
        return;
    }
    RequireRecord(file);
    const ModelRequest request = {ModelRequest::Download, {}, file};
    auto& cloud = file->GetRedactableCloudInfo();
    if (!cloud) {
        Signal("DownloadingStarted(" + file->GetId() + ')', {file});
        return Fail(request, RowOf(request).failed);
    }
    const Fields fields = {{Key::ID, QString::fromStdString(file->GetId())},
                           {Key::FILE_NAME, directory + '/' + QString::fromStdString(cloud->GetFileName())},
                           {Key::FILE_SIZE, QString::number(cloud->GetSize())}};
    Signal("DownloadingStarted(" + file->GetId() + ')', {file});
    Send(request, fields);
}

void CloudManagerModel::RetrieveFilesList()
{
    if (!RequireLogin() || IsSyncInProgressWithCloud()) {
        return;
    }
    Signal("RetrievingFilesListStarted()");
    Send({ModelRequest::FilesList}, {});
}

void CloudManagerModel::RemoveFile(const File& file)
{
    if (RequireLogin()) {
        RequireRecord(file);
        Send({ModelRequest::Removal, {}, file}, {{Key::ID, QString::fromStdString(file->GetId())}});
    }
}

void CloudManagerModel::UserQuota()
{
    if (RequireLogin()) {
        Signal("RetrievingUserQuotaStarted()");
        Send({ModelRequest::Quota}, {});
    }
}

void CloudManagerModel::RetrieveFilePreview(const File& file, PreviewSize size, const QSize& box)
{
    if (!RequireLogin()) {
        return;
    }
    RequireRecord(file);
    const ModelRequest request = {ModelRequest::Preview, {}, file, size};
    if (static_cast<int>(file->GetCloudStatus()) == 5) {
        return Fail(request, "Can`t retrieving preview for not upload files");
    }
    const Fields fields = {{Key::ID, QString::fromStdString(file->GetId())},
                           {Key::FILE_PREVIEW_WIDTH, QString::number(box.width())},
                           {Key::FILE_PREVIEW_HEIGHT, QString::number(box.height())}};
    Signal("RetrieveFilePreviewStarted(" + file->GetId() + ", " + Number(size) + ')', {file});
    Send(request, fields);
}

void CloudManagerModel::CancelUploading(const QString& givenPath)
{
    const QString path = givenPath;
    if (RequireLogin() && CancelTransfer(path.toStdString())) {
        Signal(CanceledSignal({ModelRequest::Upload, path}));
    }
}

void CloudManagerModel::CancelDownloading(const File& givenFile)
{
    const File file = givenFile;
    if (!RequireLogin()) {
        return;
    }
    RequireRecord(file);
    if (CancelTransfer(file->GetId())) {
        file->GetPath().remove();
        Signal(CanceledSignal({ModelRequest::Download, {}, file}), {file});
    }
}

bool CloudManagerModel::CancelTransfer(const std::string& value)
{
    for (const auto& [id, transferred] : std::map<qint64, std::string>(transfers)) {
        if (transferred == value && inCancellation.count(id) == 0) {
            inCancellation.insert(id);
            surroundings.Cancel(id);
            if (isGone) {
                throw Gone();
            }
            inCancellation.erase(id);
            active.erase(id);
            transfers.erase(id);
            return true;
        }
    }
    return false;
}

void CloudManagerModel::Progress(const ModelRequest& request, qint64 id, int value)
{
    if (isGone || active.count(id) == 0 || inCancellation.count(id) != 0) {
        return;
    }
    const bool isUpload = request.kind == ModelRequest::Upload;
    const std::string subject = isUpload ? request.path.toStdString() : request.file->GetId();
    Signal((isUpload ? "UploadingProgressValueChanged(" : "DownloadingProgressValueChanged(") + subject + ", " +
               std::to_string(value) + ')',
           RecordsOf(request));
}

void CloudManagerModel::Completed(const ModelRequest& request, qint64 id, const ModelAnswer& answer)
{
    if (isGone || inCancellation.count(id) != 0 || active.erase(id) == 0) {
        return;
    }
    if (RowOf(request).leavesTransfers) {
        transfers.erase(id);
    }
    if (request.kind == ModelRequest::Upload) {
        return UploadCompleted(request.path, answer);
    }
    if (request.kind == ModelRequest::Download) {
        return DownloadCompleted(request.file, answer.result);
    }
    const bool hasTwoOutcomes = RowOf(request).canceled.empty();
    if (answer.result == Social::Success) {
        Succeeded(request, answer);
    } else if (answer.result == Social::Error || hasTwoOutcomes) {
        Fail(request, RowOf(request).error);
    } else if (answer.result == Social::Canceled) {
        surroundings.Log("INFO " + RowOf(request).canceled);
        Signal(CanceledSignal(request), RecordsOf(request));
    }
}

void CloudManagerModel::Succeeded(const ModelRequest& request, const ModelAnswer& answer)
{
    if (request.kind == ModelRequest::Auth) {
        surroundings.Log("INFO Auth completed");
        Signal("AuthorizationCompleted()");
    } else if (request.kind == ModelRequest::FilesList) {
        FilesListSucceeded(answer);
    } else if (request.kind == ModelRequest::Removal) {
        Signal("RemoveFileFinished(" + request.file->GetId() + ')', {request.file});
        UserQuota();
    } else if (request.kind == ModelRequest::Preview) {
        PreviewSucceeded(request, answer.picture);
    } else if (request.kind == ModelRequest::Quota) {
        const auto value = answer.quota.value("pdf");
        Signal("RetrievingUserQuotaFinished(" + std::to_string(static_cast<qint32>(value.used)) + ", " +
               std::to_string(static_cast<qint32>(value.total)) + ')');
    }
}

void CloudManagerModel::FilesListSucceeded(const ModelAnswer& answer)
{
    CloudManagerSurroundings::Records records;
    std::string ids;
    for (const auto& listed : answer.files) {
        const FileInfo::CloudInfo cloud(listed.id.toStdString(), listed.name.toStdString(), quint64(listed.size), true,
                                        QUrl(), QDateTime::fromString(listed.createdAt, Qt::ISODate),
                                        QDateTime::fromString(listed.modifiedAt, Qt::ISODate),
                                        std::numeric_limits<qint32>::max(), listed.md5Hash.toStdString());
        records.push_back(std::make_shared<FileInfo>(cloud));
        ids += (ids.empty() ? "" : " ") + listed.id.toStdString();
        RetrieveFilePreview(records.back(), PreviewSize(0), {40, 40});
        RetrieveFilePreview(records.back(), PreviewSize(1), {100, 100});
        RetrieveFilePreview(records.back(), PreviewSize(2), {191, 191});
    }
    Signal("RetrievingFilesListFinished([" + ids + "])", records);
}

void CloudManagerModel::PreviewSucceeded(const ModelRequest& request, const QPixmap& picture)
{
    const std::string id = request.file->GetId();
    const std::string size = FileInfo::previewSizetoString(request.size);
    const std::string path = QDir::tempPath().toStdString() + '/' + id + '_' + size + ".png";
    auto& cloud = request.file->GetRedactableCloudInfo();
    if (!cloud || !picture.save(QString::fromStdString(path))) {
        return Fail(request, "Cannot save preview for: " + id + " with size: " + size);
    }
    cloud->SetPreviewPathBySize(path, request.size);
    Signal("RetrieveFilePreviewFinished(" + id + ", " + Number(request.size) + ')', {request.file});
}

void CloudManagerModel::UploadCompleted(const QString& path, const ModelAnswer& answer)
{
    const auto& sharing = answer.sharing;
    const auto size = QFileInfo(path).size();
    const ioPath normalized = surroundings.Normalized(path.toStdString());
    const std::string hash = surroundings.HashOf(normalized);
    const FileInfo::CloudInfo cloud(sharing.id.toStdString(), sharing.fileName.toStdString(), quint64(size),
                                    sharing.isPrivate, sharing.downloadUrl, sharing.createdAt, sharing.modifiedAt,
                                    sharing.lifetime, hash);
    const auto record = std::make_shared<FileInfo>(cloud);
    record->SetPath(normalized, hash);

    const ModelRequest request = {ModelRequest::Upload, path};
    if (answer.result == Social::Success) {
        Signal("UploadingFinished(" + record->GetId() + ')', {record});
        UserQuota();
    } else if (answer.result == Social::Error) {
        surroundings.Log("ERROR " + RowOf(request).error);
        RemoveFile(record);
        Signal(ErrorSignal(request, RowOf(request).error));
    } else if (answer.result == Social::Canceled) {
        surroundings.Log("INFO " + RowOf(request).canceled);
        RemoveFile(record);
        Signal(CanceledSignal(request));
    }
}

void CloudManagerModel::DownloadCompleted(const File& file, Social::RequestResult result)
{
    const auto copy = std::make_shared<FileInfo>(*file);
    copy->SetIsSyncingInProgress(false);
    const ModelRequest request = {ModelRequest::Download, {}, copy};
    if (result == Social::Success) {
        Signal("DownloadingFinished(" + copy->GetId() + ')', {copy});
    } else if (result == Social::Error) {
        Fail(request, RowOf(request).error);
    } else if (result == Social::Canceled) {
        surroundings.Log("INFO " + RowOf(request).canceled);
        copy->GetPath().remove();
        Signal(CanceledSignal(request), {copy});
    }
}

} // namespace Norlis::Test
