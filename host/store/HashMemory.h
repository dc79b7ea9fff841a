#pragma once

#include <QString>

#include <memory>
#include <mutex>
#include <string>

namespace Norlis::Host {

/// What tells that a file's content is still the same, without reading it.
struct FileIdentity {
    qint64 device = 0;   ///< st_dev (POSIX)
    qint64 inode = 0;    ///< st_ino (POSIX)
    qint64 size = 0;     ///< bytes
    qint64 modified = 0; ///< nanoseconds since 1970
    qint64 changed = 0;  ///< nanoseconds since 1970; the system sets it at every write, and no program can
};

bool operator==(const FileIdentity& left, const FileIdentity& right);

/// Hashes of files by path, in an SQLite file; the oldest are forgotten when there are too many.
///
/// A cache: nothing throws, and what cannot be stored is hashed again another time. Any thread may use it.
class HashMemory {
public:
    /// \param file opened at the first use. One that is damaged is made anew. One that cannot be opened, or that
    ///             something else is stored in, is left alone and done without. Empty keeps the hashes in memory.
    explicit HashMemory(const QString& file);
    ~HashMemory();

    /// Empty when there is none for the file of this identity.
    std::string Find(const std::string& path, const FileIdentity& identity);

    /// Replaces what was known of the path.
    void Remember(const std::string& path, const FileIdentity& identity, const std::string& hash);

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
