#pragma once

#include <testkit/contract/Rounds.h>

namespace Norlis::Test {

using TestKit::IsThorough;
using TestKit::Stride;

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
