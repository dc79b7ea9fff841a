#pragma once

#include <contracts/ICloudInfoStorage.h>

#include <string>
#include <vector>

namespace Norlis::Test {

/// A record store in memory that notes every call, in order.
class RecordingStore : public PDF::Cloud::ICloudInfoStorage {
public:
    using Fields = std::map<std::string, std::string>;

    /// What is stored: document id to its fields.
    std::map<std::string, Fields> records;

    /// "RemoveRecord(a)", "SetValue(a, file_name, b.pdf)", "ReadAll()".
    std::vector<std::string> calls;

    void RemoveRecord(const std::string& fileId) override
    {
        calls.push_back("RemoveRecord(" + fileId + ")");
        records.erase(fileId);
    }

    void SetValue(const std::string& fileId, const std::string& key, const std::string& value) override
    {
        calls.push_back("SetValue(" + fileId + ", " + key + ", " + value + ")");
        records[fileId][key] = value;
    }

    std::map<std::string, Fields> ReadAll() override
    {
        calls.push_back("ReadAll()");
        return records;
    }
};

} // namespace Norlis::Test
