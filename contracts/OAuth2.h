#pragma once

#include <QString>
#include <QUrl>

#include <functional>

namespace Norlis::Social::OAuth2 {

/// Why a request failed, in words for a person. Texts never hold a token or a password.
struct Failure {
    qint64 operation = -1; ///< id of the request that failed
    QString what;          ///< what was tried, for instance "Upload"
    QString document;      ///< name of the document concerned; empty when there is none
    QString reason;        ///< what the service or the system said
    QString advice;        ///< what the user can do; empty when there is nothing to say
};

/// Settings with which a NorlisCloudProtocol is constructed.
struct AuthInfo {
    /// Where the cloud is: `file:` names a folder.
    QUrl serviceUrl;

    /// Folder in which previews are kept, also between runs, up to a bound; created when missing. Empty keeps none.
    QString cacheFolder = {};

    /// Upper limit, in bytes, of what the documents of a folder service may take together; 0 leaves it to the disk.
    qint64 storageLimit = 0;

    /// Told why a request failed, on the thread of the protocol object and just before the request's own callback.
    std::function<void(const Failure&)> onFailure = {};
};

} // namespace Norlis::Social::OAuth2
