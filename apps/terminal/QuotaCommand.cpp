#include "QuotaCommand.h"

#include "ExitStatus.h"
#include "QuotaText.h"

namespace Norlis::Terminal {

QuotaCommand::QuotaCommand(const Environment& environment) : SessionCommand(environment) {}

void QuotaCommand::Work()
{
    connect(&Session().Cloud(), &PDF::Cloud::AbstractCloudManager::RetrievingUserQuotaFinished, this,
            &QuotaCommand::Show);
    Session().Cloud().UserQuota();
}

void QuotaCommand::Show(int usedMiB, int totalMiB)
{
    if (output.IsJson()) {
        output.Json(QJsonDocument(QuotaJson(usedMiB, totalMiB)));
    } else {
        output.Line(QuotaText(usedMiB, totalMiB));
    }
    Finish(ExitStatus::success);
}

} // namespace Norlis::Terminal
