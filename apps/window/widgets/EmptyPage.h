#pragma once

#include "Glyphs.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace Norlis::Window {

/// Shown in place of the documents when there are none; says why.
class EmptyPage : public QWidget {
    Q_OBJECT

public:
    explicit EmptyPage(QWidget* parent = nullptr);

    /// \param action text of the button; empty for none
    void Show(Glyph glyph, const QString& title, const QString& hint, const QString& action = {});

signals:
    void ActionChosen();

private:
    QLabel* const picture;
    QLabel* const title;
    QLabel* const hint;
    QPushButton* const button;
};

} // namespace Norlis::Window
