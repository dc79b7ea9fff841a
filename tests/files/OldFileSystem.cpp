#include "OldFileSystem.h"

#include <cerrno>
#include <cstdio>

#include <dlfcn.h>
#include <unistd.h>

namespace {

bool renamesWithoutReplacing = true;
bool knowsLinks = true;

} // namespace

// The program's own functions come before those of the C library.
#pragma GCC visibility push(default)
extern "C" {

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept
{
    using Function = int(int, const char*, int, const char*, unsigned);
    static const auto next = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "renameat2"));
    if (flags == RENAME_NOREPLACE && !renamesWithoutReplacing) {
        errno = EINVAL;
        return -1;
    }
    return next(fromFolder, from, toFolder, to, flags);
}

int link(const char* from, const char* to) noexcept
{
    static const auto next = reinterpret_cast<int (*)(const char*, const char*)>(dlsym(RTLD_NEXT, "link"));
    if (!knowsLinks) {
        errno = EPERM;
        return -1;
    }
    return next(from, to);
}
}
#pragma GCC visibility pop

namespace Norlis::Test {

OldFileSystem::OldFileSystem(bool hasLinks)
{
    renamesWithoutReplacing = false;
    knowsLinks = hasLinks;
}

OldFileSystem::~OldFileSystem()
{
    renamesWithoutReplacing = true;
    knowsLinks = true;
}

} // namespace Norlis::Test
