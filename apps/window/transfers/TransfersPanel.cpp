#include "TransfersPanel.h"

#include <apps/window/widgets/AccessibleParts.h>
#include <apps/window/widgets/ElidedLabel.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Norlis::Window {

using Action = Transfers::Action;
using Status = Transfers::Status;

namespace {

constexpr int headInterval = 250; // milliseconds

/// Shows its rows even while others are removed all the time, which would have it lay them out later and later.
class PromptListView : public QListView {
protected:
    void paintEvent(QPaintEvent* event) override
    {
        executeDelayedItemsLayout();
        QListView::paintEvent(event);
    }
};

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

Action ActionOf(const QModelIndex& index)
{
    return static_cast<Action>(index.data(Transfers::ActionRole).toInt());
}

/// Keeps its place while it is hidden: no other button comes under the pointer.
void KeepPlace(QPushButton& button, const QString& longestText)
{
    QSizePolicy policy = button.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    button.setSizePolicy(policy);
    const QString text = button.text();
    button.setText(longestText);
    button.setMinimumWidth(qMax(button.sizeHint().width(), button.minimumWidth()));
    button.setText(text);
}

const QVector<Action> active = {Action::Cancel};
const QVector<Action> ended = {Action::TryAgain, Action::StartAgain, Action::Decide};

} // namespace

TransfersPanel::TransfersPanel(Transfers& transfers, QWidget* parent)
    : QFrame(parent),
      transfers(transfers),
      title(new ElidedLabel),
      list(new PromptListView),
      details(Button(tr("D&etails"), "transferDetails")),
      cancel(Button(tr("&Cancel All"), "cancelTransfers")),
      tryAgain(Button(tr("&Try Again"), "tryAgain")),
      clear(Button(tr("C&lear"), "clearTransfers"))
{
    setObjectName("transfersPanel");
    order.setSourceModel(&transfers);
    order.sort(0);
    list->setModel(&order);
    Arrange();
    Connect();
    Refresh();
}

bool TransfersPanel::Order::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const Status leftStatus = StatusOf(left);
    const Status rightStatus = StatusOf(right);
    if (leftStatus != rightStatus) {
        return leftStatus < rightStatus;
    }
    return leftStatus == Status::Finished ? left.row() < right.row() : left.row() > right.row();
}

void TransfersPanel::Arrange()
{
    setFrameShape(StyledPanel);
    title->setObjectName("transfersTitle");
    SetAccessibleRole(*title, QAccessible::Notification);
    list->setObjectName("transfers");
    list->setAccessibleName(tr("Transfers"));
    TellOfCurrentItem(*list);
    list->setAccessibleDescription(
        tr("Press Delete to cancel the selected transfers, Return to begin failed and canceled ones again"));
    list->setFrameShape(NoFrame);
    list->setUniformItemSizes(true);
    list->setSelectionMode(QListView::ExtendedSelection);
    list->setVerticalScrollMode(QListView::ScrollPerPixel);
    list->setItemDelegate(&delegate);
    list->setMinimumHeight(3 * fontMetrics().lineSpacing()); // one row, where there is no room for more
    clear->setToolTip(tr("Remove the transfers that have ended from the list"));
    details->setToolTip(tr("Show each transfer"));
    details->setCheckable(true);
    KeepPlace(*tryAgain, tr("&Try Again"));
    KeepPlace(*cancel, tr("&Cancel Selected"));
    KeepPlace(*clear, tr("C&lear"));

    const auto head = new QHBoxLayout;
    head->addWidget(title);
    head->addWidget(details);
    head->addStretch(1);
    head->addWidget(tryAgain);
    head->addWidget(cancel);
    head->addWidget(clear);
    const auto layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(list);
}

void TransfersPanel::Connect()
{
    connect(&delegate, &TransferDelegate::Clicked, this, [this](const QModelIndex& index) {
        const int row = order.mapToSource(index).row();
        if (ActionOf(index) == Action::Cancel) {
            transfers.Cancel(row);
        } else {
            transfers.TryAgain(row);
        }
    });
    connect(cancel, &QPushButton::clicked, this, [this] { Cancel(SelectedOrAll(active)); });
    connect(tryAgain, &QPushButton::clicked, this, [this] {
        const QList<int> selected = Selected(ended);
        TryAgain(selected.isEmpty() ? All({Action::TryAgain, Action::Decide}) : selected);
    });
    connect(clear, &QPushButton::clicked, &transfers, &Transfers::Clear);
    connect(details, &QPushButton::toggled, this, &TransfersPanel::Refresh);
    const auto onDelete = new QShortcut(Qt::Key_Delete, list, nullptr, nullptr, Qt::WidgetShortcut);
    connect(onDelete, &QShortcut::activated, this, [this] { Cancel(Selected(active)); });
    const auto onReturn = new QShortcut(Qt::Key_Return, list, nullptr, nullptr, Qt::WidgetShortcut);
    connect(onReturn, &QShortcut::activated, this, [this] { TryAgain(Selected(ended)); });
    connect(&transfers, &Transfers::CountsChanged, this, &TransfersPanel::Refresh);
    headUpdate.setSingleShot(true);
    headUpdate.setInterval(headInterval);
    connect(&headUpdate, &QTimer::timeout, this, &TransfersPanel::Refresh);
    connect(&transfers, &QAbstractItemModel::dataChanged, this, [this] {
        if (!headUpdate.isActive()) {
            headUpdate.start();
        }
    });
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this, &TransfersPanel::Refresh);
}

