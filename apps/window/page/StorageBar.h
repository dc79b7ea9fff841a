#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;

namespace Norlis::Host {
class CloudSession;
} // namespace Norlis::Host

namespace Norlis::Window {

/// How much of the storage is used; hidden as long as nothing is known about it.
class StorageBar : public QWidget {
    Q_OBJECT

public:
    explicit StorageBar(QWidget* parent = nullptr);

    /// Shows what the cloud tells, and asks again when documents have come or gone.
    void Follow(Host::CloudSession& session);

    /// In MiB; see StorageText.
    void Show(int usedMiB, int totalMiB);

private:
    QProgressBar* const bar;
    QLabel* const text;
    QTimer update; ///< combines many changes into one question
};

} // namespace Norlis::Window
