#pragma once

#include "FolderStore.h"
#include <files/AtomicFile.h>
#include <files/FileReader.h>
#include <protocol/service/Reply.h>

#include <functional>
#include <optional>
#include <vector>

namespace Norlis::Social {

/// Work on a folder that takes longer than a few milliseconds, cut into steps that do not. Destroying an unfinished job
/// gives it up and leaves nothing behind.
class FolderJob {
public:
    virtual ~FolderJob() = default;

    /// Does the next piece of work. The reply ends the job.
    virtual std::optional<Reply> Step() = 0;
};

/// Lists a folder, and hashes those documents whose hash is not known.
class ListJob : public FolderJob {
public:
    explicit ListJob(FolderStore& store);
    std::optional<Reply> Step() override;

private:
    Reply Unusable() const;
    void HashNextPiece();

    FolderStore& store;
    std::optional<std::vector<FolderDocument>> documents;
    std::size_t position = 0;                  ///< of the next document
    std::unique_ptr<Files::FileReader> reader; ///< of that document, while it is hashed
    QList<CloudFile> files;
};

/// Copies a file under a temporary name, then has it given its final one.
class CopyJob : public FolderJob {
public:
    struct Task {
        QString what;     ///< for error texts
        QString document; ///< for error texts
        QString source;
        QString temporaryFolder; ///< on the file system that the copy shall be on
        QString expectedMd5;     ///< of the source; empty when unknown

        /// Gives the copy its final name. The last step.
        std::function<Reply(Files::AtomicFile& copy, const Files::FileReader& source)> publish;
        std::function<void(int percent)> progress;
    };

    explicit CopyJob(Task task);
    std::optional<Reply> Step() override;

private:
    std::optional<Reply> Open();
    std::optional<Reply> CopyNextPiece();
    Reply Finish();

    /// If it has changed; 100 is kept for the end.
    void ReportProgress();

    Task task;
    Files::FileReader reader;
    Files::AtomicFile copy;
    bool isOpen = false;
    int reportedPercent = -1;
};

/// The entry of a document in the files list.
CloudFile EntryOf(const FolderDocument& document, const QString& md5Hash);

} // namespace Norlis::Social
