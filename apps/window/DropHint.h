#pragma once

#include <QFrame>

class QLabel;

namespace Norlis::Window {

/// Covers another widget while files hover over it, and says what dropping them would do. It lets all events through.
class DropHint : public QFrame {
    Q_OBJECT

public:
    explicit DropHint(QWidget& covered);

    /// \param paths of the files
    /// \return IsUseful
    bool Show(const QStringList& paths);

    /// Whether dropping what was shown last would do anything.
    bool IsUseful() const;

private:
    bool isUseful = false;
    QLabel* const text;
};

} // namespace Norlis::Window
