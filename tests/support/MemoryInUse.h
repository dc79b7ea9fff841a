#pragma once

#include <QtGlobal>

#ifdef __SANITIZE_ADDRESS__
#include <cstddef>

extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // not every compiler brings its header
#else
#include <fstream>

#include <unistd.h>
#endif

namespace Norlis::Test {

/// Bytes of memory that this process uses. The address sanitizer holds on to what has been freed, and knows how much is
/// not.
inline qint64 MemoryInUse()
{
#ifdef __SANITIZE_ADDRESS__
    return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
#else
    std::ifstream statistics("/proc/self/statm");
    qint64 all = 0;
    qint64 resident = 0;
    statistics >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE);
#endif
}

} // namespace Norlis::Test
