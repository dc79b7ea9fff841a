#pragma once

#include <contracts/Export.h>
#include <contracts/ioPath.h>

#include <QDateTime>
#include <QMetaType>
#include <QUrl>

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace Norlis::PDF {

/// One document: its local copy and, where the cloud knows it, its cloud part.
///
/// Records are shared by std::shared_ptr between the editor and the library and used on one thread only; nothing is
/// locked. Most getters are not const, as in the editor's own record, which this class stands in for.
class NORLIS_CONTRACTS_EXPORT FileInfo {
public:
    /// Sizes of preview images, ascending. The numbers are stored and must not change.
    enum class PreviewSize { Small = 0, Medium = 1, Large = 2 };

    /// How the local copy and the cloud copy relate. The editor reads it as a number.
    enum class CloudStatus {
        OnlyInCloud = 0,        ///< no local copy, or none that could be read
        InSync = 1,             ///< both copies have the same content
        ChangedLocally = 2,     ///< only the local copy changed since the last synchronisation
        ChangedInCloud = 3,     ///< only the cloud copy changed since the last synchronisation
        NoSuchDocument = 4,     ///< never a record's status: a list's answer for an index that it does not have
        NotUploaded = 5,        ///< no cloud part
        ChangedOnBothSides = 6, ///< the copies differ, and not by the change of one side alone
    };

    /// What the cloud knows of a document. A plain value.
    class NORLIS_CONTRACTS_EXPORT CloudInfo {
    public:
        /// \param id          the document's id in the cloud, UTF-8
        /// \param fileName    its name in the cloud, UTF-8
        /// \param size        bytes
        /// \param isPrivate   whether nobody else has access
        /// \param downloadUrl address for the user; may be empty
        /// \param createdAt   invalid when unknown
        /// \param modifyTime  invalid when unknown
        /// \param lifeTime    seconds for which the cloud keeps the document
        /// \param md5Hash     MD5 of the cloud copy as text; empty when the cloud gives none
        CloudInfo(const std::string& id, const std::string& fileName, quint64 size, bool isPrivate,
                  const QUrl& downloadUrl, const QDateTime& createdAt, const QDateTime& modifyTime, int lifeTime,
                  const std::string& md5Hash);

        /// \name What the constructor was given
        /// @{

        /// As the constructor was given it.
        std::string GetId() const;
        std::string GetFileName();
        quint64 GetSize() const;
        bool IsPrivate() const;
        QUrl GetDownloadUrl();
        QDateTime GetCreatedAt();
        QDateTime GetModifyTime();
        int GetLifeTime() const;
        std::string GetMd5Hash();

        /// @}

        /// Local files that hold the preview images, by size. These are stored, and shown by a list; those of the
        /// record itself are not.
        std::map<PreviewSize, ioPath> GetPreviewsSet();

        /// Replaces all of them. The files stay the caller's: none is deleted.
        void SetPreviewsSet(const std::map<PreviewSize, ioPath>& previews);

        /// Replaces that of one size.
        void SetPreviewPathBySize(const ioPath& path, PreviewSize size);

    private:
        friend NORLIS_CONTRACTS_EXPORT bool operator==(const CloudInfo& left, const CloudInfo& right);

        std::string id;
        std::string fileName;
        quint64 size;
        bool isPrivate;
        QUrl downloadUrl;
        QDateTime createdAt;
        QDateTime modifyTime;
        int lifeTime;
        std::string md5Hash;
        std::map<PreviewSize, ioPath> previews;
    };

    /// A document known from the cloud, with no local copy yet.
    FileInfo(const CloudInfo& cloudInfo);

    /// A document that exists only locally. Its id is empty until it is given a cloud part. Not for the list of cloud
    /// documents, which ends the program if such a record is in it at the end: upload the path instead, and add the
    /// record of AbstractCloudManager::UploadingFinished.
    FileInfo(const ioPath& path, const std::string& md5Hash);

    /// A copy shares nothing with the original.
    FileInfo(const FileInfo&) = default;

    /// As the copy constructor.
    FileInfo& operator=(const FileInfo&) = default;
    virtual ~FileInfo();

    /// The cloud id, UTF-8: the one of the first cloud part that the constructor or UpdateCloudInfo was given. It stays
    /// when the cloud part is taken away or replaced. Until there is one, the id of the cloud part that was set in
    /// place; empty without a cloud part.
    std::string GetId();

    /// The local copy; empty when there is none.
    ioPath GetPath();

    /// Sets the local copy and its hash, and reads its size from disk (0 when there is no such file). An empty path
    /// clears path, size and hash. The cloud hash of the last synchronisation stays.
    void SetPath(const ioPath& path, const std::string& md5Hash);

    /// As above, and sets the cloud hash of the last synchronisation.
    void SetPath(const ioPath& path, const std::string& md5Hash, const std::string& cloudHashBeforeChange);

    /// Size of the local copy in bytes, as of SetPath; 0 when none is known.
    quint64 GetSize() const;

    /// MD5 of the local copy as text, in the form in which IHashCalculator gives it; empty when unknown.
    std::string GetMd5Hash();

    /// MD5 of the cloud copy when the two copies were last the same.
    std::string GetCloudHashBeforeChange();

    /// A copy of the cloud part.
    std::optional<const CloudInfo> GetCloudInfo();

    /// The cloud part itself, to change it in place, to set it or to take it away.
    std::optional<CloudInfo>& GetRedactableCloudInfo();

    /// Replaces the cloud part by newer data. Previews of sizes that the newer data does not bring are kept. A record
    /// that has no id yet takes the cloud part's. True when anything changed.
    bool UpdateCloudInfo(const CloudInfo& newer);

    /// Derived from the hashes, the path and the cloud part at each call.
    CloudStatus GetCloudStatus();

    /// Whether a transfer of the document is running: what SetIsSyncingInProgress said last.
    bool IsSyncingInProgress() const;

    /// For the editor, which starts transfers and learns of their end. The library never sets it of its own accord:
    /// AbstractFileManager::Update copies it, and the copies that the closing signals of a download carry have it
    /// cleared.
    void SetIsSyncingInProgress(bool inProgress);

    /// Previews that belong to the record rather than to its cloud part: for an editor that makes its own, and lost at
    /// the end. The library puts its pictures into the cloud part, whose previews are stored, and shown by index.
    std::map<PreviewSize, ioPath> GetPreviewsSet();

    /// Replaces all of them. The files stay the caller's.
    void SetPreviewsSet(const std::map<PreviewSize, ioPath>& previews);

    /// "small", "medium" or "large"; empty for any other value.
    // NOLINTNEXTLINE(readability-identifier-naming): the name that the editor uses
    static std::string previewSizetoString(PreviewSize size);

private:
    std::string id;
    std::optional<CloudInfo> cloudInfo;
    ioPath path;
    quint64 size = 0;
    std::string md5Hash;
    std::string cloudHashBeforeChange;
    bool syncingInProgress = false;
    std::map<PreviewSize, ioPath> previews;
};

} // namespace Norlis::PDF

Q_DECLARE_METATYPE(std::shared_ptr<Norlis::PDF::FileInfo>)
Q_DECLARE_METATYPE(std::shared_ptr<const Norlis::PDF::FileInfo>)
Q_DECLARE_METATYPE(Norlis::PDF::FileInfo::PreviewSize)
