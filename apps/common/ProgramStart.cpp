#include "ProgramStart.h"

#include <QString>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace Norlis::Apps {

namespace {

constexpr int neededDescriptors =
    64; // beyond those that are open at the start; threads, renderers and transfers have them

/// What Qt has said while there was no log.
struct EarlyMessages {
    std::mutex mutex;
    std::string program;
    std::string lines;
};

EarlyMessages& Early()
{
    static auto& messages = *new EarlyMessages; // for as long as anything can be said
    return messages;
}

void KeepMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    auto& early = Early();
    const std::lock_guard lock(early.mutex);
    early.lines += early.program + ": " + text.toStdString() + '\n';
    if (type == QtFatalMsg) { // the reason may be in what came before
        std::fputs(early.lines.c_str(), stderr);
    }
}

void OpenStandardDescriptors()
{
    int descriptor = -1;
    do {
        descriptor = open("/dev/null", O_RDWR); // the lowest number that is free
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    close(descriptor);
}

/// By asking for them: the limit counts those too that the parent process has left open.
bool AreFree(int count)
{
    std::vector<int> copies;
    while (static_cast<int>(copies.size()) < count) {
        const int copy = dup(STDERR_FILENO);
        if (copy < 0) {
            break;
        }
        copies.push_back(copy);
    }
    std::for_each(copies.begin(), copies.end(), close);
    return static_cast<int>(copies.size()) == count;
}

void CheckDescriptors(const char* program)
{
    if (AreFree(neededDescriptors)) {
        return;
    }
    rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max; // as far as that goes
    setrlimit(RLIMIT_NOFILE, &limit);
    if (!AreFree(neededDescriptors)) {
        std::fprintf(stderr,
                     "%s: Too few files can be open at once: the limit is %llu. Raise it, for example with \"ulimit -n "
                     "1024\"\n",
                     program, static_cast<unsigned long long>(limit.rlim_max));
        std::exit(EXIT_FAILURE);
    }
}

} // namespace

void PrepareProgram(const char* program)
{
    OpenStandardDescriptors();
    Early().program = program;
    qInstallMessageHandler(KeepMessage);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit none = {};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0); // a core may go to another program, which no limit keeps from it
    CheckDescriptors(program);
}

} // namespace Norlis::Apps
