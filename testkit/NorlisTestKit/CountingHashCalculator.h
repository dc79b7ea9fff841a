#pragma once

#include <contracts/IHashCalculator.h>
#include <NorlisTestKit/Faults.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace Norlis::TestKit {

/// What can go wrong when a hash is calculated.
enum class HashFault {
    IsEmpty, ///< no hash, as for a file that cannot be read
    Throws   ///< std::runtime_error
};

/// Returns the hashes that a test sets and records the paths it was asked for. A path without a hash of its own has
/// "hash of <path>". Reads no file. Used on one thread.
///
///     hashes.hashes["/home/me/a.pdf"] = "0cc175b9c0f1b6a831c399e269772661";
///     hashes.Misbehave(When("CalculateHash", "a.pdf"), HashFault::IsEmpty);
class CountingHashCalculator : public PDF::IHashCalculator {
public:
    std::map<std::string, std::string> hashes; ///< by path
    std::vector<std::string> asked;            ///< paths, in order

    /// Adds a fault; earlier ones stay. BehaveAgain ends them all.
    void Misbehave(const When& when, HashFault fault)
    {
        faults.Add(when, fault);
    }

    /// Removes all faults.
    void BehaveAgain()
    {
        faults.Clear();
    }

    std::string CalculateHash(const ioPath& path) override
    {
        const std::string text = path.utf8string();
        asked.push_back(text);
        const auto fault = faults.Claim("CalculateHash", QByteArray::fromStdString(text));
        if (fault == HashFault::Throws) {
            throw std::runtime_error("The hash calculator failed for " + text);
        }
        if (fault == HashFault::IsEmpty) {
            return {};
        }
        const auto found = hashes.find(text);
        return found == hashes.end() ? "hash of " + text : found->second;
    }

private:
    Faults<HashFault> faults{{"CalculateHash"}};
};

} // namespace Norlis::TestKit
