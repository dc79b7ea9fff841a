#include "UploadSource.h"

#include <algorithm>
#include <cstring>

namespace Norlis::Social {

namespace {

constexpr int piecesAhead = 4;

} // namespace

UploadSource::UploadSource(const QString& path, QThreadPool& pool, std::function<void(qint64)> onPosition)
    : path(path),
      pool(pool),
      onPosition(std::move(onPosition))
{
}

bool UploadSource::Open()
{
    reader = std::make_shared<Files::FileReader>();
    if (!reader->Open(path)) {
        error = reader->ErrorText();
        return false;
    }
    version = reader->Version();
    return true;
}

qint64 UploadSource::Size() const
{
    return version.size;
}

void UploadSource::Begin(std::function<void()> whenReady)
{
    onReady = std::move(whenReady);
    pieces.clear();
    offset = 0;
    position = 0;
    readBytes = 0;
    asked = 0;
    isAtEnd = false;
    isWaitedFor = false;
    if (reading) { // again
        const Files::FileIdentity before = version;
        if (Open() && !(version == before)) {
            error = QStringLiteral("It changed meanwhile");
        }
        version = before;
    }
    reading = std::make_unique<Background>(pool);
    AskForMore();
}

void UploadSource::AskForMore()
{
    while (!isAtEnd && error.isEmpty() && asked + static_cast<int>(pieces.size()) < piecesAhead &&
           readBytes + asked * Files::FileReader::pieceSize < version.size) {
        ++asked;
        reading->Run([this, reader = reader]() -> Background::Continuation {
            const QByteArray piece = reader->Next();
            return [this, piece, problem = reader->ErrorText()] { Take(piece, problem); };
        });
    }
}

void UploadSource::Take(const QByteArray& piece, const QString& problem)
{
    --asked;
    error = problem;
    if (piece.isEmpty()) {
        isAtEnd = true;
    } else {
        pieces.push_back(piece);
        readBytes += piece.size();
    }
    if (isWaitedFor) {
        isWaitedFor = false;
        onReady();
    }
}

qint64 UploadSource::Read(char* buffer, qint64 size)
{
    // A file that grows is cut off here, and found out later.
    size = std::min(size, version.size - position);
    if (size == 0) {
        return 0;
    }
    qint64 given = 0;
    while (given < size && !pieces.empty()) {
        const QByteArray& piece = pieces.front();
        const qint64 count = std::min<qint64>(size - given, piece.size() - offset);
        std::memcpy(buffer + given, piece.constData() + offset, static_cast<std::size_t>(count));
        given += count;
        offset += count;
        if (offset == piece.size()) {
            pieces.pop_front();
            offset = 0;
        }
    }
    position += given;
    AskForMore();
    if (given > 0) {
        onPosition(position);
        return given;
    }
    if (!error.isEmpty() || isAtEnd) { // the file has become shorter
        return failed;
    }
    isWaitedFor = true;
    return later;
}

QString UploadSource::ErrorText() const
{
    return error;
}

bool UploadSource::IsWholeAndUnchanged() const
{
    return position == version.size && error.isEmpty() && asked == 0 && reader->IsUnchanged();
}

QString UploadSource::Md5() const
{
    return reader->Md5();
}

} // namespace Norlis::Social