void TransfersPanel::Refresh()
{
    const int all = transfers.rowCount();
    const int running = transfers.CountOfActive();
    const bool isSuccess = all > 0 && transfers.CountOf(Status::Finished) == all;
    title->setText(TitleText());
    cancel->setText(Selected(active).isEmpty() ? tr("&Cancel All") : tr("&Cancel Selected"));
    const bool isOneLine = isSuccess && !details->isChecked();
    ShowPart(*details, isSuccess);
    Offer(*cancel, running > 0, isOneLine);
    Offer(*tryAgain, transfers.CountOf(Status::Failed) > 0 || !Selected(ended).isEmpty(), isOneLine);
    Offer(*clear, all > running, isOneLine);
    if (running > 0) { // what stands still tells nothing by itself
        headUpdate.start();
        list->viewport()->update();
    }
    ShowPart(*list, !isOneLine);
    const int before = maximumHeight();
    setMaximumHeight(isOneLine ? sizeHint().height() : HeightFor(all));
    ShowPart(*this, all > 0);
    if (maximumHeight() != before) {
        emit NeedsChanged();
    }
    ReadOutcomeAloud();
}

int TransfersPanel::HeightFor(int rows) const
{
    constexpr int most = 1000; // which no screen shows
    const QMargins margins = layout()->contentsMargins();
    const int row = TransferDelegate::HeightOf(list->fontMetrics());
    return 2 * frameWidth() + margins.top() + clear->sizeHint().height() + layout()->spacing() +
           qMin(rows, most) * row + margins.bottom();
}

void TransfersPanel::ReadOutcomeAloud()
{
    const bool isGoingOn = transfers.CountOf(Status::Running) + transfers.CountOf(Status::Queued) > 0;
    const QString outcome = isGoingOn ? QString() : title->text();
    if (std::exchange(heard, outcome) != outcome && !outcome.isEmpty()) {
        ReadAloud(*title);
    }
}

void TransfersPanel::Offer(QPushButton& button, bool isPossible, bool isOneLine)
{
    if (!isPossible && button.hasFocus()) {
        emit KeyboardLeft();
    }
    button.setEnabled(isPossible);
    ShowPart(button, isPossible || !isOneLine);
}

void TransfersPanel::ShowPart(QWidget& part, bool isWanted)
{
    // Otherwise the next button would have it, and who presses a key does not expect that.
    if (!isWanted && part.isVisible() && (part.hasFocus() || part.isAncestorOf(QApplication::focusWidget()))) {
        emit KeyboardLeft();
    }
    part.setVisible(isWanted);
}

QString TransfersPanel::TitleText() const
{
    QStringList parts;
    const int running = transfers.CountOf(Status::Running) + transfers.CountOf(Status::Queued);
    if (running > 0) {
        parts.append(transfers.ProgressOfAll());
    } else if (transfers.CountOf(Status::Finished) > 0) {
        parts.append(QStringLiteral("✓ ") + transfers.SuccessText());
    }
    if (const int waiting = transfers.CountOf(Status::Waiting)) {
        parts.append(tr("%n waiting for the cloud", nullptr, waiting));
    }
    if (const int failed = transfers.CountOf(Status::Failed)) {
        parts.append(tr("%n failed", nullptr, failed));
    }
    if (const int canceled = transfers.CountOf(Status::Canceled)) {
        parts.append(tr("%n canceled", nullptr, canceled));
    }
    return parts.join(" · ");
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

QList<int> TransfersPanel::Selected(const QVector<Action>& actions) const
{
    QList<int> rows = All(actions);
    const auto isLeftOut = [this](int row) {
        return !list->selectionModel()->isSelected(order.mapFromSource(transfers.index(row)));
    };
    rows.erase(std::remove_if(rows.begin(), rows.end(), isLeftOut), rows.end());
    return rows;
}

QList<int> TransfersPanel::All(const QVector<Action>& actions) const
{
    QList<int> rows;
    for (int row = transfers.rowCount() - 1; row >= 0; --row) {
        if (actions.contains(ActionOf(transfers.index(row)))) {
            rows.append(row);
        }
    }
    return rows;
}

QList<int> TransfersPanel::SelectedOrAll(const QVector<Action>& actions) const
{
    const QList<int> selected = Selected(actions);
    return selected.isEmpty() ? All(actions) : selected;
}

} // namespace Norlis::Window
