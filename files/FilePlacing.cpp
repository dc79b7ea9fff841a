#include "FilePlacing.h"

#include <filesystem>

#ifdef __linux__
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#endif

namespace Norlis::Files {

namespace {

std::filesystem::path PathOf(const QString& text)
{
    return std::filesystem::u8path(text.toStdString());
}

} // namespace

std::error_code MoveUnlessTaken(const QString& source, const QString& target)
{
    const auto from = PathOf(source);
    const auto to = PathOf(target);
#ifdef RENAME_NOREPLACE
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    if (errno != EINVAL && errno != ENOSYS) { // those of a file system that cannot do it
        return {errno, std::generic_category()};
    }
#endif
    std::error_code error;
    std::filesystem::create_hard_link(from, to, error);
    if (!error) {
        std::filesystem::remove(from, error);
    }
    return error;
}

std::error_code MoveReplacing(const QString& source, const QString& target)
{
    std::error_code error;
    std::filesystem::rename(PathOf(source), PathOf(target), error);
    return error;
}

} // namespace Norlis::Files
