#pragma once

#include "FileIdentity.h"

#include <QString>

#include <system_error>

#include <sys/types.h>

namespace Norlis::Files {

/// Renames a file within its file system, in one step. To be used for a new name that nothing else can have.
std::error_code Move(const QString& source, const QString& target);

/// Renames a file within its file system, unless something has the new name already: std::errc::file_exists then. In
/// one step, but for file systems that know neither such a renaming nor second names.
std::error_code MoveUnlessTaken(const QString& source, const QString& target);

/// Renames a file within its file system, in one step. A file at the target is replaced, and its permissions are kept:
/// a private one does not become public by a newer version.
std::error_code MoveReplacing(const QString& source, const QString& target);

/// The same, if what stands at the target is the version that is known, also in the moment in which it is replaced, and
/// no program is about to write to it: std::errc::file_exists otherwise, and everything is as it was. Where names
/// cannot be exchanged, an edit in the microseconds between the look and the renaming goes unseen.
std::error_code MoveReplacing(const QString& source, const QString& target, const FileIdentity& known);

/// Gives each of two files of one file system the name of the other, in one step. Most network drives cannot: the error
/// is then one that IsUnknownCall takes.
std::error_code Exchange(const QString& first, const QString& second);

/// Whether some program has the file open to write to it, so that it may change although it has lost its name. False
/// where the system does not tell: of files of other users, and on network drives.
bool IsOpenForWriting(const QString& path);

/// Whether the file system does not know the call that has failed.
bool IsUnknownCall(const std::error_code& error);

/// Gives an open file the permissions and, if possible, the group of another one, if that is a regular file. By its
/// descriptor: whoever may write to a folder can put a link to somebody's private file in the place of any name there.
std::error_code CopyPermissions(const QString& from, int to);

/// Of an open file or folder. It keeps its own where the user is not in that group.
void ChangeGroup(int descriptor, gid_t group);

} // namespace Norlis::Files
