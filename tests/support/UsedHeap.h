#pragma once

#include <QtGlobal>

#include <malloc.h>

#ifdef __SANITIZE_ADDRESS__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // not every compiler brings its header
#endif

namespace Norlis::Test {

/// Bytes that this process has asked for and not given back. What it has resident holds free room between them too.
inline qint64 UsedHeap()
{
#ifdef __SANITIZE_ADDRESS__
    return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
#else
    const auto heap = mallinfo2();
    return static_cast<qint64>(heap.uordblks) + static_cast<qint64>(heap.hblkhd);
#endif
}

} // namespace Norlis::Test
