#include "CloudFacts.h"

namespace Norlis::Host {

CloudFacts::CloudFacts(PDF::FileInfo::CloudInfo cloudInfo)
    : name(cloudInfo.GetFileName()),
      size(cloudInfo.GetSize()),
      hash(cloudInfo.GetMd5Hash()),
      createdAt(cloudInfo.GetCreatedAt()),
      modifiedAt(cloudInfo.GetModifyTime())
{
}

bool CloudFacts::operator==(const CloudFacts& other) const
{
    return name == other.name && size == other.size && hash == other.hash && createdAt == other.createdAt &&
           modifiedAt == other.modifiedAt;
}

bool CloudFacts::HasSameContent(const CloudFacts& other) const
{
    if (!hash.empty() && !other.hash.empty()) {
        return hash == other.hash;
    }
    // The time of a document that was restored from the store is not known.
    return size == other.size &&
           (modifiedAt == other.modifiedAt || !modifiedAt.isValid() || !other.modifiedAt.isValid());
}

bool CloudFacts::HasChangedFrom(const CloudFacts& older) const
{
    return name != older.name || size != older.size || !HasSameContent(older) ||
           (modifiedAt.isValid() && older.modifiedAt.isValid() && modifiedAt != older.modifiedAt);
}

} // namespace Norlis::Host
