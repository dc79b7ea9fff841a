#pragma once

#include <QDialog>

namespace Norlis::Window {

/// What this program is and what it is made with.
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    explicit AboutDialog(QWidget* parent = nullptr);
};

} // namespace Norlis::Window
