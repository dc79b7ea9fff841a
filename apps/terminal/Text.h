#pragma once

#include <QJsonDocument>
#include <QString>

namespace Norlis::Terminal {

/// The text on one line, without characters that move the cursor, switch the terminal's state or turn the direction of
/// writing: a document's name comes from elsewhere and is shown, never obeyed.
QString Printable(const QString& text);

/// The document on one line. Characters that Printable replaces are written as escapes, which means the same.
QString JsonText(const QJsonDocument& document);

/// Columns that a text takes on a terminal.
int DisplayWidth(const QString& text);

/// The text with blanks behind it up to a number of columns.
QString PadRight(const QString& text, int columns);

/// The text, cut with an ellipsis where it takes more columns than it may.
QString Shorten(const QString& text, int columns);

/// Bytes in the largest unit that leaves a number of at least 1, as in "1.4 MiB".
QString HumanSize(quint64 bytes);

} // namespace Norlis::Terminal
