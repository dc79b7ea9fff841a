#pragma once

#include <contracts/IHashCalculator.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

namespace Norlis::Host {

/// Hashes for the file list, of which is known what the list was told.
class ListHashes : public PDF::IHashCalculator {
public:
    explicit ListHashes(const std::shared_ptr<PDF::IHashCalculator>& hashes) : hashes(hashes) {}

    std::string CalculateHash(const ioPath& path) override
    {
        const auto bytes = path.utf8string();
        const auto [knownPath, knownHash] = std::exchange(known, {});
        if (bytes.empty()) {
            return {};
        }
        return told[bytes] = bytes == knownPath ? knownHash : hashes->CalculateHash(path);
    }

    /// The answer to the next question, if it is about this file.
    void Know(const ioPath& path, const std::string& hash)
    {
        known = {path.utf8string(), hash};
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
    std::pair<std::string, std::string> known;         ///< path and hash
};

} // namespace Norlis::Host
