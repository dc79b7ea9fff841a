#pragma once

#include <contracts/Export.h>
#include <contracts/ioPath.h>

namespace Norlis::PDF {

/// File-system services that the editor supplies. Called on the event-loop thread.
class NORLIS_CONTRACTS_EXPORT IFileSystem {
public:
    virtual ~IFileSystem() = default;

    /// Whether there is a local file at the path.
    virtual bool Exists(const ioPath& path) = 0;

    /// The normalised form of a path. Two paths name the same document when their normalised forms are equal.
    virtual ioPath NormalizePath(const ioPath& path) = 0;
};

} // namespace Norlis::PDF
