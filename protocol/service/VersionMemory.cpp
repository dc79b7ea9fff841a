#include "VersionMemory.h"

#include <files/AtomicFile.h>
#include <files/FileIdentity.h>
#include <files/PrivateFolder.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

#include <algorithm>
#include <cerrno>

#include <sys/file.h>
#include <unistd.h>

namespace Norlis::Social {

namespace {

constexpr int minLinesToCompact = 1'000;

QByteArray LineOf(const QString& document, const QString& localPath,
                  const std::optional<VersionMemory::Version>& version)
{
    QJsonArray fields{document, localPath};
    if (version) {
        fields.append(version->version);
        fields.append(version->md5Hash);
    }
    return QJsonDocument(fields).toJson(QJsonDocument::Compact) + '\n';
}

/// Of the file that the path leads to, by whatever way.
QString KeyOf(const QString& localPath)
{
    const QFileInfo file(localPath);
    const QString folder = QFileInfo(file.absolutePath()).canonicalFilePath();
    return folder.isEmpty() ? QDir::cleanPath(file.absoluteFilePath()) : QDir(folder).filePath(file.fileName());
}

/// Keeps other programs from writing to a file; not from reading it. They hold it for a moment only, so one that has it
/// for longer has been stopped and is not waited for.
class Lock {
public:
    explicit Lock(QFile& file) : descriptor(file.handle())
    {
        constexpr int maxAttempts = 100;
        constexpr int pause = 5; // milliseconds
        for (int attempt = 0; attempt < maxAttempts && !isHeld; ++attempt) {
            isHeld = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
            if (!isHeld && errno != EWOULDBLOCK) {
                break; // the file system has no locks
            }
            if (!isHeld) {
                QThread::msleep(pause);
            }
        }
    }
    ~Lock()
    {
        if (isHeld) {
            flock(descriptor, LOCK_UN);
        }
    }
    bool IsHeld() const
    {
        return isHeld;
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    const int descriptor;
    bool isHeld = false;
};

} // namespace

QString MemoryFile(const QString& what, const OAuth2::AuthInfo& authInfo)
{
    constexpr int nameLength = 16; // enough to tell apart the services of one user
    QUrl service = authInfo.serviceUrl.adjusted(QUrl::RemovePassword | QUrl::StripTrailingSlash);
    if (!authInfo.userName.isEmpty()) {
        service.setUserName(authInfo.userName);
    }
    const QByteArray name = QCryptographicHash::hash(service.toEncoded(), QCryptographicHash::Sha256).toHex();
    return authInfo.dataFolder.isEmpty()
               ? QString()
               : QStringLiteral("%1/%2-%3.jsonl")
                     .arg(authInfo.dataFolder, what, QString::fromLatin1(name.left(nameLength)));
}

VersionMemory::VersionMemory(const QString& file) : path(file) {}

std::optional<VersionMemory::Version> VersionMemory::Find(const QString& document, const QString& localPath)
{
    Refresh();
    const auto found = copiesOf.constFind(document);
    if (found == copiesOf.constEnd()) {
        return std::nullopt;
    }
    const auto copy = found->constFind(KeyOf(localPath));
    return copy == found->constEnd() ? std::nullopt : std::optional(*copy);
}

QString VersionMemory::HashOf(const QString& document, const std::function<bool(const QString& version)>& isSame) const
{
    const Copies known = copiesOf.value(document);
    const auto copy = std::find_if(known.begin(), known.end(), [&](const Version& each) {
        return !each.md5Hash.isEmpty() && isSame(each.version);
    });
    return copy == known.end() ? QString() : copy->md5Hash;
}

void VersionMemory::Remember(const QString& document, const QString& localPath, const Version& version)
{
    Refresh();
    Append(Note(document, KeyOf(localPath), version));
}

void VersionMemory::Move(const QString& document, const QString& from, const QString& to)
{
    if (const auto version = Find(document, from)) {
        Append(Note(document, KeyOf(to), *version) + Change(document, KeyOf(from), std::nullopt));
    }
}

QStringList VersionMemory::DocumentsBeginningWith(const QString& prefix)
{
    Refresh();
    QStringList found;
    for (auto each = copiesOf.constBegin(); each != copiesOf.constEnd(); ++each) {
        if (each.key().startsWith(prefix) && !each->isEmpty()) {
            found.append(each.key());
        }
    }
    return found;
}

void VersionMemory::Forget(const QString& document)
{
    Refresh();
    const QStringList keys = copiesOf.value(document).keys();
    QByteArray changes;
    for (const QString& key : keys) {
        changes += Change(document, key, std::nullopt);
    }
    Append(changes);
}

QByteArray VersionMemory::Note(const QString& document, const QString& key, const Version& version)
{
    QByteArray changes;
    const Copies known = copiesOf.value(document);
    for (auto copy = known.begin(); copy != known.end(); ++copy) {
        if (copy.key() != key && copy->version == version.version && copy->md5Hash != version.md5Hash) {
            changes += Change(document, copy.key(), Version{copy->version, {}});
        }
    }
    return changes + Change(document, key, version);
}

QByteArray VersionMemory::Change(const QString& document, const QString& key, const std::optional<Version>& version)
{
    Set(document, key, version);
    return LineOf(document, key, version);
}

void VersionMemory::Refresh()
{
    const bool isThere = !path.isEmpty() && Files::FileIdentity::OfPath(path).IsFile();
    if (!isThere || !OpenCurrent() || file.size() <= position) {
        return;
    }
    file.seek(position);
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (!line.endsWith('\n')) {
            break; // is being written
        }
        position += line.size();
        Apply(line);
    }
}

bool VersionMemory::OpenCurrent()
{
    const auto current = Files::FileIdentity::OfPath(path);
    if (file.isOpen()) {
        const auto opened = Files::FileIdentity::OfDescriptor(file.handle());
        if (current.device == opened.device && current.inode == opened.inode) {
            return true;
        }
        file.close();
    }
    Files::MakePrivateFolder(QFileInfo(path).path());
    file.setFileName(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append)) {
        return false; // what is known stays known
    }
    if (file.size() == 0) {
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    }
    copiesOf.clear();
    copies = 0;
    lines = 0;
    position = 0;
    return true;
}

