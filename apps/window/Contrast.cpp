#include "Contrast.h"

#include <QtMath>

#include <utility>

namespace Norlis::Window {

namespace {

constexpr qreal forText = 4.5;
constexpr int step = 104; // percent

qreal Luminance(const QColor& color)
{
    const auto linear = [](qreal part) { return part <= 0.03928 ? part / 12.92 : qPow((part + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
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

QColor SelectionColor(const QPalette& palette, QPalette::ColorGroup group)
{
    constexpr int maxSteps = 40;
    QColor color = palette.color(group, QPalette::Highlight);
    const QColor ink = palette.color(group, QPalette::HighlightedText);
    const bool isInkLight = Luminance(ink) > Luminance(color);
    for (int count = 0; count < maxSteps && Contrast(color, ink) < forText; ++count) {
        color = isInkLight ? color.darker(step) : color.lighter(step);
    }
    return color;
}

} // namespace Norlis::Window
