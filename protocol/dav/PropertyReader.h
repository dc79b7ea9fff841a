#pragma once

#include "DavEntry.h"

#include <QString>
#include <QStringView>

namespace Norlis::Social {

/// Which properties of a resource are read, and how their values are understood. One property after the other.
class PropertyReader {
public:
    /// A property begins, by the name of its element. False when it is of no interest; it is not begun then.
    bool Begin(QStringView namespaceUri, QStringView name);

    /// A child of its element begins.
    void Child(QStringView namespaceUri, QStringView name, DavEntry& entry) const;

    /// It ends: what all text inside its element means goes into the entry.
    void End(const QString& text, DavEntry& entry) const;

private:
    enum class Kind {
        ResourceType,
        ContentLength,
        Etag,
        LastModified,
        CreationDate,
        QuotaUsed,
        QuotaAvailable,
        FileId,
        Checksums,
        HasPreview,
        StoredMd5,
    };
    struct Known;

    Kind kind = Kind::ResourceType;
};

} // namespace Norlis::Social
