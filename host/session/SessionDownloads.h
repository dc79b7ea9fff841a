#pragma once

#include "SessionContext.h"

#include <QTemporaryDir>

#include <vector>

namespace Norlis::Host {

/// The session's downloads. Each arrives in a hidden folder of its own beside its place, so that the last step is a
/// rename and a cancelled or failed download touches nothing that was there before. Each ends in DocumentDownloaded,
/// DownloadCanceled or Failed.
class SessionDownloads : public QObject {
public:
    explicit SessionDownloads(const SessionContext& context);

    void Start(const QString& id, const QString& folder);
    void Cancel(const QString& id);

private:
    enum class State { Preparing, Sent, Arrived, Placed };

    struct Run {
        QString id;
        QString folder;
        QString name;
        QString target;
        bool replaces = false; ///< the document's own local copy, unchanged, stands at the target
        State state = State::Preparing;
        std::unique_ptr<QTemporaryDir> staging;
        std::shared_ptr<PDF::FileInfo> record; ///< a copy that the cloud manager writes to
        QString stagedPath;
        std::string hash;
    };
    using RunPointer = std::shared_ptr<Run>;

    void Begin(const RunPointer& run);
    void Send(const RunPointer& run);
    void Place(const RunPointer& run);
    void Complete(const RunPointer& run);

    /// Decides whether the file at the target may be replaced. Otherwise ends the run and says why.
    bool MayTakeTarget(const RunPointer& run);

    bool IsRunning(const RunPointer& run) const;
    RunPointer FindSent(const std::shared_ptr<const PDF::FileInfo>& file) const;

    /// Forgets the run and removes its folder.
    void End(const RunPointer& run);
    void EndWithFailure(const RunPointer& run, const QString& reason, const QString& advice);
    void Refuse(const RunPointer& run, const QString& reason, const QString& advice);
    void RemoveLeftovers();

    void OnFinished(const std::shared_ptr<const PDF::FileInfo>& file);
    void OnError(const std::shared_ptr<const PDF::FileInfo>& file, const QString& message);
    void OnCanceled(const std::shared_ptr<const PDF::FileInfo>& file);

    const SessionContext context;
    QHash<QString, RunPointer> runs; ///< by document id

    /// Folders that could not be removed because the service was still writing to them.
    std::vector<std::unique_ptr<QTemporaryDir>> leftovers;
};

} // namespace Norlis::Host
