#pragma once

#include <functional>

namespace Norlis::Host {

/// Whether the session's list may be taken for what the user decides about. The service compares with what it has
/// listed last: a request that was decided about an older list must not be sent after a newer one that nobody has seen.
struct ListState {
    /// The list shows what the cloud has told since the sign-in, and no newer answer is under way.
    std::function<bool()> isCurrent;

    /// A list of the time since the sign-in has been merged, even if there is a newer one by now.
    std::function<bool()> isMerged;

    /// Calls back when it is current: at once, or after a list, which is requested if need be. False when that one has
    /// failed.
    std::function<void(std::function<void(bool isCurrent)>)> whenCurrent;
};

} // namespace Norlis::Host
