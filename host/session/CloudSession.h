#pragma once

#include <contracts/AbstractCloudManager.h>
#include <contracts/AbstractFileManager.h>
#include <contracts/ICloudProtocol.h>
#include <contracts/OAuth2.h>
#include <host/Export.h>

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QPixmap>
#include <QStringList>

#include <chrono>
#include <memory>

namespace Norlis::Host {

struct CloudFacts;

/// Why something failed, ready to be shown.
struct NORLIS_HOST_EXPORT CloudProblem {
    /// What was asked for.
    enum class Request { SignIn, List, Upload, Download, Remove, Preview, Quota };

    Request request = Request::List; ///< what failed
    QString subject; ///< the local path of an upload (the document's id when it has no local copy), the document's id
                     ///< of a download, removal or preview; else empty
    QString message; ///< the library's fixed text, or the session's own when the cloud was not asked
    Social::OAuth2::Failure cause; ///< what the service said, or the session found; its texts may be empty

    /// What is known of these for the user: message, reason and advice as sentences. English.
    QString Text() const;
};

/// A page of a document as a picture, for a view that shows one.
struct NORLIS_HOST_EXPORT DrawnPage {
    QPixmap picture;   ///< null when it cannot be drawn
    int pageCount = 0; ///< of the document; 0 when that is not known
    QString reason;    ///< why there is no picture, without a full stop; English, may be empty
};

/// What an editor is to the library: owns the record store, the file list, the cloud manager and its protocol, and puts
/// what the cloud manager reports into the file list.
///
/// The two managers never meet, so the session takes care of what falls between them. A fresh record of a files list
/// knows nothing of the local copy: the session completes it from the held record before it merges the two. Documents
/// that are gone from the cloud leave the list. Downloads arrive in a folder of their own and are moved to their place
/// when they are whole, because cancelling a download deletes the file at its target. Files are hashed ahead of time on
/// another thread, because the library asks for hashes on the event loop.
///
/// Every request returns at once and ends, from the event loop, in exactly one of its closing signals. Slots may do
/// anything, deleting the session included.
///
/// Lives on one thread with an event loop. Destroying the session cancels what is running, saves the list and emits
/// nothing.
class NORLIS_HOST_EXPORT CloudSession : public QObject {
    Q_OBJECT

public:
    /// \param dataFolder where what is known of this service, and of no other one, is kept, private to the user;
    ///                   created when missing. CloudAccount gives each service a folder of its own
    /// \param authInfo   the service; what a session keeps for itself is set by it: folders, observers and what
    ///                   a download may replace
    /// Throws std::runtime_error, with a text for the user, when the records cannot be read or are those of another
    /// service, and std::invalid_argument when there is no such service.
    CloudSession(const QString& dataFolder, const Social::OAuth2::AuthInfo& authInfo);

    /// As above, over another protocol. If it is a PDF::Cloud::IFailureSource, the session is its observer.
    CloudSession(const QString& dataFolder, const std::shared_ptr<PDF::Cloud::ICloudProtocol>& protocol);
    ~CloudSession() override;

    /// The list, for views. Change it through the session only. It finds a document by an index at once, but by an id
    /// it goes through all documents before it.
    PDF::AbstractFileManager& Documents();

    /// Sizes of the documents in the list, as they are in the cloud, in bytes, by id. For CloudDocumentsModel.
    QHash<QString, quint64> CloudSizes() const;

    /// What the cloud has last told of a document in the list, found at once; null when there is no such document.
    /// Valid until the event loop comes round.
    const CloudFacts* Facts(const QString& id);

    /// The cloud manager, for its signals (progress, sign-in, quota) and for requests that need no bridge. Its
    /// RetrieveFilePreview does nothing: see ShowPreviews and FetchPreviews.
    PDF::Cloud::AbstractCloudManager& Cloud();

    /// The protocol, for what the cloud manager does not offer (user name and picture).
    PDF::Cloud::ICloudProtocol& Protocol();

    /// Whether the service has been signed in to.
    bool IsSignedIn();

    /// Signs in, and stays signed in although the service may not be there at times: it is asked again after 5, 15, 60
    /// seconds and so on, and whenever the network of this computer changes. Uploads and downloads that break off
    /// meanwhile, or are begun, do not fail: they wait (UploadWaiting, DownloadWaiting) and go on when it answers
    /// again, unless they alone break off several times. Ends with SignOut, or when the token is refused;
    /// what waits then fails.
    void StaySignedIn(const QString& token);

    /// Asks the service at once, when it is Offline. The session's own attempts go on as if it had not been asked.
    void TryNow();

    /// Has the sign-in and the list that the service has not answered yet fail now, for whoever does not want to wait
    /// until it has been silent for too long: the session is Offline then. Over a protocol of another kind nothing
    /// happens.
    void StopWaiting();

    /// Signs out, and ends StaySignedIn.
    void SignOut();

