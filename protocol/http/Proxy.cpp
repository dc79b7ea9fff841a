#include "Proxy.h"

#include <QUrl>

#include <initializer_list>

namespace Norlis::Social {

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
        const QUrl proxy(value.contains("://") ? value : "http://" + value);
        return proxy.port() < 0 ? proxy.host() : proxy.host() + ':' + QString::number(proxy.port());
    }
    return {};
}

} // namespace Norlis::Social
