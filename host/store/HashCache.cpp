#include "HashCache.h"

#include "SqliteConnection.h"

#include <QFile>

#include <glog/logging.h>
#include <sqlite3.h>

#include <cstdio>

namespace Norlis::Host {

namespace {

constexpr quint32 applicationId = 0x4E524C48; // "NRLH", in the header of every cache file
constexpr int formatVersion = 1;
constexpr qint64 maxHashes = 100'000;
constexpr std::size_t hashLength = 32;

constexpr auto tables = "CREATE TABLE hashes (number INTEGER PRIMARY KEY, path BLOB NOT NULL UNIQUE, device INTEGER, "
                        "inode INTEGER, size INTEGER, modified INTEGER, changed INTEGER, hash BLOB NOT NULL)";

std::unique_ptr<SqliteConnection> Connect(const QString& file)
{
    auto connection = std::make_unique<SqliteConnection>(file, applicationId);
    if (connection->InitialContent() == SqliteConnection::Content::Foreign) {
        throw std::runtime_error("something else is stored in it");
    }
    connection->Execute("PRAGMA busy_timeout = 100");
    if (connection->EnsureTables(tables, formatVersion) != formatVersion) {
        throw SqliteError(SQLITE_CORRUPT, "another version wrote it");
    }
    // After a power failure the last hashes may be missing: cheaper than waiting for the disk at each one.
    connection->Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
    // Hashes are looked up one here, one there, for as long as a program runs: pages of all of them would only fill up
    // memory.
    connection->Execute("PRAGMA cache_size = -256"); // KiB
    return connection;
}

void RemoveDatabase(const QString& file)
{
    for (const auto* suffix : {"", "-wal", "-shm", "-journal"}) {
        std::remove((QFile::encodeName(file) + suffix).constData());
    }
}

} // namespace

struct HashCache::Database {
    explicit Database(const QString& file)
        : isFile(!file.isEmpty()),
          connection(Connect(file)),
          find(*connection, "SELECT device, inode, size, modified, changed, hash FROM hashes WHERE path = ?1"),
          store(*connection, "INSERT OR REPLACE INTO hashes (path, device, inode, size, modified, changed, hash) "
                             "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)"),
          // Numbers ascend with every hash that is stored, so the lowest are the oldest.
          trim(*connection, "DELETE FROM hashes WHERE number <= (SELECT max(number) FROM hashes) - ?1")
    {
    }

    const bool isFile;
    std::unique_ptr<SqliteConnection> connection;
    SqliteStatement find;
    SqliteStatement store;
    SqliteStatement trim;
};

HashCache::HashCache(const QString& file) : file(file) {}

HashCache::~HashCache()
{
    Flush();
}

std::string HashCache::Find(const std::string& path, const Files::FileIdentity& identity)
{
    {
        const std::lock_guard lock(mutex);
        const auto fresh = unwritten.hashes.find(path);
        if (fresh != unwritten.hashes.end()) {
            return fresh->second.identity == identity ? fresh->second.hash : std::string();
        }
    }
    std::string hash;
    Use([&] {
        auto& find = database->find;
        find.Bind(1, path);
        if (find.Step()) {
            const Files::FileIdentity known{static_cast<quint64>(find.Number(0)), static_cast<quint64>(find.Number(1)),
                                            find.Number(2), find.Number(3), find.Number(4)};
            if (known == identity && find.Bytes(5).size() == hashLength) {
                hash = find.Bytes(5);
            }
            find.Reset();
        }
    });
    return hash;
}

void HashCache::Store(const std::string& path, const Files::FileIdentity& identity, const std::string& hash)
{
    constexpr std::size_t maxUnwritten = 1'000;
    std::size_t count = 0;
    {
        const std::lock_guard lock(mutex);
        if (unwritten.hashes.insert_or_assign(path, Hash{identity, hash}).second) {
            unwritten.order.push_back(path);
        }
        count = unwritten.order.size();
    }
    if (count >= maxUnwritten) {
        Flush();
    }
}

void HashCache::Flush()
{
    Unwritten stored;
    {
        const std::lock_guard lock(mutex);
        std::swap(stored, unwritten);
    }
    if (!stored.order.empty()) {
        Use([&] { Write(stored); }); // what cannot be written is hashed again another time
    }
}

void HashCache::Write(const Unwritten& stored)
{
    database->connection->Execute("BEGIN IMMEDIATE");
    try {
        auto& store = database->store;
        for (const auto& path : stored.order) {
            const auto& known = stored.hashes.at(path);
            store.Bind(1, path);
            store.Bind(2, static_cast<qint64>(known.identity.device));
            store.Bind(3, static_cast<qint64>(known.identity.inode));
            store.Bind(4, known.identity.size);
            store.Bind(5, known.identity.modifiedNanoseconds);
            store.Bind(6, known.identity.changedNanoseconds);
            store.Bind(7, known.hash);
            store.Step();
        }
        database->trim.Bind(1, maxHashes);
        database->trim.Step();
        database->connection->Execute("COMMIT");
    } catch (const SqliteError&) {
        database->connection->Rollback();
        throw;
    }
}

template <typename Operation>
void HashCache::Use(const Operation& operation)
{
    const std::lock_guard lock(mutex);
    try {
        if (!database) {
            database = Open();
        }
        operation();
    } catch (const SqliteError& error) {
        LOG(WARNING) << "The hash of a file was not cached: " << error.what();
        if (error.IsDamage() && database && database->isFile) {
            database.reset();
            RemoveDatabase(file);
        }
    }
}

std::unique_ptr<HashCache::Database> HashCache::Open()
{
    try {
        try {
            return std::make_unique<Database>(file);
        } catch (const SqliteError& error) {
            if (!error.IsDamage()) {
                throw;
            }
            RemoveDatabase(file);
            return std::make_unique<Database>(file);
        }
    } catch (const std::exception& error) {
        LOG(WARNING) << "Hashes of files are cached in memory only: " << file.toStdString() << ": " << error.what();
        return std::make_unique<Database>(QString());
    }
}

} // namespace Norlis::Host
