#pragma once

#include <contracts/Export.h>
#include <contracts/ioPath.h>

#include <string>

namespace Norlis::PDF {

/// Hashes local files. Called on the event-loop thread, often for files that have not changed, and for the empty path:
/// by the list for each local copy that it loads and at each update, by the cloud manager when a transfer begins, and
/// when an upload ends. Calculate ahead, or remember.
class NORLIS_CONTRACTS_EXPORT IHashCalculator {
public:
    virtual ~IHashCalculator() = default;

    /// The MD5 hash of the file's content, in the form in which the cloud reports hashes. Empty for a file that cannot
    /// be read, for the empty path, which stands for a document without a local copy, and for a file whose hash is not
    /// known yet, such as one that is about to be uploaded: the protocol object tells it when it has read the file
    /// (OAuth2::AuthInfo::onTransferred).
    ///
    /// Should not throw: an exception reaches the caller of the operation (or constructor) that asked, and at the end
    /// of an upload the event loop. A transfer that had begun ends without its closing signal then. May run an event
    /// loop, in which the manager may be deleted.
    virtual std::string CalculateHash(const ioPath& path) = 0;
};

} // namespace Norlis::PDF
