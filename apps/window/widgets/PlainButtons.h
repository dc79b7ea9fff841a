#pragma once

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionComplex>

namespace Norlis::Window {

/// The buttons of dialogs have words alone, whatever the desktop's style puts beside them, and one in a toolbar has a
/// frame that is seen while it has the keyboard.
class PlainButtons : public QProxyStyle {
public:
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override
    {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        if (control == CC_ToolButton && option->state.testFlag(State_HasFocus)) {
            painter->setPen(QPen(option->palette.color(QPalette::ButtonText), 2));
            painter->drawRect(option->rect.adjusted(1, 1, -1, -1));
        }
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override
    {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

} // namespace Norlis::Window
