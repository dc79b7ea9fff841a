#include "StagingFolder.h"

#include <files/AbandonedFolder.h>
#include <files/OpenFolder.h>
#include <files/PrivateFolder.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Host {

namespace {

const auto prefix = QStringLiteral(".norlis-download-");

constexpr qint64 maxAge = 30 * 24 * 60 * 60; // seconds; a drive that is not there may come back until then

constexpr auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

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
    folder = std::make_unique<Files::OpenFolder>(path);
    isThere = folder->IsOpen() && QDir(folder->Path()).isEmpty(everything);
    if (!isThere) {
        error = folder->IsOpen() ? QStringLiteral("another folder has taken the place of the one for the download")
                                 : QString::fromLocal8Bit(std::strerror(errno));
        return;
    }
    const QString known = entry + '.' + folder->Identity();
    if (std::rename(QFile::encodeName(entry).constData(), QFile::encodeName(known).constData()) == 0) {
        entry = known;
    }
}

StagingFolder::~StagingFolder()
{
    Remove();
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
    return folder && QFileInfo(folder->Path()).isDir() ? folder->Path() : path;
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
    const Files::OpenFolder found(path);
    if (!found.IsOpen()) {
        return errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
    }
    if (found.Identity() != folder->Identity()) {
        return true;
    }
    const auto names = QDir(folder->Path()).entryList(everything);
    for (const QString& name : names) {
        unlinkat(folder->Descriptor(), QFile::encodeName(name).constData(), 0); // no folder: none was made there
    }
    return rmdir(native.constData()) == 0 || errno == ENOENT;
}

void StagingFolder::Sweep(const QString& list)
{
    const auto entries = QDir(list).entryInfoList(QDir::AllEntries | QDir::System | QDir::Hidden);
    for (const auto& entry : entries) {
        const QString path = entry.symLinkTarget();
        const QString name = QFileInfo(path).fileName();
        if (!entry.isSymLink() || !name.startsWith(prefix) || !entry.fileName().startsWith(name)) {
            continue;
        }
        const QString identity = entry.fileName().mid(name.size() + 1);
        const bool isOld = QDateTime::currentSecsSinceEpoch() - ModifiedAt(entry.filePath()) > maxAge;
        const bool isRemoved = identity.isEmpty() // nothing came into it yet
                                   ? isOld && rmdir(QFile::encodeName(path).constData()) == 0
                                   : Files::RemoveAbandonedFolder(path, identity);
        if (isRemoved || (isOld && !QFileInfo::exists(path))) {
            QFile::remove(entry.filePath());
        }
    }
}

} // namespace Norlis::Host
