#pragma once

#include <QCoreApplication>

namespace Norlis::Window {

/// Lets all be drawn with as many pixels as the screen has, which Qt 6 does by itself. Called before there is an
/// application object.
inline void UseAllPixels()
{
#if QT_VERSION_MAJOR < 6
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

} // namespace Norlis::Window
