#include "TokenInput.h"

#include <QFile>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <vector>

#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace Norlis::Terminal {

namespace {

constexpr std::size_t maxTokenSize = 64 * 1024; // bytes; anything longer is some other file

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

/// What was read, in one place, which is overwritten in the end.
class Input {
public:
    Input() = default;

    ~Input()
    {
        explicit_bzero(bytes.data(), bytes.size());
    }

    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    char* End()
    {
        return bytes.data() + size;
    }

    std::size_t Room() const
    {
        return bytes.size() - size;
    }

    void Add(std::size_t count)
    {
        size += count;
    }

    bool EndsLine() const
    {
        return size > 0 && (bytes[size - 1] == '\n' || bytes[size - 1] == '\r');
    }

    QString Token();

private:
    std::vector<char> bytes = std::vector<char>(maxTokenSize + 1);
    std::size_t size = 0;
};

QString Input::Token()
{
    while (EndsLine()) {
        --size;
    }
    if (size == 0) {
        throw NoToken();
    }
    if (size > maxTokenSize) {
        throw std::runtime_error("That is too long for a password or token");
    }
    const QString token = QString::fromUtf8(bytes.data(), static_cast<int>(size));
    const bool isAnyControl = std::any_of(token.begin(), token.end(),
                                          [](QChar character) { return character.category() == QChar::Other_Control; });
    if (isAnyControl) { // most likely it is another file; besides, HTTP cannot transmit it
        throw std::runtime_error("The password or token contains several lines or control characters");
    }
    return token;
}

/// Takes everything up to the end of the input or, on a terminal, of the line. False if interrupted.
bool Read(Input& input, bool isTerminal, int interruptDescriptor)
{
    while (input.Room() > 0 && !(isTerminal && input.EndsLine())) {
        pollfd sources[] = {{interruptDescriptor, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
        if (poll(sources, 2, -1) < 0) {
            continue; // a signal; if it asks to stop, the descriptor is readable now
        }
        if (sources[0].revents != 0) {
            return false;
        }
        const ssize_t count = read(STDIN_FILENO, input.End(), input.Room());
        if (count <= 0) {
            break;
        }
        input.Add(static_cast<std::size_t>(count));
    }
    return true;
}

} // namespace

NoToken::NoToken() : std::runtime_error("No password or token was given") {}

QString TokenFromFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw std::runtime_error(
            QStringLiteral("The token file %1 cannot be read: %2").arg(path, file.errorString()).toStdString());
    }
    Input input;
    const qint64 count = file.read(input.End(), static_cast<qint64>(input.Room()));
    input.Add(static_cast<std::size_t>(std::max(count, qint64{0})));
    return input.Token();
}

std::optional<QString> TokenFromStandardInput(const QString& question, int interruptDescriptor)
{
    Input input;
    bool isComplete = false;
    if (isatty(STDIN_FILENO) == 1) {
        const EchoOff echoOff;
        const QByteArray text = question.toUtf8();
        [[maybe_unused]] const auto written = write(STDERR_FILENO, text.constData(), static_cast<size_t>(text.size()));
        isComplete = Read(input, true, interruptDescriptor);
    } else {
        isComplete = Read(input, false, interruptDescriptor);
    }
    return isComplete ? std::optional(input.Token()) : std::nullopt;
}

} // namespace Norlis::Terminal