void VersionMemory::Apply(const QByteArray& line)
{
    ++lines;
    const QJsonArray fields = QJsonDocument::fromJson(line).array();
    if (fields.size() == 4) {
        Set(fields[0].toString(), fields[1].toString(), Version{fields[2].toString(), fields[3].toString()});
    } else if (fields.size() == 2) {
        Set(fields[0].toString(), fields[1].toString(), std::nullopt);
    }
}

void VersionMemory::Set(const QString& document, const QString& localPath, const std::optional<Version>& version)
{
    Copies& known = copiesOf[document];
    copies -= known.remove(localPath);
    if (version) {
        known.insert(localPath, *version);
        ++copies;
    } else if (known.isEmpty()) {
        copiesOf.remove(document);
    }
}

void VersionMemory::Append(const QByteArray& changes)
{
    if (path.isEmpty() || changes.isEmpty()) {
        return;
    }
    for (int attempt = 0; attempt < 3 && OpenCurrent(); ++attempt) {
        const Lock lock(file);
        const auto current = Files::FileIdentity::OfPath(path);
        if (current.inode != Files::FileIdentity::OfDescriptor(file.handle()).inode) {
            continue; // has just been compacted
        }
        char last = '\n';
        const qint64 size = file.size();
        pread(file.handle(), &last, 1, size - 1);
        const bool isWritten = file.write(last == '\n' ? changes : '\n' + changes) >= changes.size() && file.flush();
        if (isWritten && last == '\n' && size > 0 && size == position) { // what stands there is known
            position += changes.size();
            lines += changes.count('\n');
        }
        break;
    }
    Refresh(); // the file may have been opened only now, and others have written to it
    Compact();
}

void VersionMemory::Compact()
{
    if (lines < minLinesToCompact || lines < 2 * copies) {
        return;
    }
    const Lock lock(file);
    if (!lock.IsHeld() || file.size() != position) {
        return; // another program writes
    }
    Files::AtomicFile compacted;
    if (!compacted.Open(QFileInfo(path).path())) {
        return;
    }
    for (auto known = copiesOf.constBegin(); known != copiesOf.constEnd(); ++known) {
        for (auto copy = known->constBegin(); copy != known->constEnd(); ++copy) {
            const QByteArray line = LineOf(known.key(), copy.key(), *copy);
            if (!compacted.Write(line.constData(), line.size())) {
                return;
            }
        }
    }
    if (compacted.Sync()) {
        compacted.CommitReplacing(path);
    }
}

} // namespace Norlis::Social
