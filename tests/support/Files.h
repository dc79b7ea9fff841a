#pragma once

#include <testkit/contract/Files.h>

namespace Norlis::Test {

using TestKit::FilesBelow;
using TestKit::MakeFolder;
using TestKit::MakeLink;
using TestKit::MakeNamedPipe;
using TestKit::Md5Of;
using TestKit::ReadFile;
using TestKit::WriteFile;
using TestKit::WriteSparseFile;

constexpr qint64 MiB = 1024 * 1024;

/// Expects success; a failure is a failure of the test.
void RemoveFolder(const QString& path);

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
