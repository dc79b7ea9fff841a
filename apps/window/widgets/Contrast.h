#pragma once

#include <QPalette>
#include <QRectF>

class QPainter;

namespace Norlis::Window {

/// How well one colour is seen on another one, from 1 to 21: text needs 4.5 and what else is to be seen 3.
qreal Contrast(const QColor& one, const QColor& other);

/// Behind HighlightedText: the palette's Highlight, or as much darker or lighter as texts on it need.
QColor SelectionColor(const QPalette& palette);

/// Behind what is selected in a list: a tint, on which Text is read and pictures keep their looks, with a rim that is
/// seen on Base.
void PaintSelection(QPainter& painter, const QRectF& area, qreal cornerRadius, const QPalette& palette,
                    QPalette::ColorGroup group);

} // namespace Norlis::Window
