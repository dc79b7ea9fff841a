#pragma once

#include "Notifications.h"

#include <apps/window/settings/Preferences.h>

#include <QElapsedTimer>

class QWidget;

namespace Norlis::Window {

class Transfers;

/// Tells on the desktop that transfers have ended which took long, if the user is not at the window.
class TransferNotice : public QObject {
    Q_OBJECT

public:
    /// All outlive this.
    /// \param widget in the window
    TransferNotice(const Transfers& transfers, const Preferences& preferences, const QWidget& widget);

signals:
    /// The user has clicked on it.
    void Activated();

private:
    void OnCounts();

    const Transfers& transfers;
    const Preferences preferences;
    const QWidget& widget;
    Notifications notifications;
    int failedBefore = 0;  ///< transfers, whose rows are still there
    QElapsedTimer running; ///< since transfers were begun; invalid when there are none
};

} // namespace Norlis::Window
