#pragma once

#include <QObject>

namespace Norlis::Window {

/// Messages on the desktop, outside of the window. Where the desktop shows none, nothing happens.
class Notifications : public QObject {
    Q_OBJECT

public:
    explicit Notifications(QObject* parent = nullptr);

    /// In the place of the last one, if it is still there.
    void Show(const QString& title, const QString& text);

signals:
    /// The user has clicked on it.
    void Activated();

private slots:
    void OnAction(uint number, const QString& action);

private:
    uint shown = 0; ///< the desktop's number of the last one; 0 when there was none
};

} // namespace Norlis::Window
