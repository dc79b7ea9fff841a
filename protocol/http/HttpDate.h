#pragma once

#include <QByteArray>
#include <QDateTime>

namespace Norlis::Social {

/// The three forms of RFC 9110, 5.6.7 (with "UTC" or a numeric zone also in place of "GMT") and RFC 3339, in UTC
/// whatever the locale. A wrong day of the week does not matter. Invalid for everything else, and for
/// 1970-01-01T00:00:00 or before: servers send it for unknown dates.
QDateTime ParseHttpDate(const QByteArray& text);

} // namespace Norlis::Social
