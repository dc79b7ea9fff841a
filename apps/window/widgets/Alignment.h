#pragma once

#include <QStyle>
#include <QWidget>

namespace Norlis::Window {

/// Where lines of text begin in a part of the window, whatever the direction of the text, by which Qt would go.
inline Qt::Alignment StartOf(const QWidget& part)
{
    return QStyle::visualAlignment(part.layoutDirection(), Qt::AlignLeft) | Qt::AlignAbsolute;
}

} // namespace Norlis::Window
