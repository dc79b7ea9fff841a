#include "TransfersPanel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace Norlis::Window {

using Status = Transfers::Status;

namespace {

QPushButton* Button(const QString& text, const char* name)
{
    const auto button = new QPushButton(text);
    button->setObjectName(name);
    return button;
}

Status StatusOf(const QModelIndex& index)
{
    return static_cast<Status>(index.data(Transfers::StatusRole).toInt());
}

} // namespace

TransfersPanel::TransfersPanel(Transfers& transfers, QWidget* parent)
    : QFrame(parent),
      transfers(transfers),
      title(new QLabel),
      list(new QListView),
      cancel(Button(tr("Cancel All"), "cancelTransfers")),
      tryAgain(Button(tr("Try Again"), "tryAgain")),
      clear(Button(tr("Clear"), "clearTransfers"))
{
    setObjectName("transfersPanel");
    setFrameShape(StyledPanel);
    list->setObjectName("transfers");
    list->setAccessibleName(tr("Transfers"));
    list->setAccessibleDescription(tr("Delete cancels the selected transfers, Return tries failed ones again"));
    list->setFrameShape(NoFrame);
    list->setUniformItemSizes(true);
    list->setSelectionMode(QListView::ExtendedSelection);
    list->setVerticalScrollMode(QListView::ScrollPerPixel);
    list->setItemDelegate(&painting);
    list->setModel(&transfers);
    clear->setToolTip(tr("Forget the transfers that have ended"));

    const auto head = new QHBoxLayout;
    head->addWidget(title, 1);
    head->addWidget(tryAgain);
    head->addWidget(cancel);
    head->addWidget(clear);
    const auto layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(list);

    connect(&painting, &TransferDelegate::Clicked, this, [this](int row) {
        if (StatusOf(this->transfers.index(row)) == Status::Failed) {
            this->transfers.TryAgain(row);
        } else {
            this->transfers.Cancel(row);
        }
    });
    connect(cancel, &QPushButton::clicked, this, [this] { Act(true); });
    connect(tryAgain, &QPushButton::clicked, this, [this] { Act(false); });
    connect(clear, &QPushButton::clicked, &transfers, &Transfers::Clear);
    const auto shortcut = [this](Qt::Key key, bool cancels) {
        const auto pressed = new QShortcut(key, list, nullptr, nullptr, Qt::WidgetShortcut);
        connect(pressed, &QShortcut::activated, this, [this, cancels] { Act(cancels); });
    };
    shortcut(Qt::Key_Delete, true);
    shortcut(Qt::Key_Return, false);
    connect(&transfers, &Transfers::CountsChanged, this, &TransfersPanel::Refresh);
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &TransfersPanel::Refresh);
    Refresh();
}

void TransfersPanel::Refresh()
{
    const int running = transfers.CountOf(Status::Running);
    const int failed = transfers.CountOf(Status::Failed);
    const QString failures = failed > 0 ? tr("%n failed", nullptr, failed) : QString();
    const QString work = running > 0 ? tr("%n transfer(s) running", nullptr, running) : QString();
    title->setText(!work.isEmpty() && !failures.isEmpty() ? work + ", " + failures
                   : !work.isEmpty()                      ? work
                   : !failures.isEmpty()                  ? failures
                                                          : tr("All transfers have finished"));
    const bool areSomeSelected = list->selectionModel()->hasSelection();
    cancel->setText(areSomeSelected ? tr("Cancel Selected") : tr("Cancel All"));
    cancel->setVisible(running > 0);
    tryAgain->setVisible(failed > 0);
    clear->setVisible(transfers.rowCount() > running);
    setVisible(transfers.rowCount() > 0);
}

void TransfersPanel::Act(bool cancels)
{
    const auto rows = Chosen();
    for (const int row : rows) {
        if (cancels) {
            transfers.Cancel(row);
        } else {
            transfers.TryAgain(row);
        }
    }
}

/// The selected rows, or all when none is; from the end, since what is cancelled leaves the list.
QList<int> TransfersPanel::Chosen() const
{
    QList<int> rows;
    const auto selected = list->selectionModel()->selectedRows();
    for (const auto& index : selected) {
        rows.append(index.row());
    }
    for (int row = 0; selected.isEmpty() && row < transfers.rowCount(); ++row) {
        rows.append(row);
    }
    std::sort(rows.begin(), rows.end(), std::greater<>());
    return rows;
}

} // namespace Norlis::Window
