#include "CloudFacts.h"

#include "Records.h"

namespace Norlis::Host {

namespace {

/// Nothing tells them apart when one of them is unknown.
bool IsSameTime(const QDateTime& left, const QDateTime& right)
{
    return !left.isValid() || !right.isValid() || left.toSecsSinceEpoch() == right.toSecsSinceEpoch();
}

} // namespace

CloudFacts::CloudFacts(PDF::FileInfo::CloudInfo cloudInfo)
    : name(cloudInfo.GetFileName()),
      size(cloudInfo.GetSize()),
      hash(cloudInfo.GetMd5Hash()),
      modifiedAt(cloudInfo.GetModifyTime())
{
}

bool CloudFacts::IsSameVersionAs(const CloudFacts& older) const
{
    const bool canCompareHashes = !hash.empty() && !older.hash.empty() && (IsMd5(older.hash) || !IsMd5(hash));
    return canCompareHashes ? hash == older.hash : size == older.size && IsSameTime(modifiedAt, older.modifiedAt);
}

bool CloudFacts::HasChangedFrom(const CloudFacts& older) const
{
    return name != older.name || size != older.size || !IsSameVersionAs(older) ||
           !IsSameTime(modifiedAt, older.modifiedAt);
}

} // namespace Norlis::Host
