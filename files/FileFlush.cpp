#include "FileFlush.h"

#include <cerrno>
#include <map>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace Norlis::Files {

namespace {

constexpr std::size_t minTogether = 4;               // fewer are flushed sooner by themselves
constexpr decltype(statfs::f_type) xfs = 0x58465342; // <linux/magic.h> lacks it

std::error_code ErrorOf(int result)
{
    return result == 0 ? std::error_code() : std::error_code(errno, std::generic_category());
}

/// Whether syncfs(2) waits for the disk and tells what went wrong: network drives and FUSE may do neither.
bool FlushesAsAWhole(int descriptor)
{
    struct statfs status = {};
    if (fstatfs(descriptor, &status) != 0) {
        return false;
    }
    switch (status.f_type) {
    case EXT4_SUPER_MAGIC: // ext2 and ext3 too
    case BTRFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case TMPFS_MAGIC:
    case xfs:
        return true;
    default:
        return false;
    }
}

dev_t DeviceOf(int descriptor)
{
    struct stat status = {};
    fstat(descriptor, &status);
    return status.st_dev;
}

} // namespace

std::vector<std::error_code> FlushFiles(const std::vector<int>& descriptors)
{
    std::map<dev_t, std::vector<std::size_t>> places; // of the descriptors, by device
    for (std::size_t place = 0; place < descriptors.size(); ++place) {
        places[DeviceOf(descriptors[place])].push_back(place);
    }
    std::vector<std::error_code> errors(descriptors.size());
    for (const auto& [device, together] : places) {
        const int first = descriptors[together.front()];
        const bool isWhole = together.size() >= minTogether && FlushesAsAWhole(first) && syncfs(first) == 0;
        for (const std::size_t place : together) {
            errors[place] = isWhole ? std::error_code() : ErrorOf(fsync(descriptors[place]));
        }
    }
    return errors;
}

} // namespace Norlis::Files
