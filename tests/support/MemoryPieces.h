#pragma once

#include <protocol/preview/DocumentPieces.h>

namespace Norlis::Test {

/// A document in memory, as one that is elsewhere.
class MemoryPieces : public Social::DocumentPieces {
public:
    explicit MemoryPieces(const QByteArray& content) : content(content) {}

    qint64 Size() const override
    {
        return content.size();
    }

    void Read(qint64 offset, qint64, Done done) override
    {
        const QByteArray piece =
            content.mid(static_cast<int>(offset), static_cast<int>(pieceSize - offset % pieceSize));
        bytesRead += piece.size();
        if (isLost) {
            done({}, "It is lost");
        } else {
            done(piece, {});
        }
    }

    bool HasFailed() const override
    {
        return isLost;
    }

    bool isLost = false;
    qint64 bytesRead = 0;

private:
    const QByteArray content;
};

} // namespace Norlis::Test
