#pragma once

#include <contracts/IHashCalculator.h>

#include <map>
#include <string>
#include <vector>

namespace Norlis::Test {

/// Answers hashes that a test sets and remembers for which paths it was asked. A path without a hash of its own has
/// "hash of <path>".
class CountingHashCalculator : public PDF::IHashCalculator {
public:
    std::map<std::string, std::string> hashes;
    std::vector<std::string> asked;

    std::string CalculateHash(const ioPath& path) override
    {
        const std::string text = path.utf8string();
        asked.push_back(text);
        const auto found = hashes.find(text);
        return found == hashes.end() ? "hash of " + text : found->second;
    }
};

} // namespace Norlis::Test
