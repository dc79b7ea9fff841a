#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace Norlis::TestKit {

/// All of these expect success; a failure is a failure of the test.
void WriteFile(const QString& path, const QByteArray& content);
void MakeFolder(const QString& path);

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

} // namespace Norlis::TestKit
