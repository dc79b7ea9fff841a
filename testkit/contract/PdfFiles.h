#pragma once

#include <QByteArray>
#include <QColor>
#include <QSizeF>
#include <QVector>

namespace Norlis::TestKit {

/// A document with one page of that size, in points, filled with a color.
QByteArray PdfOfColor(const QColor& color, const QSizeF& size = {595, 842});

/// A document with one page for each color, filled with it.
QByteArray PdfOfColors(const QVector<QColor>& colors);

/// A document with that text on every page.
QByteArray PdfOfText(const QString& text, int pages = 1);

/// A document written object by object: one page with that media box ("0 0 595 842") and content.
QByteArray PdfOfContent(const QByteArray& mediaBox, const QByteArray& content);

/// A document of more than that many bytes, few of which belong to its one page, which is filled with a color.
QByteArray PdfWithMuchElse(const QColor& color, int bytes);

/// A document without pages.
QByteArray PdfWithoutPages();

/// A document that needs a password.
QByteArray PdfWithPassword();

/// A document whose page takes very long to paint.
QByteArray PdfThatTakesLong();

} // namespace Norlis::TestKit
