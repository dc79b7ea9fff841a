#include "PropertyReader.h"

#include <protocol/http/HttpDate.h>

#include <algorithm>

namespace Norlis::Social {

namespace {

const QLatin1String davNamespace("DAV:");
const QLatin1String ownCloudNamespace("http://owncloud.org/ns");
const QLatin1String nextcloudNamespace("http://nextcloud.org/ns");
const QLatin1String ourNamespace(storedMd5Namespace);

bool IsControl(QChar character)
{
    return character.unicode() < 0x20 || character.unicode() == 0x7f;
}

std::optional<qint64> Number(QStringView text)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<qint64> Length(QStringView text)
{
    const std::optional<qint64> number = Number(text);
    return number && *number >= 0 ? number : std::nullopt;
}

std::optional<bool> Truth(QStringView text)
{
    if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0 || text == QLatin1String("1")) {
        return true;
    }
    if (text.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0 || text == QLatin1String("0")) {
        return false;
    }
    return std::nullopt;
}

/// One that cannot be sent in a header field is useless, and dangerous. Some servers leave out the quotes here, and
/// only here.
QByteArray Etag(QStringView text)
{
    if (std::any_of(text.begin(), text.end(), IsControl)) {
        return {};
    }
    const bool isBare = !text.isEmpty() && !text.contains(QLatin1Char('"'));
    return isBare ? '"' + text.toUtf8() + '"' : text.toUtf8();
}

/// In lower case; empty when it is not an MD5.
QByteArray Md5(QStringView text)
{
    const QByteArray hash = text.toLatin1().toLower();
    const auto isHexadecimal = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); };
    return hash.size() == 32 && std::all_of(hash.begin(), hash.end(), isHexadecimal) ? hash : QByteArray();
}

/// Of items such as "SHA1:..." and "MD5:...", separated by blanks.
QByteArray Md5OfChecksums(const QString& text)
{
    const QString plain = text.simplified();
    const auto items = QStringView(plain).split(' ');
    for (const QStringView item : items) {
        if (item.startsWith(QLatin1String("MD5:"), Qt::CaseInsensitive)) {
            return Md5(item.mid(4));
        }
    }
    return {};
}

} // namespace

struct PropertyReader::Known {
    QLatin1String namespaceUri;
    QLatin1String name;
    Kind kind;
};

bool PropertyReader::Begin(QStringView namespaceUri, QStringView name)
{
    static const Known knownProperties[] = {
        {davNamespace, QLatin1String("resourcetype"), Kind::ResourceType},
        {davNamespace, QLatin1String("getcontentlength"), Kind::ContentLength},
        {davNamespace, QLatin1String("getlastmodified"), Kind::LastModified},
        {davNamespace, QLatin1String("getetag"), Kind::Etag},
        {davNamespace, QLatin1String("creationdate"), Kind::CreationDate},
        {davNamespace, QLatin1String("quota-used-bytes"), Kind::QuotaUsed},
        {davNamespace, QLatin1String("quota-available-bytes"), Kind::QuotaAvailable},
        {ownCloudNamespace, QLatin1String("fileid"), Kind::FileId},
        {ownCloudNamespace, QLatin1String("checksums"), Kind::Checksums},
        {nextcloudNamespace, QLatin1String("has-preview"), Kind::HasPreview},
        {ourNamespace, QLatin1String(storedMd5Property), Kind::StoredMd5},
    };
    for (const Known& known : knownProperties) {
        if (name.size() == known.name.size() && name == known.name && namespaceUri == known.namespaceUri) {
            kind = known.kind;
            return true;
        }
    }
    return false;
}

void PropertyReader::Child(QStringView namespaceUri, QStringView name, DavEntry& entry) const
{
    if (kind == Kind::ResourceType && name == QLatin1String("collection") && namespaceUri == davNamespace) {
        entry.isCollection = true;
    }
}

void PropertyReader::End(const QString& text, DavEntry& entry) const
{
    const QStringView value = QStringView(text).trimmed();
    switch (kind) {
    case Kind::ResourceType:
        break;
    case Kind::ContentLength:
        entry.size = Length(value);
        break;
    case Kind::Etag:
        entry.etag = Etag(value);
        break;
    case Kind::LastModified:
        entry.modifiedAt = ParseHttpDate(value.toLatin1());
        break;
    case Kind::CreationDate:
        entry.createdAt = ParseHttpDate(value.toLatin1());
        break;
    case Kind::QuotaUsed:
        entry.quotaUsed = Number(value);
        break;
    case Kind::QuotaAvailable:
        entry.quotaAvailable = Number(value);
        break;
    case Kind::FileId:
        entry.fileId = value.toString();
        break;
    case Kind::Checksums:
        entry.md5 = Md5OfChecksums(text);
        break;
    case Kind::HasPreview:
        entry.hasPreview = Truth(value);
        break;
    case Kind::StoredMd5: {
        const int blank = value.indexOf(' ');
        const QByteArray hash = blank < 0 ? QByteArray() : Md5(value.left(blank));
        const QByteArray etag = blank < 0 ? QByteArray() : Etag(value.mid(blank + 1).trimmed());
        const bool isWhole = !hash.isEmpty() && !etag.isEmpty();
        entry.storedMd5 = isWhole ? hash : QByteArray();
        entry.storedEtag = isWhole ? etag : QByteArray();
        break;
    }
    }
}

} // namespace Norlis::Social
