#pragma once

#include <QByteArray>
#include <QString>

namespace Norlis::Social {

/// The media type of a document by the suffix of its name: many servers do no better. Looked up once for each suffix,
/// which takes longer than the rest of an entry of a files list.
QString MimeTypeOf(const QByteArray& name);

} // namespace Norlis::Social
