#include "TransferDelegate.h"

#include "Transfers.h"

#include <apps/window/widgets/Contrast.h>
#include <apps/window/widgets/Glyphs.h>

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

namespace Norlis::Window {

using Action = Transfers::Action;
using Kind = Transfers::Kind;
using Status = Transfers::Status;

namespace {

constexpr int margin = 6;
constexpr int glyphEdge = 18;
constexpr qreal cornerRadius = 6;

QString ButtonText(Action action)
{
    switch (action) {
    case Action::Cancel:
        return TransferDelegate::tr("Cancel");
    case Action::TryAgain:
        return TransferDelegate::tr("Try Again");
    case Action::StartAgain:
        return TransferDelegate::tr("Start Again");
    case Action::Decide:
        return TransferDelegate::tr("Choose…");
    case Action::None:
        break;
    }
    return {};
}

const QStyle& StyleOf(const QStyleOptionViewItem& option)
{
    return option.widget ? *option.widget->style() : *QApplication::style();
}

/// All buttons are as wide as the widest, so that they form a column.
QStyleOptionButton ButtonOf(const QStyleOptionViewItem& option, Action action)
{
    QStyleOptionButton button;
    button.palette = option.palette;
    button.fontMetrics = option.fontMetrics;
    button.direction = option.direction;
    button.state = QStyle::State_Enabled | QStyle::State_Raised | (option.state & QStyle::State_Active);
    button.text = ButtonText(action);
    QSize size;
    for (const auto each : {Action::Cancel, Action::TryAgain, Action::StartAgain, Action::Decide}) {
        size = size.expandedTo(option.fontMetrics.size(Qt::TextShowMnemonic, ButtonText(each)));
    }
    size = StyleOf(option).sizeFromContents(QStyle::CT_PushButton, &button, size, option.widget);
    size.setHeight(qMin(size.height(), option.rect.height() - margin));
    button.rect = QStyle::alignedRect(option.direction, Qt::AlignRight | Qt::AlignVCenter, size,
                                      option.rect.adjusted(margin, 0, -margin, 0));
    return button;
}

Action ActionOf(const QModelIndex& index)
{
    return static_cast<Action>(index.data(Transfers::ActionRole).toInt());
}

QString StateText(Status status, const QString& detail)
{
    switch (status) {
    case Status::Queued:
        return TransferDelegate::tr("Waiting for its turn");
    case Status::Waiting:
        return TransferDelegate::tr("Waiting for the cloud");
    case Status::Canceled:
        return TransferDelegate::tr("Canceled");
    default:
        return detail.isEmpty() ? TransferDelegate::tr("Finished") : detail;
    }
}

void PaintProgress(QPainter& painter, const QStyleOptionViewItem& option, const QRect& target, const QModelIndex& index)
{
    const int percent = index.data(Transfers::PercentRole).toInt();
    QStyleOptionProgressBar bar;
    bar.rect = target;
    bar.palette = option.palette;
    bar.state = option.state | QStyle::State_Horizontal;
    bar.minimum = 0;
    bar.maximum = 100;
    bar.progress = percent;
    bar.text = index.data(Transfers::ProgressRole).toString();
    bar.textVisible = true;
    bar.textAlignment = Qt::AlignCenter;
    StyleOf(option).drawControl(QStyle::CE_ProgressBar, &bar, &painter, option.widget);
}

} // namespace

void TransferDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QStyle& style = StyleOf(option);
    // Only where the keyboard is: the documents beside are selected too.
    const bool isSelected = option.state & QStyle::State_Selected && option.widget && option.widget->hasFocus();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected) {
        const auto group = (option.state & QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
        PaintSelection(*painter, QRectF(option.rect).adjusted(2, 2, -2, -2), cornerRadius, option.palette, group);
    }

    const auto kind = static_cast<Kind>(index.data(Transfers::KindRole).toInt());
    const auto status = static_cast<Status>(index.data(Transfers::StatusRole).toInt());
    const QColor color = option.palette.color(QPalette::Text);
    const QRect area = option.rect.adjusted(margin, margin, -margin, -margin);
    const QStyleOptionButton button = ButtonOf(option, ActionOf(index));
    const int reserved = button.rect.width() + margin;
    const auto placed = [&](const QRect& rect) { return QStyle::visualRect(option.direction, option.rect, rect); };

    const QRect icon = placed({area.left(), area.center().y() - glyphEdge / 2, glyphEdge, glyphEdge});
    PaintGlyph(*painter, icon,
               status == Status::Failed     ? Glyph::Problem
               : status == Status::Finished ? Glyph::UpToDate
               : kind >= Kind::Download     ? Glyph::Download
                                            : Glyph::Upload,
               color);

    const int line = option.fontMetrics.lineSpacing();
    const QRect first =
        placed({area.left() + glyphEdge + margin, area.top(), area.width() - glyphEdge - margin - reserved, line});
    const QRect second = first.translated(0, line + 2);
    const auto text = [&](const QRect& cell, const QString& words, Qt::TextElideMode elide) {
        painter->drawText(
            cell, QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine,
            option.fontMetrics.elidedText(words, elide, cell.width()));
    };
    painter->save();
    painter->setLayoutDirection(Qt::LayoutDirectionAuto); // "12 KiB" is read from the left, wherever it stands
    painter->setPen(color);
    text(first, index.data().toString(), Qt::ElideMiddle);
    if (status == Status::Running) {
        PaintProgress(*painter, option, second, index);
    } else {
        QColor muted = color;
        muted.setAlphaF(isSelected ? 1 : 0.75); // whose colours have no contrast to spare
        painter->setPen(muted);
        text(second, StateText(status, index.data(Transfers::DetailRole).toString()), Qt::ElideRight);
    }
    painter->restore();
    if (!button.text.isEmpty()) {
        style.drawControl(QStyle::CE_PushButton, &button, painter, option.widget);
    }
}

QSize TransferDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {1, HeightOf(option.fontMetrics)};
}

int TransferDelegate::HeightOf(const QFontMetrics& metrics)
{
    return 2 * metrics.lineSpacing() + 2 + 2 * margin;
}

bool TransferDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                   const QModelIndex& index)
{
    const auto isOnButton = [&] {
        const auto mouse = static_cast<QMouseEvent*>(event);
        return mouse->button() == Qt::LeftButton && ActionOf(index) != Action::None &&
               ButtonOf(option, ActionOf(index)).rect.contains(mouse->pos());
    };
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        pressed = isOnButton() ? index : QModelIndex();
        break;
    case QEvent::MouseButtonDblClick:
        pressed = QModelIndex(); // the first click may have brought another row under the pointer
        break;
    case QEvent::MouseButtonRelease:
        if (pressed == index && isOnButton()) {
            pressed = QModelIndex();
            emit Clicked(index);
            return true;
        }
        break;
    default:
        break;
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

} // namespace Norlis::Window
