#pragma once

#include "Column.h"

#include <QHeaderView>
#include <QStandardItemModel>
#include <QTimer>

#include <array>

namespace Norlis::Window {

/// The titles of the list's columns, which decide where the columns are. A click on one sorts; the edge between two can
/// be dragged. The name has the room that is left; where there is little, the least important columns are left out.
class ListHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit ListHeader(QWidget* parent = nullptr);

    /// The folder has a column while one of these has a local copy.
    /// \param newDocuments a Host::CloudDocumentsModel, which outlives this
    void Follow(const QAbstractItemModel& newDocuments);

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
    void LookForFolders();

    /// Gives the columns their widths, as far as there is room.
    void Fit();
    void OnResized(int section, int before, int after);

    /// The column at the far side of the edge; -1 for the last one.
    int Next(int section) const;
    int MinimumOf(int section) const;

    QStandardItemModel titles;
    const QAbstractItemModel* documents = nullptr;
    QTimer looking; ///< combines many changes into one look
    std::array<int, columnCount> wanted = {};
    bool hasFolders = false;
    bool isFitting = false;
};

} // namespace Norlis::Window
