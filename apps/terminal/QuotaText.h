#pragma once

#include <QJsonObject>
#include <QString>

namespace Norlis::Terminal {

/// The figures of a quota, in MiB, where NorlisCloudProtocol::unknownQuota and unlimitedQuota may stand too.
QString QuotaText(int usedMiB, int totalMiB);

/// The same in bytes; null for what is not known.
QJsonObject QuotaJson(int usedMiB, int totalMiB);

} // namespace Norlis::Terminal
