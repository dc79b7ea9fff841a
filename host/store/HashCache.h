#pragma once

#include <files/FileIdentity.h>

#include <QString>

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

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

    /// Replaces what was known of the path. Written to the file with the others that come before the next Flush.
    void Store(const std::string& path, const Files::FileIdentity& identity, const std::string& hash);

    /// Writes what was stored, in one transaction; destruction does so too.
    void Flush();

private:
    struct Database;
    struct Hash {
        Files::FileIdentity identity;
        std::string hash;
    };
    struct Unwritten {
        std::unordered_map<std::string, Hash> hashes; ///< by path
        std::vector<std::string> order;               ///< their paths, the oldest first
    };

    template <typename Operation>
    void Use(const Operation& operation);
    std::unique_ptr<Database> Open();

    void Write(const Unwritten& stored);

    const QString file;
    std::mutex mutex; ///< guards what follows
    std::unique_ptr<Database> database;
    Unwritten unwritten;
};

} // namespace Norlis::Host
