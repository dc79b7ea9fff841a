#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <optional>
#include <utility>
#include <vector>

// HTTP/1.1 as a server sees it (RFC 9112), as much of it as tests need.
namespace Norlis::TestKit {

/// Names and values, in their order.
struct ServerHeaders : std::vector<std::pair<QByteArray, QByteArray>> {
    using vector::vector;

    /// Of the first of that name, whatever its case; empty when there is none.
    QByteArray Value(const QByteArray& name) const;

    /// Whether there is one of that name, whatever its case.
    bool Has(const QByteArray& name) const;

    /// Replaces the first of that name, or adds it.
    void Set(const QByteArray& name, const QByteArray& value);
};

/// A request that was received.
struct ServerRequest {
    QByteArray method;     ///< "GET"
    QByteArray target;     ///< as received: path and query, percent-encoded
    ServerHeaders headers; ///< in the order received
    QByteArray body;       ///< as far as it has arrived

    /// The target's path, decoded, without a slash at its end; "/" is the root.
    QByteArray Path() const;

    /// Whether the client will send nothing more on the connection.
    bool WantsToClose() const;
};

/// An answer to be sent.
struct ServerResponse {
    int status = 200;       ///< RFC 9110, 15
    ServerHeaders headers;  ///< with a Content-Length only if it is to be wrong
    QByteArray body;        ///< may be empty
    bool omitsBody = false; ///< as in the answer to HEAD, whose headers describe the body all the same

    /// Status line and headers, with a Content-Length unless there is one, and the empty line.
    QByteArray Head() const;

    /// Head and body.
    QByteArray Bytes() const;
};

/// Decoded and without a slash at its end, of a path or of an absolute address.
QByteArray DecodedPath(const QByteArray& addressOrPath);

/// Escapes everything but unreserved characters and slashes.
QByteArray EncodedPath(const QByteArray& path);

QByteArray EscapedForXml(const QByteArray& text);

/// Parses requests from the bytes of a connection, piece by piece.
class RequestReader {
public:
    /// What it is reading; Complete and Broken are final.
    enum class State { Head, Body, Complete, Broken };

    /// Takes bytes from the front of a buffer. Stops after the head, and when the request is complete.
    State Read(QByteArray* buffer);

    /// What the last call of Read returned.
    State CurrentState() const
    {
        return state;
    }

    /// What has been read of it.
    const ServerRequest& Request() const
    {
        return request;
    }

private:
    void ReadHead(QByteArray* buffer);
    void ReadBody(QByteArray* buffer);
    bool ReadChunkHead(QByteArray* buffer);

    State state = State::Head;
    ServerRequest request;
    qint64 left = 0; ///< of the body, or of the chunk
    bool isChunked = false;
    enum class Chunk { Size, Data, DataEnd, Trailer } chunk = Chunk::Size;
};

} // namespace Norlis::TestKit
