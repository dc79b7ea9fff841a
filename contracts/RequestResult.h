#pragma once

namespace Norlis::Social {

/// Outcome of a cloud request. Values other than these may come from a newer service and are ignored by their
/// receivers.
enum RequestResult : int {
    Success = 0,  ///< completed; the payload is valid
    Error = 1,    ///< failed; the payload is empty
    Canceled = 2, ///< cancelled, through cancelOperation or by the service
};

} // namespace Norlis::Social
