#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

namespace Norlis::Social {

/// What a listing says about one resource. A property that the server did not send, refused, or filled with something
/// unreadable is unknown: empty, invalid or nothing, never 0.
struct DavEntry {
    QByteArray name; ///< decoded bytes of one path segment, valid UTF-8; empty for the collection itself
    bool isSelf = false;
    bool isCollection = false;
    std::optional<qint64> size; ///< bytes. Some servers give a collection one too
    QByteArray etag;            ///< as received, with quotes and W/; empty when it could not be sent in a request
    QDateTime modifiedAt;       ///< UTC
    QDateTime createdAt;        ///< UTC

    QString fileId;                       ///< oc:fileid, unique on the server
    std::optional<bool> hasPreview;       ///< nc:has-preview
    QByteArray md5;                       ///< of oc:checksums, lower-case hexadecimal
    std::optional<qint64> quotaUsed;      ///< bytes, as received. RFC 4331
    std::optional<qint64> quotaAvailable; ///< bytes, as received: some servers mean something by negative ones

    QByteArray storedMd5;  ///< of our own property, see storedMd5Property; lower-case hexadecimal
    QByteArray storedEtag; ///< the only one for which it holds; both are there or neither
};

/// The namespace and the name of the property in which clients of this project store a document's MD5. Its text is the
/// hash, a blank, and the ETag that the content had: servers keep such properties when somebody else replaces the
/// content.
constexpr auto storedMd5Namespace = "http://norlis.org/ns/";
constexpr auto storedMd5Property = "content-md5";

} // namespace Norlis::Social
