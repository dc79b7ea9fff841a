#include "DocumentsView.h"

#include <apps/window/pictures/LargePictures.h>
#include <apps/window/widgets/AccessibleParts.h>
#include <apps/window/widgets/QuietScrollBar.h>
#include <host/CloudDocumentsModel.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace Norlis::Window {

namespace {

constexpr int shownInterval = 100; // milliseconds; what passes by faster is not looked at

} // namespace

DocumentsView::DocumentsView(QWidget* parent) : QListView(parent), header(new ListHeader(this))
{
    setObjectName("documents");
    setAccessibleName(tr("Documents"));
    TellOfCurrentItem(*this);
    setItemDelegate(&delegate);
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setWrapping(true);
    setFlow(LeftToRight);
    setResizeMode(Adjust);
    setMovement(Static);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(new QuietScrollBar(this));
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setDragEnabled(true); // which setMovement has taken away
    setDragDropMode(DragOnly);
    setDefaultDropAction(Qt::CopyAction);
    setMouseTracking(true);
    setFrameShape(NoFrame);
    header->hide();
    connect(header, &ListHeader::Arranged, viewport(), qOverload<>(&QWidget::update));
    connect(&thumbnails, &Thumbnails::Loaded, this, [this](const QString& path) {
        const QModelIndex index = delegate.TakeAwaiting(path);
        viewport()->update(index.isValid() ? delegate.PictureArea(visualRect(index)) : viewport()->rect());
    });
    forgetTimer.setSingleShot(true);
    connect(&forgetTimer, &QTimer::timeout, this, [this] {
        if (std::exchange(goesOn, false) && !removedSelection.isEmpty() && !selectionModel()->hasSelection()) {
            setCurrentIndex(model()->index(qMin(removedRow, model()->rowCount() - 1), 0));
        }
        removedSelection.clear();
        removedCurrent.clear();
        TellCurrentItem(*this); // meanwhile it may have been another one
    });
    shownTimer.setSingleShot(true);
    shownTimer.setInterval(shownInterval);
    connect(&shownTimer, &QTimer::timeout, this, [this] {
        const auto before = std::exchange(shown, ShownIds());
        const int edgeBefore = std::exchange(shownEdge, qRound(delegate.PictureEdge() * devicePixelRatioF()));
        if (shown != before || shownEdge != edgeBefore) {
            emit ShownChanged(shown, shownEdge);
        }
    });
    UpdateGridSize();
}

void DocumentsView::SetMode(DisplayMode newMode)
{
    const int line = (verticalOffset() + gridSize().height() / 2) / gridSize().height();
    const int first = line * CountOfColumns();
    const bool isCurrentInView = IsCurrentInView();
    mode = newMode;
    delegate.SetMode(mode);
    header->setVisible(mode == DisplayMode::List);
    updateGeometries();
    UpdateGridSize();
    if (model()) {
        scrollTo(model()->index(first, 0), PositionAtTop);
        if (isCurrentInView) {
            scrollTo(currentIndex());
        }
    }
}

bool DocumentsView::IsCurrentInView() const
{
    return model() && selectionModel()->isSelected(currentIndex()) &&
           visualRect(currentIndex()).intersects(viewport()->rect());
}

void DocumentsView::SetThumbnailEdge(int edge)
{
    const QModelIndex held = IsCurrentInView() ? currentIndex() : indexAt(viewport()->rect().center());
    delegate.SetThumbnailEdge(edge);
    UpdateGridSize();
    if (held.isValid()) {
        scrollTo(held, PositionAtCenter);
    }
}

void DocumentsView::SetLargePictures(const LargePictures& pictures)
{
    delegate.SetLargePictures(&pictures);
    connect(&pictures, &LargePictures::Drawn, viewport(), qOverload<>(&QWidget::update));
}

