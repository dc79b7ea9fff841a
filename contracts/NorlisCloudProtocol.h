#pragma once

#include <contracts/Ability.h>
#include <contracts/IFailureSource.h>
#include <contracts/NorlisCloudSharingResult.h>
#include <contracts/OAuth2.h>

#include <QList>
#include <QObject>
#include <QPair>

#include <memory>
#include <string>

namespace Norlis::Social {

/// The cloud service's protocol object.
///
/// Belongs to the thread that constructs it, which must run an event loop: all operations are called there and all
/// callbacks arrive there, each from the event loop, never from inside an operation. Disk, network and rendering work
/// happens elsewhere. Destroying the object drops all requests without a callback.
///
/// Previews need a QGuiApplication, since they are delivered as QPixmap.
class NORLIS_SOCIAL_EXPORT NorlisCloudProtocol
    : public QObject,
      public Protocol<Ability::Auth, Ability::File<NorlisCloudSharingResult>, Ability::Quota, Ability::Preview>,
      public PDF::Cloud::IFailureSource {
public:
    // NOLINTBEGIN(readability-identifier-naming): the names that callers of the protocol use
    /// Keys of request fields. The contracts' own library has them: another protocol needs nothing else of this one.
    static const QString ID;                  ///< id of a document
    static const QString FILE_NAME;           ///< local path that a download is written to
    static const QString FILE_SIZE;           ///< bytes, decimal
    static const QString MD5_HASH;            ///< MD5 of the local file, hexadecimal; empty when it is not known yet
    static const QString FILE_MIME_TYPE;      ///< media type of a document
    static const QString CHUNK_MIME_TYPE;     ///< media type of one piece of it
    static const QString SSO_TOKEN;           ///< token that proves the user's identity
    static const QString APP_ID_ON_CLOUD;     ///< application that asks; also its key in the quota
    static const QString API_VERSION;         ///< version of the service's interface
    static const QString FILE_PREVIEW_WIDTH;  ///< pixels, decimal
    static const QString FILE_PREVIEW_HEIGHT; ///< pixels, decimal
    static const QString FILE_PREVIEW_PAGE;   ///< number of the page, decimal, from 1; page one without it
    // NOLINTEND(readability-identifier-naming)

    /// In place of a figure of the quota.
    static constexpr qint64 unknownQuota = -1;   ///< the service does not tell
    static constexpr qint64 unlimitedQuota = -2; ///< the total of a service that sets no limit

    /// What a service is able to do: names of capabilities and what was found of each, in the order in which they are
    /// shown.
    using ServiceCapabilities = QList<QPair<QString, QString>>;

    /// \param authInfo which service, and how to reach it
    /// \param name     name of the program that uses the service, for logs and for the service's own list of devices
    /// Throws std::invalid_argument when the service URL names no service that there is.
    NorlisCloudProtocol(const OAuth2::AuthInfo& authInfo, const std::string& name, QObject* parent = nullptr);
    ~NorlisCloudProtocol() override;

    /// \name As described with the abilities
    /// @{

    /// As Ability.h says.
    qint64 auth(const QMap<QString, QString>& fields, std::function<void(qint64, RequestResult)>&& done) override;
    void logout() override;
    bool loggedIn() override;
    qint64 userName(std::function<void(qint64, RequestResult, QString)>&& done) override;
    qint64 userProfile(std::function<void(qint64, RequestResult, QUrl)>&& done) override;
    qint64 userPic(std::function<void(qint64, RequestResult, QString)>&& done) override;
    qint64 userPic(std::function<void(qint64, RequestResult, QPixmap)>&& done) override;

    qint64 retriveFileInfo(const File::FileFieldData& data,
                           std::function<void(qint64, RequestResult, File::FileInfo)>&& done) override;
    qint64 retriveFileList(const File::FileFieldData& data,
                           std::function<void(qint64, RequestResult, QList<File::FileInfo>)>&& done) override;

    /// A file at the target that is not the copy which was delivered there, unchanged, is left alone, and -1 returned;
    /// see OAuth2::ReplaceableFiles.
    qint64 downloadFile(const File::FileFieldData& data, std::function<void(qint64, RequestResult)>&& done,
                        std::function<void(qint64, int)>&& progress) override;

    /// As Ability.h says. An empty id names nothing: the request fails, and no observer is told. This is how a cloud
    /// manager clears up after an upload that has left nothing.
    qint64 deleteFile(const File::FileFieldData& data, std::function<void(qint64, RequestResult)>&& done) override;

    /// The new document is named as the local file; a name that is taken gets a number, as in "report (2).pdf".
    qint64 uploadFile(const QString& localPath, const QMap<QString, QString>& fields,
                      std::function<void(qint64, RequestResult, const NorlisCloudSharingResult&)>&& done,
                      std::function<void(qint64, int)>&& progress) override;

    /// One entry, keyed "pdf". Unit: MiB of 1,048,576 bytes, so that the figures also fit into the 32 bits that the
    /// cloud manager passes on; used storage is rounded up, the total down. In place of a figure that the service does
    /// not tell stands unknownQuota, in place of the total of a service without a limit unlimitedQuota; both are
    /// negative.
    qint64 userQuota(std::function<void(qint64, RequestResult, const QMap<QString, QuotaValue>&)>&& done) override;

    /// As Ability.h says, of the page that FILE_PREVIEW_PAGE names. Pages after the first one are never those of the
    /// service: the document is fetched as far as they need it, and drawn here. They are not kept.
    qint64 retrievePreview(const QMap<QString, QString>& fields,
                           std::function<void(qint64, RequestResult, QPixmap)>&& done) override;

    void cancelOperation(qint64 id) override;

    /// @}

    /// Of the addresses that AuthInfo may have.
    // NOLINTNEXTLINE(readability-identifier-naming): named like the operations of the abilities
    static QStringList serviceSchemes();

    /// The first one is `onFailure` of AuthInfo.
    void SetFailureObserver(FailureObserver observer) override;

    /// Finds out what the service is able to do, by requests that leave nothing behind. What was found names neither
    /// the user nor documents nor the server's address, so that it can be shown to others.
    // NOLINTNEXTLINE(readability-identifier-naming)
    qint64 probeService(std::function<void(qint64, RequestResult, const ServiceCapabilities&)>&& done);

    /// Waits until documents may have changed since this call, whoever changes them. Ends in Success then, once for
    /// what changes together. Ends in Error, of which no observer is told, where the service does not tell of
    /// changes by itself: then only a new list shows them.
    // NOLINTNEXTLINE(readability-identifier-naming)
    qint64 awaitChange(std::function<void(qint64, RequestResult)>&& done);

    /// A page of a PDF file on this computer, drawn as retrievePreview draws those of documents, and how many pages the
    /// file has. Nobody has to be signed in.
    /// \param page from 1
    /// \param box  in pixels; the picture fits into it without being distorted
    // NOLINTNEXTLINE(readability-identifier-naming)
    qint64 previewLocalFile(const QString& localPath, int page, const QSize& box,
                            std::function<void(qint64, RequestResult, QPixmap, int pageCount)>&& done);

    /// \name Copies on this computer
    /// The object remembers which version of a document it delivered to a local path, or took from it: what an upload
    /// of that path replaces, it must not replace something newer. These report what it cannot see. Without effect
    /// while nobody is signed in.
    /// @{

    /// The copy of a document was moved to another path.
    // NOLINTNEXTLINE(readability-identifier-naming)
    void copyMoved(const QString& id, const QString& fromPath, const QString& toPath);

    /// The copy at the path may replace the version of a document that was listed last: the user has seen that one, or
    /// the copy is the same.
    /// \param md5Hash of the version that is meant: without effect when another one has been listed since. Empty for
    ///                whichever it is
    // NOLINTNEXTLINE(readability-identifier-naming)
    void acceptListedVersion(const QString& id, const QString& localPath, const QString& md5Hash = {});

    /// @}

    /// Whether the list that retriveFileList delivered last may lack documents: the server described something in a way
    /// that cannot be read. Then nothing follows from what is missing.
    // NOLINTNEXTLINE(readability-identifier-naming)
    bool mayListLackDocuments() const;

private:
    class Q_DECL_HIDDEN Private;
    std::shared_ptr<Private> d;
};

} // namespace Norlis::Social
