#pragma once

#include <QString>

namespace Norlis::Apps {

/// Whether a terminal obeys a character, or a person does not see it.
bool IsTreacherous(char32_t codePoint);

/// Whether a text consists of printable ASCII characters, as nearly all do: each takes one column and stands for
/// itself.
bool IsPlain(const QString& text);

/// The text on one line, as a person may read it: characters that move the cursor, change the terminal's state or the
/// direction of writing, or are invisible, are replaced. A document's name comes from elsewhere and must neither
/// control a terminal nor look like another one.
QString Printable(const QString& text);

} // namespace Norlis::Apps
