#pragma once

#include <contracts/IFileSystem.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace Norlis::Test {

/// A file system of names only: a set of paths that exist, and a normalisation that a test chooses.
class FakeFileSystem : public PDF::IFileSystem {
public:
    std::set<std::string> existing;
    std::function<std::string(const std::string&)> normalize = [](const std::string& path) { return path; };

    /// "Exists(/a)", "NormalizePath(/a)".
    std::vector<std::string> calls;

    bool Exists(const ioPath& path) override
    {
        calls.push_back("Exists(" + path.utf8string() + ")");
        return existing.count(path.utf8string()) != 0;
    }

    ioPath NormalizePath(const ioPath& path) override
    {
        calls.push_back("NormalizePath(" + path.utf8string() + ")");
        return ioPath(normalize(path.utf8string()));
    }
};

} // namespace Norlis::Test
