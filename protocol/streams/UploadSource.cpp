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
    BeginSamples();
    readBytes = 0;
    piecesInFlight = 0;
    isAtEnd = false;
    isWaitedFor = false;
    if (reading) { // the request is repeated
        const Files::FileIdentity before = version;
        if (Open() && !(version == before)) {
            error = QStringLiteral("It has changed in the meantime");
        }
        version = before;
    }
    reading = std::make_unique<Background>(pool);
    ReadAhead();
}

void UploadSource::ReadAhead()
{
    while (!isAtEnd && error.isEmpty() && piecesInFlight + static_cast<int>(pieces.size()) < piecesAhead &&
           readBytes + piecesInFlight * Files::FileReader::pieceSize < version.size) {
        ++piecesInFlight;
        reading->Run([this, reader = reader]() -> Background::Continuation {
            const QByteArray piece = reader->Next();
            return [this, piece, problem = reader->ErrorText()] { OnPiece(piece, problem); };
        });
    }
}

void UploadSource::OnPiece(const QByteArray& piece, const QString& problem)
{
    --piecesInFlight;
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
    // A file that grows is cut off here, which IsWholeAndUnchanged finds out.
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
    TakeSamples(buffer, given);
    position += given;
    ReadAhead();
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

void UploadSource::BeginSamples()
{
    samples.clear();
    for (const qint64 begin : {qint64(0), version.size / 2, version.size - SentContent::sampleSize}) {
        samples.push_back({std::max<qint64>(begin, 0), {}});
    }
}

/// Of the bytes that come next.
void UploadSource::TakeSamples(const char* data, qint64 size)
{
    for (SentContent::Sample& sample : samples) {
        const qint64 begin = sample.position + sample.bytes.size(); // of what it lacks
        const qint64 end = std::min(sample.position + SentContent::sampleSize, position + size);
        if (begin >= position && begin < end) {
            sample.bytes.append(data + (begin - position), static_cast<int>(end - begin));
        }
    }
}

QString UploadSource::ErrorText() const
{
    return error;
}

bool UploadSource::IsWholeAndUnchanged() const
{
    return IsWhole() && error.isEmpty() && piecesInFlight == 0 && reader->IsUnchanged();
}

bool UploadSource::IsLasting() const
{
    return IsWholeAndUnchanged() && reader->IsLasting();
}

QString UploadSource::Md5() const
{
    return reader->Md5();
}

SentContent UploadSource::Sent() const
{
    return {version.size, Md5().toLatin1(), samples};
}

} // namespace Norlis::Social
