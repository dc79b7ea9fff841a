#include "FailingFileAccess.h"

#include <QFile>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

char folder[PATH_MAX]; // written while nothing fails
std::atomic<bool> isWatching{false};
std::atomic<int> accessesLeft{0};

bool Fails(const char* path)
{
    if (!isWatching) {
        return false;
    }
    int descriptor = -1;
    char target[PATH_MAX + 1] = {};
    if (std::sscanf(path, "/proc/self/fd/%d", &descriptor) == 1) { // an open file, or one in an open folder
        char entry[32];
        std::snprintf(entry, sizeof(entry), "/proc/self/fd/%d", descriptor);
        path = readlink(entry, target, PATH_MAX) > 0 ? target : path;
    }
    if (std::strncmp(path, folder, std::strlen(folder)) != 0 || accessesLeft.fetch_sub(1) != 0) {
        return false;
    }
    errno = EIO;
    return true;
}

bool Fails(int descriptor)
{
    char path[32];
    std::snprintf(path, sizeof(path), "/proc/self/fd/%d", descriptor);
    return Fails(path);
}

/// The function of the C library that one of those below stands before.
template <typename Function>
Function* Next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int Open(const char* name, const char* path, int flags, mode_t mode)
{
    static const auto nextOpen = Next<int(const char*, int, ...)>("open");
    static const auto nextOpen64 = Next<int(const char*, int, ...)>("open64");
    const bool isToWrite = (flags & O_ACCMODE) != O_RDONLY || (flags & O_CREAT) != 0;
    if (isToWrite && Fails(path)) {
        return -1;
    }
    return (std::strcmp(name, "open") == 0 ? nextOpen : nextOpen64)(path, flags, mode);
}

mode_t ModeOf(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

// The program's own functions come before those of the C library, for all libraries that it uses.
#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return Open("open", path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeOf(flags, arguments);
    va_end(arguments);
    return Open("open64", path, flags, mode);
}

ssize_t write(int descriptor, const void* data, size_t size)
{
    static const auto next = Next<ssize_t(int, const void*, size_t)>("write");
    return Fails(descriptor) ? -1 : next(descriptor, data, size);
}

ssize_t pwrite64(int descriptor, const void* data, size_t size, off64_t offset)
{
    static const auto next = Next<ssize_t(int, const void*, size_t, off64_t)>("pwrite64");
    return Fails(descriptor) ? -1 : next(descriptor, data, size, offset);
}

int fsync(int descriptor)
{
    static const auto next = Next<int(int)>("fsync");
    return Fails(descriptor) ? -1 : next(descriptor);
}

int fdatasync(int descriptor)
{
    static const auto next = Next<int(int)>("fdatasync");
    return Fails(descriptor) ? -1 : next(descriptor);
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    static const auto next = Next<int(int, off64_t)>("ftruncate64");
    return Fails(descriptor) ? -1 : next(descriptor, size);
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    static const auto next = Next<int(int, mode_t)>("fchmod");
    return Fails(descriptor) ? -1 : next(descriptor, mode);
}

int rename(const char* from, const char* to) noexcept
{
    static const auto next = Next<int(const char*, const char*)>("rename");
    return Fails(to) ? -1 : next(from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept
{
    static const auto next = Next<int(int, const char*, int, const char*, unsigned)>("renameat2");
    return Fails(to) ? -1 : next(fromFolder, from, toFolder, to, flags);
}

int link(const char* from, const char* to) noexcept
{
    static const auto next = Next<int(const char*, const char*)>("link");
    return Fails(to) ? -1 : next(from, to);
}

int unlink(const char* path) noexcept
{
    static const auto next = Next<int(const char*)>("unlink");
    return Fails(path) ? -1 : next(path);
}

int mkdir(const char* path, mode_t mode) noexcept
{
    static const auto next = Next<int(const char*, mode_t)>("mkdir");
    return Fails(path) ? -1 : next(path, mode);
}
}
#pragma GCC visibility pop

namespace Norlis::Test {

FailingFileAccess::FailingFileAccess(const QString& folder, int number)
{
    qstrncpy(::folder, QFile::encodeName(folder).constData(), sizeof(::folder));
    accessesLeft = number;
    isWatching = true;
}

FailingFileAccess::~FailingFileAccess()
{
    isWatching = false;
}

bool FailingFileAccess::HasHappened() const
{
    return accessesLeft < 0;
}

} // namespace Norlis::Test
