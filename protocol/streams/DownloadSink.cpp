#include "DownloadSink.h"

#include <base/Lifetime.h>

#include <QCryptographicHash>
#include <QFile>

namespace Norlis::Social {

namespace {

constexpr int pieceSize = 1024 * 1024; // bytes
constexpr int maxInFlight = 8;         // pieces

} // namespace

struct DownloadSink::Written {
    Files::AtomicFile file;
    QCryptographicHash hash{QCryptographicHash::Md5};
};

DownloadSink::DownloadSink(const QString& folder, QThreadPool& pool, Check check,
                           std::function<void(qint64)> onPosition)
    : folder(folder),
      pool(pool),
      check(std::move(check)),
      onPosition(std::move(onPosition))
{
}

DownloadSink::~DownloadSink()
{
    RemoveTemporaryFile();
}

void DownloadSink::RemoveTemporaryFile()
{
    if (written) {
        QFile::remove(written->file.Path()); // the writing thread may hold on to it a moment longer
    }
}

bool DownloadSink::Open()
{
    RemoveTemporaryFile();
    written = std::make_shared<Written>();
    writing = std::make_unique<Background>(pool);
    hashing = std::make_unique<Background>(pool);
    onFinished = nullptr;
    collected.clear();
    position = 0;
    stepsInFlight = 0;
    isWaitedFor = false;
    isOverLimit = false;
    const bool isOpen = written->file.Open(folder);
    error = isOpen ? QString() : written->file.ErrorText();
    return isOpen;
}

void DownloadSink::SetLimit(qint64 bytes)
{
    limit = bytes;
}

bool DownloadSink::Begin(const HttpHead& head, std::function<void()> whenReady)
{
    onReady = std::move(whenReady);
    isWaitedFor = false;
    qint64 from = 0;
    error = check(head, from);
    isRefused = !error.isEmpty();
    if (!isRefused && from != position) {
        return from == 0 && Open(); // not the rest but all of it
    }
    return !isRefused;
}

HttpSink::Taken DownloadSink::Add(const char* data, qint64 size)
{
    isOverLimit = position + size > limit;
    if (!error.isEmpty() || isOverLimit) {
        return Taken::Refused;
    }
    if (stepsInFlight >= 2 * maxInFlight) {
        isWaitedFor = true;
        return Taken::Later;
    }
    if (collected.isEmpty() && position > 0) { // a large one
        collected.reserve(pieceSize + static_cast<int>(size));
    }
    collected.append(data, static_cast<int>(size));
    position += size;
    if (collected.size() >= pieceSize) {
        WriteOut();
    }
    onPosition(position);
    return Taken::Yes;
}

void DownloadSink::WriteOut()
{
    const QByteArray piece = std::exchange(collected, {});
    stepsInFlight += 2;
    writing->Run([this, written = written, piece]() -> Background::Continuation {
        const bool isWritten = written->file.Write(piece.constData(), piece.size());
        return [this, problem = isWritten ? QString() : written->file.ErrorText()] {
            if (error.isEmpty()) {
                error = problem;
            }
            OnPieceDone();
        };
    });
    hashing->Run([this, written = written, piece]() -> Background::Continuation {
        written->hash.addData(piece);
        return [this] { OnPieceDone(); };
    });
}

void DownloadSink::OnPieceDone()
{
    --stepsInFlight;
    if (isWaitedFor && stepsInFlight < 2 * maxInFlight) {
        isWaitedFor = false;
        onReady();
    }
    if (stepsInFlight == 0) {
        CallOnce(onFinished); // it may destroy this object
    }
}

void DownloadSink::Finish(std::function<void()> done)
{
    onFinished = std::move(done);
    WriteOut();
}

QString DownloadSink::Md5() const
{
    return QString::fromLatin1(written->hash.result().toHex());
}

std::shared_ptr<Files::AtomicFile> DownloadSink::File() const
{
    return {written, &written->file};
}

} // namespace Norlis::Social
