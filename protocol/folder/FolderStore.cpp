#include "FolderStore.h"

#include <files/AtomicFile.h>
#include <files/DocumentNames.h>

#include <QDateTime>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <filesystem>

#include <sys/stat.h>

namespace Norlis::Social {

namespace {

const auto ownFolder = QStringLiteral(".norlis-cloud");
const auto hashesFile = QStringLiteral("hashes.json");
constexpr qint64 maxHashesFileSize = 64 * 1024 * 1024; // bytes; far beyond what a million documents need

/// Which folder a path leads to at this moment; empty when it leads to none.
QString FolderIdentity(const QString& folder)
{
    struct stat status = {};
    if (stat(QFile::encodeName(folder).constData(), &status) != 0 || !S_ISDIR(status.st_mode)) {
        return {};
    }
    // A new folder often gets the number of the one that was removed before it.
    const qint64 birth = QFileInfo(folder).birthTime().toMSecsSinceEpoch();
    return QStringLiteral("%1-%2-%3").arg(status.st_dev).arg(status.st_ino).arg(birth);
}

/// When an entry of a folder last came or went, in milliseconds.
qint64 ModifiedAt(const QString& folder)
{
    return QFileInfo(folder).lastModified().toMSecsSinceEpoch();
}

} // namespace

FolderStore::FolderStore(const QString& folder) : folder(QDir::cleanPath(folder))
{
    LoadHashes();
}

std::optional<QString> FolderStore::Open()
{
    identity = FolderIdentity(folder);
    return Validate();
}

std::optional<QString> FolderStore::Validate() const
{
    const QString found = FolderIdentity(folder);
    if (found.isEmpty()) {
        return QStringLiteral("The folder %1 does not exist").arg(folder);
    }
    if (found != identity) {
        return QStringLiteral("Another folder has taken the place of %1").arg(folder);
    }
    const QFileInfo info(folder);
    if (!info.isReadable() || !info.isExecutable()) {
        return QStringLiteral("You are not allowed to read the folder %1").arg(folder);
    }
    return std::nullopt;
}

std::optional<std::vector<FolderDocument>> FolderStore::Documents()
{
    if (Validate()) {
        return std::nullopt;
    }
    nameOfId.clear();
    listedAt = ModifiedAt(folder);
    isListOutdated = Files::TimeUntilSettled(std::chrono::milliseconds(listedAt)).count() > 0;
    std::vector<FolderDocument> documents;
    const auto names = QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks, QDir::Name);
    documents.reserve(static_cast<std::size_t>(names.size()));
    for (const QString& name : names) {
        FolderDocument document{Files::IdOfName(name), name, PathOf(name), Files::FileIdentity::OfPath(PathOf(name))};
        if (document.version.IsFile() && !Files::ValidateName(name) && !Files::AtomicFile::IsTemporaryName(name)) {
            nameOfId.insert(document.id, name);
            documents.push_back(std::move(document));
        }
    }
    // A folder that vanished while it was read looks empty.
    if (Validate()) {
        isListOutdated = true;
        return std::nullopt;
    }
    return documents;
}

std::optional<FolderDocument> FolderStore::Find(const QString& id)
{
    if (id.isEmpty() || Validate()) {
        return std::nullopt;
    }
    if (!nameOfId.contains(id) && (isListOutdated || ModifiedAt(folder) != listedAt)) {
        Documents(); // it may be new
    }
    const auto name = nameOfId.constFind(id);
    if (name == nameOfId.constEnd()) {
        return std::nullopt;
    }
    FolderDocument document{id, *name, PathOf(*name), Files::FileIdentity::OfPath(PathOf(*name))};
    return document.version.IsFile() ? std::optional(document) : std::nullopt;
}

qint64 FolderStore::UsedBytes(const QString& exceptDocument)
{
    qint64 used = 0;
    for (const auto& document : Documents().value_or(std::vector<FolderDocument>())) {
        used += document.id == exceptDocument ? 0 : document.version.size;
    }
    return used;
}

qint64 FolderStore::FreeBytes() const
{
    // By the folder and not by its drive: in a container the system's table of drives is incomplete.
    std::error_code error;
    const auto space = std::filesystem::space(QFile::encodeName(folder).toStdString(), error);
    return error ? 0 : static_cast<qint64>(space.available);
}

QString FolderStore::PathOf(const QString& name) const
{
    return folder + '/' + name;
}

QString FolderStore::KnownHash(const FolderDocument& document) const
{
    const auto known = hashes.constFind(document.id);
    return known != hashes.constEnd() && known->version == document.version.ToString() ? known->md5Hash : QString();
}

void FolderStore::RememberHash(const QString& id, const Files::FileIdentity& version, const QString& md5Hash)
{
    if (version.TimeUntilSettled().count() <= 0) {
        RememberOwnHash(id, version, md5Hash);
    }
}

void FolderStore::RememberOwnHash(const QString& id, const Files::FileIdentity& version, const QString& md5Hash)
{
    hashes[id] = {version.ToString(), md5Hash};
    hasNewHashes = true;
}

void FolderStore::SaveHashes(const std::vector<FolderDocument>& documents)
{
    if (!hasNewHashes || !QDir().mkpath(TemporaryFolder())) {
        return;
    }
    QJsonObject saved;
    QHash<QString, KnownVersion> kept;
    for (const auto& document : documents) {
        const auto known = hashes.constFind(document.id);
        if (known != hashes.constEnd()) {
            kept.insert(document.id, *known);
            saved[document.id] = QJsonObject{{"version", known->version}, {"md5", known->md5Hash}};
        }
    }
    hashes = kept;
    const QByteArray text = QJsonDocument(saved).toJson(QJsonDocument::Compact);
    Files::AtomicFile file;
    hasNewHashes = !(file.Open(TemporaryFolder()) && file.Write(text.constData(), text.size()) &&
                     file.CommitReplacing(TemporaryFolder() + '/' + hashesFile));
}

QString FolderStore::TemporaryFolder() const
{
    return folder + '/' + ownFolder;
}

void FolderStore::RemoveLeftovers()
{
    const auto yesterday = QDateTime::currentDateTimeUtc().addDays(-1);
    const QDir temporary(TemporaryFolder());
    const auto leftovers = temporary.entryInfoList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo& leftover : leftovers) {
        if (Files::AtomicFile::IsTemporaryName(leftover.fileName()) && leftover.lastModified() < yesterday) {
            QFile::remove(leftover.filePath());
        }
    }
}

void FolderStore::LoadHashes()
{
    QFile file(TemporaryFolder() + '/' + hashesFile);
    if (!Files::FileIdentity::OfPath(file.fileName()).IsFile() || file.size() > maxHashesFileSize ||
        !file.open(QIODevice::ReadOnly)) {
        return;
    }
    const QJsonObject saved = QJsonDocument::fromJson(file.readAll()).object();
    for (auto entry = saved.begin(); entry != saved.end(); ++entry) {
        const QJsonObject known = entry->toObject();
        hashes.insert(entry.key(), {known["version"].toString(), known["md5"].toString()});
    }
}

} // namespace Norlis::Social
