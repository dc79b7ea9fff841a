#pragma once

#include <QString>

namespace Norlis::Files {

/// Why a download cannot be written to a path, and what to do about it; empty when it can.
struct TargetProblem {
    QString reason;
    QString advice;
};

TargetProblem WhyNoTarget(const QString& localPath);

} // namespace Norlis::Files
