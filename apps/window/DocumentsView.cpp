#include "DocumentsView.h"

#include <host/CloudDocumentsModel.h>

#include <QEvent>
#include <QScrollBar>

#include <algorithm>

namespace Norlis::Window {

DocumentsView::DocumentsView(QWidget* parent) : QListView(parent)
{
    setObjectName("documents");
    setAccessibleName(tr("Documents"));
    setItemDelegate(&painting);
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setWrapping(true);
    setFlow(LeftToRight);
    setResizeMode(Adjust);
    setMovement(Static);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // one that comes and goes would change the width, and so itself
    setContextMenuPolicy(Qt::ActionsContextMenu);
    setMouseTracking(true);
    setFrameShape(NoFrame);
    // Whatever a picture belongs to, only what is visible is painted again.
    connect(&thumbnails, &Thumbnails::Loaded, viewport(), qOverload<>(&QWidget::update));
    forgetting.setSingleShot(true);
    connect(&forgetting, &QTimer::timeout, this, [this] {
        formerlySelected.clear();
        formerlyCurrent.clear();
    });
    Arrange();
}

Layout DocumentsView::Mode() const
{
    return mode;
}

void DocumentsView::SetMode(Layout newMode)
{
    mode = newMode;
    painting.SetMode(mode);
    Arrange();
    scrollTo(currentIndex());
}

QStringList DocumentsView::SelectedIds() const
{
    auto indexes = selectedIndexes();
    std::sort(indexes.begin(), indexes.end());
    QStringList ids;
    for (const auto& index : indexes) {
        ids.append(index.data(Host::CloudDocumentsModel::IdRole).toString());
    }
    return ids;
}

void DocumentsView::ForgetPicture(const QString& path)
{
    thumbnails.Forget(path);
    viewport()->update();
}

void DocumentsView::resizeEvent(QResizeEvent* event)
{
    Arrange();
    QListView::resizeEvent(event);
}

void DocumentsView::changeEvent(QEvent* event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        Arrange();
    }
}

void DocumentsView::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const auto index = model()->index(row, 0);
        const QString id = index.data(Host::CloudDocumentsModel::IdRole).toString();
        if (selectionModel()->isSelected(index)) {
            formerlySelected.insert(id);
        }
        if (index == currentIndex()) {
            formerlyCurrent = id;
        }
    }
    forgetting.start();
    QListView::rowsAboutToBeRemoved(parent, first, last);
}

void DocumentsView::rowsInserted(const QModelIndex& parent, int first, int last)
{
    QListView::rowsInserted(parent, first, last);
    for (int row = first; row <= last && forgetting.isActive(); ++row) {
        const auto index = model()->index(row, 0);
        const QString id = index.data(Host::CloudDocumentsModel::IdRole).toString();
        if (id == formerlyCurrent) {
            selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        }
        if (formerlySelected.contains(id)) {
            selectionModel()->select(index, QItemSelectionModel::Select);
        }
    }
}

void DocumentsView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QListView::selectionChanged(selected, deselected);
    emit SelectionChanged();
}

void DocumentsView::Arrange()
{
    const QSize cell = painting.CellSize(fontMetrics(), qMax(1, viewport()->width() - 1));
    setGridSize(cell);
    verticalScrollBar()->setSingleStep(qMax(1, cell.height() / 3));
}

} // namespace Norlis::Window
