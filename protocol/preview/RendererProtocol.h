#pragma once

#include <QDataStream>

// What goes over the standard streams of the renderer, serialized by QDataStream in this version:
//
//   request   quint32 width, quint32 height of the box in pixels; QByteArray path in UTF-8
//   answer    quint8 1; quint32 width, quint32 height of the picture; its rows as QByteArray, four bytes a pixel in
//             the byte order of the machine (QImage::Format_RGB32)
//   or        quint8 0; QByteArray reason in UTF-8
namespace Norlis::Social::RendererProtocol {

constexpr auto streamVersion = QDataStream::Qt_5_15;
constexpr quint8 rendered = 1;
constexpr quint8 refused = 0;

/// Of a box, in pixels.
constexpr int maxEdge = 2048;

} // namespace Norlis::Social::RendererProtocol
