#pragma once

#include <contracts/Export.h>
#include <contracts/ioPath.h>

#include <string>

namespace Norlis::PDF {

/// Hashes local files. Called on the event-loop thread.
class NORLIS_CONTRACTS_EXPORT IHashCalculator {
public:
    virtual ~IHashCalculator() = default;

    /// The MD5 hash of the file's content, in the form in which the cloud reports hashes.
    virtual std::string CalculateHash(const ioPath& path) = 0;
};

} // namespace Norlis::PDF
