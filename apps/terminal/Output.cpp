#include "Output.h"

#include "Text.h"

#include <QCoreApplication>

#include <cerrno>
#include <csignal>
#include <cstring>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace Norlis::Terminal {

namespace {

winsize TerminalSize()
{
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
        size.ws_col = 80;
        size.ws_row = 24;
    }
    return size;
}

bool SupportsEscapes()
{
    const QByteArray terminal = qgetenv("TERM");
    return !terminal.isEmpty() && terminal != "dumb";
}

} // namespace

Output::Output(bool json)
    : json(json),
      isTerminal(isatty(STDOUT_FILENO) == 1),
      hasStatusLines(isTerminal && !json && SupportsEscapes())
{
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone shows up as a write error
}

Output::~Output()
{
    EraseStatus();
}

bool Output::IsJson() const
{
    return json;
}

int Output::Columns() const
{
    return TerminalSize().ws_col;
}

int Output::Rows() const
{
    return TerminalSize().ws_row;
}

bool Output::IsTerminal() const
{
    return isTerminal;
}

void Output::Line(const QString& text)
{
    Lines(text + '\n');
}

void Output::Lines(const QString& text)
{
    EraseStatus();
    WriteResult(text.toUtf8());
    DrawStatus();
}

void Output::Json(const QJsonDocument& document)
{
    WriteResult(JsonText(document).toUtf8() + '\n');
}

void Output::Error(const QString& text)
{
    EraseStatus();
    int ignoredError = 0; // there is nowhere left to report it
    Write(STDERR_FILENO, (QCoreApplication::applicationName() + ": " + Printable(text) + '\n').toUtf8(), ignoredError);
    DrawStatus();
}

void Output::SetStatus(const QStringList& lines)
{
    if (!hasStatusLines) {
        return;
    }
    status = lines;
    EraseStatus();
    DrawStatus();
}

QString Output::WriteError() const
{
    return writeError == 0 ? QString() : QString::fromLocal8Bit(std::strerror(writeError));
}

bool Output::HasReaderGone() const
{
    return writeError == EPIPE;
}

bool Output::Write(int descriptor, const QByteArray& bytes, int& error)
{
    for (int written = 0; written < bytes.size();) {
        const ssize_t count =
            write(descriptor, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count >= 0) {
            written += static_cast<int>(count);
        } else if (errno == EAGAIN) {
            pollfd writable = {descriptor, POLLOUT, 0};
            poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            error = errno;
            return false;
        }
    }
    return true;
}

void Output::WriteResult(const QByteArray& bytes)
{
    if (writeError == 0) {
        Write(STDOUT_FILENO, bytes, writeError);
    }
}

void Output::EraseStatus()
{
    if (drawnStatus.isEmpty()) {
        return;
    }
    // If the window has become narrower, the lines may now take more rows than when they were drawn.
    const int columns = Columns();
    int rows = 0;
    for (const QString& line : qAsConst(drawnStatus)) {
        rows += 1 + qMax(0, DisplayWidth(line) - 1) / columns;
    }
    drawnStatus.clear();
    QByteArray erase = "\r";
    if (rows > 1) {
        erase += "\x1b[" + QByteArray::number(rows - 1) + 'A';
    }
    WriteResult(erase + "\x1b[J");
}

void Output::DrawStatus()
{
    if (!status.isEmpty()) {
        drawnStatus = status;
        WriteResult(status.join('\n').toUtf8());
    }
}

} // namespace Norlis::Terminal
