#pragma once

#include <apps/common/Interrupts.h>

namespace Norlis::Terminal {

/// What the program tells the shell that started it.
namespace ExitStatus {
constexpr int success = 0;
constexpr int failure = 1; ///< something that was asked for could not be done
constexpr int usage = 2;   ///< the command line could not be understood; nothing was done
constexpr int interrupted = Apps::Interrupts::exitStatus;
} // namespace ExitStatus

} // namespace Norlis::Terminal
