#include "FilePlacing.h"

#include <QFile>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Files {

namespace {

std::error_code LastError()
{
    return {errno, std::generic_category()};
}

} // namespace

std::error_code MoveUnlessTaken(const QString& source, const QString& target)
{
    const QByteArray from = QFile::encodeName(source);
    const QByteArray to = QFile::encodeName(target);
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return LastError();
    }
    // The file system does not know that call: a second name is just as good, since it is never put over another file.
    if (link(from.constData(), to.constData()) == 0) {
        unlink(from.constData());
        return {};
    }
    if (errno != EPERM && errno != ENOSYS && errno != EOPNOTSUPP) {
        return LastError();
    }
    // It knows no second names either, as some network drives do not. Looking first leaves a gap of microseconds.
    struct stat taken = {};
    if (lstat(to.constData(), &taken) == 0) {
        return std::make_error_code(std::errc::file_exists);
    }
    return std::rename(from.constData(), to.constData()) == 0 ? std::error_code() : LastError();
}

std::error_code MoveReplacing(const QString& source, const QString& target)
{
    const int result = std::rename(QFile::encodeName(source).constData(), QFile::encodeName(target).constData());
    return result == 0 ? std::error_code() : LastError();
}

} // namespace Norlis::Files
