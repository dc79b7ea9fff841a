#pragma once

#include "Preferences.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QSpinBox;

namespace Norlis::Window {

class FolderField;

/// Lets the user change the settings. They are stored when the dialog is accepted.
class SettingsDialog : public QDialog {
    Q_OBJECT

public:
    explicit SettingsDialog(const Preferences& preferences, QWidget* parent = nullptr);

    void accept() override;

private:
    void Arrange();

    Preferences preferences;
    FolderField* const downloads;
    FolderField* const opened;
    QSpinBox* const refresh;
    QCheckBox* const uploads;
    QCheckBox* const tells;
    QSpinBox* const delay;
    QLabel* const problem;
};

} // namespace Norlis::Window
