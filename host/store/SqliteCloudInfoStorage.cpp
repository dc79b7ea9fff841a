#include "SqliteCloudInfoStorage.h"

#include "SqliteConnection.h"

#include <glog/logging.h>
#include <sqlite3.h>

#include <optional>

namespace Norlis::Host {

namespace {

constexpr quint32 applicationId = 0x4E524C53; // "NRLS", in the header of every record store
constexpr int formatVersion = 1;
constexpr int lockTimeout = 1000; // milliseconds

// Blobs keep the bytes as they are and sort like std::string.
constexpr auto tables = "CREATE TABLE records (file_id BLOB NOT NULL, key BLOB NOT NULL, value BLOB NOT NULL, "
                        "PRIMARY KEY (file_id, key)) WITHOUT ROWID";

/// What went wrong with the file and what the user can do, on one line.
std::runtime_error Problem(const QString& file, const std::string& what, const std::string& advice)
{
    return std::runtime_error("The document list \"" + file.toStdString() + "\" " + what + ". " + advice + ".");
}

std::runtime_error Problem(const QString& file, const SqliteError& error)
{
    const std::string reason = error.what();
    if (error.IsDamage()) {
        return Problem(file, "is damaged (" + reason + ")",
                       "Move it away; the documents will then be listed again from the cloud");
    }
    switch (error.Code()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return Problem(file, "is in use by another program", "Close that program and try again");
    case SQLITE_FULL:
        return Problem(file, "could not be saved: the disk is full", "Free some space and try again");
    case SQLITE_CANTOPEN:
        return Problem(file, "cannot be opened: " + reason,
                       "Check that its folder exists and that you may write to it");
    case SQLITE_READONLY:
        return Problem(file, "cannot be written: " + reason, "Check the permissions of the file and its folder");
    case SQLITE_TOOBIG:
        return Problem(file, "could not be saved: a text is too long", "Remove the document that it belongs to");
    default:
        return Problem(file, "cannot be read or written: " + reason, "Check the disk and try again");
    }
}

/// The connection to the file, locked, with the table in it.
std::unique_ptr<SqliteConnection> Open(const QString& file)
{
    if (file.isEmpty()) {
        throw Problem(file, "has no file name", "Choose a file for it");
    }
    auto connection = std::make_unique<SqliteConnection>(file, applicationId);
    if (connection->InitialContent() == SqliteConnection::Content::Foreign) {
        throw Problem(file, "cannot be opened: it is not a document list", "Move it away or choose another folder");
    }
    connection->SetReadOnlyClose(true); // until it is clear that this version may write to the file
    connection->Execute("PRAGMA busy_timeout = " + std::to_string(lockTimeout) +
                        "; PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = FULL");
    if (connection->EnsureTables(tables, formatVersion) > formatVersion) {
        throw Problem(file, "was written by a newer version of this program", "Update this program");
    }
    // Only now: the log would hold back the header that tells whose file it is.
    connection->Execute("PRAGMA journal_mode = WAL");
    connection->SetReadOnlyClose(false);
    return connection;
}

} // namespace

class SqliteCloudInfoStorage::Private {
public:
    explicit Private(const QString& file)
        : file(file),
          connection(Open(file)),
          remove(*connection, "DELETE FROM records WHERE file_id = ?1"),
          // Most values stand there already, and passing them over is faster than writing them again.
          set(*connection, "INSERT INTO records (file_id, key, value) VALUES (?1, ?2, ?3) "
                           "ON CONFLICT DO UPDATE SET value = excluded.value WHERE value <> excluded.value"),
          readAll(*connection, "SELECT file_id, key, value FROM records ORDER BY file_id, key")
    {
        readAll.Step(); // reads the first pages, which shows most kinds of damage
        readAll.Reset();
    }

    /// Runs a statement that writes, inside the transaction. Afterwards it holds no reference to what was bound.
    template <typename... Bytes>
    void Write(SqliteStatement& statement, const Bytes&... bytes)
    {
        if (failure) {
            return;
        }
        try {
            if (!connection->InTransaction()) {
                connection->Execute("BEGIN IMMEDIATE");
            }
            int index = 0;
            (statement.Bind(++index, bytes), ...);
            statement.Step();
        } catch (const SqliteError& error) {
            failure = Problem(file, error);
            connection->Rollback();
        }
    }

    QString file;
    std::unique_ptr<SqliteConnection> connection;
    SqliteStatement remove;
    SqliteStatement set;
    SqliteStatement readAll;
    std::optional<std::runtime_error> failure; ///< the first one since the last commit
};

SqliteCloudInfoStorage::SqliteCloudInfoStorage(const QString& file)
try : d(std::make_unique<Private>(file)) {
} catch (const SqliteError& error) {
    throw Problem(file, error);
}

SqliteCloudInfoStorage::~SqliteCloudInfoStorage()
{
    try {
        Commit();
    } catch (const std::exception& error) {
        LOG(ERROR) << error.what();
    }
}

void SqliteCloudInfoStorage::RemoveRecord(const std::string& fileId)
{
    d->Write(d->remove, fileId);
}

void SqliteCloudInfoStorage::SetValue(const std::string& fileId, const std::string& key, const std::string& value)
{
    d->Write(d->set, fileId, key, value);
}

std::map<std::string, std::map<std::string, std::string>> SqliteCloudInfoStorage::ReadAll()
{
    std::map<std::string, std::map<std::string, std::string>> records;
    auto record = records.end();
    try {
        // The rows come sorted, so that every field belongs to the end of the last record or begins a new one.
        while (d->readAll.Step()) {
            const auto id = d->readAll.Bytes(0);
            if (record == records.end() || record->first != id) {
                record = records.emplace_hint(records.end(), id, std::map<std::string, std::string>());
            }
            auto& fields = record->second;
            fields.emplace_hint(fields.end(), d->readAll.Bytes(1), d->readAll.Bytes(2));
        }
    } catch (const SqliteError& error) {
        throw Problem(d->file, error);
    }
    return records;
}

void SqliteCloudInfoStorage::Commit()
{
    if (const auto failure = std::exchange(d->failure, std::nullopt)) {
        throw *failure;
    }
    if (!d->connection->InTransaction()) {
        return;
    }
    try {
        d->connection->Execute("COMMIT");
    } catch (const SqliteError& error) {
        d->connection->Rollback();
        throw Problem(d->file, error);
    }
}

} // namespace Norlis::Host
