#pragma once

#include <QJsonObject>
#include <QString>

namespace Norlis::Terminal {

/// The figures of a quota in MiB; NorlisCloudProtocol::unknownQuota and unlimitedQuota are allowed too.
QString QuotaText(int usedMiB, int totalMiB);

/// The same in bytes; null for unknown figures.
QJsonObject QuotaJson(int usedMiB, int totalMiB);

} // namespace Norlis::Terminal
