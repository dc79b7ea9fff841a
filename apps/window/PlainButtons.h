#pragma once

#include <QApplication>
#include <QProxyStyle>

namespace Norlis::Window {

/// The buttons of dialogs have words alone, whatever the desktop's style puts beside them.
class PlainButtons : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override
    {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

} // namespace Norlis::Window
