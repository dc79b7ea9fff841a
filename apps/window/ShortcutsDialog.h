#pragma once

#include <QDialog>

class QMenuBar;

namespace Norlis::Window {

/// Lists the keys of what can be done, as the menus have it, and in the quick look.
class ShortcutsDialog : public QDialog {
    Q_OBJECT

public:
    explicit ShortcutsDialog(const QMenuBar& bar, QWidget* parent = nullptr);
};

} // namespace Norlis::Window
