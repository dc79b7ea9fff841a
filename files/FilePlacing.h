#pragma once

#include <QString>

#include <system_error>

namespace Norlis::Files {

/// Renames a file within its file system, in one step. Fails when there is something at the target.
std::error_code MoveUnlessTaken(const QString& source, const QString& target);

/// As above, but replaces a file at the target.
std::error_code MoveReplacing(const QString& source, const QString& target);

} // namespace Norlis::Files
