#pragma once

#include <contracts/FileInfo.h>

#include <memory>
#include <string>

namespace Norlis::Test {

/// Everything that a record holds, in one line.
std::string TextOf(const std::shared_ptr<PDF::FileInfo>& record);

} // namespace Norlis::Test
