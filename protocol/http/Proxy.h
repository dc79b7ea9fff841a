#pragma once

#include <QString>

namespace Norlis::Social {

/// Host and port of the proxy that the environment names for a URL, as libcurl reads it; empty when there is none. A
/// list of hosts that need no proxy is not looked at.
QString ProxyFor(const QByteArray& url);

/// A text in which libcurl may have repeated what the environment says of proxies: without their users and passwords.
QString WithoutProxyPasswords(QString text);

} // namespace Norlis::Social
