#include "FolderStore.h"

#include "FolderTurn.h"
#include "OwnFolder.h"
#include <files/AtomicFile.h>
#include <files/DocumentNames.h>
#include <files/FilePlacing.h>
#include <files/PrivateFolder.h>

#include <QDateTime>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <algorithm>
#include <filesystem>
#include <utility>

#include <sys/stat.h>

namespace Norlis::Social {

namespace {

const auto hashesFile = QStringLiteral("hashes.json");
const auto markFile = QStringLiteral("mark");
constexpr qint64 leftoverAge = Q_INT64_C(24) * 60 * 60 * 1'000'000'000; // nanoseconds
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

/// Of a small file of our own; empty when there is none.
QStringList ReadLines(const QString& path)
{
    constexpr qint64 maxSize = 4096; // bytes
    QFile file(path);
    const bool isOpen = Files::FileIdentity::OfPath(path).IsFile() && file.open(QIODevice::ReadOnly);
    return isOpen ? QString::fromUtf8(file.read(maxSize)).split('\n', Qt::SkipEmptyParts) : QStringList();
}

/// \param file one that has just been opened
bool WriteLines(Files::AtomicFile& file, const QString& path, const QStringList& lines)
{
    const QByteArray text = lines.join('\n').toUtf8() + '\n';
    return file.Write(text.constData(), text.size()) && file.Sync() && file.CommitReplacing(path);
}

} // namespace

FolderStore::FolderStore(const QString& folder) : folder(QDir::cleanPath(folder))
{
    LoadHashes();
}

std::optional<QString> FolderStore::Open()
{
    identityBefore = std::exchange(identity, FolderIdentity(folder));
    FinishChange();
    auto reason = Validate();
    if (reason) {
        Close();
    }
    return reason;
}

void FolderStore::Close()
{
    identity = identityBefore;
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
    FinishChange();
    nameOfId.clear();
    listedAt = ModifiedAt(folder);
    isListOutdated = Files::TimeUntilSettled(std::chrono::milliseconds(listedAt)).count() > 0;
    std::vector<FolderDocument> documents;
    const auto names = QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks, QDir::Name);
    documents.reserve(static_cast<std::size_t>(names.size()));
    for (const QString& name : names) {
        FolderDocument document = DocumentOf(name);
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
    const FolderDocument document = DocumentOf(*name);
    return document.version.IsFile() ? std::optional(document) : std::nullopt;
}

FolderDocument FolderStore::DocumentOf(const QString& name) const
{
    const auto version = Files::FileIdentity::OfPath(PathOf(name));
    return {Files::IdOfName(name), name, PathOf(name), version, version.TimeUntilSettled().count() <= 0};
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

FolderStore::KnownHash FolderStore::HashOf(const FolderDocument& document) const
{
    const auto known = hashes.constFind(document.id);
    return known != hashes.constEnd() && known->version == document.version.ToString() ? *known : KnownHash();
}

void FolderStore::RememberHash(const QString& id, const Files::FileIdentity& version, const QString& md5Hash,
                               bool isCertain)
{
    hashes[id] = {version.ToString(), md5Hash, isCertain};
    hasNewHashes = true;
}

void FolderStore::ForgetHash(const QString& id)
{
    hasNewHashes = hashes.remove(id) > 0 || hasNewHashes;
}

void FolderStore::KeepHashesOf(const std::vector<FolderDocument>& documents)
{
    QHash<QString, KnownHash> kept;
    for (const auto& document : documents) {
        const auto known = hashes.constFind(document.id);
        if (known != hashes.constEnd()) {
            kept.insert(document.id, *known);
        }
    }
    hashes = kept;
}

void FolderStore::SaveHashes()
{
    OwnFolder own(folder);
    if (!hasNewHashes || Validate() || own.Prepare()) {
        return;
    }
    QJsonObject saved;
    for (auto known = hashes.constBegin(); known != hashes.constEnd(); ++known) {
        saved[known.key()] =
            QJsonObject{{"version", known->version}, {"md5", known->md5Hash}, {"certain", known->isCertain}};
    }
    const QByteArray text = QJsonDocument(saved).toJson(QJsonDocument::Compact);
    Files::AtomicFile file;
    hasNewHashes = !(own.Create(file) && file.Write(text.constData(), text.size()) &&
                     file.CommitReplacing(own.PathOf(hashesFile)));
}

const QString& FolderStore::Folder() const
{
    return folder;
}

void FolderStore::FinishChange()
{
    const auto own = std::make_shared<OwnFolder>(folder);
    if (own->Open() && FolderTurn::IsChangePending(own->Path())) {
        FolderTurn(folder, own).Take(); // else it is under way, or somebody finishes it just now
    }
}

bool FolderStore::CanExchange()
{
    OwnFolder own(folder);
    Files::AtomicFile first;
    Files::AtomicFile second;
    return !own.Prepare() && first.Open(own.Path()) && second.Open(own.Path()) &&
           !Files::Exchange(first.Path(), second.Path());
}

std::optional<QString> FolderStore::CompareWithMemory(const QString& dataFolder)
{
    if (dataFolder.isEmpty()) {
        return std::nullopt;
    }
    const QStringList remembered = ReadLines(MemoryFile(dataFolder));
    const bool isSameFolder = remembered.value(1) == identity;
    OwnFolder own(folder);
    QString mark = own.Open() ? ReadLines(own.PathOf(markFile)).value(0) : QString();
    if (!remembered.isEmpty() && !isSameFolder && remembered[0] != mark) {
        return QStringLiteral("The folder %1 is not the one that was used before").arg(folder);
    }
    if (mark.isEmpty()) {
        mark = remembered.value(0, QUuid::createUuid().toString(QUuid::WithoutBraces));
        Files::AtomicFile file;
        if (own.Prepare() || !own.Create(file) || !WriteLines(file, own.PathOf(markFile), {mark})) {
            return std::nullopt; // nothing can be lost in a folder that takes nothing
        }
    }
    if (remembered != QStringList{mark, identity}) {
        const QString path = MemoryFile(dataFolder);
        Files::MakePrivateFolder(QFileInfo(path).path());
        Files::AtomicFile file;
        if (file.Open(QFileInfo(path).path())) {
            WriteLines(file, path, {mark, identity});
        }
    }
    return std::nullopt;
}

QString FolderStore::MemoryFile(const QString& dataFolder) const
{
    return QDir::cleanPath(dataFolder) + "/folder-" + Files::IdOfName(folder) + ".mark";
}

void FolderStore::RemoveLeftovers()
{
    const auto own = std::make_shared<OwnFolder>(folder);
    FolderTurn turn(folder, own);
    if (!own->Open() || turn.Take() != FolderTurn::Outcome::Taken) {
        return; // what is there may be part of a change
    }
    Files::AtomicFile justNow; // has the time of the drive, of which this computer's may be days ahead
    if (!justNow.Open(own->Path())) {
        return;
    }
    const qint64 yesterday = justNow.Version().modifiedNanoseconds - leftoverAge;
    const auto names = QDir(own->Path()).entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& name : names) {
        const QString path = own->PathOf(name);
        const qint64 writtenAt = Files::FileIdentity::OfPath(path).modifiedNanoseconds;
        if (Files::AtomicFile::IsTemporaryName(name) && writtenAt != Files::FileIdentity::unknownTime &&
            writtenAt < yesterday) {
            QFile::remove(path);
        }
    }
}

void FolderStore::LoadHashes()
{
    OwnFolder own(folder);
    if (!own.Open()) {
        return;
    }
    QFile file(own.PathOf(hashesFile));
    if (!Files::FileIdentity::OfPath(file.fileName()).IsFile() || file.size() > maxHashesFileSize ||
        !file.open(QIODevice::ReadOnly)) {
        return;
    }
    const QJsonObject saved = QJsonDocument::fromJson(file.readAll()).object();
    for (auto entry = saved.begin(); entry != saved.end(); ++entry) {
        const QJsonObject known = entry->toObject();
        hashes.insert(entry.key(), {known["version"].toString(), known["md5"].toString(), known["certain"].toBool()});
    }
}

} // namespace Norlis::Social
