#include "DavPath.h"

#include <protocol/http/Origin.h>

#include <algorithm>

namespace Norlis::Social {

namespace {

/// -1 for what is no hexadecimal digit.
int DigitValue(char digit)
{
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    const char lower = static_cast<char>(digit | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool IsUnreserved(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '-' || character == '.' || character == '_' ||
           character == '~';
}

/// The position of the first of some characters; the end when there is none.
int FirstOf(const QByteArray& text, const QByteArray& characters, int from)
{
    const auto first = std::find_first_of(text.begin() + from, text.end(), characters.begin(), characters.end());
    return static_cast<int>(first - text.begin());
}

std::optional<DavPath> Segments(const QByteArray& path, HrefNotes& notes)
{
    DavPath segments;
    if (!path.isEmpty() && path[0] != '/') {
        return std::nullopt;
    }
    notes.endsWithSlash = path.endsWith('/');
    const int end = path.size() - (notes.endsWithSlash ? 1 : 0);
    segments.reserve(static_cast<size_t>(path.count('/')));
    for (int begin = 1; begin <= end;) {
        const int slash = path.indexOf('/', begin);
        const int segmentEnd = slash < 0 ? end : slash;
        std::optional<QByteArray> segment = DecodeSegment(path.mid(begin, segmentEnd - begin));
        if (!segment) {
            return std::nullopt;
        }
        segments.push_back(std::move(*segment));
        begin = segmentEnd + 1;
    }
    return segments;
}

std::optional<DavPath> Read(const QByteArray& text, const QByteArray& delimiters, HrefNotes* notes)
{
    HrefNotes unwanted = {};
    HrefNotes& found = notes ? *notes : unwanted;
    found = {};

    if (text.isEmpty()) {
        return std::nullopt;
    }
    found.origin = OriginOfUrl(text);
    const int begin = std::max(PathPosition(text), 0);
    return Segments(text.mid(begin, FirstOf(text, delimiters, begin) - begin), found);
}

} // namespace

std::optional<QByteArray> DecodeSegment(const QByteArray& encoded)
{
    QByteArray decoded = encoded;
    if (encoded.contains('%')) {
        char* out = decoded.data();
        for (int in = 0; in < encoded.size(); ++in) {
            const bool isEscape = encoded[in] == '%' && in + 2 < encoded.size() && DigitValue(encoded[in + 1]) >= 0 &&
                                  DigitValue(encoded[in + 2]) >= 0;
            *out++ = isEscape ? static_cast<char>(DigitValue(encoded[in + 1]) * 16 + DigitValue(encoded[in + 2]))
                              : encoded[in];
            in += isEscape ? 2 : 0;
        }
        decoded.truncate(static_cast<int>(out - decoded.constData()));
    }
    if (decoded.isEmpty() || decoded == "." || decoded == ".." || decoded.contains('/') || decoded.contains('\0')) {
        return std::nullopt;
    }
    return decoded;
}

QByteArray EncodeSegment(const QByteArray& decoded)
{
    constexpr auto digits = "0123456789ABCDEF";
    QByteArray encoded;
    encoded.reserve(decoded.size());
    for (const char character : decoded) {
        if (IsUnreserved(character)) {
            encoded += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            encoded += '%';
            encoded += digits[byte >> 4];
            encoded += digits[byte & 15];
        }
    }
    return encoded;
}

QByteArray EncodePath(const DavPath& path, bool isCollection)
{
    QByteArray encoded;
    for (const QByteArray& segment : path) {
        encoded += '/' + EncodeSegment(segment);
    }
    return isCollection || path.empty() ? encoded + '/' : encoded;
}

std::optional<DavPath> SegmentsOfHref(const QByteArray& href, HrefNotes* notes)
{
    return Read(href.trimmed(), "", notes);
}

std::optional<DavPath> SegmentsOfUrl(const QByteArray& url, HrefNotes* notes)
{
    return Read(url.trimmed(), "?#", notes);
}

std::optional<QByteArray> MemberName(const DavPath& collection, const DavPath& path)
{
    if (path.size() < collection.size() || path.size() > collection.size() + 1 ||
        !std::equal(collection.begin(), collection.end(), path.begin())) {
        return std::nullopt;
    }
    return path.size() == collection.size() ? QByteArray() : path.back();
}

} // namespace Norlis::Social
