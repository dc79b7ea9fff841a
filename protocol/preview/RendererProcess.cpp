#include "RendererProcess.h"

#include "RendererProtocol.h"

#include <QDataStream>
#include <QFileInfo>

#include <dlfcn.h>

namespace Norlis::Social {

namespace {

constexpr int idleLimit = 30'000; // milliseconds

/// The folder that this library was loaded from.
QString LibraryFolder()
{
    Dl_info info = {};
    if (dladdr(reinterpret_cast<const void*>(&FindRenderer), &info) == 0) {
        return {};
    }
    return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalPath();
}

} // namespace

QString FindRenderer()
{
    const auto name = QStringLiteral("/norlis-preview-renderer");
    for (const QString& folder :
         {LibraryFolder(), LibraryFolder() + "/norlis-cloud", LibraryFolder() + "/../libexec"}) {
        if (QFileInfo(folder + name).isExecutable()) {
            return folder + name;
        }
    }
    return {};
}

RendererProcess::RendererProcess(const QString& program, int timeLimit) : program(program)
{
    process.setStandardErrorFile(QProcess::nullDevice());
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C.UTF-8"); // paths are sent in UTF-8
    process.setProcessEnvironment(environment);

    watchdog.setSingleShot(true);
    watchdog.setInterval(timeLimit);
    idleTimer.setSingleShot(true);
    idleTimer.setInterval(idleLimit);

    connect(&process, &QProcess::started, this, &RendererProcess::Send);
    connect(&process, &QProcess::readyReadStandardOutput, this, &RendererProcess::Read);
    connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &RendererProcess::OnProcessEnded);
    connect(&process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            Answer({}, QStringLiteral("The preview renderer cannot be started"));
        }
    });
    connect(&watchdog, &QTimer::timeout, this, &RendererProcess::OnTimeout);
    connect(&idleTimer, &QTimer::timeout, this, &RendererProcess::Stop);
}

RendererProcess::~RendererProcess()
{
    Stop();
}

bool RendererProcess::IsIdle() const
{
    return !done;
}

void RendererProcess::Render(const QString& path, const QSize& wantedBox, Done whenDone)
{
    box = wantedBox.boundedTo({RendererProtocol::largestEdge, RendererProtocol::largestEdge}).expandedTo({1, 1});
    done = std::move(whenDone);
    request.clear();
    QDataStream stream(&request, QIODevice::WriteOnly);
    stream.setVersion(RendererProtocol::streamVersion);
    stream << static_cast<quint32>(box.width()) << static_cast<quint32>(box.height()) << path.toUtf8();

    idleTimer.stop();
    watchdog.start();
    if (program.isEmpty()) {
        QTimer::singleShot(0, this, [this] { Answer({}, QStringLiteral("The preview renderer is not installed")); });
    } else if (isUsed = process.state() == QProcess::Running; isUsed) {
        Send();
    } else {
        process.start(program, QStringList());
    }
}

void RendererProcess::Send()
{
    process.write(request);
}

void RendererProcess::Read()
{
    if (IsIdle()) {
        Abandon({}); // nobody asked
        return;
    }
    // The prefix of the pixels says how long they are; it is looked at before room is made for them.
    constexpr qint64 longestHead = 1 + 3 * sizeof(quint32);
    const QByteArray head = process.peek(longestHead);
    QDataStream headStream(head);
    quint8 kind = RendererProtocol::refused;
    quint32 width = 0;
    quint32 height = 0;
    quint32 size = 0;
    headStream >> kind;
    if (kind == RendererProtocol::rendered) {
        headStream >> width >> height;
    }
    headStream >> size;
    if (headStream.status() != QDataStream::Ok) {
        return; // more is to come
    }
    constexpr quint32 longestReason = 4096;
    const bool isPicture = kind == RendererProtocol::rendered;
    const bool isValid = isPicture ? width > 0 && height > 0 && width <= static_cast<quint32>(box.width()) &&
                                         height <= static_cast<quint32>(box.height()) && size == width * height * 4
                                   : size <= longestReason;
    if (!isValid) {
        Abandon(QStringLiteral("The preview renderer answered with something else than a picture"));
        return;
    }
    constexpr qint64 headOfReason = 1 + sizeof(quint32);
    if (process.bytesAvailable() < (isPicture ? longestHead : headOfReason) + static_cast<qint64>(size)) {
        return; // more is to come
    }
    QDataStream stream(&process);
    stream.setVersion(RendererProtocol::streamVersion);
    stream.startTransaction();
    QByteArray content;
    stream >> kind;
    if (isPicture) {
        stream >> width >> height;
    }
    stream >> content;
    if (!stream.commitTransaction()) {
        return;
    }
    if (process.bytesAvailable() > 0) {
        Stop(); // what it says beyond the answer must not be taken for that about the next document
    }
    if (!isPicture) {
        Answer({}, QString::fromUtf8(content));
        return;
    }
    const QImage view(reinterpret_cast<const uchar*>(content.constData()), static_cast<int>(width),
                      static_cast<int>(height), static_cast<int>(width * 4), QImage::Format_RGB32);
    Answer(view.copy(), {});
}

void RendererProcess::OnProcessEnded()
{
    if (IsIdle()) {
        return;
    }
    if (isUsed) {
        isUsed = false; // another document or an outsider may have ended it; a fresh process tells
        process.start(program, QStringList());
        return;
    }
    Answer({}, QStringLiteral("The document made the preview renderer stop"));
}

void RendererProcess::OnTimeout()
{
    Abandon(QStringLiteral("Rendering it took longer than %1 seconds").arg(watchdog.interval() / 1000.0));
}

void RendererProcess::Abandon(const QString& reason)
{
    Stop();
    Answer({}, reason);
}

void RendererProcess::Stop()
{
    const QSignalBlocker blocker(process); // its end is no news
    process.kill();
    process.waitForFinished(1000);
}

void RendererProcess::Answer(const QImage& image, const QString& reason)
{
    watchdog.stop();
    idleTimer.start();
    if (const Done answered = std::exchange(done, nullptr)) {
        answered(image, reason);
    }
}

} // namespace Norlis::Social
