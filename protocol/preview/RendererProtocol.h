#pragma once

#include <QDataStream>
#include <QFile>
#include <QSize>

#include <optional>

// What the renderer is told and answers. Requests come over the socket that is its standard input, each with the
// document as an open file, since the renderer itself can open none, or else with its size. Of such a document it asks
// for what it reads, and gets it over the socket, one piece (DocumentPieces.h) a message. Answers go to its standard
// output, serialized by QDataStream in this version:
//
//   quint8 1; quint32 number of pages of the document; quint32 width, quint32 height of the picture; its rows as
//             QByteArray, four bytes a pixel in the byte order of the machine (QImage::Format_RGB32)
//   quint8 0; QByteArray reason in UTF-8
//   quint8 2; qint64 offset of a piece, qint64 length of what is going to be read from there on. Another answer follows
//             once the piece has come
namespace Norlis::Social::RendererProtocol {

constexpr auto streamVersion = QDataStream::Qt_5_15;
constexpr quint8 rendered = 1;
constexpr quint8 refused = 0;
constexpr quint8 wanted = 2;

/// Of a box, in pixels.
constexpr int maxEdge = 4096;

/// Of a document; there are no pages after these.
constexpr int maxPages = 1'000'000;

struct Request {
    int page = 1;    ///< to draw, from 1
    QSize box;       ///< to draw into
    qint64 size = 0; ///< of a document that comes in pieces, in bytes; 0 for one that came as a file
};

/// Sends a request, with the document unless that comes in pieces. Never waits. False when the renderer has gone.
bool SendRequest(int socket, const Request& request, int document = -1);

/// Waits for a request and opens `document` with what came. Nothing when there will be no more requests.
std::optional<Request> ReceiveRequest(int socket, QFile& document);

/// Sends a piece that was asked for. Never waits. False when the renderer has gone.
bool SendPiece(int socket, const QByteArray& piece);

/// Waits for the piece that was asked for. Empty when the other side has gone.
QByteArray ReceivePiece(int socket);

} // namespace Norlis::Social::RendererProtocol
