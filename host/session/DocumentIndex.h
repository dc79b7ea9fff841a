#pragma once

#include "CloudFacts.h"
#include "CopiesLeft.h"
#include "KeptCopies.h"
#include "ListHashes.h"
#include "PictureFolder.h"

#include <base/Lifetime.h>
#include <host/store/ListStorage.h>
#include <host/store/LocalFileSystem.h>
#include <host/store/Md5HashCalculator.h>
#include <host/store/SqliteCloudInfoStorage.h>

#include <NorlisCloud/NorlisCloudFilesManager.h>

#include <QHash>
#include <QMultiHash>
#include <QObject>
#include <QStringList>

#include <map>
#include <memory>
#include <optional>

namespace Norlis::Host {

/// The documents of a session: the file list with its store, which nobody else changes, and what else must be known of
/// each document. The list finds a document by going through all that stand before it; here documents are found by id,
/// and so are their local copies, and the list is gone through only for what has changed.
class DocumentIndex : public QObject {
public:
    using Record = std::shared_ptr<PDF::FileInfo>;
    using Size = PDF::FileInfo::PreviewSize;

    /// What is known of a document without its record.
    struct Entry {
        CloudFacts facts;            ///< those of the last run until there is a list
        QString localPath;           ///< empty when there is no local copy
        std::string localHash;       ///< MD5 of the local copy, as the list has it
        std::string syncHash;        ///< see SyncHashAt
        unsigned storedPreviews = 0; ///< those of this content on disk; one bit per size
        unsigned shownPreviews = 0;  ///< those of them that the list shows
        Record record;               ///< the list's own, if the index has put it there

        bool HasStored(Size size) const;
        bool Shows(Size size) const;
    };

    /// \param file     where the records are kept
    /// \param pictures must outlive this
    /// Throws std::runtime_error, with a text for the user, when they cannot be read.
    DocumentIndex(const QString& file, const PictureFolder& pictures,
                  const std::shared_ptr<LocalFileSystem>& fileSystem, const std::shared_ptr<Md5HashCalculator>& hashes);

    /// Writes the list to disk. Throws std::runtime_error when it cannot be saved. Nothing but this may be called
    /// afterwards.
    void Close();

    /// The copies of documents that have left the list.
    CopiesLeft& Left();

    /// For views; it is changed through the index only.
    PDF::AbstractFileManager& List();

    /// Null when there is no such document. Valid until the next change.
    const Entry* Find(const QString& id) const;

    /// A copy, with the hash that was learnt; null when there is no such document.
    Record RecordOf(const QString& id) const;

    int Count() const;
    QStringList Ids() const;

    /// Sizes of all documents in the cloud, in bytes, by id. The list tells them with a whole record only.
    QHash<QString, quint64> CloudSizes() const;

    /// Of all copies, kept ones included.
    QStringList LocalPaths() const;

    /// Empty when there is no local copy.
    QString LocalPath(const QString& id) const;

    /// The document in the list that a file is a copy of, whether or not the list shows that copy. Empty when there is
    /// none.
    /// \param path as NormalizePath gives it, as in the following
    QString DocumentAt(const QString& path) const;

    /// A document of that name in the list; empty when there is none. Goes through all.
    QString DocumentNamed(const QString& name) const;

    /// Whether a file is a copy of a document in the list, or of one that has gone from it lately.
    bool IsCopy(const QString& path) const;

    /// MD5 of the cloud copy when it was last the same as this copy of the document, which is empty when that is
    /// unknown; nothing when the file is no copy of it.
    std::optional<std::string> SyncHashAt(const QString& id, const QString& path) const;

    /// Whether there is a kept copy of the document.
    bool HasKeptCopy(const Record& record) const;

    /// Whether the list has to look at the local copy of a document again: the file has changed, or it is found to be
    /// the cloud copy.
    /// \param copyHash of the file now
    static bool IsCopyOutdated(const Entry& document, const std::string& copyHash);

    /// Gives a record that has no local copy the kept one of its document, if there is one.
    bool AttachKeptCopy(const Record& record) const;

