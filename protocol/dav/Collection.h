#pragma once

#include "DavPath.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace Norlis::Social {

/// The collection on a server that holds the documents, and the addresses in it.
class Collection {
public:
    /// From the address that the user gave. Without user, query and fragment; a slash at the end makes no difference.
    explicit Collection(const QUrl& serviceUrl);

    /// Of the collection itself, with the slash that servers want at its end.
    QByteArray Url() const;

    /// Of the document of a name, given in bytes.
    QByteArray UrlOf(const QByteArray& name) const;

    /// Of the installation that a server of the Nextcloud and ownCloud family is, below which its other services are:
    /// what comes before remote.php.
    QByteArray InstanceUrl() const;

    QString Host() const;

    const DavPath& Path() const
    {
        return path;
    }

    const QByteArray& Origin() const
    {
        return origin;
    }

private:
    QByteArray origin;
    DavPath path;
};

} // namespace Norlis::Social
