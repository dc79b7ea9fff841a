#pragma once

#include <contracts/ICloudInfoStorage.h>
#include <host/Export.h>

#include <QString>

#include <memory>
#include <vector>

namespace Norlis::Host {

/// A local copy that no record has room for: the document has gone from the list, or has another local copy there.
struct KeptCopy {
    std::string path;       ///< of the file
    std::string documentId; ///< of the document that it is a copy of
    std::string name;       ///< of that document
    std::string syncHash;   ///< MD5 of the cloud copy when the two were last the same
    qint64 lostAt = 0;      ///< when the document went from the list, in seconds since 1970; 0 while it is there
};

/// The record store in one SQLite file.
///
/// Everything that is written goes into one transaction until Commit: after a crash the file holds the state of the
/// last commit, whole.
///
/// Several programs may have the file open. Each can read at any time, and they take turns at writing. What a program
/// writes as it has read it is left out, so that saving all records takes nothing back that another one has changed
/// since.
class NORLIS_HOST_EXPORT SqliteCloudInfoStorage : public PDF::Cloud::ICloudInfoStorage {
public:
    /// Opens the file and creates it when it is missing. Throws std::runtime_error, saying what is wrong and what to
    /// do, when it is not a record store, is damaged, or was written by a newer version; the file is left as it is
    /// then.
    explicit SqliteCloudInfoStorage(const QString& file);

    /// Commits; what goes wrong then is only logged.
    ~SqliteCloudInfoStorage() override;

    /// Neither throws: the file list calls both from its destructor. After the first failure nothing more is written,
    /// and Commit reports it.
    void RemoveRecord(const std::string& fileId) override;
    void SetValue(const std::string& fileId, const std::string& key, const std::string& value) override;

    /// Throws std::runtime_error when the file cannot be read.
    std::map<std::string, std::map<std::string, std::string>> ReadAll() override;

    /// Throws std::runtime_error when the file cannot be read.
    std::vector<KeptCopy> ReadCopies();

    /// Replaces what was kept of the path; written by Commit.
    void KeepCopy(const KeptCopy& copy);

    /// Written by Commit.
    void DropCopy(const std::string& path);

    /// Makes everything written since the last commit durable, or nothing of it: throws std::runtime_error then, and
    /// the store can be written anew.
    void Commit();

private:
    class Known;
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace Norlis::Host
