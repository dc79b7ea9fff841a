#pragma once

#include "TransferDelegate.h"
#include "Transfers.h"

#include <QFrame>

class QLabel;
class QListView;
class QPushButton;

namespace Norlis::Window {

/// Shows the transfers, and lets the user cancel and retry them. Hidden while there are none.
class TransfersPanel : public QFrame {
    Q_OBJECT

public:
    explicit TransfersPanel(Transfers& transfers, QWidget* parent = nullptr);

private:
    void Arrange();
    void Connect();
    void Refresh();
    static QString TitleText(int running, int failed);

    void Cancel(const QList<int>& rows);
    void TryAgain(const QList<int>& rows);

    // Rows with a status, the last one first, because cancelled transfers leave the list.
    QList<int> Selected(Transfers::Status status) const;
    QList<int> All(Transfers::Status status) const;
    QList<int> SelectedOrAll(Transfers::Status status) const;

    Transfers& transfers;
    TransferDelegate delegate;
    QLabel* const title;
    QListView* const list;
    QPushButton* const cancel;
    QPushButton* const tryAgain;
    QPushButton* const clear;
};

} // namespace Norlis::Window
