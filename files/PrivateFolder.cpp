#include "PrivateFolder.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <sys/stat.h>

namespace Norlis::Files {

bool MakePrivateFolder(const QString& path)
{
    const QFileInfo folder(path);
    if (folder.isDir()) {
        return true;
    }
    if (path.isEmpty() || !MakePrivateFolder(folder.absolutePath())) {
        return false;
    }
    return mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0 || (errno == EEXIST && QFileInfo(path).isDir());
}

} // namespace Norlis::Files
