#include "Proxy.h"

#include <QUrl>

#include <initializer_list>

namespace Norlis::Social {

namespace {

/// Without user and password, which may hold anything.
QString AddressIn(const QString& value)
{
    const int at = value.lastIndexOf('@');
    const int scheme = value.indexOf("://");
    return value.mid(at >= 0 ? at + 1 : scheme >= 0 ? scheme + 3 : 0);
}

} // namespace

QString ProxyFor(const QByteArray& url)
{
    // Upper case is not for http: a web server hands its clients' fields to its programs in such variables.
    const bool isSecure = url.startsWith("https:");
    for (const char* variable :
         {isSecure ? "https_proxy" : "http_proxy", isSecure ? "HTTPS_PROXY" : "http_proxy", "all_proxy", "ALL_PROXY"}) {
        const QString value = qEnvironmentVariable(variable);
        if (value.isEmpty()) {
            continue;
        }
        const QUrl proxy("http://" + AddressIn(value));
        return proxy.port() < 0 ? proxy.host() : proxy.host() + ':' + QString::number(proxy.port());
    }
    return {};
}

QString WithoutProxyPasswords(QString text)
{
    for (const char* variable : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
        const QString value = qEnvironmentVariable(variable);
        if (value.contains('@')) {
            text.replace(value, AddressIn(value));
        }
    }
    return text;
}

} // namespace Norlis::Social
