#include "DownloadSink.h"

#include <QCryptographicHash>
#include <QFile>

namespace Norlis::Social {

namespace {

constexpr int pieceSize = 1024 * 1024; // bytes
constexpr int maxInFlight = 4;         // pieces

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
    collected.clear();
    position = 0;
    piecesInFlight = 0;
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
    if (piecesInFlight >= maxInFlight) {
        isWaitedFor = true;
        return Taken::Later;
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
    ++piecesInFlight;
    writing->Run([this, written = written, piece = std::exchange(collected, {})]() -> Background::Continuation {
        const bool isWritten = written->file.Write(piece.constData(), piece.size());
        written->hash.addData(piece);
        return [this, problem = isWritten ? QString() : written->file.ErrorText()] {
            --piecesInFlight;
            if (error.isEmpty()) {
                error = problem;
            }
            if (isWaitedFor) {
                isWaitedFor = false;
                onReady();
            }
        };
    });
    collected.reserve(pieceSize);
}

void DownloadSink::Flush(std::function<void()> done)
{
    if (!collected.isEmpty()) {
        WriteOut();
    }
    writing->Run([this, written = written, done = std::move(done)]() -> Background::Continuation {
        const bool isSynced = written->file.Sync();
        return [this, done, problem = isSynced ? QString() : written->file.ErrorText()] {
            if (error.isEmpty()) {
                error = problem;
            }
            done();
        };
    });
}

void DownloadSink::SyncFolder(std::function<void()> done)
{
    writing->Run([folder = folder, done = std::move(done)]() -> Background::Continuation {
        Files::AtomicFile::SyncFolderOf(folder + "/.");
        return done;
    });
}

QString DownloadSink::Md5() const
{
    return QString::fromLatin1(written->hash.result().toHex());
}

Files::AtomicFile& DownloadSink::File()
{
    return written->file;
}

} // namespace Norlis::Social
