#pragma once

// X11 has a macro of this name.
#pragma push_macro("Success")
#undef Success

namespace Norlis::Social {

/// Outcome of a cloud request. Any other value, as a newer protocol may give it, ends the request without a signal,
/// except that sign-in and removal count it as a failure.
enum RequestResult : int {
    Success = 0,  ///< completed; the payload is valid
    Error = 1,    ///< failed; the payload is empty, but for what NorlisCloudSharingResult says
    Canceled = 2, ///< cancelled by the service, likewise; no answer follows cancelOperation
};

} // namespace Norlis::Social

#pragma pop_macro("Success")
