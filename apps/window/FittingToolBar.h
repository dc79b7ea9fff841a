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
        if (sizeHint().width() > width()) {
            setToolButtonStyle(Qt::ToolButtonIconOnly);
        }
    }

    bool isBrief = false;
};

} // namespace Norlis::Window
