#pragma once

#include <QPainter>
#include <QScrollBar>

namespace Norlis::Window {

/// A scroll bar that keeps its place and is not seen while there is nothing to scroll. One that comes and goes changes
/// the width of what is scrolled, which can make it come again.
class QuietScrollBar : public QScrollBar {
public:
    using QScrollBar::QScrollBar;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        if (minimum() < maximum()) {
            QScrollBar::paintEvent(event);
        } else {
            QPainter(this).fillRect(rect(), palette().brush(QPalette::Base));
        }
    }
};

} // namespace Norlis::Window
