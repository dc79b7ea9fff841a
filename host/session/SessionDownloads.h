#pragma once

#include "DownloadTargets.h"
#include "SessionContext.h"
#include "StagingFolders.h"

#include <files/FileIdentity.h>

#include <QHash>

#include <string>

namespace Norlis::Host {

/// The session's downloads. They arrive in a hidden folder next to their targets, so that the last step is a rename and
/// a cancelled or failed download touches nothing that was there before. Each ends in DocumentDownloaded,
/// DownloadCanceled or Failed.
class SessionDownloads : public QObject {
public:
    /// \param stagingList see StagingFolder; swept at once, off the event loop
    SessionDownloads(const SessionContext& context, const QString& stagingList);

    void Start(const QString& id, const QString& folder);

    /// See CloudSession::DownloadBeside.
    void StartBeside(const QString& id, const QString& folder);

    /// See CloudSession::UseCloudVersion.
    void StartInPlace(const QString& id);

    /// See CloudSession.
    QString ObstacleTo(const QString& id, const QString& folder) const;
    void Cancel(const QString& id);

    /// Goes on with those that wait for the service.
    /// \param wasAway since they broke off
    void Resume(bool wasAway);

    /// What the protocol object tells of a file that it has written, just before the download finishes.
    void NoteArrived(const Social::OAuth2::TransferredFile& file);

private:
    enum class State { Preparing, Requested, Arrived, Placed };

    struct ActiveDownload {
        QString id;
        QString folder;
        QString name;
        QString target;
        bool isInPlace = false;       ///< the changes of the local copy are to be lost
        bool isBeside = false;        ///< whatever has the name, which gets a number then
        std::string discardedHash;    ///< of the local copy with these changes, as the list has shown it
        bool replaces = false;        ///< the document's own local copy, unchanged, stands at the target
        Files::FileIdentity replaced; ///< that copy, while it is known to be unchanged
        State state = State::Preparing;
        bool isWaiting = false;
        int breaks = 0; ///< that the service was there for
        std::shared_ptr<StagingFolder> staging;
        std::shared_ptr<PDF::FileInfo> record; ///< a copy that the cloud manager writes to
        std::string listedHash;                ///< see CloudInfo::GetMd5Hash, when it was requested
        QString stagedPath;
        QString place;                 ///< the target, normalised, once it is there
        std::string hash;              ///< of what has arrived
        Files::FileIdentity arrivedAs; ///< the staged file; no file when nobody has told
        bool isArrivedLasting = false; ///< see OAuth2::TransferredFile
    };
    using DownloadPointer = std::shared_ptr<ActiveDownload>;

    void Enter(const DownloadPointer& download);
    void Begin(const DownloadPointer& download);
    void Request(const DownloadPointer& download);
    void Place(const DownloadPointer& download);
    void Complete(const DownloadPointer& download);

    QString TargetOf(const ActiveDownload& download) const;

    /// Decides whether the file at the target may be replaced. Otherwise ends the download and says why.
    bool MayTakeTarget(const DownloadPointer& download);

    void EndWithNameTaken(const DownloadPointer& download);
    void EndWithChangedCopy(const DownloadPointer& download);

    /// Whether the document has a local copy with changes elsewhere.
    bool HasOtherChangedCopy(const DownloadPointer& download) const;

    /// Hashes files, whatever is cached: one that a download replaces must not have changes.
    void Read(const QStringList& paths, const std::function<void()>& done);

    /// False when the download has ended meanwhile.
    bool IsCurrent(const DownloadPointer& download) const;
    DownloadPointer FindRequested(const std::shared_ptr<const PDF::FileInfo>& file) const;

    /// Removes what has arrived.
    void TakeBack(const DownloadPointer& download);

    /// Keeps the download until the service is there again. Emits as the last thing that it does.
    void Wait(const DownloadPointer& download);

    /// Forgets the download and removes what has arrived of it.
    void End(const DownloadPointer& download);
    void EndWithFailure(const DownloadPointer& download, const QString& reason, const QString& advice,
                        Social::OAuth2::FailureKind kind = Social::OAuth2::FailureKind::Other);
    void Refuse(const DownloadPointer& download, const QString& reason, const QString& advice,
                Social::OAuth2::FailureKind kind = Social::OAuth2::FailureKind::Other);

    void OnFinished(const std::shared_ptr<const PDF::FileInfo>& file);
    void OnError(const std::shared_ptr<const PDF::FileInfo>& file, const QString& message);
    void OnCanceled(const std::shared_ptr<const PDF::FileInfo>& file);

    const SessionContext context;
    const DownloadTargets targets;
    StagingFolders stagingFolders;
    QHash<QString, DownloadPointer> downloads; ///< by document id
    QHash<QString, DownloadPointer> staged;    ///< those that were requested, by the path at which they arrive
};

} // namespace Norlis::Host
