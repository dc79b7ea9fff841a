#pragma once

#include "RendererProtocol.h"

#include <QHash>
#include <QIODevice>

namespace Norlis::Social {

/// The renderer's side of a document that it is given piece by piece. Reading waits for the other side.
class PieceDevice : public QIODevice {
public:
    /// \param size    of the document, in bytes
    /// \param answers where is asked for pieces
    /// \param socket  where they come from
    PieceDevice(qint64 size, QDataStream& answers, int socket);

    qint64 size() const override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 maxSize) override;

private:
    /// The piece of that number; null when the other side has gone.
    /// \param last number of the last piece that is wanted with it
    const QByteArray* Piece(qint64 number, qint64 last);

    const qint64 documentSize;
    QDataStream& answers;
    const int socket;
    QHash<qint64, QByteArray> pieces; ///< by number
};

} // namespace Norlis::Social
