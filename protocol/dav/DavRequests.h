#pragma once

#include <protocol/http/HttpMessage.h>

namespace Norlis::Social {

// All requests that are sent to a WebDAV server, with the fields that it needs (RFC 4918, RFC 9110). Addresses are
// those that Collection gives. A sink, a source or a lane is added by the caller.

/// What the server says about itself.
HttpRequest Options(const QByteArray& url);

/// All that there is to know about a resource, at depth 0. RFC 4918, 9.1.
HttpRequest PropFind(const QByteArray& url);

/// Properties beyond those that every server knows. Some servers look for each of them in a file of its own.
struct ExtraProperties {
    bool nextcloud = false; ///< of servers like Nextcloud: ids, checksums, previews
    bool storedMd5 = false; ///< ours, see storedMd5Property
};

/// What a list needs to know about a collection's members, at depth 1.
HttpRequest PropFindMembers(const QByteArray& url, const ExtraProperties& extra);

/// Stores the MD5 of a document together with the ETag that it holds for. RFC 4918, 9.2.
HttpRequest StoreMd5(const QByteArray& url, const QByteArray& md5, const QByteArray& etag);

HttpRequest Get(const QByteArray& url);

/// The content of a document as it is stored: compressed on the way, neither its length nor the rest of it could be
/// checked.
HttpRequest GetDocument(const QByteArray& url);

/// The page of a server like Nextcloud that says, as JSON, who is signed in.
HttpRequest GetUser(const QByteArray& instanceUrl);

/// \param contentType empty when it is not known
HttpRequest Put(const QByteArray& url, const QByteArray& contentType = {});

/// How a MOVE writes where to. Every server takes the whole address, as long as it knows itself by it: behind a proxy
/// that ends TLS or has another name, one may take only the path, or the address with "http:".
enum class DestinationForm { Url, Path, PlainUrl };

/// Renames a file. Not repeatable: the second time it would fail. RFC 4918, 9.9.
HttpRequest Move(const QByteArray& fromUrl, const QByteArray& toUrl, bool mayOverwrite,
                 DestinationForm form = DestinationForm::Url);

HttpRequest Delete(const QByteArray& url);

/// An exclusive write lock for a minute. Not repeatable: the second time it would find the first. RFC 4918, 9.10.
HttpRequest Lock(const QByteArray& url);

/// \param token with its angle brackets
HttpRequest Unlock(const QByteArray& url, const QByteArray& token);

/// The request, by who holds the lock of the resource at lockedUrl, and perhaps others. RFC 4918, 10.4.
HttpRequest WithLock(const HttpRequest& request, const QByteArray& lockedUrl, const QByteArray& token);

/// The request, carried out only if the resource has this entity tag.
HttpRequest IfMatch(HttpRequest request, const QByteArray& etag);

/// The request, carried out only if the resource does not exist.
HttpRequest IfNew(HttpRequest request);

/// The request for the bytes from a position to the end; with an entity tag, for all of them if the tag is outdated.
HttpRequest FromPosition(HttpRequest request, qint64 position, const QByteArray& etag = {});

/// The request for that many bytes from a position on.
HttpRequest ForPart(HttpRequest request, qint64 position, qint64 size);

/// The PUT of a document to a server like Nextcloud: asks for the MD5 of what arrives, and hands over the one that is
/// to be stored with it unless it is empty.
HttpRequest WithChecksum(HttpRequest put, const QByteArray& md5);

} // namespace Norlis::Social
