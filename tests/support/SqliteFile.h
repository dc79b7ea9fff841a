#pragma once

#include <QFile>
#include <QString>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace Norlis::Host {

inline QByteArray ContentOf(const QString& file)
{
    QFile device(file);
    return device.open(QFile::ReadOnly) ? device.readAll() : QByteArray();
}

inline void WriteFile(const QString& file, const QByteArray& content)
{
    QFile device(file);
    ASSERT_TRUE(device.open(QFile::WriteOnly | QFile::Truncate)) << device.errorString().toStdString();
    ASSERT_EQ(device.write(content), content.size());
}

/// Runs SQL on a file beside the code under test, as another program would. The first column of the last row.
inline QByteArray RunSql(const QString& file, const QByteArray& sql, bool leaveLog = false)
{
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(file.toUtf8().constData(), &handle), SQLITE_OK);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, leaveLog ? 1 : 0, nullptr);
    QByteArray value;
    const auto keep = [](void* target, int, char** columns, char**) {
        *static_cast<QByteArray*>(target) = columns[0];
        return 0;
    };
    EXPECT_EQ(sqlite3_exec(handle, sql.constData(), keep, &value, nullptr), SQLITE_OK) << sqlite3_errmsg(handle);
    EXPECT_EQ(sqlite3_close(handle), SQLITE_OK);
    return value;
}

} // namespace Norlis::Host
