#include "SqliteCloudInfoStorage.h"

#include "SqliteConnection.h"

#include <QtEndian>

#include <glog/logging.h>
#include <sqlite3.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace Norlis::Host {

namespace {

constexpr quint32 applicationId = 0x4E524C53; // "NRLS", in the header of every record store
constexpr int formatVersion = 1;
constexpr int lockTimeout = 10'000; // milliseconds; in which another program saves any list

// Blobs keep the bytes as they are and sort like std::string. A row for each record, not for each field: there are
// ten times as many of those.
constexpr auto tables = "CREATE TABLE records (file_id BLOB NOT NULL PRIMARY KEY, fields BLOB NOT NULL) WITHOUT ROWID";

// Made when the first one is kept. Versions that do not know it leave it alone.
constexpr auto copiesTable =
    "CREATE TABLE IF NOT EXISTS copies (path BLOB NOT NULL PRIMARY KEY, file_id BLOB NOT NULL, name BLOB NOT NULL, "
    "hash BLOB NOT NULL, lost_at INTEGER NOT NULL) WITHOUT ROWID";

/// What went wrong with the file and what the user can do, on one line.
std::runtime_error Problem(const QString& file, const QString& what, const QString& advice)
{
    return std::runtime_error(QStringLiteral("The document list \"%1\" %2. %3.").arg(file, what, advice).toStdString());
}

std::runtime_error Problem(const QString& file, const SqliteError& error)
{
    const QString reason = QString::fromUtf8(error.what());
    if (error.IsDamage()) {
        return Problem(file, QStringLiteral("is damaged (%1)").arg(reason),
                       "Move it away; the documents will then be listed again from the cloud");
    }
    switch (error.Code()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return Problem(file, "is being written by another program", "Wait until that is done and try again");
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

/// The connection to the file, with the table in it.
std::unique_ptr<SqliteConnection> Open(const QString& file, const std::string& lockingMode)
{
    auto connection = std::make_unique<SqliteConnection>(file, applicationId);
    if (connection->InitialContent() == SqliteConnection::Content::Foreign) {
        throw Problem(file, "cannot be opened: it is not a document list", "Move it away or choose another folder");
    }
    connection->SetReadOnlyClose(true); // until it is clear that this version may write to the file
    connection->Execute("PRAGMA busy_timeout = " + std::to_string(lockTimeout) +
                        "; PRAGMA locking_mode = " + lockingMode + "; PRAGMA synchronous = FULL");
    if (connection->EnsureTables(tables, formatVersion) > formatVersion) {
        throw Problem(file, "was written by a newer version of this program", "Update this program");
    }
    // Only now: the log would hold back the header that tells whose file it is.
    connection->Execute("PRAGMA journal_mode = WAL");
    connection->SetReadOnlyClose(false);
    return connection;
}

std::unique_ptr<SqliteConnection> Open(const QString& file)
{
    if (file.isEmpty()) {
        throw Problem(file, "has no file name", "Choose a file for it");
    }
    try {
        return Open(file, "NORMAL");
    } catch (const SqliteError& error) {
        if (error.Code() != SQLITE_IOERR) {
            throw;
        }
        // Programs that share the file need another one in its folder, for which there may be no room. Without it one
        // program at a time can read.
        return Open(file, "EXCLUSIVE");
    }
}

using Fields = std::map<std::string, std::string>;

void AppendText(std::string& bytes, const std::string& text)
{
    const quint32 length = qToBigEndian(static_cast<quint32>(text.size()));
    bytes.append(reinterpret_cast<const char*>(&length), sizeof(length));
    bytes.append(text);
}

/// Takes the text off that the bytes begin with. Throws SqliteError when there is none.
std::string_view TakeText(std::string_view& bytes)
{
    quint32 length = sizeof(length);
    if (bytes.size() >= length) {
        length = qFromBigEndian<quint32>(bytes.data());
        bytes.remove_prefix(sizeof(length));
    }
    if (bytes.size() < length) {
        throw SqliteError(SQLITE_CORRUPT, "a record is not whole");
    }
    const std::string_view text = bytes.substr(0, length);
    bytes.remove_prefix(length);
    return text;
}

/// As docs/record-format.md says.
std::string Encoded(const Fields& fields)
{
    std::string bytes;
    for (const auto& [key, value] : fields) {
        AppendText(bytes, key);
        AppendText(bytes, value);
    }
    return bytes;
}

Fields Decoded(std::string_view bytes)
{
    Fields fields;
    while (!bytes.empty()) {
        const std::string_view key = TakeText(bytes);
        fields.emplace_hint(fields.end(), key, TakeText(bytes));
    }
    return fields;
}

} // namespace

/// What this program has last read or written, to tell what it changes. Values are known by their hash values, so that
/// the texts of all records are not held twice.
class SqliteCloudInfoStorage::Known {
public:
    bool HasRecord(const std::string& id) const
    {
        return records.count(id) != 0;
    }

    bool HasValue(const std::string& id, const std::string& key, const std::string& value) const
    {
        const auto record = records.find(id);
        return record != records.end() && std::find(record->second.begin(), record->second.end(),
                                                    Field{hash(key), hash(value)}) != record->second.end();
    }

    void Note(const std::string& id, const std::string& key, const std::string& value)
    {
        auto& fields = records[id];
        const auto found =
            std::find_if(fields.begin(), fields.end(), [&](const Field& field) { return field.first == hash(key); });
        if (found != fields.end()) {
            found->second = hash(value);
        } else {
            fields.emplace_back(hash(key), hash(value));
        }
    }

    void Forget(const std::string& id)
    {
        records.erase(id);
    }

    void Clear()
    {
        records.clear();
    }

private:
    using Field = std::pair<std::size_t, std::size_t>; // key and value

    std::hash<std::string> hash;
    std::unordered_map<std::string, std::vector<Field>> records;
};

class SqliteCloudInfoStorage::Private {
public:
    explicit Private(const QString& file)
        : file(file),
          connection(Open(file)),
          remove(*connection, "DELETE FROM records WHERE file_id = ?1"),
          read(*connection, "SELECT fields FROM records WHERE file_id = ?1"),
          write(*connection, "INSERT OR REPLACE INTO records (file_id, fields) VALUES (?1, ?2)"),
          readAll(*connection, "SELECT file_id, fields FROM records ORDER BY file_id")
    {
        readAll.Step(); // reads the first pages, which shows most kinds of damage
        readAll.Reset();
    }

    /// Does something inside the transaction, which is begun as late as possible: other programs wait for its end.
    template <typename Operation>
    void Write(const Operation& operation)
    {
        if (failure) {
            return;
        }
        try {
            if (!connection->InTransaction()) {
                connection->Execute("BEGIN IMMEDIATE");
                for (const auto& id : removed) {
                    Run(remove, id);
                }
            }
            operation();
        } catch (const SqliteError& error) {
            failure = Problem(file, error);
            Rollback();
        }
    }

    /// Runs a statement. Afterwards it holds no reference to what was bound.
    template <typename... Values>
    static void Run(SqliteStatement& statement, const Values&... values)
    {
        int index = 0;
        (statement.Bind(++index, values), ...);
        statement.Step();
    }

    /// Writes what was set of a record.
    void Flush();
    void WriteChange();
    void WriteCopies();

    void Rollback()
    {
        connection->Rollback();
        EndTransaction();
        known.Clear(); // the next save writes everything
    }

    void EndTransaction()
    {
        removed.clear();
        added.clear();
        change.clear();
        copies.clear();
    }

    QString file;
    std::unique_ptr<SqliteConnection> connection;
    SqliteStatement remove;
    SqliteStatement read;
    SqliteStatement write;
    SqliteStatement readAll;
    std::optional<std::runtime_error> failure; ///< the first one since the last commit
    Known known;

    // Since the last commit.
    std::set<std::string> removed; ///< records, before the transaction began
    std::unordered_set<std::string> added;
    std::string changedId;                                 ///< of the record to which the change belongs
    Fields change;                                         ///< what was set and is not written yet
    std::map<std::string, std::optional<KeptCopy>> copies; ///< by path; none for one that is dropped
};

void SqliteCloudInfoStorage::Private::Flush()
{
    if (!change.empty()) {
        Write([this] { WriteChange(); });
        change.clear();
    }
}

void SqliteCloudInfoStorage::Private::WriteChange()
{
    read.Bind(1, changedId);
    const bool isStored = read.Step();
    const std::string before(isStored ? read.Bytes(0) : std::string_view());
    read.Reset();
    const bool isAdded = added.count(changedId) != 0;
    if (!isStored && !isAdded) {
        return; // another program has removed it, and a part of a record would be none
    }
    Fields fields = Decoded(before);
    for (const auto& [key, value] : change) {
        // Another program may have added the record too, and know more of it: what is empty says nothing.
        if (!isAdded || !value.empty() || fields.count(key) == 0) {
            fields[key] = value;
        }
    }
    const std::string after = Encoded(fields);
    if (after != before) {
        Run(write, changedId, after);
    }
}

void SqliteCloudInfoStorage::Private::WriteCopies()
{
    connection->Execute(copiesTable);
    SqliteStatement keep(*connection, "INSERT OR REPLACE INTO copies (path, file_id, name, hash, lost_at) "
                                      "VALUES (?1, ?2, ?3, ?4, ?5)");
    SqliteStatement drop(*connection, "DELETE FROM copies WHERE path = ?1");
    for (const auto& [path, copy] : copies) {
        if (copy) {
            Run(keep, path, copy->documentId, copy->name, copy->syncHash, copy->lostAt);
        } else {
            Run(drop, path);
        }
    }
}

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
    d->known.Forget(fileId);
    d->Flush();
    if (d->connection->InTransaction()) {
        d->Write([&] { d->Run(d->remove, fileId); });
    } else {
        d->removed.insert(fileId);
    }
}

void SqliteCloudInfoStorage::SetValue(const std::string& fileId, const std::string& key, const std::string& value)
{
    if (d->known.HasValue(fileId, key, value)) {
        return;
    }
    if (d->changedId != fileId) {
        d->Flush();
        d->changedId = fileId;
    }
    if (!d->known.HasRecord(fileId)) {
        d->added.insert(fileId);
    }
    d->change[key] = value;
    d->known.Note(fileId, key, value);
}

std::map<std::string, std::map<std::string, std::string>> SqliteCloudInfoStorage::ReadAll()
{
    d->Flush();
    std::map<std::string, Fields> records;
    d->known.Clear();
    try {
        while (d->readAll.Step()) {
            const std::string id(d->readAll.Bytes(0));
            if (d->removed.count(id) != 0 && !d->connection->InTransaction()) {
                continue;
            }
            const auto record = records.emplace_hint(records.end(), id, Decoded(d->readAll.Bytes(1)));
            for (const auto& [key, value] : record->second) {
                d->known.Note(id, key, value);
            }
        }
    } catch (const SqliteError& error) {
        throw Problem(d->file, error);
    }
    return records;
}

std::vector<KeptCopy> SqliteCloudInfoStorage::ReadCopies()
{
    std::vector<KeptCopy> copies;
    try {
        if (d->connection->Number("SELECT count(*) FROM sqlite_master WHERE name = 'copies'") == 0) {
            return copies;
        }
        SqliteStatement read(*d->connection, "SELECT path, file_id, name, hash, lost_at FROM copies");
        while (read.Step()) {
            const auto text = [&read](int column) { return std::string(read.Bytes(column)); };
            copies.push_back({text(0), text(1), text(2), text(3), read.Number(4)});
        }
    } catch (const SqliteError& error) {
        throw Problem(d->file, error);
    }
    return copies;
}

void SqliteCloudInfoStorage::KeepCopy(const KeptCopy& copy)
{
    d->copies[copy.path] = copy;
}

void SqliteCloudInfoStorage::DropCopy(const std::string& path)
{
    d->copies[path].reset();
}

void SqliteCloudInfoStorage::Commit()
{
    d->Flush();
    if (!d->copies.empty()) {
        d->Write([this] { d->WriteCopies(); });
    } else if (!d->removed.empty()) {
        d->Write([] {});
    }
    if (const auto failure = std::exchange(d->failure, std::nullopt)) {
        throw *failure;
    }
    if (!d->connection->InTransaction()) {
        return;
    }
    try {
        d->connection->Execute("COMMIT");
        d->EndTransaction();
    } catch (const SqliteError& error) {
        d->Rollback();
        throw Problem(d->file, error);
    }
}

} // namespace Norlis::Host
