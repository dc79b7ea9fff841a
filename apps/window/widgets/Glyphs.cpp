#include "Glyphs.h"

#include <contracts/FileInfo.h>

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmapCache>

namespace Norlis::Window {

using Status = PDF::FileInfo::CloudStatus;

namespace {

constexpr qreal gridSize = 24; // the drawings are designed on a square of this size
constexpr qreal lineWidth = 2;

void Line(QPainterPath& path, std::initializer_list<QPointF> points)
{
    path.moveTo(*points.begin());
    for (auto point = points.begin() + 1; point != points.end(); ++point) {
        path.lineTo(*point);
    }
}

void AddArrow(QPainterPath& path, QPointF from, QPointF to)
{
    const QPointF along = (to - from) / 2;
    const QPointF across(-along.y(), along.x());
    Line(path, {from, to});
    Line(path, {to - along * 0.9 + across * 0.9, to, to - along * 0.9 - across * 0.9});
}

void AddTray(QPainterPath& path)
{
    Line(path, {{4, 16}, {4, 20}, {20, 20}, {20, 16}});
}

void AddCloud(QPainterPath& path)
{
    path.moveTo(7, 18);
    path.arcTo(QRectF(3, 10, 8, 8), 270, -180);
    path.arcTo(QRectF(6, 5, 10, 10), 160, -145);
    path.arcTo(QRectF(13, 9.5, 8.5, 8.5), 90, -180);
    path.closeSubpath();
}

QPainterPath PathOf(Glyph glyph)
{
    QPainterPath path;
    switch (glyph) {
    case Glyph::Cancel:
        Line(path, {{6, 6}, {18, 18}});
        Line(path, {{18, 6}, {6, 18}});
        break;
    case Glyph::ChangedHere:
        AddArrow(path, {12, 18}, {12, 6});
        break;
    case Glyph::ChangedInCloud:
        AddArrow(path, {12, 6}, {12, 18});
        break;
    case Glyph::ChevronDown:
        Line(path, {{5, 9}, {12, 16}, {19, 9}});
        break;
    case Glyph::ChevronLeft:
        Line(path, {{15, 5}, {8, 12}, {15, 19}});
        break;
    case Glyph::ChevronRight:
        Line(path, {{9, 5}, {16, 12}, {9, 19}});
        break;
    case Glyph::ChevronUp:
        Line(path, {{5, 15}, {12, 8}, {19, 15}});
        break;
    case Glyph::Cloud:
        AddCloud(path);
        break;
    case Glyph::Conflict:
        Line(path, {{12, 5}, {12, 13}});
        Line(path, {{12, 18}, {12, 18.2}});
        break;
    case Glyph::Copy:
        Line(path, {{8, 8}, {20, 8}, {20, 21}, {8, 21}, {8, 8}});
        Line(path, {{5, 16}, {4, 16}, {4, 3}, {16, 3}, {16, 5}});
        break;
    case Glyph::Document:
        Line(path, {{14, 3}, {6, 3}, {6, 21}, {18, 21}, {18, 7}, {14, 3}, {14, 7}, {18, 7}});
        break;
    case Glyph::Download:
        AddArrow(path, {12, 4}, {12, 15});
        AddTray(path);
        break;
    case Glyph::Folder:
        Line(path, {{3, 6}, {9, 6}, {11, 9}, {21, 9}, {21, 19}, {3, 19}, {3, 6}});
        break;
    case Glyph::UpToDate:
        Line(path, {{6, 12.5}, {10.5, 17}, {18, 8}});
        break;
    case Glyph::List:
        for (const int y : {6, 12, 18}) {
            Line(path, {{4, qreal(y)}, {4.2, qreal(y)}});
            Line(path, {{9, qreal(y)}, {20, qreal(y)}});
        }
        break;
    case Glyph::Notice:
        path.addEllipse(QRectF(3, 3, 18, 18));
        Line(path, {{12, 11}, {12, 16.5}});
        Line(path, {{12, 7.5}, {12, 7.7}});
        break;
    case Glyph::NotUploaded:
        Line(path, {{7, 12}, {17, 12}});
        break;
    case Glyph::Open:
        Line(path, {{11, 5}, {5, 5}, {5, 19}, {19, 19}, {19, 13}});
        Line(path, {{11, 13}, {20, 4}});
        Line(path, {{14, 4}, {20, 4}, {20, 10}});
        break;
    case Glyph::Paste:
        Line(path, {{9, 4}, {5, 4}, {5, 21}, {19, 21}, {19, 4}, {15, 4}});
        path.addRect(9, 2.5, 6, 3.5);
        break;
    case Glyph::Problem:
        Line(path, {{12, 3}, {22, 20.5}, {2, 20.5}, {12, 3}});
        Line(path, {{12, 9.5}, {12, 14}});
        Line(path, {{12, 17}, {12, 17.2}});
        break;
    case Glyph::Refresh:
        path.arcMoveTo(QRectF(4, 4, 16, 16), 45);
        path.arcTo(QRectF(4, 4, 16, 16), 45, 300);
        Line(path, {{18, 2.5}, {17.8, 6.8}, {13.5, 6.6}});
        break;
    case Glyph::Remove:
        Line(path, {{4, 6}, {20, 6}});
        Line(path, {{9, 6}, {9, 3}, {15, 3}, {15, 6}});
        Line(path, {{6, 6}, {7, 21}, {17, 21}, {18, 6}});
        Line(path, {{10, 10}, {10.4, 17}});
        Line(path, {{14, 10}, {13.6, 17}});
        break;
    case Glyph::Search:
        path.addEllipse(QRectF(4, 4, 12, 12));
        Line(path, {{14.5, 14.5}, {20, 20}});
        break;
    case Glyph::ZoomIn:
        Line(path, {{10, 7}, {10, 13}});
        [[fallthrough]];
    case Glyph::ZoomOut:
        Line(path, {{7, 10}, {13, 10}});
        path.addEllipse(QRectF(4, 4, 12, 12));
        Line(path, {{14.5, 14.5}, {20, 20}});
        break;
    case Glyph::Server:
        path.addRoundedRect(QRectF(4, 4, 16, 7), 2, 2);
        path.addRoundedRect(QRectF(4, 13, 16, 7), 2, 2);
        Line(path, {{8, 7.5}, {8.2, 7.5}});
        Line(path, {{8, 16.5}, {8.2, 16.5}});
        break;
    case Glyph::Thumbnails:
        for (const int x : {4, 14}) {
            for (const int y : {4, 14}) {
                path.addRect(x, y, 6, 6);
            }
        }
        break;
    case Glyph::Unreadable: // a page torn in two
        Line(path, {{6, 10}, {6, 3}, {14, 3}, {18, 7}, {18, 9}, {15, 12}, {12, 9}, {9, 12}, {6, 10}});
        Line(path, {{6, 15}, {6, 21}, {18, 21}, {18, 14}, {15, 17}, {12, 14}, {9, 17}, {6, 15}});
        break;
    case Glyph::Upload:
        AddArrow(path, {12, 15}, {12, 4});
        AddTray(path);
        break;
    case Glyph::UploadChanges:
        AddCloud(path);
        AddArrow(path, {12, 21}, {12, 12});
        break;
    }
    return path;
}

class GlyphEngine : public QIconEngine {
public:
    explicit GlyphEngine(Glyph glyph) : glyph(glyph) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        PaintGlyph(*painter, rect, glyph, QGuiApplication::palette().color(group, role));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, {{}, size}, mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override
    {
        return new GlyphEngine(glyph);
    }

private:
    const Glyph glyph;
};

struct Badge {
    Glyph glyph;
    QColor color;
};

Badge BadgeOf(int state, const QPalette& palette)
{
    switch (static_cast<Status>(state)) {
    case Status::OnlyInCloud:
        return {Glyph::Cloud, QColor(90, 110, 140)};
    case Status::InSync:
        return {Glyph::UpToDate, QColor(38, 130, 70)};
    case Status::ChangedLocally:
        return {Glyph::ChangedHere, QColor(180, 95, 0)};
    case Status::ChangedInCloud:
        return {Glyph::ChangedInCloud, QColor(0, 100, 180)};
    case Status::ChangedOnBothSides:
        return {Glyph::Conflict, QColor(190, 40, 40)};
    case Status::NotUploaded:
    case Status::NoSuchDocument:
        break;
    }
    return {Glyph::NotUploaded, palette.color(QPalette::Disabled, QPalette::Text)};
}

} // namespace

void PaintGlyph(QPainter& painter, const QRectF& target, Glyph glyph, const QColor& color)
{
    const qreal edge = qMin(target.width(), target.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(target.center() - QPointF(edge, edge) / 2);
    painter.scale(edge / gridSize, edge / gridSize);
    painter.setPen(QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(PathOf(glyph));
    painter.restore();
}

QIcon GlyphIcon(Glyph glyph)
{
    return QIcon(new GlyphEngine(glyph));
}

void PaintBadge(QPainter& painter, const QRectF& target, int state, const QPalette& palette)
{
    const Badge badge = BadgeOf(state, palette);
    const QColor rimColor = palette.color(QPalette::Base);
    const qreal scale = painter.device()->devicePixelRatioF();
    const QString key = QStringLiteral("badge %1 %2 %3 %4 %5")
                            .arg(static_cast<int>(badge.glyph))
                            .arg(badge.color.rgba())
                            .arg(rimColor.rgba())
                            .arg(target.width())
                            .arg(scale);
    QPixmap picture; // drawn once: hundreds are in view on a large screen
    if (!QPixmapCache::find(key, &picture)) {
        const QRectF area(QPointF(), target.size());
        const qreal rim = area.width() / 12;
        const qreal inset = area.width() * 0.22;
        picture = QPixmap((area.size() * scale).toSize());
        picture.setDevicePixelRatio(scale);
        picture.fill(Qt::transparent);
        QPainter canvas(&picture);
        canvas.setRenderHint(QPainter::Antialiasing);
        canvas.setPen(QPen(rimColor, rim));
        canvas.setBrush(badge.color);
        canvas.drawEllipse(area.adjusted(rim, rim, -rim, -rim));
        PaintGlyph(canvas, area.adjusted(inset, inset, -inset, -inset), badge.glyph, Qt::white);
        canvas.end();
        QPixmapCache::insert(key, picture);
    }
    painter.drawPixmap(target.topLeft(), picture);
}

} // namespace Norlis::Window
