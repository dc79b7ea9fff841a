#include "PropFind.h"

namespace Norlis::Social {

namespace {

// By name: without names servers send twice as much, and leave out just what is not standard.
const QByteArray bodyBegin =
    R"(<?xml version="1.0" encoding="utf-8"?>)"
    R"(<d:propfind xmlns:d="DAV:" xmlns:oc="http://owncloud.org/ns" xmlns:nc="http://nextcloud.org/ns")"
    R"( xmlns:n="http://norlis.org/ns/"><d:prop>)"
    R"(<d:resourcetype/><d:getcontentlength/><d:getlastmodified/><d:creationdate/><d:getetag/>)";
const QByteArray familyProperties = R"(<oc:fileid/><oc:checksums/><nc:has-preview/>)";
const QByteArray storedHash = R"(<n:content-md5/>)";
const QByteArray quotaProperties = R"(<d:quota-used-bytes/><d:quota-available-bytes/>)"; // RFC 4331
const QByteArray bodyEnd = R"(</d:prop></d:propfind>)";
const QByteArray xmlType = "application/xml; charset=utf-8";
constexpr qint64 mostInTurn = 128 * 1024; // bytes; a few milliseconds' work

HttpRequest Request(const QByteArray& url, int depth, const QByteArray& extraProperties)
{
    HttpRequest request;
    request.method = "PROPFIND";
    request.url = url;
    request.fields = {{"Depth", QByteArray::number(depth)}, {"Content-Type", xmlType}};
    request.body = bodyBegin + extraProperties + bodyEnd;
    return request;
}

} // namespace

HttpRequest PropFind(const QByteArray& url)
{
    return Request(url, 0, familyProperties + storedHash + quotaProperties);
}

HttpRequest PropFindMembers(const QByteArray& url, const ExtraProperties& extra)
{
    return Request(url, 1,
                   (extra.family ? familyProperties : QByteArray()) + (extra.storedHash ? storedHash : QByteArray()));
}

HttpRequest StoreHash(const QByteArray& url, const QByteArray& md5, const QByteArray& etag)
{
    HttpRequest request;
    request.method = "PROPPATCH";
    request.url = url;
    request.fields = {{"Content-Type", xmlType}};
    request.body =
        R"(<?xml version="1.0" encoding="utf-8"?>)"
        R"(<d:propertyupdate xmlns:d="DAV:" xmlns:n="http://norlis.org/ns/"><d:set><d:prop><n:content-md5>)" +
        md5 + ' ' + QString::fromUtf8(etag).toHtmlEscaped().toUtf8() +
        R"(</n:content-md5></d:prop></d:set></d:propertyupdate>)";
    return request;
}

bool IsPropertyTaken(const HttpResponse& response)
{
    if (response.Status() != 207) {
        return response.HasSucceeded();
    }
    QXmlStreamReader reader(response.body);
    bool isTaken = false;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("status") &&
            reader.namespaceUri() == QLatin1String("DAV:")) {
            isTaken = reader.readElementText().section(' ', 1, 1).startsWith('2');
            if (!isTaken) {
                return false;
            }
        }
    }
    return isTaken && !reader.hasError();
}

PropFindSink::PropFindSink(const DavPath& path, const QByteArray& origin, OnEntries onEntries)
    : path(path),
      origin(origin),
      onEntries(std::move(onEntries))
{
    nextTurn.setSingleShot(true);
    QObject::connect(&nextTurn, &QTimer::timeout, &nextTurn, [this] {
        const auto whenReady = onReady; // it may destroy this object
        whenReady();
    });
}

bool PropFindSink::Begin(const HttpHead& head, std::function<void()> whenReady)
{
    onReady = std::move(whenReady);
    takenInTurn = 0;
    parser = std::make_unique<MultiStatusParser>(path, origin);
    isMultiStatus = head.status == 207 || head.status == 200;
    return true;
}

HttpSink::Taken PropFindSink::Add(const char* data, qint64 size)
{
    if (takenInTurn >= mostInTurn) {
        takenInTurn = 0;
        nextTurn.start(0);
        return Taken::Later;
    }
    takenInTurn += size;
    if (!parser->Add(QByteArray::fromRawData(data, static_cast<int>(size)))) {
        return Taken::Refused;
    }
    onEntries(parser->TakeEntries());
    return Taken::Yes;
}

QString PropFindSink::Finish()
{
    if (!parser || !isMultiStatus) {
        return QStringLiteral("The answer is not a WebDAV listing");
    }
    if (!parser->Finish()) {
        return parser->ErrorText();
    }
    onEntries(parser->TakeEntries());
    if (!parser->SawSelf()) {
        return QStringLiteral("The listing is of another place");
    }
    if (parser->RefusedCount() > 0) {
        return QStringLiteral("The server keeps back what it knows of %1 documents").arg(parser->RefusedCount());
    }
    return {};
}

std::optional<DavEntry> EntryOfDepth0(const HttpResponse& response, const DavPath& path)
{
    MultiStatusParser parser(path);
    if (response.Status() != 207 || !parser.Add(response.body) || !parser.Finish()) {
        return std::nullopt;
    }
    for (const DavEntry& entry : parser.TakeEntries()) {
        if (entry.isSelf) {
            return entry;
        }
    }
    return std::nullopt;
}

} // namespace Norlis::Social
