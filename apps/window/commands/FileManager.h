#pragma once

#include <QStringList>

namespace Norlis::Window {

/// Shows files in the folders that they are in, by the desktop's file manager. Returns at once.
void ShowInFolder(const QStringList& files);

} // namespace Norlis::Window
