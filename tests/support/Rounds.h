#pragma once

#include <QtGlobal>

namespace Norlis::Test {

/// Whether tests that repeat something repeat it as often as they know: in `./test --all`, and for whoever sets
/// NORLIS_THOROUGH. It costs minutes, so that other runs take a part.
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

/// Of random histories: which of them a test goes through, by numbers that are their seeds. For more or others than
/// usual there are NORLIS_HISTORIES, how many, and NORLIS_FIRST_HISTORY.
struct Histories {
    Histories(int usual, int thorough)
    {
        bool isNumber = false;
        const int count = qEnvironmentVariableIntValue("NORLIS_HISTORIES", &isNumber);
        first = qEnvironmentVariableIntValue("NORLIS_FIRST_HISTORY");
        end = first + (isNumber ? count : IsThorough() ? thorough : usual);
    }

    int first = 0;
    int end = 0;
};

} // namespace Norlis::Test
