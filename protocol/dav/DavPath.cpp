#include "DavPath.h"

#include <protocol/http/Origin.h>

#include <algorithm>

namespace Norlis::Social {

namespace {

/// -1 for characters that are not hexadecimal digits.
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

std::optional<DavPath> Segments(const QByteArray& path)
{
    DavPath segments;
    if (!path.isEmpty() && path[0] != '/') {
        return std::nullopt;
    }
    const int end = path.size() - (path.endsWith('/') ? 1 : 0);
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

std::optional<DavPath> SegmentsOfHref(const QByteArray& href)
{
    const QByteArray text = href.trimmed();
    return text.isEmpty() ? std::nullopt : Segments(text.mid(std::max(PathPosition(text), 0)));
}

std::optional<DavPath> SegmentsOfUrl(const QByteArray& url)
{
    const QByteArray text = url.trimmed();
    const QByteArray path = text.mid(std::max(PathPosition(text), 0));
    const auto isDelimiter = [](char character) { return character == '?' || character == '#'; };
    const auto end = std::find_if(path.begin(), path.end(), isDelimiter);
    return text.isEmpty() ? std::nullopt : Segments(path.left(static_cast<int>(end - path.begin())));
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
