#include "TransferDelegate.h"

#include "Glyphs.h"
#include "Transfers.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

namespace Norlis::Window {

using Kind = Transfers::Kind;
using Status = Transfers::Status;

namespace {

constexpr int margin = 6;
constexpr int glyphEdge = 18;

QRect ButtonRect(const QRect& row)
{
    return {row.right() - margin - glyphEdge, row.center().y() - glyphEdge / 2, glyphEdge, glyphEdge};
}

void PaintProgress(QPainter& painter, const QStyleOptionViewItem& option, const QRect& target, int percent)
{
    QStyleOptionProgressBar bar;
    bar.rect = target;
    bar.palette = option.palette;
    bar.state = option.state | QStyle::State_Horizontal;
    bar.minimum = 0;
    bar.maximum = 100;
    bar.progress = percent;
    bar.text = TransferDelegate::tr("%1%").arg(percent);
    bar.textVisible = true;
    bar.textAlignment = Qt::AlignCenter;
    const QStyle* const style = option.widget ? option.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ProgressBar, &bar, &painter, option.widget);
}

} // namespace

void TransferDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem background = option;
    const QStyle* const style = option.widget ? option.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &background, painter, option.widget);

    const auto kind = static_cast<Kind>(index.data(Transfers::KindRole).toInt());
    const auto status = static_cast<Status>(index.data(Transfers::StatusRole).toInt());
    const bool isSelected = option.state & QStyle::State_Selected;
    const QColor color = option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    const QRect area = option.rect.adjusted(margin, margin, -margin, -margin);
    const int textLeft = area.left() + glyphEdge + margin;
    const int textRight = ButtonRect(option.rect).left() - margin;

    const QRect icon(area.left(), area.center().y() - glyphEdge / 2, glyphEdge, glyphEdge);
    if (status == Status::Failed) {
        style->standardIcon(QStyle::SP_MessageBoxWarning).paint(painter, icon);
    } else {
        PaintGlyph(*painter, icon,
                   status == Status::Finished ? Glyph::UpToDate
                   : kind == Kind::Download   ? Glyph::Download
                                              : Glyph::Upload,
                   color);
    }

    const int line = option.fontMetrics.lineSpacing();
    const QRect first(textLeft, area.top(), textRight - textLeft, line);
    const QRect second = first.translated(0, line + 2);
    const auto text = [&](const QRect& cell, const QString& words, Qt::TextElideMode elide) {
        painter->drawText(cell, Qt::AlignVCenter | Qt::TextSingleLine,
                          option.fontMetrics.elidedText(words, elide, cell.width()));
    };
    painter->save();
    painter->setPen(color);
    text(first, index.data().toString(), Qt::ElideMiddle);
    if (status == Status::Running) {
        PaintProgress(*painter, option, second, index.data(Transfers::PercentRole).toInt());
        PaintGlyph(*painter, ButtonRect(option.rect), Glyph::Cancel, color);
    } else {
        QColor muted = color;
        muted.setAlphaF(0.75);
        painter->setPen(muted);
        const QString detail = index.data(Transfers::DetailRole).toString();
        text(second, detail.isEmpty() ? tr("Finished") : detail, Qt::ElideRight);
        if (status == Status::Failed) {
            PaintGlyph(*painter, ButtonRect(option.rect), Glyph::Refresh, color);
        }
    }
    painter->restore();
}

QSize TransferDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {1, 2 * option.fontMetrics.lineSpacing() + 2 + 2 * margin};
}

bool TransferDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                   const QModelIndex& index)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        const auto mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton &&
            ButtonRect(option.rect).adjusted(-margin, -margin, margin, margin).contains(mouse->pos())) {
            emit Clicked(index.row());
            return true;
        }
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

} // namespace Norlis::Window
