// A renderer that behaves as its first argument says, for tests of the code that uses the preview renderer. Logs every
// request to the file that its second argument names. Without arguments it refuses with a text that lists what it has
// inherited.

#include <protocol/preview/RendererProtocol.h>

#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

namespace Protocol = Norlis::Social::RendererProtocol;

/// A red picture, of a document of ten pages unless it is said to have others.
void AnswerWithPicture(QDataStream& answers, quint32 width, quint32 height, int bytes, quint32 pageCount = 10)
{
    QByteArray pixels(bytes, '\0');
    for (int index = 2; index < pixels.size(); index += 4) {
        pixels[index] = '\xff';
    }
    answers << Protocol::rendered << pageCount << width << height << pixels;
}

/// The environment and the open descriptors.
QByteArray Inheritance()
{
    QByteArray text = QProcessEnvironment::systemEnvironment().toStringList().join(',').toUtf8() + ';';
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        text += fcntl(descriptor, F_GETFD) < 0 ? QByteArray() : ' ' + QByteArray::number(descriptor);
    }
    return text;
}

} // namespace

int main(int argc, char** argv)
{
    const QByteArray inheritance = Inheritance();
    const QByteArray behaviour = argc > 1 ? argv[1] : "";
    QFile log(argc > 2 ? argv[2] : "/dev/null");
    QFile output;
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered) ||
        !output.open(STDOUT_FILENO, QIODevice::WriteOnly)) {
        return 1;
    }
    if (behaviour == "talkative") {
        std::fputs("welcome", stdout);
        std::fflush(stdout);
    }
    QDataStream answers(&output);
    answers.setVersion(Protocol::streamVersion);
    for (;;) {
        QFile document;
        const auto request = Protocol::ReceiveRequest(STDIN_FILENO, document);
        if (!request) {
            return 0;
        }
        const auto width = static_cast<quint32>(request->box.width());
        const auto height = static_cast<quint32>(request->box.height());
        const QString link = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(document.handle()));
        const QByteArray name = QFileInfo(link).fileName().toUtf8();
        const QByteArray page = request->page == 1 ? QByteArray() : " page " + QByteArray::number(request->page);
        log.write(QByteArray::number(width) + 'x' + QByteArray::number(height) + ' ' + name + page + '\n');
        const int bytes = static_cast<int>(width * height * 4);
        if (behaviour.isEmpty()) {
            answers << Protocol::refused << inheritance;
        } else if (behaviour == "die" || (behaviour == "die-of-bad" && name.contains("bad"))) {
            return 3;
        } else if (behaviour == "hang") {
            for (;;) {
                pause();
            }
        } else if (behaviour == "garbage") {
            output.write(QByteArray(5000, '\x5a'));
        } else if (behaviour == "nonsense-length") {
            answers << Protocol::rendered << quint32(10) << width << height << quint32(0xffffffffU);
        } else if (behaviour == "short") {
            AnswerWithPicture(answers, width, height, bytes - 4);
        } else if (behaviour == "too-large") {
            AnswerWithPicture(answers, width + 1, height, bytes);
        } else if (behaviour == "too-few-pages") {
            AnswerWithPicture(answers, width, height, bytes, static_cast<quint32>(request->page - 1));
        } else if (behaviour == "too-many-pages") {
            AnswerWithPicture(answers, width, height, bytes, 0xffffffffU);
        } else if (behaviour == "empty") {
            AnswerWithPicture(answers, 0, 0, 0);
        } else if (behaviour == "half") {
            answers << Protocol::rendered << quint32(10) << width << height << static_cast<quint32>(bytes);
            output.write(QByteArray(bytes / 2, '\0'));
            output.flush();
            return 0;
        } else if (behaviour == "read") { // refuses with what it has read
            answers << Protocol::wanted << qint64(0) << request->size;
            output.flush();
            answers << Protocol::refused << Protocol::ReceivePiece(STDIN_FILENO).left(100);
        } else if (behaviour == "read-beyond") {
            answers << Protocol::wanted << request->size << qint64(1);
            output.flush();
            pause();
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
