#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

namespace Norlis::Social {

/// The segments of a path, percent-decoded, as bytes: servers differ in what they escape and in which case, and a
/// file's name need not be UTF-8, so that only decoded bytes can be compared. No segment is empty, "." or "..", none
/// holds a '/' or a NUL. The root has no segments.
using DavPath = std::vector<QByteArray>;

/// Decodes one segment once (RFC 3986, 2.1). A '%' that is not followed by two hexadecimal digits stands for itself,
/// since some servers do not escape it. Nothing for what cannot be a segment of a DavPath.
std::optional<QByteArray> DecodeSegment(const QByteArray& encoded);

/// Everything but the unreserved characters of RFC 3986 is escaped, with upper-case digits.
QByteArray EncodeSegment(const QByteArray& decoded);

/// The path as it goes into a request: "/" before every segment, and one more at the end of a collection's.
QByteArray EncodePath(const DavPath& path, bool isCollection);

/// The path of an href in a listing: an absolute path or an absolute URL (RFC 4918, 8.3). Blanks around it and one
/// slash at its end are ignored. Nothing for relative references and for paths with a segment that a DavPath must not
/// have.
///
/// '?' and '#' belong to the name: the request had no query, so no member's href has one, and a fragment does not
/// name a resource; but some servers do not escape them in the names of files.
std::optional<DavPath> SegmentsOfHref(const QByteArray& href);

/// The path of a URL that was requested, typed or redirected to: as SegmentsOfHref, without query and fragment.
std::optional<DavPath> SegmentsOfUrl(const QByteArray& url);

/// The last segment of a direct member's path; an empty one for the collection itself. Nothing for resources that are
/// deeper or elsewhere.
std::optional<QByteArray> MemberName(const DavPath& collection, const DavPath& path);

} // namespace Norlis::Social
