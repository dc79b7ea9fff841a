#pragma once

#include <QFrame>

namespace Norlis::Window {

/// How much a message matters: a Problem is what has failed or has to be decided. Plain is for where there is none.
enum class Tint { Plain, Notice, Problem };

/// The colour behind a message: the window's own, towards blue or amber unless it is plain, so that its text can be
/// read on it.
QColor TintOf(Tint tint, const QPalette& palette);

/// A frame that is tinted, around a message.
class TintedFrame : public QFrame {
public:
    explicit TintedFrame(QWidget* parent = nullptr);

    void SetTint(Tint newTint);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Tint tint = Tint::Notice;
};

} // namespace Norlis::Window
