#include "MimeType.h"

#include <QHash>
#include <QMimeDatabase>

namespace Norlis::Social {

QString MimeTypeOf(const QByteArray& name)
{
    static thread_local QHash<QByteArray, QString> known;
    constexpr int maxKnown = 1'000;
    const QByteArray suffix = name.mid(name.lastIndexOf('.') + 1).toLower();
    const auto found = known.constFind(suffix);
    if (found != known.constEnd()) {
        return *found;
    }
    if (known.size() >= maxKnown) {
        known.clear();
    }
    return *known.insert(
        suffix, QMimeDatabase().mimeTypeForFile(QString::fromUtf8(name), QMimeDatabase::MatchExtension).name());
}

} // namespace Norlis::Social
