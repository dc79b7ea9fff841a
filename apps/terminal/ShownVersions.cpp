#include "ShownVersions.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <utility>

namespace Norlis::Terminal {

ShownVersions::ShownVersions(const QString& dataFolder) : path(dataFolder + "/shown.json")
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        isDamaged = file.exists();
        return;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    isDamaged = !document.isObject();
    const QJsonObject saved = document.object();
    for (auto entry = saved.begin(); entry != saved.end(); ++entry) {
        const QJsonArray fields = entry->toArray();
        versions.insert(entry.key(), {fields[0].toString().toULongLong(), fields[1].toString()});
    }
}

bool ShownVersions::IsDamaged() const
{
    return isDamaged;
}

std::optional<ShownVersions::Version> ShownVersions::Of(const QString& id) const
{
    const auto found = versions.constFind(id);
    return found == versions.constEnd() ? std::nullopt : std::optional(*found);
}

void ShownVersions::Show(const std::vector<DocumentEntry>& entries)
{
    const auto before = std::exchange(versions, {});
    for (const DocumentEntry& entry : entries) {
        versions.insert(entry.id, {entry.size, entry.version});
    }
    isChanged = isChanged || isDamaged || versions != before;
    isDamaged = false;
}

void ShownVersions::Note(const DocumentEntry& entry)
{
    versions.insert(entry.id, {entry.size, entry.version});
    isChanged = true;
}

void ShownVersions::NoteUnlessKnown(const DocumentEntry& entry)
{
    if (!versions.contains(entry.id)) {
        Note(entry);
    }
}

void ShownVersions::Forget(const QString& id)
{
    isChanged = versions.remove(id) > 0 || isChanged;
}

void ShownVersions::Save()
{
    if (!isChanged || isDamaged) {
        return;
    }
    QJsonObject saved;
    for (auto version = versions.constBegin(); version != versions.constEnd(); ++version) {
        saved[version.key()] = QJsonArray{QString::number(version->size), version->version};
    }
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)) {
        file.write(QJsonDocument(saved).toJson(QJsonDocument::Compact));
        isChanged = !file.commit();
    }
}

} // namespace Norlis::Terminal
