#pragma once

#include <contracts/FileInfo.h>
#include <host/Export.h>

#include <QDateTime>

#include <string>

namespace Norlis::Host {

/// What a files list tells of a document.
struct NORLIS_HOST_EXPORT CloudFacts {
    CloudFacts() = default;
    /// \param cloudInfo of a record
    explicit CloudFacts(PDF::FileInfo::CloudInfo cloudInfo);

    /// Whether this, which was told later, describes the same version, as far as the service lets one tell. That the
    /// MD5 became known makes no other version.
    bool IsSameVersionAs(const CloudFacts& older) const;

    /// Whether a person would say that the document is no longer what it was. Times count in whole seconds: neither the
    /// store nor most servers keep more.
    bool HasChangedFrom(const CloudFacts& older) const;

    std::string name; ///< of the cloud copy
    quint64 size = 0; ///< bytes
    std::string hash; ///< MD5, hexadecimal; another text that stands for the version where the service does not know
                      ///< the MD5 (see IsMd5), or empty
    QDateTime modifiedAt; ///< invalid when the service does not tell
};

} // namespace Norlis::Host
