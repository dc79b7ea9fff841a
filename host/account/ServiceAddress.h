#pragma once

#include <host/Export.h>

#include <QString>
#include <QUrl>

namespace Norlis::Host {

/// The service that the user names: a folder by its path, a folder or a WebDAV server by its address. The address comes
/// in the form in which it is remembered; the path of a server's ends in a slash.
/// \param user who signs in to the server; empty leaves it to the address
/// Throws std::invalid_argument with a text for the user, for an empty one too. It repeats no password.
NORLIS_HOST_EXPORT QUrl ServiceAddress(const QString& text, const QString& user = {});

/// The percent-encoded path of a service without "." and ".." (RFC 3986, 5.2.4), with one slash between its segments
/// and at its end. What QUrl has for this loses segments as short as ".a", and takes no brackets.
NORLIS_HOST_EXPORT QString NormalizedPath(const QString& path);

/// Whether a service needs no token.
NORLIS_HOST_EXPORT bool IsFolder(const QUrl& service);

/// The service as the user knows it: a path or an address.
NORLIS_HOST_EXPORT QString ServiceText(const QUrl& service);

/// The service as one word of a command line, which names it again: what a shell would take for something else is
/// percent-encoded or quoted.
NORLIS_HOST_EXPORT QString ServiceWord(const QUrl& service);

} // namespace Norlis::Host
