#include "KeptCopies.h"

#include <QDateTime>
#include <QFileInfo>

namespace Norlis::Host {

namespace {

constexpr qint64 maxAge = 30 * 24 * 60 * 60; // seconds

bool IsThere(const KeptCopy& copy)
{
    return QFileInfo(QString::fromStdString(copy.path)).isFile();
}

} // namespace

KeptCopies::KeptCopies(const std::shared_ptr<SqliteCloudInfoStorage>& storage) : storage(storage)
{
    const qint64 oldest = QDateTime::currentSecsSinceEpoch() - maxAge;
    for (const auto& copy : storage->ReadCopies()) {
        if (copy.lostAt == 0 || copy.lostAt >= oldest) {
            Insert(copy);
        } else {
            storage->DropCopy(copy.path);
        }
    }
}

void KeptCopies::Keep(const KeptCopy& copy)
{
    Drop(QString::fromStdString(copy.path));
    Insert(copy);
    storage->KeepCopy(copy);
}

void KeptCopies::Drop(const QString& path)
{
    const auto found = copies.find(path);
    if (found == copies.end()) {
        return;
    }
    const auto& copy = found->second;
    pathsById.remove(QString::fromStdString(copy.documentId), path);
    pathsByName.remove(QString::fromStdString(copy.name), path);
    storage->DropCopy(copy.path);
    copies.erase(found);
}

void KeptCopies::DropAllOf(const QString& document)
{
    const auto paths = pathsById.values(document);
    for (const auto& path : paths) {
        Drop(path);
    }
}

void KeptCopies::NoteLost(const QString& document)
{
    SetLostAt(document, QDateTime::currentSecsSinceEpoch());
}

void KeptCopies::NoteFound(const QString& document)
{
    SetLostAt(document, 0);
}

const KeptCopy* KeptCopies::At(const QString& path) const
{
    const auto found = copies.find(path);
    return found == copies.end() ? nullptr : &found->second;
}

const KeptCopy* KeptCopies::Of(const QString& document, const QString& name, const std::string& cloudHash) const
{
    const auto ofDocument = pathsById.values(document);
    for (const auto& path : ofDocument) {
        if (const auto copy = At(path); IsThere(*copy)) {
            return copy;
        }
    }
    if (cloudHash.empty()) {
        return nullptr;
    }
    const auto ofName = pathsByName.values(name);
    for (const auto& path : ofName) {
        if (const auto copy = At(path); copy->lostAt != 0 && copy->syncHash == cloudHash && IsThere(*copy)) {
            return copy;
        }
    }
    return nullptr;
}

QStringList KeptCopies::Paths() const
{
    QStringList paths;
    for (const auto& copy : copies) {
        paths.append(copy.first);
    }
    return paths;
}

void KeptCopies::Insert(const KeptCopy& copy)
{
    const auto path = QString::fromStdString(copy.path);
    copies[path] = copy;
    pathsById.insert(QString::fromStdString(copy.documentId), path);
    pathsByName.insert(QString::fromStdString(copy.name), path);
}

void KeptCopies::SetLostAt(const QString& document, qint64 lostAt)
{
    const auto paths = pathsById.values(document);
    for (const auto& path : paths) {
        auto& copy = copies.at(path);
        if ((copy.lostAt == 0) != (lostAt == 0)) {
            copy.lostAt = lostAt;
            storage->KeepCopy(copy);
        }
    }
}

} // namespace Norlis::Host
