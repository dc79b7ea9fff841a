#pragma once

#include "SessionContext.h"

#include <QVector>

namespace Norlis::Host {

/// The session's uploads. A file is hashed before it is sent, so an upload can also be cancelled before the cloud
/// manager has heard of it. Each ends in DocumentUploaded, UploadCanceled or Failed.
class SessionUploads : public QObject {
public:
    explicit SessionUploads(const SessionContext& context);

    void Start(const QStringList& paths);
    void StartChanges(const QString& id);
    void Cancel(const QString& path);

private:
    struct Run {
        QString path;
        ioPath normalizedPath;
        QString document; ///< the one that is replaced; empty for a new one
        bool isSent = false;
        std::string sentHash;
        quint64 sentSize = 0;
    };
    using RunPointer = std::shared_ptr<Run>;

    /// Has the user asked to sign in, once for all files of a request.
    void AskToSignIn();
    void Enter(const RunPointer& run);
    void Begin(const RunPointer& run);
    void Send(const RunPointer& run);

    /// Forgets the run; false when it has ended meanwhile.
    bool End(const RunPointer& run);
    RunPointer FindSent(const QString& path) const;
    void Refuse(const RunPointer& run, const QString& reason, const QString& advice);

    void OnFinished(const std::shared_ptr<PDF::FileInfo>& uploaded);
    void OnError(const QString& path, const QString& message);
    void OnCanceled(const QString& path);

    const SessionContext context;
    QVector<RunPointer> runs;
};

} // namespace Norlis::Host
