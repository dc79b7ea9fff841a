#pragma once

#include "CloudManagerBench.h"

#include <functional>
#include <string>
#include <vector>

namespace Norlis::Test {

/// One way to one signal of the cloud manager.
struct Scenario {
    std::string signal;
    std::string way; ///< tells apart the ways to the same signal; may be empty
    std::function<void(CloudManagerBench&)> reach;
};

/// At least one way to each signal. The manager is not touched any more once it has emitted the signal, so a slot may
/// delete it.
const std::vector<Scenario>& CloudManagerScenarios();

/// One kind of request.
struct RequestKind {
    std::string operation; ///< of the protocol
    qint64 (CloudManagerBench::*start)();
    bool isTransfer;
};

const std::vector<RequestKind>& RequestKinds();

// Names for GoogleTest's output.
std::ostream& operator<<(std::ostream& stream, const Scenario& scenario);
std::ostream& operator<<(std::ostream& stream, const RequestKind& kind);

} // namespace Norlis::Test
