#pragma once

#include "DocumentDelegate.h"

#include <QElapsedTimer>
#include <QListView>
#include <QTimer>

namespace Norlis::Window {

/// The documents, as thumbnails or as a list.
class DocumentsView : public QListView {
    Q_OBJECT

public:
    explicit DocumentsView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* newModel) override;

    /// What was first in view is so again, unless a current document that is selected would leave the view.
    void SetMode(DisplayMode newMode);

    /// \param pictures for large thumbnails; outlive this
    void SetLargePictures(const LargePictures& pictures);

    /// Seen above the list.
    ListHeader& Header();

    /// \param edge of a thumbnail's larger side, in pixels. What is in the middle of the view stays there.
    void SetThumbnailEdge(int edge);

    /// Ids of the selected documents, in the order of the view.
    QStringList SelectedIds() const;

    /// Selects documents and scrolls to the first of them. False when the view does not have them.
    bool Select(const QStringList& ids);

    /// The same with new documents, unless the user has selected others than those that were revealed last. False when
    /// the search hides them.
    bool Reveal(const QStringList& ids);

    /// Selects the next document when the selected ones, which the user removes, have gone.
    void GoOnAfterRemoval();

    /// To be called when the preview in that file has changed.
    void ForgetPreview(const QString& path);

    /// To be called when the service has no preview of a document, or has one again.
    void SetUnreadable(const QString& id, bool isUnreadable);

    /// Selects the document above or below the current one, or the one before or after it, which may be in another
    /// line.
    void SelectNeighbour(Qt::Key arrow);

    void keyboardSearch(const QString& search) override;

signals:
    /// Something else is selected. Not emitted for what the model's rowsRemoved and rowsInserted tell of: after a
    /// transfer a selected document leaves the list and enters it again.
    void SelectionChanged();

    /// The user turns the wheel to have larger thumbnails, or smaller ones.
    void ZoomRequested(int steps);

    /// The user asks for a menu, at this place on the screen.
    void MenuRequested(const QPoint& place, bool isOnDocument);

    /// Which documents are in view has changed, or how large. Emitted a few times a second while the user scrolls.
    /// \param edge of their pictures, in pixels of the screen
    void ShownChanged(const QStringList& ids, int edge);

protected:
    bool event(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;
    void updateGeometries() override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;
    void rowsInserted(const QModelIndex& parent, int first, int last) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    void UpdateGridSize();
    int CountOfColumns() const;
    bool IsCurrentInView() const;
    QStringList ShownIds() const;

    ListHeader* const header;
    Thumbnails thumbnails;
    DocumentDelegate delegate{thumbnails, *header};
    DisplayMode mode = DisplayMode::Thumbnails;

    // Ids of rows that were removed just now: after a transfer a document leaves the list and enters it again at once.
    QSet<QString> removedSelection;
    QString removedCurrent;
    int removedRow = 0;
    bool goesOn = false;        ///< see GoOnAfterRemoval
    bool areRowsMoving = false; ///< while a model inserts or removes some
    QTimer forgetTimer;

    QStringList shown;    ///< ids, as last emitted
    int shownEdge = 0;    ///< as last emitted
    QStringList revealed; ///< ids; see Reveal
    QTimer shownTimer;
    int turned = 0;      ///< eighths of a degree of the wheel, that are less than a step
    QElapsedTimer typed; ///< since the last letter of a name
};

} // namespace Norlis::Window
