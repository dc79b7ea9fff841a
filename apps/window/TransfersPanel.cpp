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
    list->setModel(&transfers);
    Arrange();
    Connect();
    Refresh();
}

void TransfersPanel::Arrange()
{
    setFrameShape(StyledPanel);
    list->setObjectName("transfers");
    list->setAccessibleName(tr("Transfers"));
    list->setAccessibleDescription(tr("Press Delete to cancel the selected transfers, Return to retry failed ones"));
    list->setFrameShape(NoFrame);
    list->setUniformItemSizes(true);
    list->setSelectionMode(QListView::ExtendedSelection);
    list->setVerticalScrollMode(QListView::ScrollPerPixel);
    list->setItemDelegate(&delegate);
    clear->setToolTip(tr("Remove finished and failed transfers from the list"));

    const auto head = new QHBoxLayout;
    head->addWidget(title, 1);
    head->addWidget(tryAgain);
    head->addWidget(cancel);
    head->addWidget(clear);
    const auto layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(list);
}

void TransfersPanel::Connect()
{
    connect(&delegate, &TransferDelegate::Clicked, this, [this](int row) {
        if (StatusOf(transfers.index(row)) == Status::Failed) {
            transfers.TryAgain(row);
        } else {
            transfers.Cancel(row);
        }
    });
    connect(cancel, &QPushButton::clicked, this, [this] { Cancel(SelectedOrAll(Status::Running)); });
    connect(tryAgain, &QPushButton::clicked, this, [this] { TryAgain(SelectedOrAll(Status::Failed)); });
    connect(clear, &QPushButton::clicked, &transfers, &Transfers::Clear);
    const auto onDelete = new QShortcut(Qt::Key_Delete, list, nullptr, nullptr, Qt::WidgetShortcut);
    connect(onDelete, &QShortcut::activated, this, [this] { Cancel(Selected(Status::Running)); });
    const auto onReturn = new QShortcut(Qt::Key_Return, list, nullptr, nullptr, Qt::WidgetShortcut);
    connect(onReturn, &QShortcut::activated, this, [this] { TryAgain(Selected(Status::Failed)); });
    connect(&transfers, &Transfers::CountsChanged, this, &TransfersPanel::Refresh);
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &TransfersPanel::Refresh);
}

void TransfersPanel::Refresh()
{
    const int running = transfers.CountOf(Status::Running);
    const int failed = transfers.CountOf(Status::Failed);
    title->setText(TitleText(running, failed));
    cancel->setText(Selected(Status::Running).isEmpty() ? tr("Cancel All") : tr("Cancel Selected"));
    cancel->setVisible(running > 0);
    tryAgain->setVisible(failed > 0);
    clear->setVisible(transfers.rowCount() > running);
    setVisible(transfers.rowCount() > 0);
}

QString TransfersPanel::TitleText(int running, int failed)
{
    QStringList parts;
    if (running > 0) {
        parts.append(tr("%n transfer(s) running", nullptr, running));
    }
    if (failed > 0) {
        parts.append(tr("%n failed", nullptr, failed));
    }
    return parts.isEmpty() ? tr("All transfers have finished") : parts.join(", ");
}

void TransfersPanel::Cancel(const QList<int>& rows)
{
    for (const int row : rows) {
        transfers.Cancel(row);
    }
}

void TransfersPanel::TryAgain(const QList<int>& rows)
{
    for (const int row : rows) {
        transfers.TryAgain(row);
    }
}

QList<int> TransfersPanel::Selected(Status status) const
{
    QList<int> rows = All(status);
    const auto isLeftOut = [this](int row) { return !list->selectionModel()->isSelected(transfers.index(row)); };
    rows.erase(std::remove_if(rows.begin(), rows.end(), isLeftOut), rows.end());
    return rows;
}

QList<int> TransfersPanel::All(Status status) const
{
    QList<int> rows;
    for (int row = transfers.rowCount() - 1; row >= 0; --row) {
        if (StatusOf(transfers.index(row)) == status) {
            rows.append(row);
        }
    }
    return rows;
}

QList<int> TransfersPanel::SelectedOrAll(Status status) const
{
    const QList<int> selected = Selected(status);
    return selected.isEmpty() ? All(status) : selected;
}

} // namespace Norlis::Window
