#pragma once

#include <QImage>

namespace Norlis::Social {

/// A page of a document as a picture.
struct RenderedPage {
    QImage image;      ///< null when there is none
    int pageCount = 0; ///< of the document; 0 when it is not known
};

} // namespace Norlis::Social
