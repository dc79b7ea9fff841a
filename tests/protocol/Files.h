#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace Norlis::Test {

/// All of these expect success; a failure is a failure of the test.
void WriteFile(const QString& path, const QByteArray& content);
void MakeFolder(const QString& path);
void RemoveFolder(const QString& path);

/// A file of that many zero bytes that takes no space on the disk.
void WriteSparseFile(const QString& path, qint64 size);

void MakeLink(const QString& target, const QString& path);
void MakeNamedPipe(const QString& path);

/// Nothing when there is no such file.
std::optional<QByteArray> ReadFile(const QString& path);

/// Hexadecimal, lower case.
QString Md5Of(const QByteArray& content);

/// Paths, relative to a folder and sorted, of everything below it that is not a folder, hidden things included.
QStringList FilesBelow(const QString& folder);

/// Drops the privileges of the process, if it has any, while this exists: nothing is forbidden to root.
class WithoutPrivileges {
public:
    /// \param folders that everybody may enter from now on
    explicit WithoutPrivileges(const QStringList& folders);
    ~WithoutPrivileges();

    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    bool areDropped = false;
};

/// Makes a folder read-only, except for root, while this exists.
class WithoutWriting {
public:
    explicit WithoutWriting(const QString& folder);
    ~WithoutWriting();

    WithoutWriting(const WithoutWriting&) = delete;
    WithoutWriting& operator=(const WithoutWriting&) = delete;

private:
    const QByteArray path;
};

} // namespace Norlis::Test
