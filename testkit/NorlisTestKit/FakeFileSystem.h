#pragma once

#include <contracts/IFileSystem.h>
#include <NorlisTestKit/Faults.h>

#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace Norlis::TestKit {

/// What goes wrong with a call of a file system.
enum class FileSystemFault {
    Vanishes, ///< the call is answered well, and the path does not exist any more: somebody else was quick
    Throws    ///< std::runtime_error
};

/// A file system of names only: a set of paths that exist, and a normalisation that a test chooses. Used on one thread.
///
///     fileSystem.existing = {"/home/me/a.pdf"};
///     fileSystem.Misbehave(When("Exists", "a.pdf"), FileSystemFault::Vanishes); // gone once it has been seen
///
/// What asks a disk of its own accord does not ask here: PDF::FileInfo::SetPath, for the size.
class FakeFileSystem : public PDF::IFileSystem {
public:
    std::set<std::string> existing; ///< paths at which there is a file

    /// What NormalizePath does; nothing unless a test says otherwise.
    std::function<std::string(const std::string&)> normalize = [](const std::string& path) { return path; };

    /// "Exists(/a)", "NormalizePath(/a)".
    std::vector<std::string> calls;

    /// What goes wrong from now on, beside what was asked for before; until BehaveAgain.
    void Misbehave(const When& when, FileSystemFault fault)
    {
        faults.Add(when, fault);
    }

    /// Forgets what was to go wrong.
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
