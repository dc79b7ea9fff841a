#include "DecodeImage.h"

#include <QBuffer>
#include <QImageReader>

namespace Norlis::Social {

namespace {

constexpr int maxEdge = 4096; // pixels

} // namespace

QImage DecodeImage(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    // Plugins for other formats may do more than decode pixels.
    if (!QByteArrayList({"png", "jpeg", "webp"}).contains(reader.format())) {
        return {};
    }
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > maxEdge || size.height() > maxEdge) {
        return {};
    }
    return reader.read();
}

} // namespace Norlis::Social
