#pragma once

#include <host/session/CloudSession.h>

#include <QDateTime>
#include <QStringList>

namespace Norlis::Window {

// Texts and figures in the user's language.

QString SizeText(qint64 bytes);

/// Escaped for a tooltip, which would otherwise interpret markup.
QString ToolTipText(const QStringList& lines);

/// In local time; empty for an invalid one.
QString DateText(const QDateTime& date);

/// In local format, without seconds.
QString TimeText(const QTime& time);

/// \param state a PDF::FileInfo::CloudStatus
QString StateText(int state);

/// What failed: one short sentence.
/// \param name of the document
QString ProblemTitle(const Host::CloudProblem& problem, const QString& name);

/// The reason and what to do, in the service's own words.
QString ProblemDetail(const Host::CloudProblem& problem);

/// Figures of a quota in MiB; NorlisCloudProtocol::unknownQuota and unlimitedQuota are allowed too.
QString StorageText(int usedMiB, int totalMiB);

} // namespace Norlis::Window
