#include "LocalFileSystem.h"

#include <filesystem>
#include <system_error>

namespace Norlis::Host {

namespace fs = std::filesystem; // takes the bytes as they are, whatever the locale says

bool LocalFileSystem::Exists(const ioPath& path)
{
    const std::string bytes = path.utf8string();
    if (bytes.find('\0') != std::string::npos) {
        return false; // the system would see the shorter path before it
    }
    std::error_code error;
    const auto status = fs::status(fs::u8path(bytes), error);
    return fs::exists(status) && !fs::is_directory(status);
}

ioPath LocalFileSystem::NormalizePath(const ioPath& path)
{
    if (path.empty()) {
        return {};
    }
    std::error_code error;
    fs::path absolute = fs::absolute(fs::u8path(path.utf8string()), error);
    if (error) { // the current folder is gone
        absolute = fs::u8path(path.utf8string());
    }
    fs::path normal = fs::weakly_canonical(absolute, error);
    if (error) { // a folder that may not be looked into, or links in a circle
        normal = absolute.lexically_normal();
    }
    if (!normal.has_filename() && normal.has_relative_path()) {
        normal = normal.parent_path(); // "folder/" beside "folder"
    }
    return ioPath(normal.u8string());
}

} // namespace Norlis::Host
