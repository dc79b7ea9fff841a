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
};

/// The documents of a folder: its regular files, without links and names that are unsafe on other systems.
///
/// A hidden sub-folder of its own holds the hashes of files that have not changed since, and uploads until they get
/// their names.
class FolderStore {
public:
    explicit FolderStore(const QString& folder);

    /// Fixes which folder it is: another one that appears in its place later, for instance when a drive is gone, is
    /// refused until this is called again. Returns the same as Validate.
    std::optional<QString> Open();

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

    /// MD5 of a document; empty when it is not known for this version of the file.
    QString KnownHash(const FolderDocument& document) const;

    /// To be called with the hash of a file that was read. That of a file which has only just been written is not
    /// remembered: it may be written again without getting another time stamp.
    void RememberHash(const QString& id, const Files::FileIdentity& version, const QString& md5Hash);

    /// To be called with the hash of a file that this service has put in place itself.
    void RememberOwnHash(const QString& id, const Files::FileIdentity& version, const QString& md5Hash);

    /// Saves the hashes if there are new ones, and forgets those of documents that are not among the given ones. In a
    /// folder that cannot be written to, they are not saved.
    void SaveHashes(const std::vector<FolderDocument>& documents);

    /// Folder for files that are being written; it need not exist.
    QString TemporaryFolder() const;

    /// Deletes what crashed uploads left behind a day ago or earlier.
    void RemoveLeftovers();

private:
    struct KnownVersion {
        QString version;
        QString md5Hash;
    };

    void LoadHashes();

    QString folder;
    QString identity;
    QHash<QString, QString> nameOfId;
    qint64 listedAt = 0;                 ///< modification time of the folder, in milliseconds, when its names were read
    bool isListOutdated = true;          ///< that time is so recent that a further change may not show
    QHash<QString, KnownVersion> hashes; ///< by id
    bool hasNewHashes = false;
};

} // namespace Norlis::Social
