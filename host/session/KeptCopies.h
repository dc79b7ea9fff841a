#pragma once

#include <host/store/SqliteCloudInfoStorage.h>

#include <QMultiHash>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>

namespace Norlis::Host {

/// The local copies that the list does not show, in the record store: those of documents that have gone from the list,
/// which may be for a moment only, and further copies of documents of which the list shows another one. Used on one
/// thread.
class KeptCopies {
public:
    /// Copies of documents that went a month ago are forgotten. Throws std::runtime_error when they cannot be read.
    explicit KeptCopies(const std::shared_ptr<SqliteCloudInfoStorage>& storage);

    /// Replaces what is known of the path.
    void Keep(const KeptCopy& copy);

    void Drop(const QString& path);
    void DropAllOf(const QString& document);

    // Whether the document of further copies is in the list.

    void NoteLost(const QString& document);
    void NoteFound(const QString& document);

    /// Null when nothing is known of the path. Valid until the next change, as that of the others.
    const KeptCopy* At(const QString& path) const;

    /// The copy of a document that is there; without one, the copy of a document that has gone and had this name and
    /// this content. Null when there is none.
    const KeptCopy* Of(const QString& document, const QString& name, const std::string& cloudHash) const;

    QStringList Paths() const;

private:
    void Insert(const KeptCopy& copy);
    void SetLostAt(const QString& document, qint64 lostAt);

    const std::shared_ptr<SqliteCloudInfoStorage> storage;
    std::map<QString, KeptCopy> copies; ///< by path
    QMultiHash<QString, QString> pathsById;
    QMultiHash<QString, QString> pathsByName;
};

} // namespace Norlis::Host
