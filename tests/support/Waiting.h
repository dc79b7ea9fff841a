#pragma once

#include <testkit/contract/Waiting.h>

namespace Norlis::Test {

using TestKit::BlockUntil;
using TestKit::WaitUntil;

} // namespace Norlis::Test
