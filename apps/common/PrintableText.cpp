#include "PrintableText.h"

#include <algorithm>
#include <string>

namespace Norlis::Apps {

namespace {

constexpr char32_t replacement = 0xfffd;

// Some languages cannot be spelled without these two, nor some pictures.
constexpr char32_t zeroWidthNonJoiner = 0x200c;
constexpr char32_t zeroWidthJoiner = 0x200d;

} // namespace

bool IsTreacherous(char32_t codePoint)
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
    auto codePoints = text.toStdU32String();
    std::replace_if(codePoints.begin(), codePoints.end(), IsTreacherous, replacement);
    return QString::fromStdU32String(codePoints);
}

} // namespace Norlis::Apps
