#pragma once

#include <contracts/ICloudInfoStorage.h>
#include <NorlisTestKit/Faults.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace Norlis::TestKit {

/// What can go wrong with a call of a record store.
enum class StoreFault {
    Throws,  ///< std::runtime_error, and nothing changes. Where the file list calls, only ReadAll may throw
    Forgets, ///< a write reports success and changes nothing, as on a full disk; ReadAll finds nothing
    Damages  ///< a value is written, or all are read, with their first half replaced by a byte that is not UTF-8
};

/// A record store in memory that records every call, in order, and fails when it is told to.
///
///     store.records["doc"]["cloud_size"] = "no number";                       // one damaged field
///     store.Misbehave("ReadAll", StoreFault::Throws);                         // a store that cannot be opened
///     store.Misbehave(When("SetValue").From(3).Always(), StoreFault::Forgets) // a disk that becomes full
///
/// Used on one thread, the one of the list over it. Outlives that list, so that a second one finds what the first has
/// left.
class RecordingStore : public PDF::Cloud::ICloudInfoStorage {
public:
    /// One record: key to value.
    using Fields = std::map<std::string, std::string>;

    /// What is stored: document id to its fields.
    std::map<std::string, Fields> records;

    /// "RemoveRecord(a)", "SetValue(a, file_name, b.pdf)", "ReadAll()".
    std::vector<std::string> calls;

    /// Adds a fault; earlier ones stay. BehaveAgain ends them all.
    void Misbehave(const When& when, StoreFault fault)
    {
        faults.Add(when, fault);
    }

    /// Removes all faults.
    void BehaveAgain()
    {
        faults.Clear();
    }

    void RemoveRecord(const std::string& fileId) override
    {
        if (Note("RemoveRecord", fileId) != StoreFault::Forgets) {
            records.erase(fileId);
        }
    }

    void SetValue(const std::string& fileId, const std::string& key, const std::string& value) override
    {
        const auto fault = Note("SetValue", fileId + ", " + key + ", " + value);
        if (fault != StoreFault::Forgets) {
            records[fileId][key] = fault == StoreFault::Damages ? Damaged(value) : value;
        }
    }

    std::map<std::string, Fields> ReadAll() override
    {
        const auto fault = Note("ReadAll", {});
        if (fault == StoreFault::Forgets) {
            return {};
        }
        auto found = records;
        if (fault == StoreFault::Damages) {
            for (auto& [id, fields] : found) {
                for (auto& [key, value] : fields) {
                    value = Damaged(value);
                }
            }
        }
        return found;
    }

private:
    std::optional<StoreFault> Note(const std::string& operation, const std::string& arguments)
    {
        calls.push_back(operation + '(' + arguments + ')');
        const auto fault = faults.Claim(QByteArray::fromStdString(operation), QByteArray::fromStdString(arguments));
        if (fault == StoreFault::Throws) {
            throw std::runtime_error("The store failed in " + calls.back());
        }
        return fault;
    }

    static std::string Damaged(const std::string& value)
    {
        return '\xff' + value.substr(value.size() / 2);
    }

    Faults<StoreFault> faults{{"RemoveRecord", "SetValue", "ReadAll"}};
};

} // namespace Norlis::TestKit
