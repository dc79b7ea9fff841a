#pragma once

#include <QString>

#include <system_error>

namespace Norlis::Files {

/// Renames a file within its file system, unless something has the new name already: std::errc::file_exists then. In
/// one step, but for file systems that know neither such a renaming nor second names.
std::error_code MoveUnlessTaken(const QString& source, const QString& target);

/// Renames a file within its file system, in one step; a file at the target is replaced.
std::error_code MoveReplacing(const QString& source, const QString& target);

} // namespace Norlis::Files
