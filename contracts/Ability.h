#pragma once

#include <contracts/Export.h>
#include <contracts/RequestResult.h>

#include <QList>
#include <QMap>
#include <QPixmap>
#include <QString>
#include <QUrl>

#include <functional>

/// What a cloud service can do, one class per ability.
///
/// Every request returns its operation id at once and calls its completion callback later: exactly once, with that id,
/// on the thread of the event loop, and only after the request operation has returned. The id -1 means that the request
/// was not started: no callback follows. None follows cancelOperation or the end of the protocol object either.
///
/// The order of the virtual operations is part of the binary interface.
namespace Norlis::Social::Ability {

// NOLINTBEGIN(readability-identifier-naming): the names that the service's protocol uses

/// What all abilities share: their requests can be cancelled.
class NORLIS_CONTRACTS_EXPORT Cancel {
public:
    virtual ~Cancel() = default;

    /// Cancels a running request of any ability, whose callbacks are not called any more. An id that is not running is
    /// ignored.
    virtual void cancelOperation(qint64 id) = 0;
};

/// Signing in and out, and who is signed in.
class NORLIS_CONTRACTS_EXPORT Auth : public virtual Cancel {
public:
    /// Signs in. Fields: API_VERSION, SSO_TOKEN, APP_ID_ON_CLOUD of NorlisCloudProtocol.
    virtual qint64 auth(const QMap<QString, QString>& fields, std::function<void(qint64, RequestResult)>&& done) = 0;

    /// Forgets the sign-in; takes effect at once.
    virtual void logout() = 0;

    /// Whether a sign-in succeeded and neither logout nor the service has ended it.
    virtual bool loggedIn() = 0;

    /// The user's name, for display.
    virtual qint64 userName(std::function<void(qint64, RequestResult, QString)>&& done) = 0;

    /// The address of the user's page at the service.
    virtual qint64 userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done) = 0;

    /// The user's picture: its address.
    virtual qint64 userPic(std::function<void(qint64, RequestResult, QString)>&& done) = 0;

    /// The user's picture itself.
    virtual qint64 userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done) = 0;
};

/// Documents: listed, fetched, sent and deleted.
/// \tparam SharingResult what the service reports of a finished upload
template <typename SharingResult>
class NORLIS_CONTRACTS_EXPORT File : public virtual Cancel {
public:
    /// Parameters of a file request, keyed by the constants of NorlisCloudProtocol.
    struct FileFieldData {
        QMap<QString, QString> fields = {}; ///< those that the request names
        QMap<QString, QString> extra = {};  ///< for services that take more; ours do not
    };

    /// One entry of the cloud's files list.
    struct FileInfo {
        QString id = {};         ///< opaque; a single path segment
        QString name = {};       ///< a single path segment
        qint64 size = 0;         ///< bytes
        bool isFolder = false;   ///< our services list documents only
        bool isShared = false;   ///< others have access
        QString mimeType = {};   ///< media type (RFC 6838); empty when unknown
        QString md5Hash = {};    ///< MD5 (RFC 1321) of the content, hexadecimal. Where the service does not know it,
                                 ///< "version:" and a text that is another one when the content is; or empty
        QString createdAt = {};  ///< ISO 8601; empty when unknown
        QString modifiedAt = {}; ///< ISO 8601; empty when unknown
    };

    /// Called with how much of a transfer is done: 0 to 100 percent, never less than before.
    using ProgressCallback = std::function<void(qint64 id, int percent)>;

    /// Fetches the entry of one document. Field: ID.
    virtual qint64 retriveFileInfo(const FileFieldData& data,
                                   std::function<void(qint64, RequestResult, FileInfo)>&& done) = 0;

    /// Fetches all entries.
    virtual qint64 retriveFileList(const FileFieldData& data,
                                   std::function<void(qint64, RequestResult, QList<FileInfo>)>&& done) = 0;

    /// Fetches a document. Fields: ID; FILE_NAME, the local file to write; FILE_SIZE, the expected size in bytes.
    virtual qint64 downloadFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done,
                                ProgressCallback&& progress) = 0;

    /// Deletes a document. Field: ID.
    virtual qint64 deleteFile(const FileFieldData& data, std::function<void(qint64, RequestResult)>&& done) = 0;

    /// Sends a local file. Fields: FILE_MIME_TYPE, CHUNK_MIME_TYPE, MD5_HASH; with ID the document of that id is
    /// replaced, without it a new one is created.
    virtual qint64 uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                              std::function<void(qint64, RequestResult, const SharingResult&)>&& done,
                              ProgressCallback&& progress) = 0;
};

/// Storage in use.
class NORLIS_CONTRACTS_EXPORT Quota : public virtual Cancel {
public:
    /// Storage of one application; the unit is the protocol's, and so is the meaning of negative figures: see
    /// NorlisCloudProtocol::userQuota.
    struct QuotaValue {
        qint64 used = 0;  ///< taken by documents
        qint64 total = 0; ///< the most that they may take
    };

    ~Quota() override = default;

    /// Fetches the user's storage, by application.
    virtual qint64 userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done) = 0;
};

/// Pictures of documents.
class NORLIS_CONTRACTS_EXPORT Preview : public virtual Cancel {
public:
    ~Preview() override = default;

    /// Fetches a picture of a document. Fields: ID; FILE_PREVIEW_WIDTH and FILE_PREVIEW_HEIGHT, in pixels, of the box
    /// that the picture is scaled to fit into, keeping its proportions.
    virtual qint64 retrievePreview(const QMap<QString, QString>& fields,
                                   std::function<void(qint64, RequestResult, QPixmap)>&& done) = 0;
};

// NOLINTEND(readability-identifier-naming)

} // namespace Norlis::Social::Ability

namespace Norlis::Social {

/// A service as the set of its abilities.
template <typename... Abilities>
class NORLIS_CONTRACTS_EXPORT Protocol : public Abilities... {
};

} // namespace Norlis::Social
