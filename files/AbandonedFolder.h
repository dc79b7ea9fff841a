#pragma once

#include <QString>

namespace Norlis::Files {

/// Removes a folder with the files in it that a program has left behind: nothing in it was changed for a day. One that
/// belongs to another user, and one that holds anything but files, is left alone. May block on a slow disk.
/// \param folder   one that a program of this project has made; its name alone is no proof of that
/// \param identity of the folder that was made (see OpenFolder), where others can put another one in its place
/// \return whether it is gone
bool RemoveAbandonedFolder(const QString& folder, const QString& identity = {});

} // namespace Norlis::Files
