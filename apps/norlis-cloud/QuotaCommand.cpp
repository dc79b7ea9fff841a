#include "QuotaCommand.h"

#include "ExitStatus.h"
#include "Text.h"

#include <QJsonObject>

namespace Norlis::Terminal {

namespace {

constexpr qint64 bytesPerMiB = 1024 * 1024;

} // namespace

QuotaCommand::QuotaCommand(const Environment& environment) : SessionCommand(environment) {}

void QuotaCommand::Work()
{
    connect(&Session().Cloud(), &PDF::Cloud::AbstractCloudManager::RetrievingUserQuotaFinished, this,
            &QuotaCommand::Show);
    Session().Cloud().UserQuota();
}

void QuotaCommand::Show(int usedMiB, int totalMiB)
{
    const qint64 used = usedMiB * bytesPerMiB;
    const qint64 total = totalMiB * bytesPerMiB;
    if (output.IsJson()) {
        output.Json(QJsonDocument(QJsonObject{{"used", used}, {"total", total}}));
    } else {
        // The service rounds what is used up and what there is down, so "at most" and "at least" would both be true.
        output.Line(QStringLiteral("%1 of %2 used")
                        .arg(HumanSize(static_cast<quint64>(qMax<qint64>(0, used))),
                             HumanSize(static_cast<quint64>(qMax<qint64>(0, total)))));
    }
    Finish(ExitStatus::success);
}

} // namespace Norlis::Terminal
