#pragma once

#include <string>

namespace Norlis {

/// The least that a path type offers. utf8string() is not const.
class ioPath {
public:
    ioPath();
    explicit ioPath(const std::string& utf8);
    ioPath(const ioPath&);
    ioPath(ioPath&&);
    ioPath& operator=(const ioPath&);
    ioPath& operator=(ioPath&&);
    ~ioPath();
    ioPath& operator=(const char* utf8);

    std::string utf8string();
    bool empty() const;
    bool exists() const;
    bool remove() const;
};

bool operator==(const ioPath& left, const ioPath& right);
bool operator!=(const ioPath& left, const ioPath& right);

} // namespace Norlis
