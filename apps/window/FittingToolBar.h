#pragma once

#include <QEvent>
#include <QToolBar>

namespace Norlis::Window {

/// A toolbar that leaves out the texts below its icons where there is no room for all of them.
class FittingToolBar : public QToolBar {
public:
    using QToolBar::QToolBar;

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
        setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        if (sizeHint().width() > width()) {
            setToolButtonStyle(Qt::ToolButtonIconOnly);
        }
    }
};

} // namespace Norlis::Window
