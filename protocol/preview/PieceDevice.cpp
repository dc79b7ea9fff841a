#include "PieceDevice.h"

#include "DocumentPieces.h"

#include <algorithm>

namespace Norlis::Social {

namespace {

constexpr qint64 pieceSize = DocumentPieces::pieceSize;

} // namespace

PieceDevice::PieceDevice(qint64 size, QDataStream& answers, int socket)
    : documentSize(size),
      answers(answers),
      socket(socket)
{
    open(ReadOnly | Unbuffered); // how much is read at once tells how much can be fetched at once
}

qint64 PieceDevice::size() const
{
    return documentSize;
}

qint64 PieceDevice::readData(char* data, qint64 maxSize)
{
    const qint64 begin = pos();
    const qint64 end = std::min(begin + maxSize, documentSize);
    qint64 position = begin;
    while (position < end) {
        const QByteArray* const piece = Piece(position / pieceSize, (end - 1) / pieceSize);
        const qint64 offset = position % pieceSize;
        if (!piece || piece->size() <= offset) {
            return -1;
        }
        const qint64 count = std::min(piece->size() - offset, end - position);
        std::copy_n(piece->constData() + offset, count, data + (position - begin));
        position += count;
    }
    return position - begin;
}

qint64 PieceDevice::writeData(const char*, qint64)
{
    return -1;
}

const QByteArray* PieceDevice::Piece(qint64 number, qint64 last)
{
    const auto known = pieces.constFind(number);
    if (known != pieces.constEnd()) {
        return &*known;
    }
    qint64 run = number + 1;
    while (run <= last && !pieces.contains(run)) {
        ++run;
    }
    const qint64 offset = number * pieceSize;
    const qint64 length = std::min(run * pieceSize, documentSize) - offset;
    answers << RendererProtocol::wanted << offset << length;
    static_cast<QFileDevice*>(answers.device())->flush();
    const QByteArray piece = RendererProtocol::ReceivePiece(socket);
    return piece.isEmpty() ? nullptr : &*pieces.insert(number, piece);
}

} // namespace Norlis::Social
