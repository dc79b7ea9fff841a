#include "ListStorage.h"

#include <NorlisCloud/RecordKeys.h>

#include <QByteArray>
#include <QFileInfo>

#include <utility>

namespace Norlis::Host {

namespace RecordKey = PDF::Cloud::RecordKey;

namespace {

using Fields = std::map<std::string, std::string>;

std::string Text(const Fields& fields, const char* key)
{
    const auto field = fields.find(key);
    return field == fields.end() ? std::string() : field->second;
}

template <typename IsNumber>
void KeepIf(Fields& fields, const char* key, IsNumber isNumber)
{
    const auto field = fields.find(key);
    if (field != fields.end() && !isNumber(QByteArray::fromStdString(field->second))) {
        fields.erase(field);
    }
}

bool IsInt(const QByteArray& text)
{
    bool fits = false;
    text.toInt(&fits);
    return fits;
}

} // namespace

ListStorage::ListStorage(const std::shared_ptr<PDF::Cloud::ICloudInfoStorage>& storage) : storage(storage) {}

void ListStorage::RemoveRecord(const std::string& fileId)
{
    storage->RemoveRecord(fileId);
}

void ListStorage::SetValue(const std::string& fileId, const std::string& key, const std::string& value)
{
    if (changed.count(fileId) != 0) {
        storage->SetValue(fileId, key, value);
    }
}

std::map<std::string, std::map<std::string, std::string>> ListStorage::ReadAll()
{
    auto records = storage->ReadAll();
    rest.clear();
    rest.reserve(records.size());
    for (auto& [id, fields] : records) {
        Rest& own = rest[id];
        own.name = Text(fields, RecordKey::fileName);
        own.hash = Text(fields, RecordKey::fileHash);
        own.syncHash = Text(fields, RecordKey::lastSyncFileHash);
        own.pictures = Text(fields, RecordKey::previewPath);
        fields.erase(RecordKey::previewPath); // of which the list takes only two for what they are
        // The list would follow a link that has taken the copy's place, and take what it leads to for the copy.
        KeepIf(fields, RecordKey::filePath, [](const QByteArray& text) {
            const QString path = QString::fromUtf8(text);
            const QString real = QFileInfo(path).canonicalFilePath();
            return real.isEmpty() || real == path;
        });
        own.path = Text(fields, RecordKey::filePath);
        KeepIf(fields, RecordKey::cloudSize, [&own](const QByteArray& text) {
            bool fits = false;
            text.toUInt(&fits);
            bool isSize = false;
            own.size = text.toULongLong(&isSize);
            own.isLarge = isSize && !fits;
            return fits;
        });
        KeepIf(fields, RecordKey::isPrivate, IsInt);
        KeepIf(fields, RecordKey::lifetime, IsInt);
    }
    return records;
}

ListStorage::RestById ListStorage::TakeRest()
{
    return std::exchange(rest, {});
}

void ListStorage::NoteChange(const std::string& fileId)
{
    changed.insert(fileId);
}

const std::unordered_set<std::string>& ListStorage::Changed() const
{
    return changed;
}

} // namespace Norlis::Host