    /// Of a session that is to stay signed in.
    enum class Connection { SignedOut, Connecting, Online, Offline };

    /// SignedOut, too, when somebody was signed in otherwise than by StaySignedIn.
    Connection ConnectionState() const;

    /// When the service is asked again; invalid unless that is to happen.
    QDateTime NextAttempt() const;

    /// The document in the list that a file is a copy of; empty when there is none. A document may have several copies;
    /// the list shows the one that was used last, and ReadLocalCopy lets one use another.
    QString DocumentAt(const QString& path);

    /// Whether a file is a copy of a document in the list, or of one that has gone from it lately: after a refresh
    /// there may be a DocumentAt.
    bool IsCopy(const QString& path);

    /// Has the list show this copy of a document, with the changes that the file's time stamps do not tell of too. Ends
    /// in LocalCopyRead.
    void ReadLocalCopy(const QString& path);

    /// The user wants to hear of it no more, see CopyLeftBehind. The file stays.
    void ForgetCopyLeft(const QString& path);

    /// Has an eye on the local copy of a document, which is open in another program, until the session ends: each time
    /// it is saved with changes, LocalCopyChanged. The list shows the copy then.
    void WatchLocalCopy(const QString& path);

    /// A folder in the session's data folder for a document that is only to be looked at; whoever downloads it there
    /// creates it. A copy in it that has no changes is deleted when nobody has read it for a month.
    /// \param id each document has one of its own
    QString ViewingFolder(const QString& id) const;

    /// Sends local files as new documents; each ends in DocumentUploaded, UploadCanceled or Failed. An empty list ends
    /// in Failed too, and so does a file that is already being uploaded.
    void Upload(const QStringList& paths);

    /// Sends the local copy of a document and replaces the cloud copy, unless that is another version than the one that
    /// the local copy was made from; ends as Upload does.
    void UploadChanges(const QString& id);

    /// As UploadChanges, also where the cloud copy that the list shows is another version: the user knows and wants it.
    void ReplaceInCloud(const QString& id);

    /// Sends a file in the place of a document, whose version in the list the user knows; ends as Upload does. The file
    /// becomes its local copy.
    void ReplaceWith(const QString& id, const QString& path);

    /// Sends the local copy of a document as a new one, as in "plan (from HOST, 2026-11-22).pdf"; ends as Upload does.
    /// The file becomes the local copy of the new document, and the old one is in the cloud only.
    void KeepBoth(const QString& id);

    /// Fetches a document in the place of its local copy, whose changes are lost: the user knows and wants it. Ends as
    /// Download does. What has been saved to the file since the list looked at it stays, and the download fails.
    void UseCloudVersion(const QString& id);

    /// A document of that name in the list; empty when there is none.
    QString DocumentNamed(const QString& name) const;

    /// Fetches a document into a folder; ends in DocumentDownloaded, DownloadCanceled or Failed. A file of that name
    /// which stands there already is replaced only if it is a copy of the document and has not been changed; otherwise
    /// the download fails and leaves it alone, unless the document has a copy of another name there, which is replaced
    /// in the same way. A local copy elsewhere stays what the list shows if it has changes: the new file is there to be
    /// compared with it.
    void Download(const QString& id, const QString& folder);

    /// Path of what Download would fail over, since it has the document's name in the folder and is no copy of it;
    /// empty when there is no such thing.
    QString ObstacleTo(const QString& id, const QString& folder) const;

    /// As Download, but where something else has the document's name in the folder, the document comes beside it with a
    /// number in its name, as in "plan (2).pdf".
    void DownloadBeside(const QString& id, const QString& folder);

    /// Nothing happens when there is no such transfer, when it ends before the event loop comes round, and while nobody
    /// is signed in.
    void CancelUpload(const QString& path);

    /// As above.
    void CancelDownload(const QString& id);

    /// Deletes a document from the cloud; ends in DocumentRemoved or Failed. Its local copy stays. Only the version is
    /// removed that the list shows when this is called.
    void Remove(const QString& id);

    /// As Remove, for each of the documents, when a delay is over, so that the user can think again: until then, and
    /// until it has ended, IsRemovalPending. What has changed in the cloud meanwhile is not removed, and what has not
    /// been sent when the session ends is still there. Of a session that stays signed in, they wait as transfers do.
    void RemoveLater(const QStringList& ids, std::chrono::milliseconds delay);

    /// Takes back those of the documents whose removal has not been sent.
    void UndoRemoval(const QStringList& ids);

    /// Whether a document is to be removed: it is in the list, but views do not show it.
    bool IsRemovalPending(const QString& id) const;

    /// Whether IsRemovalPending of any document.
    bool HasPendingRemovals() const;

    /// Sends the pending removals now. Ends in ReadyToClose, when they have ended or after three seconds.
    void PrepareToClose();

