#pragma once

#include "SessionContext.h"

#include <QHash>

#include <unordered_set>

namespace Norlis::Host {

/// The session's uploads. A new document is read once, while it is sent; what replaces one is hashed before, so an
/// upload can also be cancelled before the cloud manager has heard of it. Each ends in DocumentUploaded, UploadCanceled
/// or Failed.
class SessionUploads : public QObject {
public:
    explicit SessionUploads(const SessionContext& context);

    void Start(const QStringList& paths);
    /// \param isNewerSeen the user knows of the version in the cloud, and wants it replaced
    void StartChanges(const QString& id, bool isNewerSeen);
    void Cancel(const QString& path);

    /// What the protocol object tells of a file that it has sent, just before the upload finishes.
    void NoteSent(const Social::OAuth2::TransferredFile& file);

private:
    struct ActiveUpload {
        QString path;
        QString normalizedPath;
        QString document; ///< the one that is replaced; empty for a new one
        bool isSent = false;
        bool isHashExpected = false; ///< nobody has read the file yet
        std::string sentHash;
        quint64 sentSize = 0;
    };
    using UploadPointer = std::shared_ptr<ActiveUpload>;

    /// Has the user asked to sign in, once for all files of a request.
    void AskToSignIn();
    void Enter(const UploadPointer& upload);
    void Begin(const UploadPointer& upload);
    void Send(const UploadPointer& upload);
    static QStringList PathsOf(const ActiveUpload& upload);

    /// Forgets the upload; false when it has ended meanwhile.
    bool End(const UploadPointer& upload);
    UploadPointer FindSent(const QString& path) const;
    UploadPointer FindSent(const ioPath& normalizedPath) const;
    void Refuse(const UploadPointer& upload, const QString& reason, const QString& advice);

    void OnFinished(const std::shared_ptr<PDF::FileInfo>& uploaded);
    void OnError(const QString& path, const QString& message);
    void OnCanceled(const QString& path);

    const SessionContext context;
    std::unordered_set<UploadPointer> uploads;
    QHash<QString, UploadPointer> uploadsByFile; ///< by normalised path
    QHash<QString, UploadPointer> sentUploads;   ///< by path, as the cloud manager names them
};

} // namespace Norlis::Host
