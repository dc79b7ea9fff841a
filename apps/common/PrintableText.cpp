#include "PrintableText.h"

#include <QVector>

#include <algorithm>

namespace Norlis::Apps {

namespace {

constexpr uint replacement = 0xfffd;

// Some languages cannot be spelled without these two, nor some pictures.
constexpr uint zeroWidthNonJoiner = 0x200c;
constexpr uint zeroWidthJoiner = 0x200d;

} // namespace

bool IsTreacherous(uint codePoint)
{
    switch (QChar::category(codePoint)) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Other_Format:
        return codePoint != zeroWidthNonJoiner && codePoint != zeroWidthJoiner;
    default:
        return false;
    }
}

bool IsPlain(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character >= ' ' && character <= '~'; });
}

QString Printable(const QString& text)
{
    if (IsPlain(text)) {
        return text;
    }
    auto codePoints = text.toUcs4();
    std::replace_if(codePoints.begin(), codePoints.end(), IsTreacherous, replacement);
    return QString::fromUcs4(codePoints.constData(), codePoints.size());
}

} // namespace Norlis::Apps
