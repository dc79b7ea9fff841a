#pragma once

#include "DavPath.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace Norlis::Social {

/// The collection on a server that holds the documents, and the addresses in it.
class Collection {
public:
    /// From the address that the user entered, without user, query and fragment; a slash at the end makes no
    /// difference.
    explicit Collection(const QUrl& serviceUrl);

    /// Of the collection itself, with the slash at its end that servers expect.
    QByteArray Url() const;

    /// Of the document with a name, given as bytes.
    QByteArray UrlOf(const QByteArray& name) const;

    /// Of the whole installation, on servers like Nextcloud, below which their other services are: the part before
    /// remote.php.
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
