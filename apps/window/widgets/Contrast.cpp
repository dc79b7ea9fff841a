#include "Contrast.h"

#include <QPainter>
#include <QtMath>

#include <utility>

namespace Norlis::Window {

namespace {

constexpr qreal forText = 4.5;
constexpr qreal forShapes = 3;

qreal Luminance(const QColor& color)
{
    const auto linear = [](qreal part) { return part <= 0.03928 ? part / 12.92 : qPow((part + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor Mixed(const QColor& ground, const QColor& color, qreal strength)
{
    const auto mix = [&](qreal one, qreal other) { return one + (other - one) * strength; };
    return QColor::fromRgbF(mix(ground.redF(), color.redF()), mix(ground.greenF(), color.greenF()),
                            mix(ground.blueF(), color.blueF()));
}

/// The colour, or as much darker or lighter as it needs to be seen on another one, or that one on it.
QColor SeenOn(const QColor& other, QColor color, qreal atLeast)
{
    constexpr int step = 104; // percent
    constexpr int maxSteps = 40;
    const bool isOtherLight = Luminance(other) > Luminance(color);
    for (int count = 0; count < maxSteps && Contrast(color, other) < atLeast; ++count) {
        color = isOtherLight ? color.darker(step) : color.lighter(step);
    }
    return color;
}

} // namespace

qreal Contrast(const QColor& one, const QColor& other)
{
    qreal lighter = Luminance(one);
    qreal darker = Luminance(other);
    if (lighter < darker) {
        std::swap(lighter, darker);
    }
    return (lighter + 0.05) / (darker + 0.05);
}

QColor SelectionColor(const QPalette& palette)
{
    return SeenOn(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight), forText);
}

void PaintSelection(QPainter& painter, const QRectF& area, qreal cornerRadius, const QPalette& palette,
                    QPalette::ColorGroup group)
{
    constexpr qreal rim = 1.5;
    const QColor paper = palette.color(group, QPalette::Base);
    const QColor highlight = palette.color(group, QPalette::Highlight);
    const QColor ink = palette.color(group, QPalette::Text);
    QColor tint = paper;
    for (qreal strength = 0.3; strength > 0 && tint == paper; strength -= 0.05) {
        const QColor mixed = Mixed(paper, highlight, strength);
        tint = Contrast(mixed, ink) >= forText ? mixed : paper;
    }
    painter.setBrush(tint);
    painter.setPen(QPen(SeenOn(paper, highlight, forShapes), rim));
    painter.drawRoundedRect(area.adjusted(rim / 2, rim / 2, -rim / 2, -rim / 2), cornerRadius, cornerRadius);
}

} // namespace Norlis::Window
