#pragma once

#include "Column.h"

#include <QHash>
#include <QHeaderView>
#include <QStandardItemModel>
#include <QTimer>

#include <array>

namespace Norlis::Window {

class DocumentsFilter;

/// The titles of the list's columns, which decide where the columns are. A click on one sorts; the edge between two can
/// be dragged. The name has the room that is left. Where there is little for the names that there are, the folder is
/// left out first, then the others get as narrow as what they show, and then the size, the date and the state are left
/// out.
class ListHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit ListHeader(QWidget* parent = nullptr);

    /// The folder has a column while one of the documents, shown or not, has a copy of the user's own.
    /// \param newFilter has its model; outlives this
    void Follow(const DocumentsFilter& newFilter);

    bool Has(Column column) const;

    /// The part of a line of the list that shows a column.
    QRect CellOf(Column column, const QRect& line) const;

    /// As the user wants them, in pixels; that of the name is not used.
    QList<int> Widths() const;

    /// Does nothing if there are not as many as columns.
    void SetWidths(const QList<int>& widths);

signals:
    /// The columns have other places.
    void Arranged();

    /// The user has dragged an edge.
    void WidthsChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

private:
    /// At what the documents have to show.
    void Look();

    /// Gives the columns their widths, as far as there is room.
    void Fit();
    void OnResized(int section, int before, int after);

    /// The column at the far side of the edge; -1 for the last one.
    int Next(int section) const;
    int MinimumOf(int section) const;

    /// What the user has made of it; until then, what its contents need.
    int WantedOf(Column column) const;

    /// As narrow as it may get for the sake of the name.
    int LeastOf(Column column) const;

    QStandardItemModel titles;
    const DocumentsFilter* filter = nullptr;
    QTimer looking; ///< combines many changes into one look
    std::array<int, columnCount> wanted = {};
    int lettersOfFolders = 0; ///< at most; 0 if no document has one
    QHash<int, int> stateWidths;
    int widestState = 0;    ///< of those that there are
    int lettersOfNames = 0; ///< that most of them have
    bool isFitting = false;
};

} // namespace Norlis::Window
