#pragma once

#include <contracts/Export.h>
#include <contracts/FileInfo.h>

#include <QList>
#include <QObject>
#include <QSize>
#include <QString>

#include <memory>

namespace Norlis::PDF::Cloud {

/// Everything that an editor does with the cloud, as asynchronous requests.
///
/// Life cycle of a request: its "Started" signal, where there is one, is emitted from inside the operation; one of its
/// closing signals (Finished, Error, Canceled) ends it. There is never more than one of these, and none only if the
/// manager is destroyed before, a collaborator throws, or the protocol answers with a result that is none of
/// Social::RequestResult. Destroying the manager cancels its requests and emits nothing.
///
/// What the service answers is reported from the event loop. What needs no answer is reported from inside the
/// operation: a refusal by the protocol, an empty token, a document without a cloud part, and what CancelUploading and
/// CancelDownloading end. While nobody is signed in, all operations but Authorization and Logout emit
/// AuthorizationRequired and do nothing else.
///
/// Requests run at the same time and do not wait for each other. Equal ones are not joined: each is sent, and ends.
///
/// Slots may do anything: delete the manager, cancel, start other requests, run an event loop. Belongs to the thread
/// that constructs it. What the protocol throws reaches the caller of the operation. The order of the virtual
/// operations is part of the binary interface.
class NORLIS_CONTRACTS_EXPORT AbstractCloudManager : public QObject {
    Q_OBJECT

public:
    AbstractCloudManager();
    ~AbstractCloudManager() override;

    /// Signs in; ends in AuthorizationCompleted or AuthorizationFailed. May be called while signed in, to use another
    /// token: if that fails, the first one stays in use. Of two that run at once, each ends, and the one that succeeds
    /// last counts.
    virtual void Authorization(const QString& token) = 0;

    /// Signs out at once; does nothing while signed out. Requests that are running go on.
    virtual void Logout() = 0;

    /// Sends the file at the record's local path, in place of the cloud document of the record's id; as a new document
    /// when the record has no id. One without a path ends in UploadingFileRequestError. The record itself is not
    /// changed: UploadingFinished has another one. Throws std::exception for a null record.
    virtual void Upload(const std::shared_ptr<FileInfo>& file) = 0;

    /// Sends a local file as a new document, also when there is one of its name, or when it has been sent before.
    virtual void Upload(const QString& path) = 0;

    /// Sends several, each as a request of its own.
    virtual void Upload(const QList<QString>& paths) = 0;

    /// Fetches a document into a folder that exists, under its cloud name. A file of that name is replaced when the
    /// document has arrived, unless the protocol refuses that (see OAuth2::AuthInfo). Once the protocol has accepted
    /// the request, and before the document arrives, the record is given the target path and the hash of what is there.
    /// A record without a cloud part ends in DownloadingFileRequestError, and so does a folder that does not exist.
    /// Throws std::exception for a null record.
    virtual void Download(const std::shared_ptr<FileInfo>& file, const QString& directory) = 0;

    /// Fetches several, each as a request of its own. A null record throws std::exception when its turn comes.
    virtual void Download(const QList<std::shared_ptr<FileInfo>>& files, const QString& directory) = 0;

    /// Fetches the list of the cloud's documents, and three previews of each, whether or not they have changed. Does
    /// nothing, and emits nothing, while a transfer is running.
    virtual void RetrieveFilesList() = 0;

    /// Deletes the cloud document; local files stay. Throws std::exception for a null record.
    virtual void RemoveFile(const std::shared_ptr<FileInfo>& file) = 0;

    /// Cancels the first running upload of the path; nothing happens when there is none.
    virtual void CancelUploading(const QString& path) = 0;

    /// Cancels the first running download of the record's id and deletes the file at the record's local path, whatever
    /// it is: give it the very record that Download was given. One from AbstractFileManager::GetFileInfo has the path
    /// of the user's own copy, which is deleted then. Nothing happens when there is no such download. Throws
    /// std::exception for a null record.
    virtual void CancelDownloading(const std::shared_ptr<FileInfo>& file) = 0;

    /// Fetches how much storage is in use, and how much there is.
    virtual void UserQuota() = 0;

