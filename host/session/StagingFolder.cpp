#include "StagingFolder.h"

#include <files/AbandonedFolder.h>
#include <files/PrivateFolder.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Host {

namespace {

const auto prefix = QStringLiteral(".norlis-download-");

constexpr qint64 maxAge = 30 * 24 * 60 * 60; // seconds; a drive that is not there may come back until then

QString NewName()
{
    return QStringLiteral("%1").arg(QRandomGenerator::system()->generate64(), 16, 16, QLatin1Char('0'));
}

/// Of a link itself, in seconds since 1970.
qint64 ModifiedAt(const QString& link)
{
    struct stat status = {};
    lstat(QFile::encodeName(link).constData(), &status);
    return status.st_mtime;
}

} // namespace

StagingFolder::StagingFolder(const QString& parent, const QString& list)
    : path(QDir(parent).absoluteFilePath(prefix + NewName())),
      entry(list + '/' + QFileInfo(path).fileName())
{
    Files::MakePrivateFolder(list);
    QFile::link(path, entry); // without which it works just as well
    isThere = ::mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0;
    if (!isThere) {
        error = QString::fromLocal8Bit(std::strerror(errno));
        QFile::remove(entry);
        return;
    }
    folder = open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0) {
        error = QString::fromLocal8Bit(std::strerror(errno));
    }
}

StagingFolder::~StagingFolder()
{
    Remove();
    close(folder);
}

bool StagingFolder::IsValid() const
{
    return error.isEmpty();
}

QString StagingFolder::ErrorText() const
{
    return error;
}

QString StagingFolder::Path() const
{
    return path;
}

QString StagingFolder::PathOf(const QString& name) const
{
    return QStringLiteral("/proc/self/fd/%1/%2").arg(folder).arg(name);
}

bool StagingFolder::Remove()
{
    if (isThere && RemoveFiles()) {
        isThere = false;
        QFile::remove(entry);
    }
    return !isThere;
}

bool StagingFolder::RemoveFiles() const
{
    const QByteArray native = QFile::encodeName(path);
    struct stat own = {};
    struct stat found = {};
    if (fstat(folder, &own) != 0 || lstat(native.constData(), &found) != 0) {
        return errno == ENOENT || errno == ENOTDIR || folder < 0;
    }
    if (found.st_dev != own.st_dev || found.st_ino != own.st_ino) {
        return true; // somebody has put something else in its place
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(fdopendir(openat(folder, ".", O_RDONLY | O_CLOEXEC)), &closedir);
    if (!entries) {
        return false;
    }
    while (const dirent* const each = readdir(entries.get())) {
        unlinkat(folder, each->d_name, 0); // no folder: there are none but the two that every folder has
    }
    return rmdir(native.constData()) == 0 || errno == ENOENT;
}

void StagingFolder::Sweep(const QString& list)
{
    const auto entries = QDir(list).entryInfoList(QDir::AllEntries | QDir::System | QDir::Hidden);
    for (const auto& entry : entries) {
        const QString path = entry.symLinkTarget();
        // The name is random and stands in both places, so no other folder can be meant.
        if (!entry.isSymLink() || !entry.fileName().startsWith(prefix) ||
            QFileInfo(path).fileName() != entry.fileName()) {
            continue;
        }
        const bool isOld = QDateTime::currentSecsSinceEpoch() - ModifiedAt(entry.filePath()) > maxAge;
        if (Files::RemoveAbandonedFolder(path) || (isOld && !QFileInfo::exists(path))) {
            QFile::remove(entry.filePath());
        }
    }
}

} // namespace Norlis::Host
