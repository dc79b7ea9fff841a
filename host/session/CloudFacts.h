#pragma once

#include <contracts/FileInfo.h>

#include <QDateTime>

#include <string>

namespace Norlis::Host {

/// What a files list tells of a document.
struct CloudFacts {
    explicit CloudFacts(PDF::FileInfo::CloudInfo cloudInfo);

    bool operator==(const CloudFacts& other) const;

    /// Whether both describe the same bytes, as far as the service lets one tell.
    bool HasSameContent(const CloudFacts& other) const;

    /// Whether a person would say that the document is no longer what it was.
    bool HasChangedFrom(const CloudFacts& older) const;

    std::string name;
    quint64 size;     ///< bytes
    std::string hash; ///< MD5, hexadecimal; empty when the service gives none
    QDateTime createdAt;
    QDateTime modifiedAt;
};

} // namespace Norlis::Host
