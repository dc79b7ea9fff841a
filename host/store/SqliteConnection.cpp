#include "SqliteConnection.h"

#include <QFile>
#include <QtEndian>

#include <sqlite3.h>

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Norlis::Host {

namespace {

/// Creates the file if it is missing, and tells its size. SQLite would create it readable for everybody, would try to
/// work on a pipe, and would take a file of one byte for an empty one.
qint64 EnsureFile(const QByteArray& path)
{
    const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file >= 0) {
        ::close(file);
        return 0;
    }
    struct stat status {};
    if (errno != EEXIST || ::stat(path.constData(), &status) != 0) {
        throw SqliteError(SQLITE_CANTOPEN, std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        throw SqliteError(SQLITE_CANTOPEN, "it is not a regular file");
    }
    return status.st_size;
}

/// 0 for a file that is not there.
qint64 SizeOf(const QByteArray& path)
{
    struct stat status {};
    return ::stat(path.constData(), &status) == 0 ? status.st_size : 0;
}

} // namespace

SqliteError::SqliteError(int code, const std::string& text) : std::runtime_error(text), code(code & 0xff) {}

int SqliteError::Code() const
{
    return code;
}

bool SqliteError::IsDamage() const
{
    // A generic error comes from a statement that does not fit the tables of the file.
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB || code == SQLITE_ERROR;
}

SqliteConnection::SqliteConnection(const QString& file, quint32 applicationId) : applicationId(applicationId)
{
    // No name of a file may be taken for one of SQLite's special ones.
    QByteArray path = file.isEmpty() ? QByteArray(":memory:") : QFile::encodeName(file);
    qint64 size = 0;
    if (!file.isEmpty()) {
        if (!path.startsWith('/')) {
            path.prepend("./");
        }
        size = EnsureFile(path);
    }
    const int code = sqlite3_open_v2(path.constData(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    try {
        if (code != SQLITE_OK) {
            Throw();
        }
        if (sqlite3_db_readonly(handle, "main") == 1) {
            throw SqliteError(SQLITE_READONLY, std::strerror(EACCES));
        }
        if (size > 0) {
            content = Inspect(path);
        }
    } catch (...) {
        sqlite3_close(handle);
        throw;
    }
}

SqliteConnection::~SqliteConnection()
{
    sqlite3_close(handle);
}

SqliteConnection::Content SqliteConnection::InitialContent() const
{
    return content;
}

void SqliteConnection::Execute(const std::string& statements)
{
    if (sqlite3_exec(handle, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        Throw();
    }
}

qint64 SqliteConnection::EnsureTables(const std::string& tables, int version)
{
    const auto isNew = [this] { return Number("PRAGMA application_id") == 0; };
    if (isNew()) { // asked without a lock, because nobody who reads shall wait for another program that writes
        Execute("BEGIN EXCLUSIVE");
        if (isNew()) {
            Execute(tables + "; PRAGMA application_id = " + std::to_string(applicationId) +
                    "; PRAGMA user_version = " + std::to_string(version));
        }
        Execute("COMMIT");
    }
    return Number("PRAGMA user_version");
}

qint64 SqliteConnection::Number(const char* query)
{
    SqliteStatement statement(*this, query);
    return statement.Step() ? statement.Number(0) : 0;
}

bool SqliteConnection::InTransaction() const
{
    return sqlite3_get_autocommit(handle) == 0;
}

void SqliteConnection::Rollback()
{
    // SQLite has rolled back by itself after some errors.
    if (InTransaction()) {
        sqlite3_exec(handle, "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void SqliteConnection::SetReadOnlyClose(bool readOnly)
{
    sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, readOnly ? 1 : 0, nullptr);
}

SqliteConnection::Content SqliteConnection::Inspect(const QByteArray& path) const
{
    // Read below SQL, which would first recover what another program left unfinished. Opening the file once more would
    // be worse: closing it would drop all locks that this process holds on it.
    sqlite3_file* file = nullptr;
    sqlite3_file_control(handle, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    std::array<unsigned char, 100> header{};
    const int code = file->pMethods->xRead(file, header.data(), static_cast<int>(header.size()), 0);
    if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ) {
        throw SqliteError(code, sqlite3_errstr(code));
    }
    constexpr char magic[] = "SQLite format 3";
    constexpr std::size_t applicationIdAt = 68;
    if (std::memcmp(header.data(), magic, sizeof(magic)) != 0 ||
        qFromBigEndian<quint32>(header.data() + applicationIdAt) != applicationId) {
        return Content::Foreign;
    }
    // SQLite fills the rest of a last page that was cut off with zeros, and finds empty values there. While there is a
    // log, it may hold that page whole.
    constexpr std::size_t pageSizeAt = 16;
    const qint64 pageSize = qFromBigEndian<quint16>(header.data() + pageSizeAt);
    qint64 size = 0;
    file->pMethods->xFileSize(file, &size);
    if (pageSize > 1 && size % pageSize != 0 && SizeOf(path + "-wal") == 0 && SizeOf(path + "-journal") == 0) {
        throw SqliteError(SQLITE_CORRUPT, "its last page is not whole");
    }
    return Content::Own;
}

void SqliteConnection::Throw() const
{
    std::string text = sqlite3_errmsg(handle);
    const int code = sqlite3_errcode(handle) & 0xff;
    const int systemError = sqlite3_system_errno(handle);
    if ((code == SQLITE_CANTOPEN || code == SQLITE_IOERR) && systemError != 0) {
        text = std::strerror(systemError);
    }
    throw SqliteError(code, text);
}

SqliteStatement::SqliteStatement(SqliteConnection& connection, const char* text) : connection(connection)
{
    if (sqlite3_prepare_v3(connection.handle, text, -1, SQLITE_PREPARE_PERSISTENT, &handle, nullptr) != SQLITE_OK) {
        connection.Throw();
    }
}

SqliteStatement::~SqliteStatement()
{
    sqlite3_finalize(handle);
}

void SqliteStatement::Bind(int index, const std::string& bytes)
{
    // A blob, because text with a zero byte in it has no defined order in SQLite.
    if (sqlite3_bind_blob64(handle, index, bytes.data(), bytes.size(), SQLITE_STATIC) != SQLITE_OK) {
        connection.Throw();
    }
}

void SqliteStatement::Bind(int index, qint64 number)
{
    if (sqlite3_bind_int64(handle, index, number) != SQLITE_OK) {
        connection.Throw();
    }
}

bool SqliteStatement::Step()
{
    const int code = sqlite3_step(handle);
    if (code == SQLITE_ROW) {
        return true;
    }
    Reset();
    if (code != SQLITE_DONE) {
        connection.Throw(); // the reset keeps the error of the step
    }
    return false;
}

void SqliteStatement::Reset()
{
    sqlite3_reset(handle);
}

std::string_view SqliteStatement::Bytes(int column) const
{
    // SQLite gives a null pointer for no bytes.
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(handle, column));
    return bytes ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle, column)))
                 : std::string_view();
}

qint64 SqliteStatement::Number(int column) const
{
    return sqlite3_column_int64(handle, column);
}

} // namespace Norlis::Host
