#pragma once

#include <testkit/contract/FileSizeLimit.h>

namespace Norlis::Test {

using TestKit::FileSizeLimit;

} // namespace Norlis::Test
