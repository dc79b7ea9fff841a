#pragma once

#include <contracts/OAuth2.h>

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QString>

#include <functional>
#include <optional>

namespace Norlis::Social {

/// Remembers a version of each of the copies that documents have on this computer, by document and local path.
///
/// Kept in a file of lines, each a JSON array (RFC 8259): id, local path, version, MD5; only id and path where a copy
/// is forgotten. What two programs add to it at once they both see. A line that cannot be read is ignored.
class VersionMemory {
public:
    struct Version {
        QString version; ///< text of its user's own, who compares it
        QString md5Hash; ///< of the copy when it was made; empty when unknown
    };

    /// \param file kept between runs; empty remembers for the lifetime of this object
    explicit VersionMemory(const QString& file);

    /// Nothing for a copy that this memory has not seen.
    std::optional<Version> Find(const QString& document, const QString& localPath);

    /// Reads what another program has added. Find and what changes the memory do so by themselves.
    void Refresh();

    /// The MD5 of a version of which there is or was a copy, as of the last refresh; empty when there is none.
    /// \param isSame whether a remembered version is the one
    QString HashOf(const QString& document, const std::function<bool(const QString& version)>& isSame) const;

    /// Of another copy of the same version, but with another MD5, the MD5 is forgotten: the service does not see the
    /// difference, and the copy may be older.
    void Remember(const QString& document, const QString& localPath, const Version& version);

    /// The copy has another path now. Without effect when there is none.
    void Move(const QString& document, const QString& from, const QString& to);

    /// The documents whose names begin so.
    QStringList DocumentsBeginningWith(const QString& prefix);

    /// Of a document that is no longer in the cloud.
    void Forget(const QString& document);

private:
    using Copies = QHash<QString, Version>; ///< by local path

    bool OpenCurrent();
    void Apply(const QByteArray& line);
    void Set(const QString& document, const QString& localPath, const std::optional<Version>& version);

    /// As Remember. Like Change, it gives the lines that are to be appended.
    QByteArray Note(const QString& document, const QString& key, const Version& version);
    QByteArray Change(const QString& document, const QString& key, const std::optional<Version>& version);
    void Append(const QByteArray& changes);

    /// Writes the file anew when most of its lines are outdated.
    void Compact();

    const QString path;
    QFile file;          ///< open while it is the one at the path
    qint64 position = 0; ///< up to which it was read
    QHash<QString, Copies> copiesOf;
    int copies = 0; ///< of all documents
    int lines = 0;  ///< that were read
};

/// Where a memory of a service and its user is; empty without a data folder.
/// \param what it remembers, as the name begins
QString MemoryFile(const QString& what, const OAuth2::AuthInfo& authInfo);

} // namespace Norlis::Social
