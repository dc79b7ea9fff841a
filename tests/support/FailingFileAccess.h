#pragma once

#include <QString>

namespace Norlis::Test {

/// While it lives, one access to the files below a folder fails with "Input/output error": the one of that number,
/// counted from 0 over all threads. What changes something counts: opening a file to write, writing, truncating, making
/// durable, renaming, linking, removing, changing permissions, making folders. One of these at a time.
class FailingFileAccess {
public:
    FailingFileAccess(const QString& folder, int number);
    ~FailingFileAccess();

    FailingFileAccess(const FailingFileAccess&) = delete;
    FailingFileAccess& operator=(const FailingFileAccess&) = delete;

    /// False when there were fewer accesses.
    bool HasHappened() const;
};

} // namespace Norlis::Test
