#pragma once

#include <protocol/dav/MultiStatusParser.h>
#include <protocol/http/HttpMessage.h>

#include <QTimer>

#include <functional>

namespace Norlis::Social {

/// Properties beyond those that every server knows. Some servers look for each of them in a file of its own.
struct ExtraProperties {
    bool family = false;     ///< of the Nextcloud and ownCloud family: ids, checksums, previews
    bool storedHash = false; ///< ours
};

/// A request for all that there is to know about a resource. RFC 4918, 9.1.
HttpRequest PropFind(const QByteArray& url);

/// A request for what a list needs to know about a collection's members.
HttpRequest PropFindMembers(const QByteArray& url, const ExtraProperties& extra);

/// A request that stores the MD5 of a document together with the ETag that it holds for. RFC 4918, 9.2.
HttpRequest StoreHash(const QByteArray& url, const QByteArray& md5, const QByteArray& etag);

/// Whether an answer to PROPPATCH says that the property was taken, which a 207 alone does not.
bool IsPropertyTaken(const HttpResponse& response);

/// Reads a listing while it arrives and hands its entries on in batches. The event loop has its turn now and then,
/// however fast the listing comes.
class PropFindSink : public HttpSink {
public:
    using OnEntries = std::function<void(std::vector<DavEntry>&&)>;

    PropFindSink(const DavPath& path, const QByteArray& origin, OnEntries onEntries);

    bool Begin(const HttpHead& head, std::function<void()> onReady) override;
    Taken Add(const char* data, qint64 size) override;

    /// After the last piece: what is wrong with the listing; empty when nothing is.
    QString Finish();

    const MultiStatusParser& Parser() const
    {
        return *parser;
    }

private:
    const DavPath path;
    const QByteArray origin;
    const OnEntries onEntries;
    std::function<void()> onReady;
    qint64 takenInTurn = 0; ///< bytes
    QTimer nextTurn;
    std::unique_ptr<MultiStatusParser> parser;
    bool isMultiStatus = false;
};

/// The one resource of a listing of depth 0; nothing when the answer is not about it.
std::optional<DavEntry> EntryOfDepth0(const HttpResponse& response, const DavPath& path);

} // namespace Norlis::Social
