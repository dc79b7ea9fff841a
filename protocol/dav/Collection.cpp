#include "Collection.h"

#include <protocol/http/Origin.h>

#include <algorithm>

namespace Norlis::Social {

Collection::Collection(const QUrl& serviceUrl)
    : origin(OriginOfUrl(serviceUrl.toEncoded(QUrl::RemoveUserInfo))),
      path(SegmentsOfUrl(serviceUrl.toEncoded(QUrl::RemoveUserInfo)).value_or(DavPath()))
{
}

QByteArray Collection::Url() const
{
    return origin + EncodePath(path, true);
}

QByteArray Collection::UrlOf(const QByteArray& name) const
{
    return Url() + EncodeSegment(name);
}

QByteArray Collection::InstanceUrl() const
{
    const auto script = std::find(path.begin(), path.end(), "remote.php");
    return origin + EncodePath(script == path.end() ? DavPath() : DavPath(path.begin(), script), true);
}

QString Collection::Host() const
{
    return QUrl::fromEncoded(origin).host();
}

} // namespace Norlis::Social
