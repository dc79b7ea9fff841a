#include "DocumentDelegate.h"

#include "DocumentsFilter.h"

#include <apps/common/PrintableText.h>
#include <apps/window/pictures/LargePictures.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/widgets/Contrast.h>
#include <apps/window/widgets/Glyphs.h>
#include <host/CloudDocumentsModel.h>

#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <QTextLayout>
#include <QUrl>

namespace Norlis::Window {

using Model = Host::CloudDocumentsModel;

namespace {

constexpr int margin = 10;
constexpr int smallEdge = 32; // in list mode
constexpr qreal cornerRadius = 6;
constexpr qreal paperAspectRatio = 0.71; // of the placeholder for a page without a preview

QString PreviewPath(const QModelIndex& index, int devicePixels)
{
    constexpr int smallPreview = 40;
    constexpr int mediumPreview = 100;
    const auto previews = index.data(Model::PreviewsRole).toMap();
    const QString preferred = devicePixels <= smallPreview    ? "small"
                              : devicePixels <= mediumPreview ? "medium"
                                                              : "large";
    for (const QString& size : {preferred, QString("large"), QString("medium"), QString("small")}) {
        const QString path = previews.value(size).toUrl().toLocalFile();
        if (!path.isEmpty()) {
            return path;
        }
    }
    return {};
}

QColor MutedColor(const QStyleOptionViewItem& option)
{
    QColor color = option.palette.color(QPalette::Text);
    if (!(option.state & QStyle::State_Selected)) { // whose colours have no contrast to spare
        color.setAlphaF(0.7);
    }
    return color;
}

void PaintBackground(QPainter& painter, const QStyleOptionViewItem& option, const QRect& cell)
{
    const QRectF area = QRectF(cell).adjusted(2, 2, -2, -2);
    const auto group = (option.state & QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    painter.setRenderHint(QPainter::Antialiasing);
    if (option.state & QStyle::State_Selected) {
        PaintSelection(painter, area, cornerRadius, option.palette, group);
    } else if (option.state & QStyle::State_MouseOver) {
        QColor light = option.palette.color(QPalette::Highlight);
        light.setAlphaF(0.12);
        painter.setPen(Qt::NoPen);
        painter.setBrush(light);
        painter.drawRoundedRect(area, cornerRadius, cornerRadius);
    }
    const bool isObvious = option.state & QStyle::State_Selected && !(option.state & QStyle::State_KeyboardFocusChange);
    if (option.state & QStyle::State_HasFocus && !isObvious) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(option.palette.color(QPalette::Text), 1, Qt::DotLine));
        constexpr qreal inside = 2.5; // of the rim, on whole pixels
        painter.drawRoundedRect(area.adjusted(inside, inside, -inside, -inside), cornerRadius - 2, cornerRadius - 2);
    }
}

/// As much of a text as is put in the first of several lines, which are centred.
QTextLine FirstLine(QTextLayout& layout, int width)
{
    QTextOption option(Qt::AlignHCenter);
    option.setTextDirection(Qt::LayoutDirectionAuto); // that of the text, not of the window
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(width);
    layout.endLayout();
    return line;
}

/// The page in the place of a picture, drawn once: hundreds are in view on a large screen.
QPixmap Placeholder(const QSize& size, qreal scale, bool isTorn, const QColor& paper, const QColor& ink)
{
    const QString key = QStringLiteral("page %1 %2 %3 %4 %5 %6")
                            .arg(size.width())
                            .arg(size.height())
                            .arg(scale)
                            .arg(isTorn)
                            .arg(paper.rgba())
                            .arg(ink.rgba());
    QPixmap page;
    if (!QPixmapCache::find(key, &page)) {
        page = QPixmap(size * scale);
        page.setDevicePixelRatio(scale);
        page.fill(paper);
        QPainter painter(&page);
        painter.setPen(ink);
        painter.drawRect(QRect({}, size).adjusted(0, 0, -1, -1));
        const int inset = size.width() / 4;
        PaintGlyph(painter, QRect({}, size).adjusted(inset, inset, -inset, -inset),
                   isTorn ? Glyph::Unreadable : Glyph::Document, ink);
        painter.end();
        QPixmapCache::insert(key, page);
    }
    return page;
}

} // namespace

DocumentDelegate::DocumentDelegate(Thumbnails& thumbnails, const ListHeader& header, QObject* parent)
    : QStyledItemDelegate(parent),
      thumbnails(thumbnails),
      header(header),
      awaiting(Thumbnails::maxWanted),
      last(Thumbnails::maxWanted)
{
}

void DocumentDelegate::SetMode(DisplayMode newMode)
{
    mode = newMode;
}

void DocumentDelegate::SetLargePictures(const LargePictures* newPictures)
{
    largePictures = newPictures;
}

int DocumentDelegate::PictureEdge() const
{
    return mode == DisplayMode::List ? smallEdge : previewEdge;
}

