#include "Command.h"

#include "DoctorCommand.h"
#include "DownloadCommand.h"
#include "ExitStatus.h"
#include "ListCommand.h"
#include "LoginCommand.h"
#include "LogoutCommand.h"
#include "PreviewCommand.h"
#include "QuotaCommand.h"
#include "RemoveCommand.h"
#include "UploadCommand.h"
#include "WatchCommand.h"

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

std::unique_ptr<Command> MakeCommand(const Environment& environment)
{
    const QString& name = environment.arguments.command;
    if (name == "login") {
        return std::make_unique<LoginCommand>(environment);
    }
    if (name == "logout") {
        return std::make_unique<LogoutCommand>(environment);
    }
    if (name == "upload") {
        return std::make_unique<UploadCommand>(environment);
    }
    if (name == "download") {
        return std::make_unique<DownloadCommand>(environment);
    }
    if (name == "remove") {
        return std::make_unique<RemoveCommand>(environment);
    }
    if (name == "preview") {
        return std::make_unique<PreviewCommand>(environment);
    }
    if (name == "quota") {
        return std::make_unique<QuotaCommand>(environment);
    }
    if (name == "watch") {
        return std::make_unique<WatchCommand>(environment);
    }
    if (name == "doctor") {
        return std::make_unique<DoctorCommand>(environment);
    }
    return std::make_unique<ListCommand>(environment);
}

} // namespace Norlis::Terminal
