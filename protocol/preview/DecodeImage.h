#pragma once

#include <QImage>

namespace Norlis::Social {

/// Decodes an image that a server sent, PNG, JPEG or WebP, whatever type it claims. A null one when it is none of these
/// or too large to be decoded safely.
QImage DecodeImage(const QByteArray& bytes);

} // namespace Norlis::Social
