#pragma once

#include <files/FileReader.h>

#include <QHash>
#include <QString>

#include <optional>
#include <vector>

namespace Norlis::Social {

/// One document of a folder.
struct FolderDocument {
    QString id;
    QString name;
    QString path;
    Files::FileIdentity version;
    bool isSettled = false; ///< a write since that look shows in the version
};

/// The documents of a folder: its regular files, without links and names that are unsafe on other systems.
///
/// Its OwnFolder holds the hashes of files that have not changed since, and uploads until they get their names.
class FolderStore {
public:
    explicit FolderStore(const QString& folder);

    /// Fixes which folder it is: another one that appears in its place later, for instance when a drive is gone, is
    /// refused until this is called again. Returns the same as Validate. Finishes or undoes a change that was under way
    /// when a program was killed.
    std::optional<QString> Open();

    /// Undoes Open: the folder that was open before is open again, if there was one. Otherwise every folder is refused.
    void Close();

    /// The reason when the folder cannot be used.
    std::optional<QString> Validate() const;

    /// The documents, ordered by name. Nothing when the folder cannot be read.
    std::optional<std::vector<FolderDocument>> Documents();

    /// The document of an id as it is now.
    std::optional<FolderDocument> Find(const QString& id);

    QString PathOf(const QString& name) const;

    /// Size of all documents, in bytes, or of all but one.
    qint64 UsedBytes(const QString& exceptDocument = {});

    /// What the drive has left for the user, in bytes; 0 when that is unknown.
    qint64 FreeBytes() const;

    struct KnownHash {
        QString version;
        QString md5Hash;        ///< empty when it is not known for this version of the file
        bool isCertain = false; ///< see RememberHash
    };

    /// Of a document.
    KnownHash HashOf(const FolderDocument& document) const;

    /// To be called with the hash of a document that was read, or put in place.
    /// \param isCertain false when the file may have been written over since without getting another version
    void RememberHash(const QString& id, const Files::FileIdentity& version, const QString& md5Hash, bool isCertain);

    /// To be called when a hash has turned out to be wrong.
    void ForgetHash(const QString& id);

    /// Forgets the hashes of all other documents.
    void KeepHashesOf(const std::vector<FolderDocument>& documents);

    /// If there are new ones. In a folder that cannot be written to, they are not saved.
    void SaveHashes();

    const QString& Folder() const;

    /// Deletes what crashed uploads left behind a day ago or earlier.
    void RemoveLeftovers();

    /// Whether two files can change places in one step.
    bool CanExchange();

    /// Why the folder is not the one that was used before, though it has the same path: an unmounted drive leaves an
    /// empty one. Nothing when it is, or there was none.
    /// \param dataFolder on this computer, where is kept which one was used before; empty keeps nothing
    std::optional<QString> CompareWithMemory(const QString& dataFolder);

    /// What CompareWithMemory remembers; without it, the next folder is accepted, whichever it is.
    QString MemoryFile(const QString& dataFolder) const;

private:
    void LoadHashes();
    void FinishChange();
    FolderDocument DocumentOf(const QString& name) const;

    QString folder;
    QString identity;
    QString identityBefore; ///< the last Open
    QHash<QString, QString> nameOfId;
    qint64 listedAt = 0;              ///< modification time of the folder, in milliseconds, when its names were read
    bool isListOutdated = true;       ///< that time is so recent that a further change may not show
    QHash<QString, KnownHash> hashes; ///< by id
    bool hasNewHashes = false;
};

} // namespace Norlis::Social
