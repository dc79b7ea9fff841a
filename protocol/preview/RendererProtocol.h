#pragma once

#include <QDataStream>
#include <QFile>
#include <QSize>

#include <optional>

// What the renderer is told and answers. Requests come over the socket that is its standard input, each with the
// document as an open file, since the renderer itself can open none. Answers go to its standard output, serialized by
// QDataStream in this version:
//
//   quint8 1; quint32 width, quint32 height of the picture; its rows as QByteArray, four bytes a pixel in the byte
//             order of the machine (QImage::Format_RGB32)
//   quint8 0; QByteArray reason in UTF-8
namespace Norlis::Social::RendererProtocol {

constexpr auto streamVersion = QDataStream::Qt_5_15;
constexpr quint8 rendered = 1;
constexpr quint8 refused = 0;

/// Of a box, in pixels.
constexpr int maxEdge = 2048;

/// Sends the box to draw into and the document. Never waits. False when the renderer has gone.
bool SendRequest(int socket, const QSize& box, int document);

/// Waits for a request and opens `document` with what came. The box; nothing when there will be no more requests.
std::optional<QSize> ReceiveRequest(int socket, QFile& document);

} // namespace Norlis::Social::RendererProtocol
