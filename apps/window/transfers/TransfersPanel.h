#pragma once

#include "TransferDelegate.h"
#include "Transfers.h"

#include <QFrame>
#include <QSortFilterProxyModel>
#include <QTimer>

class QLabel;
class QListView;
class QPushButton;

namespace Norlis::Window {

/// Shows the transfers, what needs attention first, and lets the user cancel them and begin them again. Hidden while
/// there are none, and a single line once all have succeeded.
class TransfersPanel : public QFrame {
    Q_OBJECT

public:
    explicit TransfersPanel(Transfers& transfers, QWidget* parent = nullptr);

    /// With so many transfers in view.
    int HeightFor(int rows) const;

signals:
    /// Its maximum height is another one, because it has more transfers or fewer, or has become a single line.
    void NeedsChanged();

    /// What has the keyboard is about to be hidden.
    void KeyboardLeft();

private:
    /// Running ones first, and of these those that were begun first.
    class Order : public QSortFilterProxyModel {
    protected:
        bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
    };

    void Arrange();
    void Connect();
    void Refresh();
    void ShowPart(QWidget& part, bool isWanted);

    /// Beside the list each button is seen, so that the others have fixed places.
    void Offer(QPushButton& button, bool isPossible, bool isOneLine);

    /// When nothing is running any more, to screen readers.
    void ReadOutcomeAloud();
    QString TitleText() const;

    void Cancel(const QList<int>& rows);
    void TryAgain(const QList<int>& rows);

    // Rows of the transfers on which the user may act so, in the order in which they were begun.

    QList<int> Selected(const QVector<Transfers::Action>& actions) const;
    QList<int> All(const QVector<Transfers::Action>& actions) const;
    QList<int> SelectedOrAll(const QVector<Transfers::Action>& actions) const;

    Transfers& transfers;
    Order order;
    TransferDelegate delegate;
    QLabel* const title;
    QListView* const list;
    QPushButton* const details;
    QPushButton* const cancel;
    QPushButton* const tryAgain;
    QPushButton* const clear;
    QString heard;     ///< how the transfers have ended
    QTimer headUpdate; ///< combines many changes into one update
};

} // namespace Norlis::Window
