#pragma once

#include <QFrame>

class QLabel;

namespace Norlis::Window {

/// Takes the files that are dropped on a widget. While they hover over it, it covers another one and says what dropping
/// them would do.
class DropHint : public QFrame {
    Q_OBJECT

public:
    /// \param target  takes drops from now on
    /// \param covered owns this
    DropHint(QWidget& target, QWidget& covered);

signals:
    void Dropped(const QStringList& paths);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void OnEntered(QDragEnterEvent& event);
    void Show(const QStringList& paths);

    /// The text is not below what is dragged.
    void MakeRoom(const QDropEvent& event);

    QWidget& target;
    bool isUseful = false; ///< whether dropping what was shown last would do anything
    QLabel* const text;
};

} // namespace Norlis::Window
