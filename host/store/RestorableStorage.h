#pragma once

#include <contracts/ICloudInfoStorage.h>

#include <QtGlobal>

#include <map>
#include <memory>
#include <string>

namespace Norlis::Host {

/// A record store as the file list can read it back.
///
/// The list writes the size of any document but refuses to start over one of more than 32 bits, and over a number that
/// is damaged. Such fields are left out of what is read; the next refresh brings them. Used on one thread.
///
/// A size that is sound and only too large for the list is known here.
class RestorableStorage : public PDF::Cloud::ICloudInfoStorage {
public:
    /// \param storage where records are kept; shared
    explicit RestorableStorage(const std::shared_ptr<PDF::Cloud::ICloudInfoStorage>& storage);

    void RemoveRecord(const std::string& fileId) override;
    void SetValue(const std::string& fileId, const std::string& key, const std::string& value) override;
    std::map<std::string, std::map<std::string, std::string>> ReadAll() override;

    /// In bytes, by document id: those that ReadAll left out.
    const std::map<std::string, quint64>& LargeSizes() const;

private:
    const std::shared_ptr<PDF::Cloud::ICloudInfoStorage> storage;
    std::map<std::string, quint64> largeSizes;
};

} // namespace Norlis::Host
