#pragma once

#include "CloudFacts.h"
#include "KeptCopies.h"

#include <base/Lifetime.h>
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
/// each document. The list can be searched by index only; here documents are found by id, and so are their local
/// copies.
class DocumentIndex : public QObject {
public:
    using Record = std::shared_ptr<PDF::FileInfo>;
    using Size = PDF::FileInfo::PreviewSize;

    /// What is known of a document beside its record.
    struct Entry {
        std::optional<CloudFacts>
            facts;                  ///< none until the first refresh of a document that was restored from the store
        QString localPath;          ///< empty when there is no local copy
        unsigned shownPreviews = 0; ///< one bit per size

        /// Whether the list holds the preview of this content.
        bool Shows(Size size) const;
    };

    /// \param file where the records are kept
    /// Throws std::runtime_error, with a text for the user, when they cannot be read.
    DocumentIndex(const QString& file, const std::shared_ptr<LocalFileSystem>& fileSystem,
                  const std::shared_ptr<Md5HashCalculator>& hashes);

    /// Writes the list to disk. Throws std::runtime_error when it cannot be saved. Nothing but this may be called
    /// afterwards.
    void Close();

    /// For views; it is changed through the index only.
    PDF::AbstractFileManager& List();

    /// Null when there is no such document. Valid until the next change.
    const Entry* Find(const QString& id) const;

    /// A copy; null when there is no such document.
    Record RecordOf(const QString& id) const;

    QStringList Ids() const;

    /// Sizes of the documents of 4 GiB and more, in bytes, by id; of the local copy where there is one. The list tells
    /// them with a whole record only.
    QHash<QString, quint64> LargeSizes() const;

    /// Of all copies, kept ones included.
    QStringList LocalPaths() const;

    /// Empty when there is no local copy.
    QString LocalPath(const QString& id) const;

    /// The document in the list that a file is a copy of, whether or not the list shows that copy. Empty when there is
    /// none.
    /// \param path as NormalizePath gives it, as in the following
    QString DocumentAt(const QString& path) const;

    /// Whether a file is a copy of a document in the list, or of one that has gone from it lately.
    bool IsCopy(const QString& path) const;

    /// MD5 of the cloud copy when it was last the same as this copy of the document, which is empty when that is
    /// unknown; nothing when the file is no copy of it.
    std::optional<std::string> SyncHashAt(const QString& id, const QString& path) const;

    /// Whether there is a kept copy of the document.
    bool HasKeptCopy(const Record& record) const;

    /// Gives a record that has no local copy the kept one of its document, if there is one.
    bool AttachKeptCopy(const Record& record) const;

    /// Remembers a further copy of a document in the list, which shows another one.
    void KeepCopy(const QString& id, const QString& path, const std::string& syncHash);

    // Those that change the list emit as the last thing that they do, so the session may be gone afterwards.

    /// Puts a document into the list that is only in the cloud.
    void Add(const Record& record);

    /// Takes over what a files list says of a document, completed by what only the held record knows.
    /// \param hasSameContent as the held record; otherwise the list shows no preview of it yet
    void Update(const Record& record, bool hasSameContent);

    /// Puts a record in the place of the held one, or adds it. Unlike an update this carries the hash of the last
    /// synchronisation, and previews of other content do not stay. False when the session is gone.
    bool Replace(const Record& record);

    /// Has the list show this copy of the document, as it is now.
    void ShowCopy(const QString& id, const QString& path);

    /// Shows previews of a document.
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
    const KeptCopy* KeptCopyOf(const Record& record) const;
    void SetEntry(const QString& id, const Entry& entry);
    void TakeOut(const QString& id);

    /// Has the list look again at the transfers of a document and at its local copy, which is hashed off the event
    /// loop.
    void LookAgain(const QString& id);

    const std::shared_ptr<Md5HashCalculator> hashes;
    const std::shared_ptr<SqliteCloudInfoStorage> storage;
    KeptCopies copies;
    std::unique_ptr<PDF::Cloud::NorlisCloudFilesManager> list;
    QHash<QString, Entry> entries;          ///< of every document of the list
    QHash<QString, quint64> restoredSizes;  ///< large ones; of documents whose facts are not known yet
    QMultiHash<QString, QString> idsByPath; ///< of those with a local copy
    QHash<QString, int> transfers;
    Lifetime lifetime;
};

} // namespace Norlis::Host
