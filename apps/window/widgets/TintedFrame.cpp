#include "TintedFrame.h"

#include <QPainter>

namespace Norlis::Window {

QColor TintOf(Tint tint, const QPalette& palette)
{
    const QColor paper = palette.color(QPalette::Window);
    if (tint == Tint::Plain) {
        return paper;
    }
    constexpr qreal share = 0.18;
    const QColor ink = tint == Tint::Problem ? QColor(255, 165, 0) : QColor(0, 120, 230);
    const auto mixed = [](qreal one, qreal other) { return one * (1 - share) + other * share; };
    return QColor::fromRgbF(mixed(paper.redF(), ink.redF()), mixed(paper.greenF(), ink.greenF()),
                            mixed(paper.blueF(), ink.blueF()));
}

TintedFrame::TintedFrame(QWidget* parent) : QFrame(parent)
{
    setFrameShape(StyledPanel);
}

void TintedFrame::SetTint(Tint newTint)
{
    tint = newTint;
    update();
}

void TintedFrame::paintEvent(QPaintEvent* event)
{
    QPainter(this).fillRect(rect(), TintOf(tint, palette()));
    QFrame::paintEvent(event);
}

} // namespace Norlis::Window
