#pragma once

#include <QColor>
#include <QIcon>
#include <QRectF>

class QPainter;
class QPalette;

namespace Norlis::Window {

/// Line drawings. They are drawn rather than loaded, to use the palette's colours and to be sharp at every scale.
enum class Glyph {
    Cancel,
    ChangedHere,
    ChangedInCloud,
    ChevronDown,
    ChevronLeft,
    ChevronRight,
    ChevronUp,
    Cloud,
    Conflict,
    Copy,
    Document,
    Download,
    Folder,
    List,
    Notice,
    NotUploaded,
    Open,
    Paste,
    Problem,
    Refresh,
    Remove,
    Search,
    Server,
    Thumbnails,
    Unreadable,
    Upload,
    UploadChanges,
    UpToDate,
    ZoomIn,
    ZoomOut,
};

void PaintGlyph(QPainter& painter, const QRectF& target, Glyph glyph, const QColor& color);

/// An icon in the text colour that the application's palette has at the time of painting.
QIcon GlyphIcon(Glyph glyph);

/// A disc that shows a PDF::FileInfo::CloudStatus, by its drawing as well as its colour.
void PaintBadge(QPainter& painter, const QRectF& target, int state, const QPalette& palette);

} // namespace Norlis::Window
