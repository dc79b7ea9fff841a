#pragma once

#include <contracts/IFileSystem.h>
#include <NorlisTestKit/Faults.h>

#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace Norlis::TestKit {

/// What can go wrong with a call of a file system.
enum class FileSystemFault {
    Vanishes, ///< the call succeeds, and then the path is gone, as if somebody else had removed it
    Throws    ///< std::runtime_error
};

/// A file system of names only: a set of paths that exist, and a normalization that a test chooses. Used on one thread.
///
///     fileSystem.existing = {"/home/me/a.pdf"};
///     fileSystem.Misbehave(When("Exists", "a.pdf"), FileSystemFault::Vanishes); // gone once it has been seen
///
/// PDF::FileInfo::SetPath does not come here: it asks the disk itself, for the size.
class FakeFileSystem : public PDF::IFileSystem {
public:
    std::set<std::string> existing; ///< paths at which there is a file

    /// What NormalizePath does; nothing unless a test says otherwise.
    std::function<std::string(const std::string&)> normalize = [](const std::string& path) { return path; };

    /// "Exists(/a)", "NormalizePath(/a)".
    std::vector<std::string> calls;

    /// Adds a fault; earlier ones stay. BehaveAgain ends them all.
    void Misbehave(const When& when, FileSystemFault fault)
    {
        faults.Add(when, fault);
    }

    /// Removes all faults.
    void BehaveAgain()
    {
        faults.Clear();
    }

    bool Exists(const ioPath& path) override
    {
        const bool exists = existing.count(path.utf8string()) != 0;
        Note("Exists", path.utf8string());
        return exists;
    }

    ioPath NormalizePath(const ioPath& path) override
    {
        Note("NormalizePath", path.utf8string());
        return ioPath(normalize(path.utf8string()));
    }

private:
    void Note(const std::string& operation, const std::string& path)
    {
        calls.push_back(operation + '(' + path + ')');
        const auto fault = faults.Claim(QByteArray::fromStdString(operation), QByteArray::fromStdString(path));
        if (fault == FileSystemFault::Vanishes) {
            existing.erase(path);
        } else if (fault == FileSystemFault::Throws) {
            throw std::runtime_error("The file system failed in " + calls.back());
        }
    }

    Faults<FileSystemFault> faults{{"Exists", "NormalizePath"}};
};

} // namespace Norlis::TestKit
