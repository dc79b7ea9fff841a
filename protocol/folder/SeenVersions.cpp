#include "SeenVersions.h"

#include <QStringList>

namespace Norlis::Social {

namespace {

const auto settled = QStringLiteral("settled");
const auto unsettled = QStringLiteral("unsettled");

} // namespace

QString SeenVersion::ToText() const
{
    return QStringList{identity.ToString(), isSettled ? settled : unsettled, md5Hash}.join(' ');
}

std::optional<SeenVersion> SeenVersion::FromText(const QString& text)
{
    const QStringList parts = text.split(' ');
    const SeenVersion version{Files::FileIdentity::FromString(parts.value(0)), parts.value(2),
                              parts.value(1) == settled};
    return parts.size() == 3 && version.identity.IsFile() ? std::optional(version) : std::nullopt;
}

SeenVersion::Match SeenVersion::Compare(const Files::FileIdentity& now) const
{
    if (now == identity && (isSettled || md5Hash.isEmpty())) {
        return Match::Same;
    }
    return now.size == identity.size && !md5Hash.isEmpty() ? Match::Undecided : Match::Other;
}

SeenVersions::SeenVersions(VersionMemory& copies) : copies(copies) {}

void SeenVersions::Show(const QString& id, const SeenVersion& version)
{
    shown[id] = version;
}

void SeenVersions::ShowInList(const QString& id, const SeenVersion& version, ChangeJournal::Time begin)
{
    if (!journal.WasUploadedAfter(begin, id)) {
        Show(id, version);
    }
}

void SeenVersions::Upload(const QString& id, const QString& localPath, const SeenVersion& version)
{
    journal.NoteUpload(id);
    Show(id, version);
    Deliver(id, localPath, version);
}

ChangeJournal::Time SeenVersions::Now() const
{
    return journal.Now();
}

void SeenVersions::Deliver(const QString& id, const QString& localPath, const SeenVersion& version)
{
    copies.Remember(id, localPath, {version.ToText(), version.md5Hash});
}

void SeenVersions::Accept(const QString& id, const QString& localPath, const QString& md5Hash)
{
    const auto version = shown.constFind(id);
    if (version != shown.constEnd() && (md5Hash.isEmpty() || md5Hash == version->md5Hash)) {
        copies.Remember(id, localPath, {version->ToText(), version->md5Hash});
    }
}

std::optional<QString> SeenVersions::ForUpload(const QString& id, const QString& localPath)
{
    const auto copy = copies.Find(id, localPath);
    return copy ? copy->version : ForRemoval(id);
}

std::optional<QString> SeenVersions::ForRemoval(const QString& id) const
{
    const auto version = shown.constFind(id);
    return version != shown.constEnd() ? std::optional(version->ToText()) : std::nullopt;
}

void SeenVersions::Forget()
{
    shown.clear();
}

} // namespace Norlis::Social
