#include "ContentRange.h"

#include <QRegularExpression>

namespace Norlis::Social {

ContentRange::ContentRange(const QByteArray& value)
{
    static const QRegularExpression form(QStringLiteral("^bytes\\s+(\\d{1,18})-(\\d{1,18})/(\\d{1,18}|\\*)$"));
    const auto match = form.match(QString::fromLatin1(value));
    if (match.hasMatch()) {
        first = match.captured(1).toLongLong();
        last = match.captured(2).toLongLong();
        size = match.captured(3) == "*" ? -1 : match.captured(3).toLongLong();
    }
}

} // namespace Norlis::Social