    /// Fetches a picture of the document that fits into a box, in pixels, and stores it in the folder for temporary
    /// files, as "<id>_<size>.png" and readable for the user alone. Throws std::exception for a null record.
    virtual void RetrieveFilePreview(const std::shared_ptr<FileInfo>& file, FileInfo::PreviewSize previewSize,
                                     const QSize& size) = 0;

Q_SIGNALS:
    /// A request was made while nobody is signed in; it was not sent. Once for each request, those of the automatic
    /// refresh included.
    void AuthorizationRequired();

    /// Signed in.
    void AuthorizationCompleted();

    /// Not signed in: the token is empty or was not accepted, the service cannot be reached, or it cancelled the
    /// request. Who was signed in before may still be.
    void AuthorizationFailed();

    /// Signed out by Logout.
    void LoggedOut();

    /// The list is about to be asked for.
    void RetrievingFilesListStarted();

    /// One new record per cloud document, in the cloud's order; previews follow one by one.
    void RetrievingFilesListFinished(const QList<std::shared_ptr<FileInfo>>& files);

    /// \param message one of the library's fixed texts, in English; the service's own reason is OAuth2::Failure
    void RetrievingFilesListErrorRequested(const QString& message);

    /// By the service.
    void RetrievingFilesListCanceled();

    /// \param path as it was given, which identifies the upload in the signals that follow
    void UploadingStarted(const QString& path);

    /// \param value percent
    void UploadingProgressValueChanged(const QString& path, int value);

    /// A new record of the uploaded document, with its local copy.
    void UploadingFinished(const std::shared_ptr<FileInfo>& file);

    /// The upload failed or was refused. What it left in the cloud is removed by a request of its own, which ends in
    /// RemoveFileFinished or RemovingFileError.
    void UploadingFileRequestError(const QString& path, const QString& message);

    /// By CancelUploading, or by the service.
    void UploadingCanceled(const QString& path);

    /// The record itself. Its local path is set only after this signal, once the protocol has accepted the request.
    void DownloadingStarted(const std::shared_ptr<FileInfo>& file);

    /// \param value percent
    void DownloadingProgressValueChanged(const std::shared_ptr<const FileInfo>& file, int value);

    /// A copy of the record as it is at the end. Its local hash is still that of the file that was at the target when
    /// the download began.
    void DownloadingFinished(const std::shared_ptr<const FileInfo>& file);

    /// The download failed: a copy of the record; or it was refused: the record itself.
    void DownloadingFileRequestError(const std::shared_ptr<const FileInfo>& file, const QString& message);

    /// By CancelDownloading: the record that it was given; or by the service: a copy of the record.
    void DownloadingCanceled(const std::shared_ptr<const FileInfo>& file);

    /// The document is gone from the cloud; its record is for the receiver to take out of its list.
    void RemoveFileFinished(const std::shared_ptr<FileInfo>& file);

    /// The removal failed, was refused, or was cancelled by the service.
    void RemovingFileError(const std::shared_ptr<const FileInfo>& file, const QString& message);

    /// The picture is about to be asked for.
    void RetrieveFilePreviewStarted(const std::shared_ptr<FileInfo>& file, FileInfo::PreviewSize previewSize);

    /// The picture is stored and its path is set in the record's cloud part.
    void RetrieveFilePreviewFinished(const std::shared_ptr<FileInfo>& file, FileInfo::PreviewSize previewSize);

    /// There is no picture, or it could not be stored.
    void RetrieveFilePreviewError(const std::shared_ptr<const FileInfo>& file, FileInfo::PreviewSize previewSize,
                                  const QString& message);

    /// By the service.
    void RetrieveFilePreviewCanceled(const std::shared_ptr<const FileInfo>& file);

    /// The figures are about to be asked for.
    void RetrievingUserQuotaStarted();

    /// The two figures as the protocol gives them, the low 32 bits of each. NorlisCloudProtocol gives MiB, and in place
    /// of a figure that there is not unknownQuota (-1) or unlimitedQuota (-2).
    void RetrievingUserQuotaFinished(int used, int total);

    /// There are no figures.
    void RetrievingUserQuotaErrorRequested(const QString& message);

    /// By the service.
    void RetrievingUserQuotaCanceled();
};

} // namespace Norlis::PDF::Cloud
