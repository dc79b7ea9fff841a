#pragma once

#include <base/Utf8.h>
#include <protocol/dav/DavEntry.h>
#include <protocol/service/Reply.h>

#include <QHash>

#include <optional>

namespace Norlis::Social {

/// A document on the server, as it was when the server was asked last.
struct DavDocument {
    QString id;
    QByteArray name; ///< bytes of its path segment
    std::optional<qint64> size;
    QByteArray etag;
    QByteArray md5; ///< of this version, lower-case hexadecimal; empty when the server does not know it
    QDateTime modifiedAt;
    QDateTime createdAt;
    QString fileId;          ///< the server's own; empty when it has none
    bool hasPreview = false; ///< the server renders previews of it
    bool wasShown = true;    ///< somebody was told of this version

    QString Name() const
    {
        return FromUtf8(name);
    }

    /// A text that changes when the content does, as far as the server shows it.
    QString Version() const;

    /// Whether a text from Version() stands for the version that this is.
    bool IsVersion(const QString& version) const;

    CloudFile ToCloudFile() const;
};

/// The file that an entry describes, whatever its name.
DavDocument FileOf(const DavEntry& entry, const QByteArray& name);

/// The document that an entry of a listing describes. Nothing for collections, temporary files, and names that are
/// unsafe elsewhere.
std::optional<DavDocument> DocumentOf(const DavEntry& entry);

/// Documents by id.
using DavDocuments = QHash<QString, DavDocument>;

/// Refusal to replace or remove a version of a document that the user has not seen.
/// \param what was tried
Reply ConflictReply(const QString& what, const DavDocument& document);

/// Whether the server says of both that they have the same content.
bool IsSameVersion(const DavDocument& left, const DavDocument& right);

} // namespace Norlis::Social