void DocumentDelegate::SetThumbnailEdge(int edge)
{
    previewEdge = edge;
}

void DocumentDelegate::SetUnreadable(const QString& id, bool isUnreadable)
{
    if (isUnreadable) {
        unreadable.insert(id);
    } else {
        unreadable.remove(id);
    }
}

QModelIndex DocumentDelegate::TakeAwaiting(const QString& picture)
{
    const std::unique_ptr<QPersistentModelIndex> index(awaiting.take(picture));
    return index ? QModelIndex(*index) : QModelIndex();
}

void DocumentDelegate::PaintOnly(const QRegion& region)
{
    toBePainted = region;
}

bool DocumentDelegate::IsToBePainted(const QRect& part) const
{
    return toBePainted.isEmpty() || toBePainted.intersects(part);
}

QSize DocumentDelegate::CellSize(const QFontMetrics& metrics, int viewWidth) const
{
    if (mode == DisplayMode::List) {
        return {viewWidth, qMax(smallEdge, metrics.height()) + margin};
    }
    const int letters = qBound(15, previewEdge * 2 / 13, 22); // of the name, on a line
    const int width = qMax(previewEdge, metrics.averageCharWidth() * letters) + 2 * margin;
    const int columns = qMax(1, viewWidth / width);
    // The columns share what is left over, so that there is no gap at the right edge.
    return {viewWidth / columns, previewEdge + 3 * metrics.lineSpacing() + 4 * margin};
}

QRect DocumentDelegate::PictureBox(const QRect& cell) const
{
    const QRect area = cell.adjusted(margin, margin, -margin, -margin);
    return mode == DisplayMode::List
               ? QStyle::visualRect(header.layoutDirection(), area,
                                    {area.left(), area.top() + (area.height() - smallEdge) / 2, smallEdge, smallEdge})
               : QRect(area.left() + (area.width() - previewEdge) / 2, area.top(), previewEdge, previewEdge);
}

QRect DocumentDelegate::PictureArea(const QRect& cell) const
{
    return PictureBox(cell).adjusted(0, 0, margin, margin); // with the badge at its corner
}

QSize DocumentDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return CellSize(option.fontMetrics, option.rect.width());
}

void DocumentDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (!IsToBePainted(option.rect)) {
        return;
    }
    painter->save();
    painter->setLayoutDirection(Qt::LayoutDirectionAuto); // "12 KiB" is read from the left, wherever it stands
    if (mode == DisplayMode::List) {
        PaintBackground(*painter, option,
                        {0, option.rect.top(), header.width(), option.rect.height()}); // as the titles
        PaintLine(*painter, option, index);
    } else {
        PaintBackground(*painter, option, option.rect);
        PaintThumbnail(*painter, option, index);
    }
    painter->restore();
}

void DocumentDelegate::PaintThumbnail(QPainter& painter, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const
{
    const QRect box = PictureBox(option.rect);
    if (IsToBePainted(PictureArea(option.rect))) {
        const QRect preview = PaintPreview(painter, box, option, index);
        const QRect badge(preview.right() - badgeEdge / 2 - 2, preview.bottom() - badgeEdge / 2 - 2, badgeEdge,
                          badgeEdge);
        PaintBadge(painter, badge, index.data(Model::StateRole).toInt(), option.palette);
    }
    QRect line(option.rect.left() + margin, box.bottom() + margin + 2, option.rect.width() - 2 * margin,
               option.fontMetrics.lineSpacing());
    const auto isDone = [&] { return !IsToBePainted({line.topLeft(), option.rect.bottomRight()}); };
    if (isDone()) {
        return;
    }
    const auto draw = [&](const QString& text, Qt::TextElideMode elide) {
        painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip,
                         option.fontMetrics.elidedText(text, elide, line.width()));
        line.translate(0, line.height());
    };
    // What fits, as most does, is laid out only once.
    const auto drawIfItFits = [&](const QString& text) {
        QTextLayout layout(text, option.font, painter.device());
        const QTextLine all = FirstLine(layout, line.width());
        if (all.textLength() == text.size()) {
            if (IsToBePainted(line)) {
                all.draw(&painter, line.topLeft() + QPointF(0, (line.height() - all.height()) / 2));
            }
            line.translate(0, line.height());
        }
        return all.textLength();
    };
    const QString name = index.data(Model::NameRole).toString();
    painter.setPen(option.palette.color(QPalette::Text));
    const int split = drawIfItFits(name);
    if (split < name.size()) {
        draw(name.left(split), Qt::ElideNone);
        draw(name.mid(split).trimmed(), Qt::ElideMiddle);
    }
    if (isDone()) {
        return;
    }
    painter.setPen(MutedColor(option));
    const QString date = DateText(index.data(Model::ModifiedRole).toDateTime());
    const QString size = SizeText(index.data(Model::SizeRole).toLongLong());
    const QString both = date.isEmpty() ? size : size + " · " + date;
    if (drawIfItFits(both) == both.size()) {
        return;
    }
    if (split < name.size()) { // there is one line left
        draw(date, Qt::ElideRight);
    } else {
        draw(size, Qt::ElideRight);
        draw(date, Qt::ElideRight);
    }
}

