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
        const auto untold = QStringLiteral("The service does not tell how much storage is used");
        return IsUnlimited(totalMiB) ? untold + ", and sets no limit"
               : totalMiB < 0        ? untold
                                     : untold + ", of " + SizeText(totalMiB);
    }
    // The service rounds what is used up and what there is down, so "at most" and "at least" would both be true.
    const QString used = SizeText(usedMiB);
    return IsUnlimited(totalMiB) ? used + " used; the service sets no limit"
           : totalMiB < 0        ? used + " used; the service does not tell how much there is"
                                 : used + " of " + SizeText(totalMiB) + " used";
}

QJsonObject QuotaJson(int usedMiB, int totalMiB)
{
    return {{"used", BytesOrNull(usedMiB)}, {"total", BytesOrNull(totalMiB)}, {"unlimited", IsUnlimited(totalMiB)}};
}

} // namespace Norlis::Terminal
