#include "Origin.h"

#include <QUrl>

#include <algorithm>

#include <arpa/inet.h>

namespace Norlis::Social {

namespace {

bool IsOfScheme(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '+' || character == '-' || character == '.';
}

/// Where the authority begins; -1 when the text is not an absolute URL. RFC 3986, 3.1.
int AuthorityPosition(const QByteArray& url)
{
    const int colon = url.indexOf("://");
    return colon > 0 && std::all_of(url.begin(), url.begin() + colon, IsOfScheme) ? colon + 3 : -1;
}

} // namespace

int PathPosition(const QByteArray& url)
{
    const int authority = AuthorityPosition(url);
    if (authority < 0) {
        return -1;
    }
    const auto endsAuthority = [](char character) { return character == '/' || character == '?' || character == '#'; };
    return static_cast<int>(std::find_if(url.begin() + authority, url.end(), endsAuthority) - url.begin());
}

QByteArray OriginOfUrl(const QByteArray& url)
{
    const QByteArray text = url.trimmed();
    const int begin = AuthorityPosition(text);
    if (begin < 0) {
        return {};
    }
    const QByteArray scheme = text.left(begin - 3).toLower();
    QByteArray authority = text.mid(begin, PathPosition(text) - begin).toLower();
    authority.remove(0, authority.lastIndexOf('@') + 1);
    const QByteArray usualPort = scheme == "https" ? ":443" : ":80";
    if (authority.endsWith(usualPort) || authority.endsWith(':')) {
        authority.truncate(authority.lastIndexOf(':'));
    }
    return authority.isEmpty() ? QByteArray() : scheme + "://" + authority;
}

bool IsLoopback(const QByteArray& url)
{
    const QByteArray host = QUrl::fromEncoded(url).host().toLower().toUtf8();
    in_addr address = {};
    const bool isV4 = inet_pton(AF_INET, host.constData(), &address) == 1;
    return host == "localhost" || host == "::1" || (isV4 && (ntohl(address.s_addr) >> 24) == 127);
}

} // namespace Norlis::Social
