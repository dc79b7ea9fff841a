#include "TokenInput.h"

#include <QFile>

#include <algorithm>
#include <stdexcept>

#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace Norlis::Terminal {

namespace {

constexpr int maxTokenSize = 64 * 1024; // bytes; anything longer is some other file

/// Turns the terminal's echo off for as long as it lives.
class EchoOff {
public:
    EchoOff()
    {
        if (tcgetattr(STDIN_FILENO, &before) == 0) {
            termios hidden = before;
            hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            hidden.c_lflag |= ECHONL;
            isHidden = tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden) == 0;
        }
    }

    ~EchoOff()
    {
        if (isHidden) {
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
        }
    }

    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    termios before = {};
    bool isHidden = false;
};

QString Checked(QByteArray bytes)
{
    while (bytes.endsWith('\n') || bytes.endsWith('\r')) {
        bytes.chop(1);
    }
    if (bytes.isEmpty()) {
        throw NoToken();
    }
    if (bytes.size() > maxTokenSize) {
        throw std::runtime_error("That is too long for a password or token");
    }
    const QString token = QString::fromUtf8(bytes);
    const bool isAnyControl = std::any_of(token.begin(), token.end(),
                                          [](QChar character) { return character.category() == QChar::Other_Control; });
    if (isAnyControl) { // most likely it is another file; besides, HTTP cannot transmit it
        throw std::runtime_error("The password or token contains several lines or control characters");
    }
    return token;
}

/// Everything up to the end of the input or, on a terminal, of the line. Nothing if interrupted.
std::optional<QByteArray> ReadInput(bool isTerminal, int interruptDescriptor)
{
    QByteArray bytes;
    while (bytes.size() <= maxTokenSize && !(isTerminal && bytes.endsWith('\n'))) {
        pollfd sources[] = {{interruptDescriptor, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
        if (poll(sources, 2, -1) < 0) {
            continue; // a signal; if it asks to stop, the descriptor is readable now
        }
        if (sources[0].revents != 0) {
            return std::nullopt;
        }
        char piece[4096];
        const ssize_t count = read(STDIN_FILENO, piece, sizeof piece);
        if (count <= 0) {
            break;
        }
        bytes.append(piece, static_cast<int>(count));
    }
    return bytes;
}

} // namespace

NoToken::NoToken() : std::runtime_error("No password or token was given") {}

QString TokenFromFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(
            QStringLiteral("The token file %1 cannot be read: %2").arg(path, file.errorString()).toStdString());
    }
    return Checked(file.read(maxTokenSize + 1));
}

std::optional<QString> TokenFromStandardInput(const QString& question, int interruptDescriptor)
{
    std::optional<QByteArray> bytes;
    if (isatty(STDIN_FILENO) == 1) {
        const EchoOff echoOff;
        const QByteArray text = question.toUtf8();
        [[maybe_unused]] const auto written = write(STDERR_FILENO, text.constData(), static_cast<size_t>(text.size()));
        bytes = ReadInput(true, interruptDescriptor);
    } else {
        bytes = ReadInput(false, interruptDescriptor);
    }
    return bytes ? std::optional(Checked(*bytes)) : std::nullopt;
}

} // namespace Norlis::Terminal
