#include "FilePlacing.h"

#include <QFile>

#include <cerrno>
#include <csignal>
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

std::error_code CopyPermissions(const QString& from, const QString& to)
{
    const int descriptor = open(QFile::encodeName(to).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return LastError();
    }
    const auto failure = Files::CopyPermissions(from, descriptor);
    close(descriptor);
    return failure;
}

} // namespace

std::error_code Move(const QString& source, const QString& target)
{
    const int result = std::rename(QFile::encodeName(source).constData(), QFile::encodeName(target).constData());
    return result == 0 ? std::error_code() : LastError();
}

std::error_code MoveUnlessTaken(const QString& source, const QString& target)
{
    const QByteArray from = QFile::encodeName(source);
    const QByteArray to = QFile::encodeName(target);
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    if (!IsUnknownCall(LastError())) {
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
    return Move(source, target);
}

std::error_code MoveReplacing(const QString& source, const QString& target)
{
    if (const auto failure = CopyPermissions(target, source)) {
        return failure;
    }
    return Move(source, target);
}

std::error_code MoveReplacing(const QString& source, const QString& target, const FileIdentity& known)
{
    const auto fresh = FileIdentity::OfPath(source);
    if (FileIdentity::OfPath(target) != known) {
        return std::make_error_code(std::errc::file_exists);
    }
    if (const auto failure = CopyPermissions(target, source)) {
        return failure;
    }
    const auto failure = Exchange(source, target);
    if (IsUnknownCall(failure)) {
        return FileIdentity::OfPath(target) == known ? Move(source, target)
                                                     : std::make_error_code(std::errc::file_exists);
    }
    if (failure == std::errc::no_such_file_or_directory) {
        return MoveUnlessTaken(source, target);
    }
    if (failure) {
        return failure;
    }
    if (FileIdentity::OfPath(source).HasContentOf(known) && !IsOpenForWriting(source)) {
        unlink(QFile::encodeName(source).constData());
        return {};
    }
    // What came out is an edit. Should another one have taken its place meanwhile, that one is the newer.
    if (!Exchange(source, target) && !FileIdentity::OfPath(source).HasContentOf(fresh)) {
        Exchange(source, target);
    }
    return std::make_error_code(std::errc::file_exists);
}

std::error_code Exchange(const QString& first, const QString& second)
{
    const int result = renameat2(AT_FDCWD, QFile::encodeName(first).constData(), AT_FDCWD,
                                 QFile::encodeName(second).constData(), RENAME_EXCHANGE);
    return result == 0 ? std::error_code() : LastError();
}

bool IsOpenForWriting(const QString& path)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    fcntl(descriptor, F_SETSIG, SIGURG); // nobody minds it, where SIGIO ends a program whose lease is asked back
    const bool isOpen = fcntl(descriptor, F_SETLEASE, F_RDLCK) != 0 && errno == EAGAIN; // given where nobody writes
    close(descriptor);
    return isOpen;
}

bool IsUnknownCall(const std::error_code& error)
{
    return error == std::errc::invalid_argument || error == std::errc::function_not_supported ||
           error == std::errc::operation_not_supported;
}

std::error_code CopyPermissions(const QString& from, int to)
{
    struct stat wanted = {};
    struct stat found = {};
    if (stat(QFile::encodeName(from).constData(), &wanted) != 0 || !S_ISREG(wanted.st_mode)) {
        return {};
    }
    ChangeGroup(to, wanted.st_gid);
    if (fstat(to, &found) != 0 || (wanted.st_mode & 0777) == (found.st_mode & 0777)) {
        return {}; // nothing to keep; some file systems refuse even what would change nothing
    }
    return fchmod(to, wanted.st_mode & 0777) == 0 ? std::error_code() : LastError();
}

void ChangeGroup(int descriptor, gid_t group)
{
    [[maybe_unused]] const int refused = fchown(descriptor, static_cast<uid_t>(-1), group);
}

} // namespace Norlis::Files
