#include "ShownVersions.h"

#include <QDataStream>
#include <QFile>
#include <QSaveFile>

#include <utility>

namespace Norlis::Terminal {

namespace {

// Ten thousand versions are read and compared by each list, which JSON would take a tenth of.
constexpr quint32 mark = 0x4E524C56; // "NRLV", then a QDataStream: count; of each id, size, version
constexpr auto streamVersion = QDataStream::Qt_5_15;

} // namespace

ShownVersions::ShownVersions(const QString& dataFolder) : path(dataFolder + "/shown-versions")
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        isDamaged = file.exists();
        return;
    }
    QDataStream stream(file.readAll());
    stream.setVersion(streamVersion);
    quint32 foundMark = 0;
    quint32 count = 0;
    stream >> foundMark >> count;
    isDamaged = foundMark != mark;
    for (; count > 0 && !isDamaged; --count) {
        QString id;
        Version version;
        stream >> id >> version.size >> version.version;
        versions.insert(id, version);
        isDamaged = stream.status() != QDataStream::Ok;
    }
    isDamaged = isDamaged || !stream.atEnd();
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
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)) {
        QDataStream stream(&file);
        stream.setVersion(streamVersion);
        stream << mark << static_cast<quint32>(versions.size());
        for (auto version = versions.constBegin(); version != versions.constEnd(); ++version) {
            stream << version.key() << version->size << version->version;
        }
        isChanged = !file.commit();
    }
}

} // namespace Norlis::Terminal
