#include "TransferNotice.h"

#include "Transfers.h"

#include <QWidget>

namespace Norlis::Window {

TransferNotice::TransferNotice(const Transfers& transfers, const Preferences& preferences, const QWidget& widget)
    : transfers(transfers),
      preferences(preferences),
      widget(widget)
{
    connect(&transfers, &Transfers::CountsChanged, this, &TransferNotice::OnCounts);
    connect(&notifications, &Notifications::Activated, this, &TransferNotice::Activated);
}

void TransferNotice::OnCounts()
{
    if (transfers.CountOfActive() > 0) {
        if (!running.isValid()) {
            running.start();
            failedBefore = transfers.CountOf(Transfers::Status::Failed);
        }
        return;
    }
    const std::chrono::milliseconds delay = preferences.NoticeDelay();
    const bool wasLong = running.isValid() && running.hasExpired(delay.count());
    running.invalidate();
    if (!wasLong || !preferences.TellsOfTransfers() || widget.window()->isActiveWindow()) {
        return;
    }
    const int failed = transfers.CountOf(Transfers::Status::Failed) - failedBefore;
    QStringList parts = {transfers.SuccessText()};
    if (failed > 0) {
        parts.append(tr("%n failed", nullptr, failed));
    }
    parts.removeAll({});
    if (!parts.isEmpty()) { // otherwise the user has cancelled them
        notifications.Show(failed > 0 ? tr("Some transfers have failed") : tr("All transfers have finished"),
                           parts.join(", "));
    }
}

} // namespace Norlis::Window
