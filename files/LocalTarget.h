#pragma once

#include "AtomicFile.h"
#include "FileIdentity.h"

#include <QString>

#include <optional>

namespace Norlis::Files {

/// Why a download cannot be written to a path, and what to do about it. Both are for the user.
struct TargetProblem {
    QString reason;           ///< without a full stop
    QString advice;           ///< a sentence; empty when there is nothing to say
    bool isNameTaken = false; ///< by a file that must stay
};

/// Nothing when a download may be written to the path: its name is that of a document, and nothing but a file stands
/// there, if anything does. Whether the folder can be written shows when it is tried.
std::optional<TargetProblem> ValidateTarget(const QString& localPath);

/// What a download may take the place of.
struct ReplaceableFile {
    bool isAny = false; ///< whichever it is
    FileIdentity only;  ///< this one, as it is; none when the name has to be free
};

/// Why the file at a path is left alone.
TargetProblem ForeignFileProblem(const QString& localPath);

/// Gives a whole file the name of its target. Looks once more at what is there: a download may take long.
std::optional<TargetProblem> PutInPlace(AtomicFile& file, const QString& localPath, const ReplaceableFile& replaceable);

} // namespace Norlis::Files
