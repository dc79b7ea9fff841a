#pragma once

#include <QString>

#include <optional>

namespace Norlis::Files {

/// Why a download cannot be written to a path, and what to do about it. Both are for the user.
struct TargetProblem {
    QString reason; ///< without a full stop
    QString advice; ///< a sentence; empty when there is nothing to say
};

/// Nothing when a download may be written to the path: its name is that of a document, and nothing but a file stands
/// there, if anything does. Whether the folder can be written shows when it is tried.
std::optional<TargetProblem> ValidateTarget(const QString& localPath);

} // namespace Norlis::Files
