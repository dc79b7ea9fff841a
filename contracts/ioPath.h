#pragma once

#include <contracts/Export.h>

#include <string>

namespace Norlis {

// NOLINTBEGIN(readability-identifier-naming): the names that the editor uses

/// A path of the local file system, held as the UTF-8 bytes that it was given.
///
/// Nothing is normalised: two paths are equal when their bytes are. IFileSystem::NormalizePath brings two spellings of
/// one path together before they are compared.
class NORLIS_CONTRACTS_EXPORT ioPath {
public:
    /// The empty path.
    ioPath() = default;

    /// Takes the bytes as they are.
    ioPath(const std::string& utf8);

    /// Takes UTF-8 text; a null pointer gives the empty path.
    ioPath& operator=(const char* utf8);

    /// The path as UTF-8.
    std::string utf8string() const;

    /// Whether it names nothing.
    bool empty() const;

    /// Whether there is something at this path; false when it cannot be told.
    bool exists() const;

    /// Deletes the file (a link is deleted, not what it points to). False when nothing was deleted: there was no file,
    /// it is a folder, or the system refused.
    bool remove() const;

private:
    std::string path;
};

// NOLINTEND(readability-identifier-naming)

NORLIS_CONTRACTS_EXPORT bool operator==(const ioPath& left, const ioPath& right);
NORLIS_CONTRACTS_EXPORT bool operator!=(const ioPath& left, const ioPath& right);

} // namespace Norlis
