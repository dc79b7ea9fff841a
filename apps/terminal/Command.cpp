#include "Command.h"

#include "ExitStatus.h"

namespace Norlis::Terminal {

Command::Command(const Environment& environment)
    : arguments(environment.arguments),
      output(environment.output),
      account(environment.arguments, environment.settings),
      interruptDescriptor(environment.interruptDescriptor)
{
}

void Command::Interrupt()
{
    emit Finished(ExitStatus::interrupted);
}

} // namespace Norlis::Terminal
