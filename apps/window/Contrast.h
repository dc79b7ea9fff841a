#pragma once

#include <QPalette>

namespace Norlis::Window {

/// How well one colour is seen on another one, from 1 to 21: text needs 4.5 and what else is to be seen 3.
qreal Contrast(const QColor& one, const QColor& other);

/// Behind what is selected: the palette's colour, or as much darker or lighter as texts on it need.
QColor SelectionColor(const QPalette& palette, QPalette::ColorGroup group = QPalette::Current);

} // namespace Norlis::Window
