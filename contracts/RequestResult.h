#pragma once

// X11 has a macro of this name.
#pragma push_macro("Success")
#undef Success

namespace Norlis::Social {

/// Outcome of a cloud request. Other values may come from a newer service; they are ignored, except that sign-in and
/// removal count them as failures.
enum RequestResult : int {
    Success = 0,  ///< completed; the payload is valid
    Error = 1,    ///< failed; the payload is empty
    Canceled = 2, ///< cancelled, through cancelOperation or by the service
};

} // namespace Norlis::Social

#pragma pop_macro("Success")
