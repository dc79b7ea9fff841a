#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

namespace Norlis::Window {

/// How much of the storage is used; hidden as long as nothing is known about it.
class StorageBar : public QWidget {
    Q_OBJECT

public:
    explicit StorageBar(QWidget* parent = nullptr);

    /// In MiB; see StorageText.
    void Show(int usedMiB, int totalMiB);

private:
    QProgressBar* const bar;
    QLabel* const text;
};

} // namespace Norlis::Window
