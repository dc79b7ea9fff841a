#include "QuotaText.h"

#include "Text.h"

#include <contracts/NorlisCloudProtocol.h>

namespace Norlis::Terminal {

namespace {

constexpr qint64 bytesPerMiB = 1024 * 1024;

bool IsUnlimited(int totalMiB)
{
    return totalMiB == Social::NorlisCloudProtocol::unlimitedQuota;
}

QString SizeText(int mebibytes)
{
    return HumanSize(static_cast<quint64>(mebibytes * bytesPerMiB));
}

QJsonValue BytesOrNull(int mebibytes)
{
    return mebibytes < 0 ? QJsonValue() : QJsonValue(mebibytes * bytesPerMiB);
}

} // namespace

QString QuotaText(int usedMiB, int totalMiB)
{
    if (usedMiB < 0) {
        const auto unknown = QStringLiteral("The service does not report how much storage is used");
        return IsUnlimited(totalMiB) ? unknown + ", and sets no limit"
               : totalMiB < 0        ? unknown
                                     : unknown + "; the limit is " + SizeText(totalMiB);
    }
    // The used figure is rounded up and the total down.
    const QString used = SizeText(usedMiB);
    return IsUnlimited(totalMiB) ? used + " used; the service sets no limit"
           : totalMiB < 0        ? used + " used; the service does not report a limit"
                                 : used + " of " + SizeText(totalMiB) + " used";
}

QJsonObject QuotaJson(int usedMiB, int totalMiB)
{
    return {{"used", BytesOrNull(usedMiB)}, {"total", BytesOrNull(totalMiB)}, {"unlimited", IsUnlimited(totalMiB)}};
}

} // namespace Norlis::Terminal
