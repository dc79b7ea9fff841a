#pragma once

#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace Norlis::Test {

/// How to start a program.
struct ProgramStart {
    QString program; ///< path
    QStringList arguments;
    QStringList environment; ///< NAME=value, added to that of this process
    QString folder;          ///< working directory
};

/// A program that runs as long as the object lives, together with the processes that it starts itself.
///
/// They also end with the thread that started the program, so that a test that is killed leaves no server behind.
class ServerProcess {
public:
    /// \param logFile everything that the program writes is appended to it
    /// Throws std::runtime_error when no process can be started. A program that cannot be started ends at once.
    ServerProcess(const ProgramStart& start, const QString& logFile);

    /// Asks the program to end; kills it after two seconds.
    ~ServerProcess();

    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    bool IsRunning() const;

private:
    pid_t id = -1; ///< of the process that leads the group
};

/// Folders for temporary files are their owner's alone; a server that acts as somebody else has to get through.
void LetEverybodyThrough(const QString& folder);

} // namespace Norlis::Test
