#include "OpenFolder.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Files {

OpenFolder::OpenFolder(const QString& path)
    : descriptor(open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC))
{
}

OpenFolder::~OpenFolder()
{
    if (IsOpen()) {
        close(descriptor);
    }
}

bool OpenFolder::IsOpen() const
{
    return descriptor >= 0;
}

int OpenFolder::Descriptor() const
{
    return descriptor;
}

QString OpenFolder::Path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(descriptor);
}

QString OpenFolder::Identity() const
{
    struct stat status = {};
    fstat(descriptor, &status);
    return QStringLiteral("%1-%2").arg(status.st_dev, 0, 16).arg(status.st_ino, 0, 16);
}

} // namespace Norlis::Files
