// A renderer that behaves as its first argument says, for tests of the code that uses the preview renderer. Logs every
// request to the file that its second argument names.

#include <protocol/preview/RendererProtocol.h>

#include <QFile>

#include <cstdio>

#include <unistd.h>

namespace {

namespace Protocol = Norlis::Social::RendererProtocol;

/// A red picture.
void AnswerWithPicture(QDataStream& answers, quint32 width, quint32 height, int bytes)
{
    QByteArray pixels(bytes, '\0');
    for (int index = 2; index < pixels.size(); index += 4) {
        pixels[index] = '\xff';
    }
    answers << Protocol::rendered << width << height << pixels;
}

} // namespace

int main(int argc, char** argv)
{
    const QByteArray behaviour = argc > 1 ? argv[1] : "";
    QFile log(argc > 2 ? argv[2] : "/dev/null");
    QFile input;
    QFile output;
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered) ||
        !input.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered) ||
        !output.open(STDOUT_FILENO, QIODevice::WriteOnly)) {
        return 1;
    }
    if (behaviour == "talkative") {
        std::fputs("welcome", stdout);
        std::fflush(stdout);
    }
    QDataStream requests(&input);
    QDataStream answers(&output);
    requests.setVersion(Protocol::streamVersion);
    answers.setVersion(Protocol::streamVersion);
    for (;;) {
        quint32 width = 0;
        quint32 height = 0;
        QByteArray path;
        requests >> width >> height >> path;
        if (requests.status() != QDataStream::Ok) {
            return 0;
        }
        log.write(QByteArray::number(width) + 'x' + QByteArray::number(height) + ' ' + path + '\n');
        const int bytes = static_cast<int>(width * height * 4);
        if (behaviour == "die" || (behaviour == "die-of-bad" && path.contains("bad"))) {
            return 3;
        } else if (behaviour == "hang") {
            for (;;) {
                pause();
            }
        } else if (behaviour == "garbage") {
            output.write(QByteArray(5000, '\x5a'));
        } else if (behaviour == "nonsense-length") {
            answers << Protocol::rendered << width << height << quint32(0xffffffffU);
        } else if (behaviour == "short") {
            AnswerWithPicture(answers, width, height, bytes - 4);
        } else if (behaviour == "too-large") {
            AnswerWithPicture(answers, width + 1, height, bytes);
        } else if (behaviour == "empty") {
            AnswerWithPicture(answers, 0, 0, 0);
        } else if (behaviour == "half") {
            answers << Protocol::rendered << width << height << static_cast<quint32>(bytes);
            output.write(QByteArray(bytes / 2, '\0'));
            output.flush();
            return 0;
        } else if (behaviour == "refuse") {
            answers << Protocol::refused << QByteArray("for a reason");
        } else if (behaviour == "refuse-at-length") {
            answers << Protocol::refused << QByteArray(1'000'000, 'x');
        } else {
            AnswerWithPicture(answers, width, height, bytes);
            if (behaviour == "twice") {
                AnswerWithPicture(answers, width, height, bytes);
            }
        }
        output.flush();
    }
}
