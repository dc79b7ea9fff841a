#include "DavRequests.h"

#include "DavEntry.h"
#include <protocol/http/Origin.h>

#include <QString>

namespace Norlis::Social {

namespace {

const QByteArray ourNamespace = QByteArray("xmlns:n=\"") + storedMd5Namespace + '"';
const QByteArray ourProperty = QByteArray("n:") + storedMd5Property;

// By name: otherwise servers send twice as much, and leave out what is not standard.
const QByteArray propFindBegin =
    R"(<?xml version="1.0" encoding="utf-8"?>)"
    R"(<d:propfind xmlns:d="DAV:" xmlns:oc="http://owncloud.org/ns" xmlns:nc="http://nextcloud.org/ns" )" +
    ourNamespace +
    R"(><d:prop>)"
    R"(<d:resourcetype/><d:getcontentlength/><d:getlastmodified/><d:creationdate/><d:getetag/>)";
const QByteArray nextcloudProperties = R"(<oc:fileid/><oc:checksums/><nc:has-preview/>)";
const QByteArray storedMd5 = '<' + ourProperty + "/>";
const QByteArray quotaProperties = R"(<d:quota-used-bytes/><d:quota-available-bytes/>)"; // RFC 4331
const QByteArray propFindEnd = R"(</d:prop></d:propfind>)";
const QByteArray xmlType = "application/xml; charset=utf-8";

HttpRequest Request(const QByteArray& method, const QByteArray& url)
{
    HttpRequest request;
    request.method = method;
    request.url = url;
    return request;
}

HttpRequest PropFindOfDepth(int depth, const QByteArray& url, const QByteArray& extraProperties)
{
    HttpRequest request = Request("PROPFIND", url);
    request.fields = {{"Depth", QByteArray::number(depth)}, {"Content-Type", xmlType}};
    request.body = propFindBegin + extraProperties + propFindEnd;
    return request;
}

QByteArray DestinationIn(DestinationForm form, const QByteArray& url)
{
    switch (form) {
    case DestinationForm::Path:
        return url.mid(PathPosition(url));
    case DestinationForm::PlainUrl:
        return "http" + url.mid(url.indexOf(':'));
    case DestinationForm::Url:
        break;
    }
    return url;
}

HttpRequest With(HttpRequest request, const QByteArray& field, const QByteArray& value)
{
    request.fields.append({field, value});
    return request;
}

/// Before those who still wait for a lock: one that is held soon runs out.
HttpRequest ToFrontOfLocks(HttpRequest request)
{
    request.lane = HttpRequest::Lane::Lock;
    request.isFirst = true;
    return request;
}

} // namespace

HttpRequest Options(const QByteArray& url)
{
    return Request("OPTIONS", url);
}

HttpRequest PropFind(const QByteArray& url)
{
    return PropFindOfDepth(0, url, nextcloudProperties + storedMd5 + quotaProperties);
}

HttpRequest PropFindMembers(const QByteArray& url, const ExtraProperties& extra)
{
    return PropFindOfDepth(
        1, url, (extra.nextcloud ? nextcloudProperties : QByteArray()) + (extra.storedMd5 ? storedMd5 : QByteArray()));
}

HttpRequest StoreMd5(const QByteArray& url, const QByteArray& md5, const QByteArray& etag)
{
    HttpRequest request = Request("PROPPATCH", url);
    request.fields = {{"Content-Type", xmlType}};
    request.body = R"(<?xml version="1.0" encoding="utf-8"?>)"
                   R"(<d:propertyupdate xmlns:d="DAV:" )" +
                   ourNamespace + "><d:set><d:prop><" + ourProperty + '>' + md5 + ' ' +
                   QString::fromUtf8(etag).toHtmlEscaped().toUtf8() + "</" + ourProperty +
                   "></d:prop></d:set></d:propertyupdate>";
    return request;
}

HttpRequest Get(const QByteArray& url)
{
    return Request("GET", url);
}

HttpRequest GetDocument(const QByteArray& url)
{
    return With(Get(url), "Accept-Encoding", "identity");
}

HttpRequest GetUser(const QByteArray& instanceUrl)
{
    return With(Get(instanceUrl + "ocs/v1.php/cloud/user?format=json"), "OCS-APIRequest", "true");
}

HttpRequest Put(const QByteArray& url, const QByteArray& contentType)
{
    return With(Request("PUT", url), "Content-Type",
                contentType.isEmpty() ? QByteArray("application/octet-stream") : contentType);
}

HttpRequest Move(const QByteArray& fromUrl, const QByteArray& toUrl, bool mayOverwrite, DestinationForm form)
{
    HttpRequest request = Request("MOVE", fromUrl);
    // Some servers take a missing Overwrite for F.
    request.fields = {{"Destination", DestinationIn(form, toUrl)}, {"Overwrite", mayOverwrite ? "T" : "F"}};
    request.isRepeatable = false;
    return request;
}

HttpRequest Delete(const QByteArray& url)
{
    return Request("DELETE", url);
}

HttpRequest Lock(const QByteArray& url)
{
    HttpRequest request = Request("LOCK", url);
    request.fields = {{"Depth", "0"}, {"Timeout", "Second-60"}, {"Content-Type", xmlType}};
    request.body = R"(<?xml version="1.0" encoding="utf-8"?>)"
                   R"(<d:lockinfo xmlns:d="DAV:"><d:lockscope><d:exclusive/></d:lockscope>)"
                   R"(<d:locktype><d:write/></d:locktype>)"
                   R"(<d:owner>norlis-cloud</d:owner></d:lockinfo>)"; // some servers insist on an owner
    request.isRepeatable = false;
    return OnLane(HttpRequest::Lane::Lock, request);
}

HttpRequest Unlock(const QByteArray& url, const QByteArray& token)
{
    return ToFrontOfLocks(With(Request("UNLOCK", url), "Lock-Token", token));
}

HttpRequest WithLock(const HttpRequest& request, const QByteArray& lockedUrl, const QByteArray& token)
{
    // Tagged, since it is not always the resource of the request that is locked.
    const QByteArray condition = '<' + lockedUrl + "> (" + token + ')';
    HttpRequest allowed = ToFrontOfLocks(request);
    for (auto& field : allowed.fields) {
        if (field.first == "If") {
            field.second += ' ' + condition;
            return allowed;
        }
    }
    return With(allowed, "If", condition);
}

HttpRequest IfMatch(HttpRequest request, const QByteArray& etag)
{
    return With(std::move(request), "If-Match", etag);
}

HttpRequest IfNew(HttpRequest request)
{
    return With(std::move(request), "If-None-Match", "*");
}

HttpRequest FromPosition(HttpRequest request, qint64 position, const QByteArray& etag)
{
    request.fields.append({"Range", "bytes=" + QByteArray::number(position) + '-'});
    return etag.isEmpty() ? request : With(std::move(request), "If-Range", etag);
}

HttpRequest ForPart(HttpRequest request, qint64 position, qint64 size)
{
    return With(std::move(request), "Range",
                "bytes=" + QByteArray::number(position) + '-' + QByteArray::number(position + size - 1));
}

HttpRequest WithChecksum(HttpRequest put, const QByteArray& md5)
{
    put = With(std::move(put), "X-Hash", "md5");
    return md5.isEmpty() ? put : With(std::move(put), "OC-Checksum", "MD5:" + md5);
}

} // namespace Norlis::Social
