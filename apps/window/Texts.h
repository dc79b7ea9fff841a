#pragma once

#include <host/session/CloudSession.h>

#include <QDateTime>
#include <QStringList>

namespace Norlis::Window {

// How the window says things, in the user's language.

QString SizeText(qint64 bytes);

/// As a tool tip, which would take what looks like markup for it.
QString ToolTipText(const QStringList& lines);

/// In local time; empty for an invalid one.
QString DateText(const QDateTime& date);

/// Without seconds.
QString TimeText(const QTime& time);

/// \param state a PDF::FileInfo::CloudStatus
QString StateText(int state);

/// What failed: one short sentence.
/// \param name of the document
QString ProblemTitle(const Host::CloudProblem& problem, const QString& name);

/// Why, and what to do; the service's own words.
QString ProblemDetail(const Host::CloudProblem& problem);

/// Figures of a quota in MiB, where NorlisCloudProtocol::unknownQuota and unlimitedQuota may stand too.
QString StorageText(int usedMiB, int totalMiB);

} // namespace Norlis::Window
