#pragma once

#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <functional>

namespace Norlis::Social::OAuth2 {

/// What a program can do about a failure, beside showing it.
enum class FailureKind {
    Other,
    Conflict,    ///< what was to be replaced or removed is not the version that was seen: the user has to choose
    NameTaken,   ///< another file stands where a download was to go
    Unavailable, ///< the service cannot be reached at the moment: the same request may succeed later
    NotSignedIn, ///< nobody is signed in, or the service does not accept the token
};

/// Why a request failed, in words for the user. The texts never hold a token or a password.
struct Failure {
    qint64 operation = -1;                 ///< id of the request that failed; -1 when it was not started
    QString what;                          ///< what was tried, for instance "Upload"
    QString document;                      ///< name of the document concerned; empty when there is none
    QString reason;                        ///< why, in plain words, or what the service said
    QString advice;                        ///< what the user can do; empty when there is nothing to say
    FailureKind kind = FailureKind::Other; ///< for programs
    QString details = {};                  ///< for experts: what a library below said (libcurl, OpenSSL); may be empty
};

/// A file on this computer of which a transfer has seen every byte.
struct TransferredFile {
    qint64 operation = -1; ///< id of the upload or download
    QString localPath;     ///< as the request named it
    QString md5Hash;       ///< of the bytes that were sent, or have arrived; hexadecimal

    /// Which file had these bytes: what stat(2) tells of its device, inode, size, modification time and time of the
    /// last change, as five hexadecimal numbers with hyphens between them; times in nanoseconds since 1970.
    QString identity;

    /// Whether every later write gives the file another identity. If not, it was written so lately that one may be
    /// hidden by the grain of the file system's clock.
    bool isLasting = false;
};

/// Which files a download may replace; at any other at its target, -1 is returned.
enum class ReplaceableFiles {
    /// One that the protocol object has delivered there, or sent from there, as that document, and that nobody has
    /// changed since. Without a `dataFolder` it knows of those of its own lifetime.
    OwnCopies,
    All,     ///< whichever it is
    Nothing, ///< for a program that looks after its files itself
};

/// Settings with which a NorlisCloudProtocol is constructed.
struct AuthInfo {
    /// Where the cloud is: `file:` names a folder, `https:` a collection of a WebDAV server (RFC 4918). Plain `http:`
    /// is accepted on loopback only. With a user name in it the token is the password, sent as the server asks (RFC
    /// 7616, 7617); without one it is sent as a bearer token (RFC 6750). A password in it is ignored.
    QUrl serviceUrl;

    /// Folder in which previews are kept, also between runs, up to a limit; created when missing. Empty keeps none.
    QString cacheFolder = {};

    /// Most bytes that the documents of a folder service may take together; 0 for whatever fits on the disk.
    qint64 storageLimit = 0;

    /// Who signs in; when empty, the user in the service URL.
    QString userName = {};

    /// PEM file with the certificate authorities to trust, instead of those of the system.
    QString certificateFile = {};

    /// Sends token and documents unencrypted over the network if the service URL says `http:`.
    bool allowPlainHttp = false;

    /// How long a server may be silent before a request is given up, in milliseconds.
    int silenceTimeout = 60'000;

    /// Folder in which the protocol object remembers which version of a document each of its copies on this computer
    /// is; created when missing. Several services and users, and several programs at once, may use the same one. Empty
    /// remembers for the lifetime of the object.
    QString dataFolder = {};

    /// What a download may take the place of.
    ReplaceableFiles replaceableFiles = ReplaceableFiles::OwnCopies;

    /// The first failure observer: see PDF::Cloud::IFailureSource.
    std::function<void(const Failure&)> onFailure = {};

    /// Called when a transfer has succeeded, on the thread of the protocol object and just before the request's own
    /// callback: nobody needs to read the file again to know its hash.
    std::function<void(const TransferredFile&)> onTransferred = {};

    /// What only some services have to know, such as a region, by names of their own. Those that are in the library
    /// need none.
    QVariantMap options = {};
};

} // namespace Norlis::Social::OAuth2
