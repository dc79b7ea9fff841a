#include "Text.h"

#include <QVector>

#include <wchar.h> // NOLINT(modernize-deprecated-headers): wcwidth is POSIX

namespace Norlis::Terminal {

namespace {

const QChar ellipsis(0x2026);

int WidthOf(uint codePoint)
{
    // Unknown characters are most likely ordinary ones from a later version of Unicode.
    const int width = wcwidth(static_cast<wchar_t>(codePoint));
    return width < 0 ? 1 : width;
}

} // namespace

QString JsonText(const QJsonDocument& document)
{
    const QString json = QString::fromUtf8(document.toJson(QJsonDocument::Compact));
    if (Apps::IsPlain(json)) {
        return json;
    }
    QString text;
    const auto escape = [&](ushort unit) { text += QStringLiteral("\\u%1").arg(unit, 4, 16, QLatin1Char('0')); };
    const auto codePoints = json.toUcs4();
    for (const char32_t codePoint : codePoints) {
        if (!Apps::IsTreacherous(codePoint)) {
            text += QString::fromUcs4(&codePoint, 1);
        } else if (QChar::requiresSurrogates(codePoint)) {
            escape(QChar::highSurrogate(codePoint));
            escape(QChar::lowSurrogate(codePoint));
        } else {
            escape(static_cast<ushort>(codePoint));
        }
    }
    return text;
}

int DisplayWidth(const QString& text)
{
    if (Apps::IsPlain(text)) {
        return text.size();
    }
    int width = 0;
    const auto codePoints = text.toUcs4();
    for (const char32_t codePoint : codePoints) {
        width += WidthOf(codePoint);
    }
    return width;
}

QString PadRight(const QString& text, int columns)
{
    return text + QString(qMax(0, columns - DisplayWidth(text)), ' ');
}

QString Shorten(const QString& text, int columns)
{
    if (DisplayWidth(text) <= columns) {
        return text;
    }
    QString shortened;
    int width = 1; // the ellipsis
    const auto codePoints = text.toUcs4();
    for (const char32_t codePoint : codePoints) {
        width += WidthOf(codePoint);
        if (width > columns) {
            break;
        }
        shortened += QString::fromUcs4(&codePoint, 1);
    }
    return columns < 1 ? QString() : shortened + ellipsis;
}

QString HumanSize(quint64 bytes)
{
    constexpr quint64 step = 1024;
    if (bytes < step) {
        return QStringLiteral("%1 B").arg(bytes);
    }
    static const char* const units[] = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    double amount = static_cast<double>(bytes) / step;
    int unit = 0;
    // What would be rounded up to 1024 is shown in the next unit.
    while (amount >= step - 0.5) {
        amount /= step;
        ++unit;
    }
    return QStringLiteral("%1 %2").arg(amount, 0, 'f', amount < 9.95 ? 1 : 0).arg(units[unit]);
}

} // namespace Norlis::Terminal
