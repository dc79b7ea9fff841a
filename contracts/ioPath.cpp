#include <contracts/ioPath.h>

#include <filesystem>

namespace Norlis {

namespace {

// std::filesystem passes the bytes on as they are, where Qt would convert them to the locale's encoding first.
std::filesystem::path Native(const std::string& utf8)
{
    return std::filesystem::u8path(utf8);
}

} // namespace

ioPath::ioPath(const std::string& utf8) : path(utf8) {}

ioPath& ioPath::operator=(const char* utf8)
{
    path = utf8 ? utf8 : "";
    return *this;
}

std::string ioPath::utf8string() const
{
    return path;
}

bool ioPath::empty() const
{
    return path.empty();
}

bool ioPath::exists() const
{
    std::error_code error;
    return std::filesystem::exists(Native(path), error);
}

bool ioPath::remove() const
{
    std::error_code error;
    const auto status = std::filesystem::symlink_status(Native(path), error);
    if (std::filesystem::is_directory(status)) {
        return false; // std::filesystem::remove would delete an empty folder
    }
    return std::filesystem::remove(Native(path), error);
}

bool operator==(const ioPath& left, const ioPath& right)
{
    return left.utf8string() == right.utf8string();
}

bool operator!=(const ioPath& left, const ioPath& right)
{
    return !(left == right);
}

} // namespace Norlis
