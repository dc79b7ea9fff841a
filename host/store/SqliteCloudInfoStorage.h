#pragma once

#include <contracts/ICloudInfoStorage.h>

#include <QString>

#include <memory>

namespace Norlis::Host {

/// The record store in one SQLite file.
///
/// Everything that is written goes into one transaction until Commit: after a crash the file holds the state of the
/// last commit, whole. The file is locked for as long as the object lives, so two programs never overwrite each other's
/// records.
class SqliteCloudInfoStorage : public PDF::Cloud::ICloudInfoStorage {
public:
    /// Opens the file and creates it when it is missing. Throws std::runtime_error, saying what is wrong and what to
    /// do, when it is in use by another program, is not a record store, is damaged, or was written by a newer version;
    /// the file is left as it is then.
    explicit SqliteCloudInfoStorage(const QString& file);

    /// Commits; what goes wrong then is only logged.
    ~SqliteCloudInfoStorage() override;

    /// Neither throws: the file list calls both from its destructor. After the first failure nothing more is written,
    /// and Commit reports it.
    void RemoveRecord(const std::string& fileId) override;
    void SetValue(const std::string& fileId, const std::string& key, const std::string& value) override;

    /// Throws std::runtime_error when the file cannot be read.
    std::map<std::string, std::map<std::string, std::string>> ReadAll() override;

    /// Makes everything written since the last commit durable, or nothing of it: throws std::runtime_error then, and
    /// the store can be written anew.
    void Commit();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace Norlis::Host
