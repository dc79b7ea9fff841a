#pragma once

#include <QByteArray>

namespace Norlis::TestKit {

/// A port of 127.0.0.1 on which nobody listens, outside the range that outgoing connections use, so that it stays free
/// while a server is stopped.
quint16 FreePort();

/// Sends bytes to a port of 127.0.0.1 and returns what comes back until the other side closes the connection, or until
/// nothing comes for as long as the timeout, in milliseconds. Empty when nobody listens. Needs no event loop.
QByteArray Exchange(quint16 port, const QByteArray& request, int timeout = 5000);

/// The value of an Authorization header (RFC 7617).
QByteArray BasicAuthorization(const QByteArray& user, const QByteArray& password);

} // namespace Norlis::TestKit
