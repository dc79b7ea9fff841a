#pragma once

#include <apps/common/Interrupts.h>

namespace Norlis::Terminal {

/// The exit statuses.
namespace ExitStatus {
constexpr int success = 0;
constexpr int failure = 1; ///< something that was asked for could not be done
constexpr int usage = 2;   ///< usage error; nothing was done
constexpr int interrupted = Apps::Interrupts::exitStatus;
} // namespace ExitStatus

} // namespace Norlis::Terminal
