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
    for (auto& record : records) {
        auto& fields = record.second;
        const auto keepIf = [&fields](const char* key, auto isNumber) {
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
        keepIf(RecordKey::cloudSize, [](const QByteArray& text) {
            bool fits = false;
            text.toUInt(&fits);
            return fits;
        });
        keepIf(RecordKey::isPrivate, isInt);
        keepIf(RecordKey::lifetime, isInt);
    }
    return records;
}

} // namespace Norlis::Host
