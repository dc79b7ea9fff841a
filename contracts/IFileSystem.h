#pragma once

#include <contracts/Export.h>
#include <contracts/ioPath.h>

namespace Norlis::PDF {

/// File-system services that the editor supplies. Called on the event-loop thread. What is said of exceptions and event
/// loops in IHashCalculator holds here too.
class NORLIS_CONTRACTS_EXPORT IFileSystem {
public:
    virtual ~IFileSystem() = default;

    /// Whether there is a local file at the path; false for the empty path.
    virtual bool Exists(const ioPath& path) = 0;

    /// The normalised form of a path, whether or not there is a file. Two paths name the same document when their
    /// normalised forms are equal. The empty path, which stands for a document without a local copy, stays empty.
    virtual ioPath NormalizePath(const ioPath& path) = 0;
};

} // namespace Norlis::PDF
