#pragma once

#include "PagePicture.h"

#include <QScrollArea>

namespace Norlis::Window {

/// A page of a document that fits into the view, or is larger and can be moved about: by the wheel, with the mouse, by
/// MoveBy. The wheel zooms while Ctrl is held; where there is nothing to scroll to, its events are left to the parent.
class PageView : public QScrollArea {
    Q_OBJECT

public:
    /// \param session must outlive this
    explicit PageView(Host::CloudSession& session, QWidget* parent = nullptr);

    /// Of the page. Update is to be called when it shows something else.
    PagePicture& Picture() const;

    /// Lets a page of other proportions have its size.
    void Update();

    /// Larger by so many steps, or smaller. The middle of the view stays where it is.
    void ZoomBy(int steps);

    /// The whole page is in view.
    void Fit();

    /// Whether the page can be larger.
    bool CanZoomIn() const;

    /// Whether it is larger than it fits.
    bool CanZoomOut() const;

    /// How large the page is: 1 where it fits into the view, otherwise more.
    qreal Zoom() const;

    /// In which all of the page is beside nothing, at this zoom and this height of the view. It can be more than there
    /// is.
    int WantedWidth() const;

    /// Whether there is more than the view shows.
    bool IsLarger(Qt::Orientation orientation) const;

    /// Moves the view over the page, in pixels. False when it is at the edge already.
    bool MoveBy(const QPoint& way);

    /// To where the page begins.
    void MoveToTop();

signals:
    void ZoomChanged();

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    /// \param place in the view, under which the same part of the page stays
    void ZoomTo(qreal wanted, const QPoint& place);

    QSizeF FittingSize() const;
    qreal LargestZoom() const;
    void MoveTo(const QPoint& corner);
    void UpdateCursor();

    PagePicture* const picture;
    qreal zoom = 1;      ///< of the size at which the page fits
    int turned = 0;      ///< by the wheel, not yet a step
    bool isHeld = false; ///< by the mouse
    QPoint held;         ///< where, in the view
};

} // namespace Norlis::Window
