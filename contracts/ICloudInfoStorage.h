#pragma once

#include <contracts/Export.h>

#include <map>
#include <string>

namespace Norlis::PDF::Cloud {

/// Persistent store of cloud file records: one record per document id, each a set of text fields (UTF-8).
/// Called on the event-loop thread, from the destructor of the file list too.
class NORLIS_CONTRACTS_EXPORT ICloudInfoStorage {
public:
    virtual ~ICloudInfoStorage() = default;

    /// Deletes every stored field of the document; an unknown id is no error. Like SetValue it is called from the
    /// destructor of the file list, so neither may throw.
    virtual void RemoveRecord(const std::string& fileId) = 0;

    /// Stores one field of one document and replaces what stood there.
    virtual void SetValue(const std::string& fileId, const std::string& key, const std::string& value) = 0;

    /// Every stored record: document id to its fields.
    virtual std::map<std::string, std::map<std::string, std::string>> ReadAll() = 0;
};

} // namespace Norlis::PDF::Cloud
