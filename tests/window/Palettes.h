#pragma once

#include <QPalette>

namespace Norlis::Test {

inline QPalette Dark()
{
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(45, 45, 48));
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Base, QColor(30, 30, 32));
    dark.setColor(QPalette::AlternateBase, QColor(45, 45, 48));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Button, QColor(60, 60, 64));
    dark.setColor(QPalette::ButtonText, Qt::white);
    dark.setColor(QPalette::Highlight, QColor(20, 110, 190));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::ToolTipBase, QColor(70, 60, 30));
    dark.setColor(QPalette::ToolTipText, Qt::white);
    return dark;
}

inline QPalette HighContrast()
{
    QPalette contrast(Qt::white, Qt::black, Qt::white, Qt::black, Qt::gray, Qt::white, Qt::white, Qt::black, Qt::black);
    contrast.setColor(QPalette::Highlight, Qt::yellow);
    contrast.setColor(QPalette::HighlightedText, Qt::black);
    return contrast;
}

} // namespace Norlis::Test
