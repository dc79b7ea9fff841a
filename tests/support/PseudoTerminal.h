#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QStringList>

#include <sys/types.h>

namespace Norlis::Test {

/// Runs a program on a terminal of its own and plays the user in front of it.
class PseudoTerminal {
public:
    /// Throws std::runtime_error when the system has no terminal to give.
    PseudoTerminal(const QString& program, const QStringList& words, const QProcessEnvironment& environment,
                   int columns = 80, int rows = 24);

    /// Kills the program if it still runs.
    ~PseudoTerminal();

    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// Waits until the text was written; false when the program ends before.
    bool WaitFor(const QByteArray& text);

    /// Waits for the program's end; its exit status, or -1 when a signal ended it.
    int WaitForEnd();

    void Type(const QByteArray& keys);
    void Resize(int columns, int rows);

    /// Everything that was written so far.
    QByteArray Written() const;

private:
    void Kill();

    /// Takes what the program writes next; false when there will be no more.
    bool Read();

    pid_t process = -1;
    int terminal = -1;
    QByteArray written;
};

} // namespace Norlis::Test
