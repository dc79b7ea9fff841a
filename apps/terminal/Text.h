#pragma once

#include <apps/common/PrintableText.h>

#include <QJsonDocument>
#include <QString>

namespace Norlis::Terminal {

using Apps::Printable;

/// The document on one line. Characters that Printable replaces are written as equivalent escapes.
QString JsonText(const QJsonDocument& document);

/// The number of columns that a text takes on a terminal.
int DisplayWidth(const QString& text);

/// The text, padded with blanks to a number of columns.
QString PadRight(const QString& text, int columns);

/// The text, cut off with an ellipsis if it is wider than a number of columns.
QString Shorten(const QString& text, int columns);

/// A number of bytes in the largest unit that gives at least 1, as in "1.4 MiB".
QString HumanSize(quint64 bytes);

} // namespace Norlis::Terminal
