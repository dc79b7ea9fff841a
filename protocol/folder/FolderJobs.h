#pragma once

#include "FolderStore.h"
#include "OwnFolder.h"
#include "SeenVersions.h"
#include <files/AtomicFile.h>
#include <files/FileReader.h>
#include <protocol/service/Reply.h>

#include <QElapsedTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Norlis::Social {

/// The reply to a request that cannot be carried out because the folder is not there.
Reply UnavailableReply(const QString& what, const QString& document, const QString& reason);

/// Work on a folder that takes longer than a few milliseconds, cut into steps that do not. Destroying an unfinished job
/// gives it up and leaves nothing behind.
class FolderJob {
public:
    virtual ~FolderJob() = default;

    /// Does the next piece of work. The reply ends the job.
    virtual std::optional<Reply> Step() = 0;

    /// Nothing can be done at the moment; steps only look whether that has changed.
    virtual bool IsWaiting() const
    {
        return false;
    }
};

/// Hashes documents, smallest first.
class Hashing {
public:
    explicit Hashing(FolderStore& store);

    /// In the place of what was left to do.
    void Begin(std::vector<FolderDocument> documents);

    /// Reads the next piece. False when there is nothing left to do.
    bool Step();

private:
    /// So that little is lost with a program that is killed.
    void SaveNowAndThen();

    FolderStore& store;
    std::vector<FolderDocument> documents; ///< largest first; the last one is read
    std::unique_ptr<Files::FileReader> reader;
    QElapsedTimer sinceSaved;
};

/// Lists a folder. Of documents whose hash is not known it hashes only so many as take no time to speak of.
class ListJob : public FolderJob {
public:
    using Unhashed = std::function<void(std::vector<FolderDocument>)>;

    /// \param seen       is told what the list shows
    /// \param onUnhashed is given, at the end, the documents whose hash is still to be calculated
    ListJob(FolderStore& store, SeenVersions& seen, Unhashed onUnhashed);
    std::optional<Reply> Step() override;

private:
    Reply Unusable() const;
    void ChooseWhatToHash();
    Reply Listed();

    FolderStore& store;
    SeenVersions& seen;
    const Unhashed onUnhashed;
    const ChangeJournal::Time begin;
    std::optional<std::vector<FolderDocument>> documents;
    std::size_t position = 0;             ///< of the next document
    std::vector<FolderDocument> unhashed; ///< of those before
    Hashing hashing;
    bool isChosen = false;
    bool isHashed = false;
    QList<CloudFile> files;
    std::vector<SeenVersion> shown;
};

/// How a copy gets its final name.
class CopyTarget {
public:
    virtual ~CopyTarget() = default;

    /// Takes the next step. The reply ends the job.
    virtual std::optional<Reply> Step(Files::AtomicFile& copy, const Files::FileReader& source) = 0;

    virtual bool IsWaiting() const
    {
        return false;
    }
};

/// Copies a file under a temporary name, then has it given its final one.
class CopyJob : public FolderJob {
public:
    struct Task {
        QString what;     ///< for error texts
        QString document; ///< for error texts
        QString source;
        QString temporaryFolder;     ///< on the file system that the copy shall be on; for error texts, too
        unsigned permissions = 0666; ///< of the copy
        QString expectedMd5;         ///< of the source; empty when unknown

        /// Of the temporary folder, to be used in its place; null where there is none.
        std::shared_ptr<OwnFolder> ownFolder;

        /// What is expected turned out to be wrong, not the source: it is read again. Empty refuses the source.
        std::function<void()> onWrongExpectation;
        std::unique_ptr<CopyTarget> target;
        std::function<void(int percent)> progress;
    };

    explicit CopyJob(Task task);
    std::optional<Reply> Step() override;
    bool IsWaiting() const override;

private:
    std::optional<Reply> Open();
    std::optional<Reply> CopyNextPiece();
    std::optional<Reply> Check();

    /// If it has changed; 100 is kept for the end.
    void ReportProgress();

    struct Copy {
        Files::FileReader source;
        Files::AtomicFile file;
    };

    Task task;
    std::unique_ptr<Copy> copy;
    bool isWhole = false;
    int reportedPercent = -1;
};

/// The entry of a document in the files list.
/// \param md5Hash empty when it is not known: a text that stands for the version takes its place
CloudFile EntryOf(const FolderDocument& document, const QString& md5Hash);

} // namespace Norlis::Social
