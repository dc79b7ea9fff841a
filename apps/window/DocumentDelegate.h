#pragma once

#include "Thumbnails.h"

#include <QStyledItemDelegate>

namespace Norlis::Window {

enum class DisplayMode { Thumbnails, List };

/// Paints documents: as thumbnails with the name below, or on one line with name, state, size and date.
class DocumentDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit DocumentDelegate(Thumbnails& thumbnails, QObject* parent = nullptr);

    /// Whether the page in the place of a missing preview is a torn one.
    void SetUnreadable(const QString& id, bool isUnreadable);

    void SetMode(DisplayMode newMode);

    /// The size of one document, for a view of that width.
    QSize CellSize(const QFontMetrics& metrics, int viewWidth) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void PaintThumbnail(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void PaintLine(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    QRect PaintPreview(QPainter& painter, const QRect& box, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const;

    Thumbnails& thumbnails;
    QSet<QString> unreadable; ///< ids
    DisplayMode mode = DisplayMode::Thumbnails;
};

} // namespace Norlis::Window
