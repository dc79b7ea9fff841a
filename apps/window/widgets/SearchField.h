#pragma once

#include <QLineEdit>

namespace Norlis::Window {

/// Where the user types what is searched for.
class SearchField : public QLineEdit {
    Q_OBJECT

public:
    explicit SearchField(QWidget* parent = nullptr);

signals:
    /// By Escape; the field is empty then.
    void Left();
};

} // namespace Norlis::Window
