#include "RestorableStorage.h"

#include <NorlisCloud/RecordKeys.h>

#include <QByteArray>

namespace Norlis::Host {

namespace RecordKey = PDF::Cloud::RecordKey;

RestorableStorage::RestorableStorage(const std::shared_ptr<PDF::Cloud::ICloudInfoStorage>& storage) : storage(storage)
{
}

void RestorableStorage::RemoveRecord(const std::string& fileId)
{
    storage->RemoveRecord(fileId);
}

void RestorableStorage::SetValue(const std::string& fileId, const std::string& key, const std::string& value)
{
    storage->SetValue(fileId, key, value);
}

std::map<std::string, std::map<std::string, std::string>> RestorableStorage::ReadAll()
{
    auto records = storage->ReadAll();
    largeSizes.clear();
    for (auto& [id, fields] : records) {
        const auto keepIf = [&fields = fields](const char* key, auto isNumber) {
            const auto field = fields.find(key);
            if (field != fields.end() && !isNumber(QByteArray::fromStdString(field->second))) {
                fields.erase(field);
            }
        };
        const auto isInt = [](const QByteArray& text) {
            bool fits = false;
            text.toInt(&fits);
            return fits;
        };
        keepIf(RecordKey::cloudSize, [this, &id = id](const QByteArray& text) {
            bool fits = false;
            text.toUInt(&fits);
            bool isSize = false;
            const quint64 size = text.toULongLong(&isSize);
            if (isSize && !fits) {
                largeSizes[id] = size;
            }
            return fits;
        });
        keepIf(RecordKey::isPrivate, isInt);
        keepIf(RecordKey::lifetime, isInt);
    }
    return records;
}

const std::map<std::string, quint64>& RestorableStorage::LargeSizes() const
{
    return largeSizes;
}

} // namespace Norlis::Host
