#pragma once

#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace Norlis::Window {

/// Takes the room that is left, and ends in an ellipsis, or has one in its middle, where that is too little.
class ElidedLabel : public QLabel {
public:
    explicit ElidedLabel(Qt::TextElideMode mode = Qt::ElideRight, QWidget* parent = nullptr)
        : QLabel(parent),
          mode(mode)
    {
        setTextFormat(Qt::PlainText);
    }

protected:
    QSize minimumSizeHint() const override
    {
        return {0, QLabel::minimumSizeHint().height()};
    }

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setLayoutDirection(Qt::LayoutDirectionAuto); // that of the text, not of the window
        const QString shown = fontMetrics().elidedText(text(), mode, width());
        style()->drawItemText(&painter, rect(),
                              Qt::AlignVCenter | QStyle::visualAlignment(layoutDirection(), alignment()), palette(),
                              isEnabled(), shown, foregroundRole());
    }

private:
    const Qt::TextElideMode mode;
};

} // namespace Norlis::Window
