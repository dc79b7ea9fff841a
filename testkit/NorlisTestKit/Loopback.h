#pragma once

#include <QByteArray>

namespace Norlis::TestKit {

/// A port of 127.0.0.1 on which nobody listens, outside of the range from which connections get theirs, so that it
/// stays free while a server is away.
quint16 FreePort();

/// Sends bytes to a port of 127.0.0.1 and returns what comes back until the other side closes the connection, or until
/// nothing comes for that many milliseconds. Empty when nobody listens. Needs no event loop.
QByteArray Exchange(quint16 port, const QByteArray& request, int patience = 5000);

/// The value of an Authorization header (RFC 7617).
QByteArray BasicAuthorization(const QByteArray& user, const QByteArray& password);

} // namespace Norlis::TestKit
