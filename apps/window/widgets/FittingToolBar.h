#pragma once

#include <QEvent>
#include <QToolBar>

#include <utility>

namespace Norlis::Window {

/// A toolbar that leaves out the texts below its icons where there is no room for all of them, or none to waste.
class FittingToolBar : public QToolBar {
public:
    using QToolBar::QToolBar;

    void LeaveOutTexts(bool areLeftOut)
    {
        if (std::exchange(isBrief, areLeftOut) != areLeftOut) {
            Fit();
        }
    }

    /// With the texts, unless they are left out however wide it is.
    int WholeWidth()
    {
        if (wholeWidth == 0) {
            Fit();
        }
        return wholeWidth;
    }

    /// As wide as with the texts, so that a layout gives it the room for them.
    QSize sizeHint() const override
    {
        const QSize hint = QToolBar::sizeHint();
        return {qMax(hint.width(), wholeWidth), hint.height()};
    }

protected:
    void resizeEvent(QResizeEvent* event) override
    {
        QToolBar::resizeEvent(event);
        Fit();
    }

    void changeEvent(QEvent* event) override
    {
        QToolBar::changeEvent(event);
        if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
            Fit();
        }
    }

private:
    void Fit()
    {
        setToolButtonStyle(isBrief ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextUnderIcon);
        wholeWidth = QToolBar::sizeHint().width();
        if (wholeWidth > width()) {
            setToolButtonStyle(Qt::ToolButtonIconOnly);
        }
    }

    bool isBrief = false;
    int wholeWidth = 0;
};

} // namespace Norlis::Window
