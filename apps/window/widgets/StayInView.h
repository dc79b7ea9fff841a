#pragma once

#include <QAbstractItemView>
#include <QResizeEvent>
#include <QTimer>

namespace Norlis::Window {

/// Where a view becomes lower, since something comes below it, its current item stays in view if it was.
class StayInView : public QObject {
public:
    explicit StayInView(QAbstractItemView& view) : QObject(&view), view(view)
    {
        view.viewport()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Resize) {
            const QRect before(QPoint(), static_cast<QResizeEvent*>(event)->oldSize());
            if (view.currentIndex().isValid() && before.contains(view.visualRect(view.currentIndex()))) {
                QTimer::singleShot(0, &view, [this] { view.scrollTo(view.currentIndex()); }); // when it knows its size
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QAbstractItemView& view;
};

} // namespace Norlis::Window
