#include "DavDocument.h"

#include <files/DocumentNames.h>
#include <protocol/dav/EntityTag.h>
#include <protocol/service/MimeType.h>

#include <QRegularExpression>

namespace Norlis::Social {

namespace {

/// Servers report whole seconds only. QDateTime's own conversion takes longer than the rest of an entry.
QString IsoText(const QDateTime& time)
{
    if (!time.isValid()) {
        return {};
    }
    const QDate date = time.date();
    const QTime clock = time.time();
    return QString::asprintf("%04d-%02d-%02dT%02d:%02d:%02dZ", date.year(), date.month(), date.day(), clock.hour(),
                             clock.minute(), clock.second());
}

QString IdOf(const DavEntry& entry, const QString& name)
{
    // The server's own id stays the same when the document is renamed.
    static const QRegularExpression safe(QStringLiteral("^[0-9]{1,15}$"));
    return safe.match(entry.fileId).hasMatch() ? entry.fileId : Files::IdOfName(name);
}

QByteArray Md5Of(const DavEntry& entry)
{
    if (!entry.md5.isEmpty()) {
        return entry.md5;
    }
    // Servers keep the stored one when somebody else replaces the content.
    return EntityTag{entry.etag}.SameIgnoringWeakness({entry.storedEtag}) ? entry.storedMd5 : QByteArray();
}

} // namespace

QString DavDocument::Version() const
{
    // A weak ETag that becomes strong still means the same version.
    const QByteArray tag = etag.startsWith("W/") ? etag.mid(2) : etag;
    return QString::fromUtf8(tag) + '/' + QString::number(size.value_or(-1)) + '/' + IsoText(modifiedAt);
}

bool DavDocument::IsVersion(const QString& version) const
{
    // Some servers give the ETag in some responses only. Without it, size and time have to do.
    const auto tagOf = [](const QString& text) { return text.section('/', 0, -3); };
    const auto sizeOf = [](const QString& text) { return text.section('/', -2, -2); };
    const QString own = Version();
    const bool haveTags = !tagOf(own).isEmpty() && !tagOf(version).isEmpty();
    return haveTags ? tagOf(own) == tagOf(version) && sizeOf(own) == sizeOf(version)
                    : own.section('/', -2) == version.section('/', -2);
}

CloudFile DavDocument::ToCloudFile() const
{
    CloudFile file;
    file.id = id;
    file.name = Name();
    file.size = size.value_or(0);
    file.mimeType = MimeTypeOf(name);
    file.md5Hash = QString::fromLatin1(md5);
    file.createdAt = IsoText(createdAt);
    file.modifiedAt = IsoText(modifiedAt);
    return file;
}

DavDocument FileOf(const DavEntry& entry, const QByteArray& name)
{
    DavDocument document;
    document.id = IdOf(entry, FromUtf8(name));
    document.name = name;
    document.size = entry.size;
    document.etag = entry.etag;
    document.md5 = Md5Of(entry);
    document.modifiedAt = entry.modifiedAt;
    document.createdAt = entry.createdAt;
    document.fileId = entry.fileId;
    document.hasPreview = entry.hasPreview.value_or(false);
    return document;
}

Reply ConflictReply(const QString& what, const DavDocument& document)
{
    return FailureReply(what, document.Name(), "Somebody has changed or removed the document in the cloud since",
                        "Refresh the list, and look at the newer version first.", OAuth2::FailureKind::Conflict);
}

bool IsSameVersion(const DavDocument& left, const DavDocument& right)
{
    return left.size == right.size && EntityTag{left.etag}.SameIgnoringWeakness({right.etag});
}

std::optional<DavDocument> DocumentOf(const DavEntry& entry)
{
    const QString name = FromUtf8(entry.name);
    if (entry.isSelf || entry.isCollection || Files::ValidateName(name)) {
        return std::nullopt;
    }
    return FileOf(entry, entry.name);
}

} // namespace Norlis::Social
