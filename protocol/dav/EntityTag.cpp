#include "EntityTag.h"

#include <algorithm>

namespace Norlis::Social {

namespace {

/// The text between the quotes, or the whole of a tag without quotes, without what front ends append.
QByteArray Opaque(const QByteArray& text)
{
    QByteArray opaque = text.startsWith("W/") ? text.mid(2) : text;
    if (opaque.size() >= 2 && opaque.startsWith('"') && opaque.endsWith('"')) {
        opaque = opaque.mid(1, opaque.size() - 2);
    }
    if (opaque.endsWith("-gzip") || opaque.endsWith(";gzip")) {
        opaque.chop(5);
    }
    return opaque;
}

} // namespace

bool EntityTag::IsValid() const
{
    const QByteArray quoted = text.startsWith("W/") ? text.mid(2) : text;
    const auto mayBeInside = [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte > 0x20 && byte != '"' && byte != 0x7f;
    };
    return quoted.size() >= 2 && quoted.startsWith('"') && quoted.endsWith('"') &&
           std::all_of(quoted.begin() + 1, quoted.end() - 1, mayBeInside);
}

bool EntityTag::IsStrong() const
{
    return IsValid() && !text.startsWith("W/");
}

bool EntityTag::SameIgnoringWeakness(const EntityTag& other) const
{
    const QByteArray opaque = Opaque(text);
    return !opaque.isEmpty() && opaque == Opaque(other.text);
}

} // namespace Norlis::Social