ListHeader& DocumentsView::Header()
{
    return *header;
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

bool DocumentsView::Reveal(const QStringList& ids)
{
    const QStringList selected = SelectedIds();
    if (ids.isEmpty() || !(selected.isEmpty() || selected == revealed)) {
        return true;
    }
    const bool areThere = Select(ids);
    revealed = SelectedIds();
    return areThere;
}

bool DocumentsView::Select(const QStringList& ids)
{
    const QSet<QString> wanted(ids.begin(), ids.end());
    QItemSelection selection;
    for (int row = 0; row < model()->rowCount(); ++row) {
        const auto index = model()->index(row, 0);
        if (wanted.contains(index.data(Host::CloudDocumentsModel::IdRole).toString())) {
            selection.select(index, index);
        }
    }
    if (selection.isEmpty()) {
        return false;
    }
    const auto first = selection.indexes().first();
    selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    scrollTo(first);
    return true;
}

void DocumentsView::GoOnAfterRemoval()
{
    goesOn = true;
}

void DocumentsView::ForgetPreview(const QString& path)
{
    thumbnails.NoteChange(path);
    viewport()->update();
}

void DocumentsView::SetUnreadable(const QString& id, bool isUnreadable)
{
    delegate.SetUnreadable(id, isUnreadable);
    viewport()->update();
}

void DocumentsView::SelectNeighbour(Qt::Key arrow)
{
    const bool isNext = (arrow == Qt::Key_Right) != isRightToLeft();
    const auto neighbour = arrow == Qt::Key_Up ? moveCursor(MoveUp, Qt::NoModifier)
                           : arrow == Qt::Key_Down
                               ? moveCursor(MoveDown, Qt::NoModifier)
                               : currentIndex().siblingAtRow(currentIndex().row() + (isNext ? 1 : -1));
    if (neighbour.isValid()) {
        selectionModel()->setCurrentIndex(neighbour, QItemSelectionModel::ClearAndSelect);
    }
}

void DocumentsView::keyboardSearch(const QString& search)
{
    typed.start();
    QListView::keyboardSearch(search);
}

bool DocumentsView::event(QEvent* event)
{
    // While a name is typed, a space is a part of it and no shortcut.
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space &&
        typed.isValid() && !typed.hasExpired(QApplication::keyboardInputInterval())) {
        event->accept();
        return true;
    }
    return QListView::event(event);
}

void DocumentsView::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const bool isOnDocument = selectionModel()->hasSelection();
        if (isOnDocument) {
            scrollTo(currentIndex()); // the menu is beside it
        }
        const QPoint place = isOnDocument ? visualRect(currentIndex()).center() : viewport()->rect().center();
        emit MenuRequested(viewport()->mapToGlobal(place), isOnDocument);
    } else {
        emit MenuRequested(event->globalPos(), indexAt(event->pos()).isValid());
    }
}

void DocumentsView::keyPressEvent(QKeyEvent* event)
{
    const QPersistentModelIndex before = currentIndex();
    QListView::keyPressEvent(event);
    static const QVector<int> moves = {Qt::Key_Home, Qt::Key_End,  Qt::Key_PageUp, Qt::Key_PageDown,
                                       Qt::Key_Up,   Qt::Key_Down, Qt::Key_Left,   Qt::Key_Right};
    const QModelIndex current = currentIndex();
    if (!moves.contains(event->key()) || !current.isValid() || (event->modifiers() & Qt::ControlModifier)) {
        return;
    }
    if (current == before && !selectionModel()->isSelected(current)) { // Qt selects only what it comes to
        selectionModel()->select(current, QItemSelectionModel::ClearAndSelect);
    }
    scrollTo(current);
}

QModelIndex DocumentsView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    // Not as Qt has it, which begins at the first one while none is current, and stays in the column.
    return action == MoveHome  ? model()->index(0, 0)
           : action == MoveEnd ? model()->index(model()->rowCount() - 1, 0)
                               : QListView::moveCursor(action, modifiers);
}

int DocumentsView::CountOfColumns() const
{
    return qMax(1, viewport()->width() / gridSize().width());
}

