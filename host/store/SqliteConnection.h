#pragma once

#include <QString>

#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace Norlis::Host {

/// What SQLite reported, with its primary result code.
class SqliteError : public std::runtime_error {
public:
    /// \param code primary or extended result code of SQLite
    SqliteError(int code, const std::string& text);

    /// The primary result code, as SQLITE_BUSY.
    int Code() const;

    /// Whether the content of the file is to blame, rather than the disk or another program.
    bool IsDamage() const;

private:
    int code;
};

/// One open SQLite file. Used by one thread at a time; every operation throws SqliteError.
class SqliteConnection {
public:
    /// What a file holds.
    enum class Content {
        None,    ///< the file is empty, or was created just now
        Own,     ///< a database of this application
        Foreign, ///< anything else
    };

    /// Opens the file and creates it, readable for the user alone, when it is missing. An empty name gives a database
    /// in memory. Nothing in an existing file is changed, locked or recovered yet, so that a foreign one stays as it
    /// is.
    SqliteConnection(const QString& file, quint32 applicationId);
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    /// What the file held when it was opened.
    Content InitialContent() const;

    /// Runs SQL statements and drops the rows that they give.
    void Execute(const std::string& statements);

    /// Creates the tables in a database that holds nothing yet. The version of those that are there now.
    qint64 EnsureTables(const std::string& tables, int version);

    /// The single number that a query gives.
    qint64 Number(const char* query);

    /// Whether a transaction was begun and has not ended.
    bool InTransaction() const;

    /// Takes back what the open transaction wrote; nothing happens without one. Does not throw.
    void Rollback();

    /// Keeps closing the connection from writing to the file.
    void SetReadOnlyClose(bool readOnly);

private:
    friend class SqliteStatement;

    Content Inspect(const QByteArray& path) const;
    [[noreturn]] void Throw() const;

    const quint32 applicationId;
    sqlite3* handle = nullptr;
    Content content = Content::None;
};

/// A prepared statement; must not outlive its connection.
class SqliteStatement {
public:
    /// \param text one SQL statement
    SqliteStatement(SqliteConnection& connection, const char* text);
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    /// Binds bytes as they are; they must live until the statement is reset. Indexes start at 1.
    void Bind(int index, const std::string& bytes);

    /// Binds a number. Indexes start at 1.
    void Bind(int index, qint64 number);

    /// True when there is a row. After the last one, and before throwing, the statement is reset.
    bool Step();

    /// Lets the statement begin anew, with what was bound.
    void Reset();

    /// Valid until the next step.
    std::string_view Bytes(int column) const;

    /// Of the row. Columns start at 0.
    qint64 Number(int column) const;

private:
    SqliteConnection& connection;
    sqlite3_stmt* handle = nullptr;
};

} // namespace Norlis::Host
