#include "PseudoTerminal.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Norlis::Test {

namespace {

constexpr int timeLimit = 60'000; // milliseconds of silence

/// Texts as the system's calls want them; valid for as long as the object lives.
class TextArray {
public:
    explicit TextArray(const QStringList& texts)
    {
        for (const QString& text : texts) {
            bytes.push_back(text.toUtf8());
        }
        for (QByteArray& text : bytes) {
            pointers.push_back(text.data());
        }
        pointers.push_back(nullptr);
    }

    char** Data()
    {
        return pointers.data();
    }

private:
    std::vector<QByteArray> bytes;
    std::vector<char*> pointers;
};

} // namespace

PseudoTerminal::PseudoTerminal(const QString& program, const QStringList& words, const QProcessEnvironment& environment,
                               int columns, int rows)
{
    TextArray arguments(QStringList(program) + words);
    TextArray variables(environment.toStringList());
    winsize size = {};
    size.ws_col = static_cast<unsigned short>(columns);
    size.ws_row = static_cast<unsigned short>(rows);
    process = forkpty(&terminal, nullptr, nullptr, &size);
    if (process < 0) {
        throw std::runtime_error(std::string("there are no pseudo-terminals here: ") + std::strerror(errno));
    }
    if (process == 0) {
        execve(arguments.Data()[0], arguments.Data(), variables.Data());
        _exit(127);
    }
}

PseudoTerminal::~PseudoTerminal()
{
    if (process > 0) {
        Kill();
        waitpid(process, nullptr, 0);
    }
    close(terminal);
}

void PseudoTerminal::Kill()
{
    if (process > 0) { // -1 would mean every process of the machine
        kill(process, SIGKILL);
    }
}

bool PseudoTerminal::WaitFor(const QByteArray& text)
{
    while (!written.contains(text)) {
        if (!Read()) {
            return false;
        }
    }
    return true;
}

int PseudoTerminal::WaitForEnd()
{
    while (Read()) {
    }
    int status = 0;
    waitpid(process, &status, 0);
    process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void PseudoTerminal::Type(const QByteArray& keys)
{
    [[maybe_unused]] const auto count = write(terminal, keys.constData(), static_cast<size_t>(keys.size()));
}

void PseudoTerminal::Resize(int columns, int rows)
{
    winsize size = {};
    size.ws_col = static_cast<unsigned short>(columns);
    size.ws_row = static_cast<unsigned short>(rows);
    ioctl(terminal, TIOCSWINSZ, &size);
}

QByteArray PseudoTerminal::Written() const
{
    return written;
}

bool PseudoTerminal::Read()
{
    pollfd readable = {terminal, POLLIN, 0};
    if (poll(&readable, 1, timeLimit) <= 0) {
        Kill(); // it hangs
        return false;
    }
    char piece[4096];
    const ssize_t count = read(terminal, piece, sizeof piece);
    if (count <= 0) {
        return false;
    }
    written.append(piece, static_cast<int>(count));
    return true;
}

} // namespace Norlis::Test
