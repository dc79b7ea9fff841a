#pragma once

#include <QString>

namespace Norlis::Window {

/// What the service or the session says of a failure, in the user's language, as far as its sentences are known here:
/// theirs are English. Numbers and texts of a server's own stay as they are.
QString InUsersLanguage(const QString& text);

} // namespace Norlis::Window