    /// Has the list show the previews of these documents, which a view shows just now. Each ends in PreviewStored,
    /// unless the list shows it already, or in PreviewMissing. Those that are not on disk are fetched, a few at a time:
    /// of the documents that were not shown before first, and the medium size first. What has not been sent is dropped
    /// when its document is shown no longer.
    void ShowPreviews(const QStringList& ids);

    /// Fetches the three previews of a document anew; each ends in PreviewStored or Failed.
    void FetchPreviews(const QString& id);

    /// Draws page one of a document as it is in the cloud, at a size that the list has no previews of; ends in
    /// PageDrawn. The list keeps its own.
    /// \param box in pixels; the picture fits into it
    /// \return a number for PageDrawn and CancelDrawing
    qint64 DrawPreview(const QString& id, const QSize& box);

    /// The same of any page of a PDF file on this computer. Nobody has to be signed in. Over a protocol of another kind
    /// there are no such pictures.
    /// \param page from 1
    qint64 DrawLocalPreview(const QString& path, const QSize& box, int page = 1);

    /// For whoever wants to see another page by now: no PageDrawn follows. Unknown numbers are ignored.
    void CancelDrawing(qint64 drawing);

    /// Fetches the list and no previews; ends in ListRefreshed or Failed. Skipped without a signal while a transfer
    /// runs. A preview whose document has other content by now is shown no longer: its path in the list is empty until
    /// a new one is there.
    void Refresh();

    /// Refreshes at this interval while somebody is signed in, or, where the service tells of changes, after these.
    /// Zero ends that; it is how a session begins.
    void RefreshEvery(std::chrono::milliseconds interval);

    /// Writes the list to disk now and closes the store, as destruction does, but reports what went wrong: throws
    /// std::runtime_error. Nothing else may be called afterwards.
    void SaveAndClose();

signals:
    /// The list is up to date. Ids of documents that are new, have changed in the cloud, and are gone from it. Emitted
    /// for automatic refreshes too.
    void ListRefreshed(const QStringList& added, const QStringList& changed, const QStringList& removed);

    /// A refresh has found half of the documents gone, or more, which the list may be wrong about. Just before
    /// ListRefreshed. Their local copies are remembered for a month.
    /// \param before how many there were
    void ManyDocumentsGone(int gone, int before);

    /// \param id of the document that the file is a copy of; empty when there is none (any more)
    void LocalCopyRead(const QString& path, const QString& id);

    /// By WatchLocalCopy. The local copy has changes that are not in the cloud.
    void LocalCopyChanged(const QString& path, const QString& id);

    /// The first one comes when the upload begins to be sent, for which others may have to end before.
    /// \param percent of its bytes, 0 to 100
    void UploadProgress(const QString& path, int percent);

    /// The same of a download.
    void DownloadProgress(const QString& id, int percent);

    /// The document of this id is in the list, with its local copy.
    void DocumentUploaded(const QString& path, const QString& id);

    /// The service is not there at the moment, see StaySignedIn. The transfer goes on later, and can be cancelled.
    void UploadWaiting(const QString& path);

    /// The same of a download.
    void DownloadWaiting(const QString& id);

    /// ConnectionState or NextAttempt has changed.
    void ConnectionChanged();

    /// By CancelUpload, or by the service.
    void UploadCanceled(const QString& path);

    /// \param path the document's final place
    void DocumentDownloaded(const QString& id, const QString& path);

    /// By CancelDownload, or by the service.
    void DownloadCanceled(const QString& id);

    /// The document has left the cloud and the list.
    void DocumentRemoved(const QString& id);

    /// The document of this local copy is no longer in the cloud, and the copy has changes that never were. It stays
    /// where it is, and belongs to no document any more: Upload makes it a new one. Told again after the first list of
    /// each session, for a month or until ForgetCopyLeft.
    void CopyLeftBehind(const QString& path);

    /// By RemoveLater and UndoRemoval, and when a removal has failed. For CloudDocumentsModel::SetHidden.
    void RemovalPendingChanged(const QString& id, bool isPending);

    /// By PrepareToClose.
    void ReadyToClose();

    /// The list shows a preview, by ShowPreviews or FetchPreviews.
    /// \param size one of "small", "medium", "large"; \param path a PNG file
    void PreviewStored(const QString& id, const QString& size, const QString& path);

    /// By DrawPreview and DrawLocalPreview.
    /// \param drawing what they returned
    void PageDrawn(qint64 drawing, const Norlis::Host::DrawnPage& page);

    /// By ShowPreviews: the service cannot make a preview of the document as it is now. Told once while the document
    /// is shown; it is asked for again when it has changed, or is shown again after it was not.
    void PreviewMissing(const QString& id);

    /// Also ends sign-in and quota requests made through Cloud(), beside the cloud manager's own signal, to say why.
    void Failed(const Norlis::Host::CloudProblem& problem);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace Norlis::Host

Q_DECLARE_METATYPE(Norlis::Host::CloudProblem)
Q_DECLARE_METATYPE(Norlis::Host::DrawnPage)
