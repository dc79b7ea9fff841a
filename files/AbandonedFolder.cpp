#include "AbandonedFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Files {

namespace {

constexpr qint64 minAge = 24 * 60 * 60; // seconds; no transfer that runs leaves its file alone for so long

bool Look(const QString& path, struct stat& status)
{
    return lstat(QFile::encodeName(path).constData(), &status) == 0 && status.st_uid == geteuid();
}

} // namespace

bool RemoveAbandonedFolder(const QString& folder)
{
    struct stat status = {};
    if (!Look(folder, status) || !S_ISDIR(status.st_mode)) {
        return false;
    }
    qint64 newest = status.st_mtime;
    const QStringList names =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        if (!Look(folder + '/' + name, status) || !S_ISREG(status.st_mode)) {
            return false;
        }
        newest = std::max<qint64>(newest, status.st_mtime);
    }
    if (QDateTime::currentSecsSinceEpoch() - newest < minAge) {
        return false;
    }
    for (const QString& name : names) {
        QFile::remove(folder + '/' + name);
    }
    return rmdir(QFile::encodeName(folder).constData()) == 0;
}

} // namespace Norlis::Files
