#pragma once

#include <contracts/ICloudInfoStorage.h>

#include <QtGlobal>

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace Norlis::Host {

/// A record store as the file list can use it.
///
/// The list writes the size of any document but refuses to start over one of more than 32 bits, and over a number that
/// is damaged. Such fields are left out of what it reads; the next refresh brings them. When it goes, it writes all of
/// its records; only those that are noted as changed get through. Used on one thread.
class ListStorage : public PDF::Cloud::ICloudInfoStorage {
public:
    /// Of a record, what the list does not read or does not give out.
    struct Rest {
        std::string name;     ///< of the cloud copy
        quint64 size = 0;     ///< bytes; 0 also when it is damaged
        bool isLarge = false; ///< the size is sound and only too large for the list
        std::string hash;     ///< as the list knows it
        std::string syncHash; ///< as the list knows it
        std::string pictures; ///< paths, each followed by ';'
        std::string path;     ///< of the local copy, also where there is no file now
    };
    using RestById = std::unordered_map<std::string, Rest>; ///< by id of the document

    /// \param storage where records are kept; shared
    explicit ListStorage(const std::shared_ptr<PDF::Cloud::ICloudInfoStorage>& storage);

    void RemoveRecord(const std::string& fileId) override;
    void SetValue(const std::string& fileId, const std::string& key, const std::string& value) override;
    std::map<std::string, std::map<std::string, std::string>> ReadAll() override;

    /// Of all records that ReadAll gave. Afterwards they are known no longer.
    RestById TakeRest();

    /// The document's record differs from the stored one: the list may write it.
    void NoteChange(const std::string& fileId);

    /// Ids of the documents that were noted.
    const std::unordered_set<std::string>& Changed() const;

private:
    const std::shared_ptr<PDF::Cloud::ICloudInfoStorage> storage;
    RestById rest;
    std::unordered_set<std::string> changed;
};

} // namespace Norlis::Host
