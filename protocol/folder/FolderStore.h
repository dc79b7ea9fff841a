#pragma once

#include <files/FileReader.h>

#include <QDateTime>
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

/// The documents of a folder: its regular files. Links, sub-folders and names that are unsafe elsewhere are no
/// documents.
///
/// Keeps, in a sub-folder of its own, what cannot be told by looking: the hashes of files that have not changed since.
/// There uploads are written too before they get their names.
class FolderStore {
public:
    explicit FolderStore(const QString& folder);

    /// Fixes which folder it is: another one that appears in its place later, for instance when a drive is gone, is
    /// refused until this is called again. Returns as WhyUnusable.
    QString Open();

    /// Why the folder cannot be used; empty when it can.
    QString WhyUnusable() const;

    /// The documents, ordered by name. Nothing when the folder cannot be read.
    std::optional<std::vector<FolderDocument>> Documents();

    /// The document of an id as it is now.
    std::optional<FolderDocument> Find(const QString& id);

    QString PathOf(const QString& name) const;

    /// Room that the drive leaves the user, in bytes; 0 when it cannot be told.
    qint64 FreeBytes() const;

    /// MD5 of a document; empty when it is not known for this version of the file.
    QString KnownHash(const FolderDocument& document) const;

    /// To be called with the hash of a file that was read. One that has only just been written is not remembered: it
    /// may be written again without getting another time stamp.
    void RememberHash(const QString& id, const Files::FileIdentity& version, const QString& md5Hash);

    /// To be called with the hash of a file that this service has put in place itself.
    void RememberOwnHash(const QString& id, const Files::FileIdentity& version, const QString& md5Hash);

    /// Writes the hashes down if there are new ones, and forgets those of documents that are not among the given ones.
    /// A folder that cannot be written just does without.
    void SaveHashes(const std::vector<FolderDocument>& documents);

    /// Folder for files that are being written; created when missing.
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
    qint64 listedAt = 0;                 ///< the folder's time, in milliseconds, when its names were read
    bool isListOutdated = true;          ///< that time is too new to show further changes
    QHash<QString, KnownVersion> hashes; ///< by id
    bool hasNewHashes = false;
};

} // namespace Norlis::Social
