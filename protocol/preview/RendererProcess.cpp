#include "RendererProcess.h"

#include "RendererProtocol.h"
#include <base/Lifetime.h>

#include <QDataStream>
#include <QFileInfo>

#include <cerrno>

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

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

/// Opens a file and nothing else: not what a link leads to, nor anything that would make the reader wait. Why not, else
/// empty.
QString Open(QFile& file, const QString& path)
{
    file.close();
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0) {
        return QStringLiteral("It cannot be read: %1").arg(qt_error_string(errno));
    }
    struct stat status = {};
    const bool isFile = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
    return isFile ? QString() : QStringLiteral("It is not a file");
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

SocketProcess::SocketProcess()
    : PreparedProcess([this] {
          dup2(theirs, STDIN_FILENO);
          close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
      })
{
    ForgetEnvironment();
}

SocketProcess::~SocketProcess()
{
    ::close(ours);
}

void SocketProcess::Start(const QString& program)
{
    ::close(ours);
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0) {
        shutdown(ends[1], SHUT_WR); // it answers elsewhere
    }
    ours = ends[0];
    theirs = ends[1];
    start(program, QStringList());
    ::close(theirs);
}

int SocketProcess::Socket() const
{
    return ours;
}

RendererProcess::RendererProcess(const QString& program, int timeLimit) : program(program), timeLimit(timeLimit)
{
    process.setStandardInputFile(QProcess::nullDevice()); // until the socket takes its place
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setWorkingDirectory("/");

    watchdog.setSingleShot(true);
    idleTimer.setSingleShot(true);
    idleTimer.setInterval(idleLimit);

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

void RendererProcess::Render(const QString& path, int wantedPage, const QSize& wantedBox, Done whenDone)
{
    Begin(wantedPage, wantedBox, program.isEmpty() ? QString() : Open(document, path), std::move(whenDone));
}

void RendererProcess::Render(const std::shared_ptr<DocumentPieces>& wanted, int wantedPage, const QSize& wantedBox,
                             Done whenDone)
{
    pieces = wanted;
    Begin(wantedPage, wantedBox, pieces->Size() > 0 ? QString() : QStringLiteral("It is empty"), std::move(whenDone));
}

void RendererProcess::Begin(int wantedPage, const QSize& wantedBox, const QString& refusalOfDocument, Done whenDone)
{
    page = wantedPage;
    box = wantedBox.boundedTo({RendererProtocol::maxEdge, RendererProtocol::maxEdge}).expandedTo({1, 1});
    done = std::move(whenDone);
    idleTimer.stop();
    watchdog.start(timeLimit);
    const QString refusal =
        program.isEmpty() ? QStringLiteral("The preview renderer is not installed") : refusalOfDocument;
    if (!refusal.isEmpty()) {
        QTimer::singleShot(0, this, [this, refusal] { Answer({}, refusal); });
    } else if (isUsed = process.state() == QProcess::Running; isUsed) {
        Send();
    } else {
        Start();
    }
}

void RendererProcess::Start()
{
    process.Start(program);
    Send();
}

void RendererProcess::Send()
{
    // If this fails, the process has gone, which will be told.
    if (pieces) {
        RendererProtocol::SendRequest(process.Socket(), {page, box, pieces->Size()});
    } else {
        RendererProtocol::SendRequest(process.Socket(), {page, box, 0}, document.handle());
    }
}

void RendererProcess::Read()
{
    if (IsIdle()) {
        Abandon({}); // nobody asked
        return;
    }
    if (process.peek(1) == QByteArray(1, static_cast<char>(RendererProtocol::wanted))) {
        ReadWanted();
        return;
    }
    const auto head = PeekHead();
    if (!head) {
        return; // more is to come
    }
    if (!IsAcceptable(*head)) {
        Abandon(QStringLiteral("The preview renderer answered with something other than a picture"));
        return;
    }
    if (process.bytesAvailable() < head->length + head->contentSize) {
        return; // more is to come
    }
    process.skip(head->length);
    const QByteArray content = process.read(head->contentSize);
    if (process.bytesAvailable() > 0) {
        Stop(); // what it says beyond the answer must not be taken for the answer about the next document
    }
    if (!head->isPicture) {
        Answer({}, QString::fromUtf8(content));
        return;
    }
    const QImage view(reinterpret_cast<const uchar*>(content.constData()), static_cast<int>(head->width),
                      static_cast<int>(head->height), static_cast<int>(head->width * 4), QImage::Format_RGB32);
    Answer({view.copy(), static_cast<int>(head->pageCount)}, {});
}

void RendererProcess::ReadWanted()
{
    constexpr qint64 length = 1 + 2 * sizeof(qint64);
    if (process.bytesAvailable() < length) {
        return; // more is to come
    }
    QDataStream stream(process.read(length));
    quint8 kind = 0;
    qint64 offset = -1;
    qint64 count = 0;
    stream >> kind >> offset >> count;
    const bool isInside =
        pieces && offset >= 0 && count > 0 && offset < pieces->Size() && count <= pieces->Size() - offset;
    if (!isInside || process.bytesAvailable() > 0) {
        Abandon(QStringLiteral("The preview renderer asked for something other than the document"));
        return;
    }
    const int timeLeft = watchdog.remainingTime();
    watchdog.stop();
    pieces->Read(offset, count, [this, timeLeft](const QByteArray& bytes, const QString& reason) {
        if (bytes.isEmpty()) {
            Abandon(reason);
        } else {
            watchdog.start(timeLeft);
            RendererProtocol::SendPiece(process.Socket(), bytes);
        }
    });
}

std::optional<RendererProcess::Head> RendererProcess::PeekHead()
{
    constexpr qint64 reasonHead = 1 + sizeof(quint32);
    constexpr qint64 pictureHead = 1 + 4 * sizeof(quint32);
    QDataStream stream(process.peek(pictureHead));
    quint8 kind = RendererProtocol::refused;
    quint32 pageCount = 0;
    quint32 width = 0;
    quint32 height = 0;
    quint32 contentSize = 0;
    stream >> kind;
    const bool isPicture = kind == RendererProtocol::rendered;
    if (isPicture) {
        stream >> pageCount >> width >> height;
    }
    stream >> contentSize;
    if (stream.status() != QDataStream::Ok) {
        return std::nullopt;
    }
    return Head{isPicture, isPicture ? pictureHead : reasonHead, pageCount, width, height, contentSize};
}

bool RendererProcess::IsAcceptable(const Head& head) const
{
    constexpr quint32 maxReason = 4096; // bytes
    return head.isPicture ? head.pageCount >= static_cast<quint32>(page) &&
                                head.pageCount <= quint32{RendererProtocol::maxPages} && head.width > 0 &&
                                head.height > 0 && head.width <= static_cast<quint32>(box.width()) &&
                                head.height <= static_cast<quint32>(box.height()) &&
                                head.contentSize == head.width * head.height * 4
                          : head.contentSize <= maxReason;
}

void RendererProcess::OnProcessEnded()
{
    if (IsIdle()) {
        return;
    }
    if (isUsed) {
        isUsed = false; // an earlier document or somebody else may have ended it; a fresh process will tell
        Start();
        return;
    }
    Answer({}, QStringLiteral("The document crashed the preview renderer"));
}

void RendererProcess::OnTimeout()
{
    Abandon(QStringLiteral("Rendering took longer than %1 seconds").arg(timeLimit / 1000.0));
}

void RendererProcess::Abandon(const QString& reason)
{
    Stop();
    Answer({}, reason);
}

void RendererProcess::Stop()
{
    const QSignalBlocker blocker(process); // its end is expected
    process.kill();
    process.waitForFinished(1000);
}

void RendererProcess::Answer(const RenderedPage& answer, const QString& reason)
{
    watchdog.stop();
    idleTimer.start();
    document.close();
    pieces.reset();
    CallOnce(done, answer, reason);
}

} // namespace Norlis::Social