void DocumentDelegate::PaintLine(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QRect box = PictureBox(option.rect);
    PaintPreview(painter, box, option, index);

    const auto elided = [&](const QRect& cell, const QString& text, Qt::TextElideMode elide,
                            Qt::Alignment alignment = Qt::AlignLeft) {
        const auto side = QStyle::visualAlignment(option.direction, alignment | Qt::AlignVCenter);
        painter.drawText(cell, static_cast<int>(side) | Qt::TextSingleLine,
                         option.fontMetrics.elidedText(text, elide, cell.width()));
    };
    // Without the first pixels, counted from where one begins to read.
    const auto without = [&](int pixels, const QRect& cell) {
        return QStyle::visualRect(option.direction, cell, cell.adjusted(pixels, 0, 0, 0));
    };
    const auto cellOf = [&](Column column) {
        return header.CellOf(column, option.rect).adjusted(columnInset, 0, -columnInset, 0);
    };
    const int state = index.data(Model::StateRole).toInt();
    const auto paintBadge = [&](QRect cell) {
        cell.setSize({badgeEdge, badgeEdge});
        PaintBadge(painter, cell.translated(0, (option.rect.height() - badgeEdge) / 2), state, option.palette);
    };
    const QRect name = without(smallEdge + 2 * margin - columnInset, cellOf(Column::Name));
    const int badgeRoom = header.Has(Column::State) ? 0 : badgeEdge + columnInset;
    painter.setPen(option.palette.color(QPalette::Text));
    elided(QStyle::visualRect(option.direction, name, name.adjusted(0, 0, -badgeRoom, 0)),
           index.data(Model::NameRole).toString(), Qt::ElideMiddle);

    painter.setPen(MutedColor(option));
    if (header.Has(Column::Folder)) {
        elided(cellOf(Column::Folder), index.data(DocumentsFilter::FolderRole).toString(), Qt::ElideMiddle);
    }
    if (header.Has(Column::State)) {
        const QRect cell = cellOf(Column::State);
        elided(without(badgeEdge + columnInset, cell), StateText(state), Qt::ElideRight);
        paintBadge(QStyle::visualRect(option.direction, cell, {cell.topLeft(), QSize(badgeEdge, cell.height())}));
    } else {
        paintBadge(without(name.width() - badgeEdge, name));
    }
    if (header.Has(Column::Size)) {
        elided(cellOf(Column::Size), SizeText(index.data(Model::SizeRole).toLongLong()), Qt::ElideRight,
               Qt::AlignRight);
    }
    if (header.Has(Column::Modified)) {
        elided(cellOf(Column::Modified), DateText(index.data(Model::ModifiedRole).toDateTime()), Qt::ElideRight);
    }
}

QRect DocumentDelegate::PaintPreview(QPainter& painter, const QRect& box, const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const
{
    const qreal scale = painter.device()->devicePixelRatioF();
    const QString id = index.data(Model::IdRole).toString();
    const bool isTorn = unreadable.contains(id);
    const QString path = PreviewPath(index, qRound(box.height() * scale));
    QPixmap preview = path.isEmpty() ? QPixmap() : thumbnails.Find(path);
    const QPixmap large = largePictures && mode == DisplayMode::Thumbnails ? largePictures->Find(id) : QPixmap();
    if (!large.isNull()) {
        preview = large;
    } else if (preview.isNull()) {
        if (!path.isEmpty()) {
            awaiting.insert(path, new QPersistentModelIndex(index));
        }
        if (const auto former = last.object(id); former && !isTorn) { // until the picture of the new version is there
            preview = thumbnails.Known(*former);
        }
    } else {
        last.insert(id, new QString(path));
    }
    const QSize size = preview.isNull() ? QSize(qRound(box.height() * paperAspectRatio), box.height())
                                        : preview.size().scaled(box.size(), Qt::KeepAspectRatio);
    QRect target({}, size);
    target.moveCenter(box.center());

    QColor rim = option.palette.color(QPalette::Text);
    rim.setAlphaF(0.25);
    if (preview.isNull()) {
        painter.drawPixmap(target.topLeft(),
                           Placeholder(size, scale, isTorn, option.palette.color(QPalette::Base), rim));
        return target;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, preview);
    painter.setRenderHint(QPainter::Antialiasing, false); // the rim is straight
    painter.setPen(rim);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(target.adjusted(0, 0, -1, -1));
    return target;
}

} // namespace Norlis::Window
