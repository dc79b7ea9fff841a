#pragma once

#include <QByteArray>

namespace Norlis::Social {

/// A version of a resource's content, in the server's own words (RFC 9110, 8.8.3).
struct EntityTag {
    QByteArray text; ///< as received, with quotes; it is sent back like this

    /// Whether it may stand in If-Match and its kin.
    bool IsValid() const;

    /// Valid, and not marked as one that If-Match will never match.
    bool IsStrong() const;

    /// Whether both speak of the same version: regardless of W/, of missing quotes, and of the "-gzip" or ";gzip" that
    /// compressing front ends add at the end. An empty tag is like no other.
    bool SameIgnoringWeakness(const EntityTag& other) const;
};

} // namespace Norlis::Social
