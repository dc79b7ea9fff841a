#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace Norlis::Social {

/// A document that is somewhere else, for a renderer that reads it piece by piece. Used on one thread.
class DocumentPieces {
public:
    /// Pieces begin at its multiples.
    static constexpr qint64 pieceSize = 64 * 1024; // bytes

    /// The bytes, or none and the reason.
    using Done = std::function<void(const QByteArray& bytes, const QString& reason)>;

    virtual ~DocumentPieces() = default;

    /// In bytes.
    virtual qint64 Size() const = 0;

    /// Reads what there is from an offset inside of the document to the end of its piece. Calls done once, at once or
    /// from the event loop, unless this object is destroyed before or asked for something else.
    /// \param length how many bytes are going to be read from there on: they can be fetched together
    virtual void Read(qint64 offset, qint64 length, Done done) = 0;

    /// Whether no more can be read for a reason that says nothing about the document: it may work another time.
    virtual bool HasFailed() const = 0;
};

} // namespace Norlis::Social
