#pragma once

#include <QString>

namespace Norlis::Files {

/// Creates the folder, and those above it that are missing, for the user alone: what a program keeps is nobody else's
/// to read, also when somebody has removed its folder meanwhile. What is there stays as it is. False when there is no
/// such folder afterwards.
bool MakePrivateFolder(const QString& path);

} // namespace Norlis::Files