QStringList DocumentsView::ShownIds() const
{
    const int columns = CountOfColumns();
    const int firstLine = verticalOffset() / gridSize().height();
    const int lines = viewport()->height() / gridSize().height() + 2; // two of them are cut off
    QStringList ids;
    for (int row = firstLine * columns; row < (firstLine + lines) * columns && model(); ++row) {
        const auto index = model()->index(row, 0);
        if (index.isValid() && visualRect(index).intersects(viewport()->rect())) {
            ids.append(index.data(Host::CloudDocumentsModel::IdRole).toString());
        }
    }
    return ids;
}

void DocumentsView::paintEvent(QPaintEvent* event)
{
    delegate.PaintOnly(event->region()); // the list view paints all that touches its bounding rectangle
    QListView::paintEvent(event);
    delegate.PaintOnly({});
    if (!shownTimer.isActive()) {
        shownTimer.start();
    }
}

void DocumentsView::resizeEvent(QResizeEvent* event)
{
    UpdateGridSize();
    QListView::resizeEvent(event);
}

void DocumentsView::wheelEvent(QWheelEvent* event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QListView::wheelEvent(event);
        return;
    }
    turned += event->angleDelta().y();
    const int steps = turned / QWheelEvent::DefaultDeltasPerStep;
    turned -= steps * QWheelEvent::DefaultDeltasPerStep;
    if (steps != 0) {
        emit ZoomRequested(steps);
    }
    event->accept();
}

void DocumentsView::changeEvent(QEvent* event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        UpdateGridSize();
    }
}

void DocumentsView::updateGeometries()
{
    const int height = mode == DisplayMode::List ? header->sizeHint().height() : 0;
    setViewportMargins(0, height, 0, 0);
    // Lines are as high whatever their width: for them the bar may go. The layout would keep its place if it went by
    // itself.
    const bool isScrolled = mode != DisplayMode::List || !model() ||
                            model()->rowCount() * gridSize().height() > maximumViewportSize().height();
    setVerticalScrollBarPolicy(isScrolled ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    QListView::updateGeometries();
    const QRect area = viewport()->geometry();
    header->setGeometry(area.left(), area.top() - height, area.width(), height);
}

void DocumentsView::setModel(QAbstractItemModel* newModel)
{
    QListView::setModel(newModel);
    if (newModel) {
        connect(newModel, &QAbstractItemModel::rowsRemoved, this, [this] { areRowsMoving = false; });
    }
}

void DocumentsView::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const auto index = model()->index(row, 0);
        const QString id = index.data(Host::CloudDocumentsModel::IdRole).toString();
        if (selectionModel()->isSelected(index)) {
            removedSelection.insert(id);
        }
        if (index == currentIndex()) {
            removedCurrent = id;
        }
    }
    removedRow = first;
    forgetTimer.start();
    areRowsMoving = true;
    QListView::rowsAboutToBeRemoved(parent, first, last);
}

void DocumentsView::rowsInserted(const QModelIndex& parent, int first, int last)
{
    QListView::rowsInserted(parent, first, last);
    areRowsMoving = true;
    for (int row = first; row <= last && forgetTimer.isActive(); ++row) {
        const auto index = model()->index(row, 0);
        const QString id = index.data(Host::CloudDocumentsModel::IdRole).toString();
        if (id == removedCurrent) {
            selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        }
        if (removedSelection.contains(id)) {
            selectionModel()->select(index, QItemSelectionModel::Select);
        }
    }
    areRowsMoving = false;
}

void DocumentsView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QListView::selectionChanged(selected, deselected);
    if (!areRowsMoving) {
        emit SelectionChanged();
    }
}

void DocumentsView::UpdateGridSize()
{
    const QSize cell = delegate.CellSize(fontMetrics(), qMax(1, viewport()->width() - 1));
    setGridSize(cell);
    verticalScrollBar()->setSingleStep(qMax(1, mode == DisplayMode::List ? cell.height() : cell.height() / 3));
}

} // namespace Norlis::Window
