#include "FileReader.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>

namespace Norlis::Files {

namespace {

qint64 Nanoseconds(const timespec& time)
{
    return static_cast<qint64>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

FileIdentity VersionOf(const struct stat& status)
{
    FileIdentity version;
    if (S_ISREG(status.st_mode)) {
        version.device = status.st_dev;
        version.inode = status.st_ino;
        version.size = status.st_size;
        version.modifiedNanoseconds = Nanoseconds(status.st_mtim);
        version.changedNanoseconds = Nanoseconds(status.st_ctim);
    }
    return version;
}

} // namespace

QString FileIdentity::ToString() const
{
    return QStringLiteral("%1-%2-%3-%4-%5")
        .arg(device, 0, 16)
        .arg(inode, 0, 16)
        .arg(size, 0, 16)
        .arg(modifiedNanoseconds, 0, 16)
        .arg(changedNanoseconds, 0, 16);
}

FileIdentity FileIdentity::OfPath(const QString& path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 ? VersionOf(status) : FileIdentity();
}

FileIdentity FileIdentity::OfDescriptor(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 ? VersionOf(status) : FileIdentity();
}

bool operator==(const FileIdentity& left, const FileIdentity& right)
{
    return left.device == right.device && left.inode == right.inode && left.size == right.size &&
           left.modifiedNanoseconds == right.modifiedNanoseconds && left.changedNanoseconds == right.changedNanoseconds;
}

bool FileReader::Open(const QString& path)
{
    // Without O_NONBLOCK a named pipe would hold up the thread until somebody writes into it.
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    file.setFileName(path);
    file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
    struct stat status = {};
    if (fstat(descriptor, &status) == 0) {
        version = VersionOf(status);
    }
    if (!version.IsFile()) {
        error = QStringLiteral("It is not a regular file");
        return false;
    }
    return true;
}

const QByteArray& FileReader::Next()
{
    if (!piece.isDetached()) {
        piece = {}; // somebody still holds the last one
    }
    piece.resize(pieceSize);
    const qint64 count = file.read(piece.data(), piece.size());
    if (count < 0) {
        error = file.errorString();
    }
    piece.resize(static_cast<int>(qMax<qint64>(count, 0)));
    hash.addData(piece);
    return piece;
}

bool FileReader::Failed() const
{
    return !error.isEmpty();
}

QString FileReader::ErrorText() const
{
    return error;
}

qint64 FileReader::Position() const
{
    return file.pos();
}

const FileIdentity& FileReader::Version() const
{
    return version;
}

bool FileReader::IsUnchanged() const
{
    struct stat now = {};
    return fstat(file.handle(), &now) == 0 && VersionOf(now) == version && file.pos() == version.size;
}

QString FileReader::Md5() const
{
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace Norlis::Files
