#pragma once

#include <vector>

#include <system_error>

namespace Norlis::Files {

/// Makes the content of open files durable. Many that are on a file system of this computer are flushed with all of it,
/// which takes hardly longer than one of them; others one by one. The error of each.
/// \param descriptors of files on any file systems
std::vector<std::error_code> FlushFiles(const std::vector<int>& descriptors);

} // namespace Norlis::Files
