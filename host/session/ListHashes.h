#pragma once

#include <contracts/IHashCalculator.h>

#include <memory>
#include <string>
#include <unordered_map>

namespace Norlis::Host {

/// Hashes for the file list, of which is known what the list was told.
class ListHashes : public PDF::IHashCalculator {
public:
    explicit ListHashes(const std::shared_ptr<PDF::IHashCalculator>& hashes) : hashes(hashes) {}

    std::string CalculateHash(const ioPath& path) override
    {
        return path.empty() ? std::string() : told[path.utf8string()] = hashes->CalculateHash(path);
    }

    /// The last answer for a file; empty when there was none.
    std::string Told(const std::string& path) const
    {
        const auto found = told.find(path);
        return found == told.end() ? std::string() : found->second;
    }

private:
    const std::shared_ptr<PDF::IHashCalculator> hashes;
    std::unordered_map<std::string, std::string> told; ///< by path
};

} // namespace Norlis::Host
