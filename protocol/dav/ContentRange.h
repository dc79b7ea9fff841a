#pragma once

#include <QByteArray>

namespace Norlis::Social {

/// The parts of a Content-Range (RFC 9110, 14.4) of bytes.
struct ContentRange {
    explicit ContentRange(const QByteArray& value);

    qint64 first = -1; ///< -1 when it is none
    qint64 last = -1;
    qint64 size = -1; ///< of the whole; -1 when not reported
};

} // namespace Norlis::Social
