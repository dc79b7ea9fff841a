#pragma once

#include "ListState.h"
#include "SessionContext.h"

#include <QHash>
#include <QTemporaryDir>

#include <optional>
#include <unordered_set>

namespace Norlis::Host {

/// The session's uploads. A new document is read once, while it is sent; what replaces one is hashed before, so an
/// upload can also be cancelled before the cloud manager has heard of it. Each ends in DocumentUploaded, UploadCanceled
/// or Failed.
class SessionUploads : public QObject {
public:
    /// \param linkFolder where files get other names; created when it is needed
    SessionUploads(const SessionContext& context, const ListState& list, const QString& linkFolder);

    void Start(const QStringList& paths);
    /// \param isNewerSeen the user knows of the version in the cloud, and wants it replaced
    void StartChanges(const QString& id, bool isNewerSeen);

    /// See CloudSession::ReplaceWith and KeepBoth.
    void StartReplacement(const QString& id, const QString& path);
    void StartKeepingBoth(const QString& id);
    void Cancel(const QString& path);

    /// Goes on with those that wait for the service.
    /// \param wasAway since they broke off
    void Resume(bool wasAway);

    /// What the protocol object tells of a file that it has sent, just before the upload finishes.
    void NoteSent(const Social::OAuth2::TransferredFile& file);

private:
    struct ActiveUpload {
        QString path;    ///< that is sent
        QString subject; ///< the path by which the session's signals name it
        QString normalizedPath;
        QString document;               ///< the one that is replaced; empty for a new one
        bool isCopy = true;             ///< the file is the local copy of that document
        std::optional<CloudFacts> seen; ///< the version that the user wants replaced; nothing for the copy's own
        QString origin; ///< the document of which it ceases to be the local copy; empty when there is none
        std::unique_ptr<QTemporaryDir> link; ///< in which the file has another name
        bool isSent = false;
        bool isWaiting = false;
        int breaks = 0;              ///< that the service was there for
        bool isHashExpected = false; ///< nobody has read the file yet
        std::string sentHash;
        quint64 sentSize = 0;
    };
    using UploadPointer = std::shared_ptr<ActiveUpload>;

    /// Has the user asked to sign in, once for all files of a request.
    void AskToSignIn();

    // Both emit Failed from the event loop.

    void RefuseWithoutCopy(const QString& id);
    void RefuseLater(const SessionCloud::Subject& about, const QString& reason, const QString& advice);
    bool IsNameTaken(const QString& name) const;
    void Enter(const UploadPointer& upload);
    void Begin(const UploadPointer& upload);
    void Send(const UploadPointer& upload);
    static QStringList PathsOf(const ActiveUpload& upload);

    /// Undoes what sending it has begun.
    void TakeBack(const UploadPointer& upload);

    /// Keeps the upload until the service is there again. Emits as the last thing that it does.
    void Wait(const UploadPointer& upload);

    /// Forgets the upload; false when it has ended meanwhile.
    bool End(const UploadPointer& upload);
    UploadPointer FindSent(const QString& path) const;
    UploadPointer FindSent(const ioPath& normalizedPath) const;
    void Refuse(const UploadPointer& upload, const QString& reason, const QString& advice,
                Social::OAuth2::FailureKind kind = Social::OAuth2::FailureKind::Other);

    void OnFinished(const std::shared_ptr<PDF::FileInfo>& uploaded);
    void OnError(const QString& path, const QString& message);
    void OnCanceled(const QString& path);

    const SessionContext context;
    const ListState list;
    const QString linkFolder;
    std::unordered_set<UploadPointer> uploads;
    QHash<QString, UploadPointer> uploadsByFile; ///< by normalised path
    QHash<QString, UploadPointer> sentUploads;   ///< by path, as the cloud manager names them
    Lifetime lifetime;
};

} // namespace Norlis::Host
