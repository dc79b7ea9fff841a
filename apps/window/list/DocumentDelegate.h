#pragma once

#include "ListHeader.h"

#include <apps/window/pictures/Thumbnails.h>

#include <QCache>
#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

namespace Norlis::Window {

class LargePictures;
enum class DisplayMode { Thumbnails, List };

/// Paints documents: as thumbnails with the name below, or on one line, in columns.
class DocumentDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// \param header has the columns of a line
    DocumentDelegate(Thumbnails& thumbnails, const ListHeader& header, QObject* parent = nullptr);

    /// \param newPictures for thumbnails that are larger than the previews; outlive this
    void SetLargePictures(const LargePictures* newPictures);

    /// Whether the page in the place of a missing preview is a torn one.
    void SetUnreadable(const QString& id, bool isUnreadable);

    void SetMode(DisplayMode newMode);

    /// \param edge of a thumbnail's larger side, in pixels
    void SetThumbnailEdge(int edge);

    /// Leaves out parts of documents that lie outside of a region, until the next call. An empty one means everything.
    void PaintOnly(const QRegion& region);

    /// The document that was painted without the picture in that file, which was not loaded yet; invalid if none was.
    /// It awaits the picture no longer.
    QModelIndex TakeAwaiting(const QString& picture);

    /// Of the pictures, in pixels.
    int PictureEdge() const;

    /// The size of one document, for a view of that width.
    QSize CellSize(const QFontMetrics& metrics, int viewWidth) const;

    /// Where the picture of a document is painted, for any picture.
    QRect PictureArea(const QRect& cell) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void PaintThumbnail(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void PaintLine(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    QRect PictureBox(const QRect& cell) const;
    bool IsToBePainted(const QRect& part) const;
    QRect PaintPreview(QPainter& painter, const QRect& box, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const;

    Thumbnails& thumbnails;
    const ListHeader& header;
    const LargePictures* largePictures = nullptr;
    QSet<QString> unreadable;                                ///< ids
    QRegion toBePainted;                                     ///< see PaintOnly
    mutable QCache<QString, QPersistentModelIndex> awaiting; ///< by the path of the picture
    mutable QCache<QString, QString> last;                   ///< paths of the pictures that were painted, by id
    DisplayMode mode = DisplayMode::Thumbnails;
    int previewEdge = 144; ///< of a thumbnail
};

} // namespace Norlis::Window
