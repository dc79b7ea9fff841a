#pragma once

#include "TransferDelegate.h"
#include "Transfers.h"

#include <QFrame>

class QLabel;
class QListView;
class QPushButton;

namespace Norlis::Window {

/// Shows the transfers, and lets the user cancel each and try it again. Not there while there are none.
class TransfersPanel : public QFrame {
    Q_OBJECT

public:
    explicit TransfersPanel(Transfers& transfers, QWidget* parent = nullptr);

private:
    void Refresh();

    /// Cancels what runs and repeats what failed, of the selected rows.
    void Act(bool cancels);
    QList<int> Chosen() const;

    Transfers& transfers;
    TransferDelegate painting;
    QLabel* const title;
    QListView* const list;
    QPushButton* const cancel;
    QPushButton* const tryAgain;
    QPushButton* const clear;
};

} // namespace Norlis::Window
