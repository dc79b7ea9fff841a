#include "Arguments.h"
#include "Command.h"
#include "CommandCatalogue.h"
#include "ExitStatus.h"
#include "Output.h"

#include <apps/common/Interrupts.h>
#include <apps/common/LogFile.h>
#include <apps/common/ProgramStart.h>
#include <base/Utf8.h>
#include <contracts/Version.h>

#include <QGuiApplication>

#include <clocale>
#include <cstring>
#include <stdexcept>

#include <langinfo.h>

using namespace Norlis::Terminal;

namespace {

/// To be called before the Qt application is constructed.
void PrepareEnvironment()
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // previews are created, but not shown
    if (!qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", ":/etc/localtime"); // as without it, but the file is not looked at for every time that is shown
    }
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) {
        qputenv("LC_ALL", "C.UTF-8"); // file names are UTF-8, whatever the shell's locale says
        std::setlocale(LC_ALL, "");
    }
}

/// Only pictures need the platform, which takes longer to load than most commands take.
std::unique_ptr<QCoreApplication> MakeApplication(const Arguments& arguments, int& argc, char** argv)
{
    const auto command = FindCommand(arguments.command);
    return command && command->makesPictures ? std::make_unique<QGuiApplication>(argc, argv)
                                             : std::make_unique<QCoreApplication>(argc, argv);
}

/// The exit status, taking into account whether the results could be written.
/// \param exitStatus that of the command
int StatusWithOutput(int exitStatus, Output& output)
{
    const QString writeError = output.WriteError();
    if (writeError.isEmpty()) {
        return exitStatus;
    }
    if (!output.HasReaderGone()) {
        output.Error("The results cannot be written: " + writeError);
    }
    return exitStatus == ExitStatus::success ? ExitStatus::failure : exitStatus;
}

int Run(const Arguments& arguments)
{
    Norlis::Apps::Interrupts interrupts;
    Output output(arguments.json);
    int exitStatus = ExitStatus::failure;
    try {
        const auto settings = std::make_shared<Norlis::Host::CloudAccountSettings>(arguments.dataFolder);
        const Norlis::Apps::LogFile log(arguments.dataFolder + "/log", "norlis-cloud");
        const auto command =
            FindCommand(arguments.command)->make({arguments, output, settings, interrupts.Descriptor()});
        QObject::connect(&interrupts, &Norlis::Apps::Interrupts::Interrupted, command.get(), &Command::Interrupt);
        // Queued, because a command may finish inside Start, before the event loop runs.
        QObject::connect(command.get(), &Command::Finished, QCoreApplication::instance(), &QCoreApplication::exit,
                         Qt::QueuedConnection);
        command->Start();
        exitStatus = QCoreApplication::exec();
    } catch (const std::runtime_error& problem) {
        output.Error(QString::fromUtf8(problem.what()));
    }
    return StatusWithOutput(exitStatus, output);
}

} // namespace

int main(int argc, char** argv)
{
    Norlis::Apps::PrepareProgram("norlis-cloud");
    PrepareEnvironment();
    QCoreApplication::setApplicationName("norlis-cloud");
    QCoreApplication::setApplicationVersion(NORLIS_CLOUD_VERSION_STR);

    QStringList words;
    for (int index = 0; index < argc; ++index) {
        words << Norlis::FromUtf8(QByteArray(argv[index]));
    }
    const CommandLine commandLine = ParseCommandLine(words);
    // Keeps Qt from taking some of the arguments for options of its own.
    int argcForQt = 1;
    const auto application = MakeApplication(commandLine.arguments, argcForQt, argv);
    if (!commandLine.error.isEmpty()) {
        Output(false).Error(commandLine.error);
        return ExitStatus::usage;
    }
    if (!commandLine.answer.isEmpty()) {
        Output output(false);
        output.Lines(commandLine.answer);
        return StatusWithOutput(ExitStatus::success, output);
    }
    return Run(commandLine.arguments);
}
