#pragma once

#include <files/FileIdentity.h>

#include <QString>

#include <memory>
#include <mutex>
#include <string>

namespace Norlis::Host {

/// Hashes of files by path, in an SQLite file; the oldest are dropped when there are too many.
///
/// Nothing throws, and what cannot be stored is hashed again another time. Any thread may use it.
class HashCache {
public:
    /// \param file opened at the first use. One that is damaged is made anew. One that cannot be opened, or in which
    ///             something else is stored, is left alone and done without. Empty keeps the hashes in memory.
    explicit HashCache(const QString& file);
    ~HashCache();

    /// Empty when there is none for the file of this identity.
    std::string Find(const std::string& path, const Files::FileIdentity& identity);

    /// Replaces what was known of the path.
    void Store(const std::string& path, const Files::FileIdentity& identity, const std::string& hash);

private:
    struct Database;

    template <typename Operation>
    void Use(const Operation& operation);
    std::unique_ptr<Database> Open();

    const QString file;
    std::mutex mutex; ///< guards the database
    std::unique_ptr<Database> database;
};

} // namespace Norlis::Host
