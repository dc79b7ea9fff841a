#include "Text.h"

#include <QVector>

#include <wchar.h> // NOLINT(modernize-deprecated-headers): wcwidth is POSIX

namespace Norlis::Terminal {

namespace {

constexpr QChar replacement(0xfffd);
const QChar ellipsis(0x2026);

bool IsTerminalControl(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        break;
    }
    // The characters that change the direction of writing.
    const ushort code = character.unicode();
    return (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069) || code == 0x200e || code == 0x200f;
}

int WidthOf(uint codePoint)
{
    // Unknown characters are most likely ordinary ones from a later version of Unicode.
    const int width = wcwidth(static_cast<wchar_t>(codePoint));
    return width < 0 ? 1 : width;
}

} // namespace

QString Printable(const QString& text)
{
    QString printable = text;
    for (QChar& character : printable) {
        if (IsTerminalControl(character)) {
            character = replacement;
        }
    }
    return printable;
}

QString JsonText(const QJsonDocument& document)
{
    QString text;
    const auto json = QString::fromUtf8(document.toJson(QJsonDocument::Compact));
    for (const QChar character : json) {
        text += IsTerminalControl(character) ? QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'))
                                             : QString(character);
    }
    return text;
}

int DisplayWidth(const QString& text)
{
    int width = 0;
    const auto codePoints = text.toUcs4();
    for (const uint codePoint : codePoints) {
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
    for (const uint codePoint : codePoints) {
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
