#pragma once

#include <QByteArray>
#include <QColor>
#include <QSizeF>

namespace Norlis::Test {

/// A document of one page of that size, in points, which is filled with a colour.
QByteArray PdfOfColor(const QColor& color, const QSizeF& size = {595, 842});

/// A document of pages of text.
QByteArray PdfOfText(const QString& text, int pages = 1);

/// A document written object by object: one page with that media box ("0 0 595 842") and content.
QByteArray PdfOfContent(const QByteArray& mediaBox, const QByteArray& content);

/// A document without a page.
QByteArray PdfWithoutPages();

/// A document that asks for a password.
QByteArray PdfWithPassword();

/// A document whose page takes very long to paint.
QByteArray PdfThatTakesLong();

} // namespace Norlis::Test
