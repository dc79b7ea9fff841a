#pragma once

#include <QtGlobal>

namespace Norlis::TestKit {

/// Whether tests that repeat something repeat it as often as they know: for whoever sets NORLIS_THOROUGH in the
/// environment. It costs minutes, so that other runs take a part.
inline bool IsThorough()
{
    return qEnvironmentVariableIsSet("NORLIS_THOROUGH");
}

/// By how much the counter of a loop goes up: every round of a thorough run, else one of as many. A number that shares
/// no divisor with what the rounds depend on lets each kind of round have its turn.
inline int Stride(int usual)
{
    return IsThorough() ? 1 : usual;
}

} // namespace Norlis::TestKit
