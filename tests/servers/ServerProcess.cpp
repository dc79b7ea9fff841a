#include "ServerProcess.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace Norlis::Test {

namespace {

/// Texts in the form that execve takes.
class CStrings {
public:
    explicit CStrings(const QStringList& texts)
    {
        for (const QString& text : texts) {
            bytes.push_back(QFile::encodeName(text));
        }
        for (QByteArray& text : bytes) {
            pointers.push_back(text.data());
        }
    }

    void Append(char* text)
    {
        pointers.push_back(text);
    }

    char** Get()
    {
        pointers.push_back(nullptr);
        return pointers.data();
    }

private:
    std::vector<QByteArray> bytes;
    std::vector<char*> pointers;
};

/// What a new process does to become the program. Like the guard below, it may call only what is safe between fork and
/// exec in a process with several threads.
[[noreturn]] void Become(char** arguments, char** variables, const char* folder, const char* log)
{
    const int input = open("/dev/null", O_RDONLY);
    const int output = open(log, O_WRONLY | O_CREAT | O_APPEND, 0644);
    if (input < 0 || output < 0 || chdir(folder) != 0) {
        _exit(127);
    }
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    std::signal(SIGTERM, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execve(arguments[0], arguments, variables);
    _exit(127);
}

/// Leads the group of a program's processes: kills all of them when the thread that started them ends. Ends itself when
/// the program and what it has started have ended.
template <typename Program>
[[noreturn]] void Guard(pid_t owner, Program become)
{
    setpgid(0, 0);
    std::signal(SIGTERM, SIG_IGN); // which is meant for the program
    sigset_t awaited;
    sigemptyset(&awaited);
    sigaddset(&awaited, SIGUSR1);
    sigaddset(&awaited, SIGCHLD);
    sigprocmask(SIG_BLOCK, &awaited, nullptr);
    prctl(PR_SET_PDEATHSIG, SIGUSR1);
    prctl(PR_SET_CHILD_SUBREAPER, 1);

    const pid_t program = getppid() == owner ? fork() : -1;
    if (program == 0) {
        become();
    }
    pid_t ended = 0;
    while (program > 0 && (ended = waitpid(-1, nullptr, WNOHANG)) >= 0) {
        int signal = 0;
        if (ended == program) {
            kill(0, SIGTERM);
        } else if (ended == 0 && sigwait(&awaited, &signal) == 0 && signal == SIGUSR1) {
            kill(0, SIGKILL);
        }
    }
    _exit(0);
}

} // namespace

ServerProcess::ServerProcess(const ProgramStart& start, const QString& logFile)
{
    CStrings arguments(QStringList(start.program) + start.arguments);
    CStrings environment(start.environment);
    for (char** variable = environ; *variable != nullptr; ++variable) {
        environment.Append(*variable);
    }
    const QByteArray folder = QFile::encodeName(start.folder);
    const QByteArray log = QFile::encodeName(logFile);
    char** const argumentList = arguments.Get();
    char** const variables = environment.Get();

    const pid_t owner = getpid();
    id = fork();
    if (id < 0) {
        throw std::runtime_error(std::string("No process: ") + std::strerror(errno));
    }
    if (id == 0) {
        Guard(owner, [&] { Become(argumentList, variables, folder.constData(), log.constData()); });
    }
    setpgid(id, id); // whoever of the two comes first
}

ServerProcess::~ServerProcess()
{
    kill(-id, SIGTERM);
    const QDeadlineTimer deadline(2000);
    while (IsRunning() && !deadline.hasExpired()) {
        QThread::msleep(1); // the end of a process is no event of Qt's loop
    }
    kill(-id, SIGKILL); // before the id is given back, so that it is nobody else's
    while (waitpid(id, nullptr, 0) < 0 && errno == EINTR) {
    }
}

bool ServerProcess::IsRunning() const
{
    siginfo_t info = {};
    return waitid(P_PID, static_cast<id_t>(id), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == 0;
}

void LetEverybodyThrough(const QString& folder)
{
    const QByteArray path = QFile::encodeName(folder);
    struct stat status = {};
    if (stat(path.constData(), &status) == 0 && status.st_uid == geteuid()) {
        chmod(path.constData(), status.st_mode | S_IXUSR | S_IXGRP | S_IXOTH);
    }
}

} // namespace Norlis::Test
