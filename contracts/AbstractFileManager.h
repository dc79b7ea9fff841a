#pragma once

#include <contracts/Export.h>
#include <contracts/FileInfo.h>

#include <QDateTime>
#include <QImage>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <string>

namespace Norlis::PDF {

/// A list of documents. The editor's views read it by index and learn from its signals what changed.
///
/// Belongs to the thread that constructs it; signals are emitted from inside the operation that causes them. The order
/// of the virtual operations is part of the binary interface.
class NORLIS_CONTRACTS_EXPORT AbstractFileManager : public QObject {
    Q_OBJECT

public:
    AbstractFileManager();
    ~AbstractFileManager() override;

    /// Offers a loader for images that a view asks for by name.
    virtual void SetImageGetCallback(const std::function<QImage(const QString&)>& callback) = 0;

    /// The id of the first document whose local copy is at the path; empty when there is none. For the empty path, that
    /// of the first document without a local copy.
    virtual std::string GetIdByPath(const ioPath& path) const = 0;

    /// Puts a record, which stays shared with the caller, at the front. Does not look for another one of the same id.
    /// Throws std::exception for a null record.
    virtual void Add(const std::shared_ptr<FileInfo>& file) = 0;

    /// Takes out the first record of the same id. Throws std::exception for a null record.
    virtual void Remove(const std::shared_ptr<FileInfo>& file) = 0;

    /// Renames documents. Lists that cannot rename ignore it.
    virtual void Rename(const QStringList& ids, const QString& name) = 0;

    /// Forgets all documents. Lists that mirror something else ignore it.
    virtual void Clear() = 0;

    /// Merges newer content into the first record of the same id. Taken over are the cloud part (previews of sizes that
    /// it does not bring stay), the local path (an empty one takes the local copy away), whether a transfer is running,
    /// and FileInfo::GetPreviewsSet unless that is empty. The hash of the local copy is calculated, whatever the newer
    /// record says: this is how the list learns that the file was saved. The cloud hash of the last synchronisation
    /// stays. A null record or an unknown id is ignored; a known one without a cloud part throws
    /// std::bad_optional_access.
    virtual void Update(const std::shared_ptr<const FileInfo>& file) = 0;

    /// How many documents there are; indexes run from 0 to one less.
    virtual int FilesCount() const = 0;

    /// The maximum number of documents in the list; 0 for no limit.
    virtual int Limit() const = 0;

    /// An independent copy of the first record of the id; null when there is none.
    virtual std::shared_ptr<FileInfo> GetFileInfo(const QString& id) const = 0;

    // An index that the list does not have gives the empty value of the type, and 4 as the state.

    /// Name of the cloud copy; empty without one.
    virtual QString GetDocumentName(int index) const = 0;

    /// File URLs of the preview images, by the name of their size.
    virtual QMap<QString, QVariant> GetPreviewsSet(int index) const = 0;

    /// FileInfo::GetId as text.
    virtual QString GetDocumentId(int index) const = 0;

    /// Path of the local copy; empty when there is none.
    virtual QString GetDocumentPath(int index) const = 0;

    /// When the cloud copy was changed; invalid when unknown.
    virtual QDateTime GetModifiedDateTime(int index) const = 0;

    /// FileInfo::CloudStatus as a number.
    virtual int GetDocumentState(int index) const = 0;

    /// Bytes, of the local copy or else of the cloud copy; the low 32 bits of the count.
    virtual int GetFileSize(int index) const = 0;

Q_SIGNALS:
    // The editor connects to these overloads: clazy:excludeall=overloaded-signal
    /// Follows the signal below.
    void FileAdded();

    /// The record itself, which is at index 0 already.
    void FileAdded(const std::shared_ptr<FileInfo>& file);

    /// Follows the signal below.
    void FileRemoved();

    /// What Remove was given; its document is gone from the list already, and its index with it.
    void FileRemoved(const std::shared_ptr<const FileInfo>& file);

    /// Follows the signal below, unless a slot of that took the record out.
    void FileUpdated(int index);

    /// The record of this id was merged with newer content, which need not have changed anything. The parameter's type
    /// is registered, so queued connections and QSignalSpy work; a program that reads it from a QVariant declares it
    /// with Q_DECLARE_METATYPE(std::string) in its own code.
    void FileUpdated(const std::string& id);
};

} // namespace Norlis::PDF
