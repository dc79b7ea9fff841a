#pragma once

#include <QColor>
#include <QIcon>
#include <QRectF>

class QPainter;
class QPalette;

namespace Norlis::Window {

/// Line drawings. Drawn rather than loaded, so that they have the palette's colours and are sharp at every scale.
enum class Glyph {
    Cancel,
    ChangedHere,
    ChangedInCloud,
    Cloud,
    Conflict,
    Document,
    Download,
    Folder,
    InStep,
    List,
    NotUploaded,
    Open,
    Refresh,
    Remove,
    Search,
    Server,
    Thumbnails,
    Upload,
    UploadChanges,
};

void PaintGlyph(QPainter& painter, const QRectF& target, Glyph glyph, const QColor& color);

/// An icon in the text colour of the application's palette as it is at the time of painting.
QIcon GlyphIcon(Glyph glyph);

/// A disc that tells a PDF::FileInfo::CloudStatus, by its drawing as well as by its colour.
void PaintBadge(QPainter& painter, const QRectF& target, int state, const QPalette& palette);

} // namespace Norlis::Window
