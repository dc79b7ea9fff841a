#include "AbandonedFolder.h"

#include "OpenFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Files {

namespace {

constexpr qint64 minAge = 24 * 60 * 60; // seconds; no transfer that runs leaves its file alone for so long

/// Of a file, or with an empty name of the folder itself.
bool Look(const OpenFolder& folder, const QString& name, struct stat& status)
{
    const int result =
        fstatat(folder.Descriptor(), QFile::encodeName(name).constData(), &status, AT_SYMLINK_NOFOLLOW | AT_EMPTY_PATH);
    return result == 0 && status.st_uid == geteuid();
}

} // namespace

bool RemoveAbandonedFolder(const QString& folder, const QString& identity)
{
    const OpenFolder opened(folder);
    struct stat status = {};
    if (!Look(opened, {}, status) || (!identity.isEmpty() && opened.Identity() != identity)) {
        return false;
    }
    qint64 newest = status.st_mtime;
    const QStringList names =
        QDir(opened.Path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        if (!Look(opened, name, status) || !S_ISREG(status.st_mode)) {
            return false;
        }
        newest = std::max<qint64>(newest, status.st_mtime);
    }
    if (QDateTime::currentSecsSinceEpoch() - newest < minAge) {
        return false;
    }
    for (const QString& name : names) {
        unlinkat(opened.Descriptor(), QFile::encodeName(name).constData(), 0);
    }
    return rmdir(QFile::encodeName(folder).constData()) == 0;
}

} // namespace Norlis::Files
