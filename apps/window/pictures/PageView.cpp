#include "PageView.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QtMath>
#include <QWheelEvent>

namespace Norlis::Window {

namespace {

constexpr qreal step = 1.25;
constexpr qreal doubleClickZoom = 2;
constexpr qreal largestZoom = 8;
constexpr qreal largestEdge = 4096; // in pixels of the screen; a larger page would need hundreds of megabytes

} // namespace

PageView::PageView(Host::CloudSession& session, QWidget* parent)
    : QScrollArea(parent),
      picture(new PagePicture(session))
{
    setObjectName("pageView");
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setAlignment(Qt::AlignCenter);
    setWidgetResizable(true);
    setWidget(picture);
    picture->setAutoFillBackground(false); // what is around the page is the parent's
    viewport()->setAutoFillBackground(false);
    connect(picture, &PagePicture::Settled, this, &PageView::Update);
}

PagePicture& PageView::Picture() const
{
    return *picture;
}

QSizeF PageView::FittingSize() const
{
    return QSizeF(picture->PageSize()).scaled(maximumViewportSize(), Qt::KeepAspectRatio);
}

qreal PageView::LargestZoom() const
{
    const QSizeF fitting = FittingSize() * devicePixelRatioF();
    return qBound(1.0, largestEdge / qMax(1.0, qMax(fitting.width(), fitting.height())), largestZoom);
}

void PageView::Update()
{
    const qreal used = qMin(zoom, LargestZoom());
    const bool isFitting = used <= 1 || picture->PageSize().isEmpty();
    setWidgetResizable(isFitting);
    if (!isFitting) {
        picture->resize((FittingSize() * used).toSize());
    }
    UpdateCursor();
    emit ZoomChanged();
}

void PageView::ZoomBy(int steps)
{
    ZoomTo(zoom * qPow(step, steps), viewport()->rect().center());
}

void PageView::Fit()
{
    ZoomTo(1, viewport()->rect().center());
}

void PageView::ZoomTo(qreal wanted, const QPoint& place)
{
    const QSizeF before = FittingSize() * zoom;
    const QPointF middle = picture->rect().center(); // of the page too
    const QPointF fromMiddle = QPointF(picture->mapFrom(viewport(), place)) - middle;
    const QPoint onScreen = viewport()->mapToGlobal(place);
    zoom = qBound(1.0, wanted, LargestZoom());
    if (zoom < (1 + step) / 2) { // steps up and down again end where they began
        zoom = 1;
    }
    Update();
    const qreal growth = before.isEmpty() ? 1 : FittingSize().width() * zoom / before.width();
    const QPoint placeNow = viewport()->mapFromGlobal(onScreen); // the view may have become wider
    MoveTo((QPointF(picture->rect().center()) + fromMiddle * growth - placeNow).toPoint());
}

bool PageView::CanZoomIn() const
{
    return !picture->PageSize().isEmpty() && zoom < LargestZoom();
}

bool PageView::CanZoomOut() const
{
    return !picture->PageSize().isEmpty() && zoom > 1;
}

qreal PageView::Zoom() const
{
    return zoom;
}

int PageView::WantedWidth() const
{
    const QSize page = picture->PageSize();
    const int bar = zoom > 1 ? verticalScrollBar()->sizeHint().width() : 0;
    return bar + qCeil(maximumViewportSize().height() * zoom * page.width() / qMax(1, page.height()));
}

bool PageView::IsLarger(Qt::Orientation orientation) const
{
    return (orientation == Qt::Horizontal ? horizontalScrollBar() : verticalScrollBar())->maximum() > 0;
}

void PageView::MoveTo(const QPoint& corner)
{
    QScrollBar& across = *horizontalScrollBar();
    across.setValue(isRightToLeft() ? across.maximum() - corner.x() : corner.x());
    verticalScrollBar()->setValue(corner.y());
}

bool PageView::MoveBy(const QPoint& way)
{
    const QPoint before = picture->pos();
    MoveTo(way - before);
    return picture->pos() != before;
}

void PageView::MoveToTop()
{
    verticalScrollBar()->setValue(0);
}

void PageView::UpdateCursor()
{
    if (isHeld) {
        viewport()->setCursor(Qt::ClosedHandCursor);
    } else if (IsLarger(Qt::Horizontal) || IsLarger(Qt::Vertical)) {
        viewport()->setCursor(Qt::OpenHandCursor);
    } else {
        viewport()->unsetCursor();
    }
}

void PageView::mousePressEvent(QMouseEvent* event)
{
    isHeld = event->button() == Qt::LeftButton && (IsLarger(Qt::Horizontal) || IsLarger(Qt::Vertical));
    held = event->pos();
    UpdateCursor();
}

void PageView::mouseMoveEvent(QMouseEvent* event)
{
    if (isHeld) {
        MoveBy(held - event->pos());
        held = event->pos();
    }
}

void PageView::mouseReleaseEvent(QMouseEvent*)
{
    isHeld = false;
    UpdateCursor();
}

void PageView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        ZoomTo(zoom > 1 ? 1 : doubleClickZoom, event->pos());
    }
}

void PageView::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    Update();
}

void PageView::wheelEvent(QWheelEvent* event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        const QScrollBar& bar = *verticalScrollBar();
        const int way = event->angleDelta().y();
        if ((way < 0 && bar.value() == bar.maximum()) || (way > 0 && bar.value() == 0)) {
            event->ignore();
        } else {
            QScrollArea::wheelEvent(event);
        }
        return;
    }
    turned += event->angleDelta().y();
    const int steps = turned / QWheelEvent::DefaultDeltasPerStep;
    turned -= steps * QWheelEvent::DefaultDeltasPerStep;
    if (steps != 0) {
        ZoomTo(zoom * qPow(step, steps), event->position().toPoint());
    }
    event->accept();
}

} // namespace Norlis::Window
