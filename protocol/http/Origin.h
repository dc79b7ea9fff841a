#pragma once

#include <QByteArray>

namespace Norlis::Social {

/// Scheme, host and port in lower case, the scheme's usual port and the user left out: "https://host:8443". Empty when
/// the URL is not absolute.
QByteArray OriginOfUrl(const QByteArray& url);

/// Where the path of an absolute URL begins, or what follows an empty one; -1 when the text is not an absolute URL.
int PathPosition(const QByteArray& url);

/// Whether the host of an absolute URL is this machine.
bool IsLoopback(const QByteArray& url);

} // namespace Norlis::Social
