#pragma once

#include "FileIdentity.h"

#include <QFile>
#include <QString>

#include <functional>
#include <system_error>

namespace Norlis::Files {

/// A file that appears under its name only when it is whole. Written under a temporary name in a folder of the same
/// file system; without a commit nothing stays behind.
class AtomicFile {
public:
    enum class Outcome { Done, NameTaken, Failed };

    AtomicFile() = default;
    ~AtomicFile();

    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Creates the temporary file. False when that fails; ErrorText says why, as it does for the other operations.
    /// \param permissions as of open(2): the process's mask takes some of them away
    bool Open(const QString& folder, unsigned permissions = 0666);

    /// False unless every byte was taken. What a large file has got is sent to the disk meanwhile, so that Sync has
    /// little left to wait for.
    bool Write(const char* data, qint64 size);

    /// Makes the content durable. To be called before the commit, which is then quick.
    bool Sync();

    /// Gives the file its name; what stood there is replaced in one step, and its permissions are kept.
    bool CommitReplacing(const QString& path);

    /// The same, if the version that is known still stands there; NameTaken otherwise. See Files::MoveReplacing.
    Outcome CommitReplacing(const QString& path, const FileIdentity& known);

    /// Gives the file the name of another, and that one the temporary name, in one step; permissions as above. What
    /// came out is the caller's from then on. See Files::Exchange.
    std::error_code CommitExchanging(const QString& path);

    /// Gives the file its name unless there is something of that name already.
    Outcome CommitNew(const QString& path);

    /// Of the committed file itself: somebody may have given its name to another file since.
    const FileIdentity& CommittedVersion() const;

    /// Of the file as it is now, before the commit.
    FileIdentity Version() const;

    /// Of the temporary file.
    QString Path() const;

    /// Of the open file, for Files::FlushFiles.
    int Descriptor() const;

    QString ErrorText() const;

    /// Makes a committed name durable; without effect where the system cannot do it.
    static void SyncFolderOf(const QString& path);

    /// A name for a file that is being written, unlike any other. Not hidden, it has no leading dot, which some servers
    /// refuse.
    static QString NewTemporaryName(bool isHidden = true);

    /// Whether a file of this name is one that is being written, or that a crash has left behind: whether it is exactly
    /// as one of those above. No document may have such a name.
    static bool IsTemporaryName(const QString& name);

private:
    bool Fail(int errorNumber);
    Outcome Commit(const std::function<std::error_code()>& move);

    /// Whether what has the temporary name is this file, and not what somebody else has put there.
    bool IsInPlace() const;
    void Close();

    QString temporaryPath;
    QFile file;
    FileIdentity committed;
    qint64 written = 0; ///< bytes
    qint64 sent = 0;    ///< bytes of those that are on their way to the disk
    QString error;
};

} // namespace Norlis::Files