    /// Remembers a further copy of a document in the list, which shows another one. Emits, if the file was the copy of
    /// another document: false when the session is gone.
    bool KeepCopy(const QString& id, const QString& path, const std::string& syncHash);

    /// Takes over the MD5 of a cloud copy that has become known. The list has it from the next start on.
    void LearnHash(const QString& id, const std::string& hash);

    /// A record for requests, that knows only what the cloud tells; null when there is no such document.
    Record CloudRecordOf(const QString& id) const;

    /// That a preview of the document as it is now has come to disk.
    void NoteStored(const QString& id, Size size);

    /// Deletes a preview that is not that of the document as it is now.
    void DropPreview(const QString& id, Size size);

    // A file is the copy of one document, the one that took or gave it last: with its copy gone, another one is only in
    // the cloud.

    // Those that change the list emit as the last thing that they do, so the session may be gone afterwards.

    /// Puts a document into the list that is only in the cloud.
    void Add(const Record& record);

    /// Takes over what a files list says of a document, completed by what only the held record knows.
    /// \param isSameVersion as the held record; otherwise there is no preview of it yet
    /// \param copyHash      of the record's local copy now
    void Update(const Record& record, bool isSameVersion, const std::string& copyHash);

    /// Puts a record in the place of the held one, or adds it. Unlike an update this carries the hash of the last
    /// synchronisation, and previews of other content do not stay. False when the session is gone.
    bool Replace(const Record& record);

    /// Forgets the local copy that the list shows of a document. The file stays.
    void ForgetCopy(const QString& id);

    /// Has the list show this copy of the document, as it is now.
    void ShowCopy(const QString& id, const QString& path);

    /// Shows previews of a document that are on disk.
    /// \param record what RecordOf gave
    void ShowPreviews(const Record& record, const std::map<Size, ioPath>& previews);

    /// Takes a document out of the list, if it is there, and deletes its previews. Its copies are forgotten.
    void Remove(const QString& id);

    /// As Remove, for a document that may come back: its copies are kept until then.
    void Lose(const QString& id);

    /// Deletes the previews of a document that is not in the list. Emits nothing.
    void Forget(const QString& id);

    // The running transfers of a document are counted; the list shows from the event loop whether there are any.

    void BeginTransfer(const QString& id);
    void EndTransfer(const QString& id);
    bool IsTransferring(const QString& id) const;

private:
    static Entry EntryOf(const Record& record);

    /// The path of a picture as the list stores it, among those of this document and no others.
    QString StoredPath(const QString& id, Size size) const;
    unsigned PicturesIn(const std::string& stored, const QString& id) const;
    const KeptCopy* KeptCopyOf(const Record& record) const;
    void SetEntry(const QString& id, const Entry& entry);
    bool TakeFromOthers(const QString& id, const QString& path);
    void TakeOut(const QString& id);

    /// Has the list take over what the record says. Emits.
    void UpdateList(const Record& record);

    /// Deletes the previews of a document's old content.
    void DropPreviews(const QString& id, Entry& entry);

    /// Writes what the list does not know of the documents that have changed.
    void StoreTheRest();

    /// Has the list look again at the transfers of a document and at its local copy, which is hashed off the event
    /// loop.
    void LookAgain(const QString& id);

    const PictureFolder& pictures;
    const std::shared_ptr<Md5HashCalculator> hashes;
    const std::shared_ptr<SqliteCloudInfoStorage> storage;
    const std::shared_ptr<ListStorage> listStorage;
    const std::shared_ptr<ListHashes> listHashes;
    KeptCopies copies;
    CopiesLeft copiesLeft;
    std::unique_ptr<PDF::Cloud::NorlisCloudFilesManager> list;
    QHash<QString, Entry> entries;          ///< of every document of the list
    QMultiHash<QString, QString> idsByPath; ///< of those with a local copy; two only while one takes it from another
    QMultiHash<QString, QString> missingCopies; ///< ids by path, of copies that were not there at the start
    QHash<QString, int> transfers;
    Lifetime lifetime;
};

} // namespace Norlis::Host
