#pragma once

#include <contracts/Export.h>
#include <contracts/OAuth2.h>

#include <functional>

namespace Norlis::PDF::Cloud {

/// Told by a protocol why its requests fail, beside what ICloudProtocol says: found by a dynamic_cast of that.
class NORLIS_CONTRACTS_EXPORT IFailureSource {
public:
    /// Given the reason of a failure.
    using FailureObserver = std::function<void(const Social::OAuth2::Failure&)>;

    virtual ~IFailureSource();

    /// One observer; another call replaces it, an empty one ends it. Called on the protocol's thread once for each
    /// request that fails, just before its callback; for a request that is refused with -1 before the operation
    /// returns (operation is -1 then).
    virtual void SetFailureObserver(FailureObserver observer) = 0;
};

} // namespace Norlis::PDF::Cloud
