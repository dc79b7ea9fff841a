#pragma once

#include "SessionContext.h"
#include "StagingFolder.h"

#include <vector>

namespace Norlis::Host {

/// The session's downloads. Each arrives in a hidden folder of its own next to its target, so that the last step is a
/// rename and a cancelled or failed download touches nothing that was there before. Each ends in DocumentDownloaded,
/// DownloadCanceled or Failed.
class SessionDownloads : public QObject {
public:
    /// \param stagingList see StagingFolder; swept at once, off the event loop
    SessionDownloads(const SessionContext& context, const QString& stagingList);

    void Start(const QString& id, const QString& folder);
    void Cancel(const QString& id);

private:
    enum class State { Preparing, Requested, Arrived, Placed };

    struct ActiveDownload {
        QString id;
        QString folder;
        QString name;
        QString target;
        bool replaces = false; ///< the document's own local copy, unchanged, stands at the target
        State state = State::Preparing;
        std::unique_ptr<StagingFolder> staging;
        std::shared_ptr<PDF::FileInfo> record; ///< what the cloud manager writes to
        std::string listedHash;                ///< see CloudInfo::GetMd5Hash, when it was requested
        QString stagedPath;
        std::string hash;
    };
    using DownloadPointer = std::shared_ptr<ActiveDownload>;

    void Begin(const DownloadPointer& download);
    void Request(const DownloadPointer& download);
    void Place(const DownloadPointer& download);
    void Complete(const DownloadPointer& download);

    /// Decides whether the file at the target may be replaced. Otherwise ends the download and says why.
    bool MayTakeTarget(const DownloadPointer& download);

    /// Whether the document has a local copy with changes elsewhere.
    bool HasOtherChangedCopy(const DownloadPointer& download) const;

    QString NormalizedTarget(const DownloadPointer& download) const;

    /// Hashes files, whatever is cached: one that a download replaces must not have changes.
    void Read(const QStringList& paths, const std::function<void()>& done);

    /// False when the download has ended meanwhile.
    bool IsCurrent(const DownloadPointer& download) const;
    DownloadPointer FindRequested(const std::shared_ptr<const PDF::FileInfo>& file) const;

    /// Forgets the download and removes its folder.
    void End(const DownloadPointer& download);
    void EndWithFailure(const DownloadPointer& download, const QString& reason, const QString& advice);
    void Refuse(const DownloadPointer& download, const QString& reason, const QString& advice);
    void RemoveStaging();

    void OnFinished(const std::shared_ptr<const PDF::FileInfo>& file);
    void OnError(const std::shared_ptr<const PDF::FileInfo>& file, const QString& message);
    void OnCanceled(const std::shared_ptr<const PDF::FileInfo>& file);

    const SessionContext context;
    const QString stagingList;
    QHash<QString, DownloadPointer> downloads; ///< by document id

    /// Folders of downloads that have ended. One that the service still writes to is removed when a later download
    /// ends, or with the session.
    std::vector<std::unique_ptr<StagingFolder>> stagingToRemove;
};

} // namespace Norlis::Host
