#pragma once

#include <contracts/Export.h>
#include <contracts/OAuth2.h>

#include <functional>

namespace Norlis::PDF::Cloud {

/// A protocol that tells why its requests fail implements this beside ICloudProtocol. Who has such a protocol finds it
/// by dynamic_cast.
class NORLIS_CONTRACTS_EXPORT IFailureSource {
public:
    /// May do anything, also destroy the protocol.
    using FailureObserver = std::function<void(const Social::OAuth2::Failure&)>;

    virtual ~IFailureSource();

    /// The observer is called on the protocol's thread, once for each request that fails and never for another one:
    /// just before the request's callback, or, when the request is not started, before its operation returns -1;
    /// `operation` is -1 then too. There is one observer: another takes its place, and an empty one ends that.
    virtual void SetFailureObserver(FailureObserver observer) = 0;
};

} // namespace Norlis::PDF::Cloud
