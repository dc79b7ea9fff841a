#pragma once

#include <contracts/IFileSystem.h>
#include <host/Export.h>

namespace Norlis::Host {

/// The local file system.
class NORLIS_HOST_EXPORT LocalFileSystem : public PDF::IFileSystem {
public:
    /// Whether there is a file (not a folder) at the path.
    bool Exists(const ioPath& path) override;

    /// Absolute, with links, "." and ".." resolved as far as the path exists; purely textual beyond that. The empty
    /// path stays empty.
    ioPath NormalizePath(const ioPath& path) override;
};

} // namespace Norlis::Host
