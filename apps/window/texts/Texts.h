#pragma once

#include <host/session/CloudSession.h>

#include <QDateTime>
#include <QStringList>

#include <optional>

namespace Norlis::Window {

// Texts and figures in the user's language.

QString SizeText(qint64 bytes);

/// How far a transfer is, or several together, as in "115 of 500 MB · 8.1 MB/s · 47 s left".
/// \param rate in bytes per second; with the next, nothing while it is not known
/// \param left in seconds
QString ProgressText(qint64 transferred, qint64 size, std::optional<double> rate, std::optional<qint64> left);

/// Escaped for a tooltip, which would otherwise interpret markup. Empty lines are left out.
QString ToolTipText(QStringList lines);

/// In local time; empty for an invalid one.
QString DateText(const QDateTime& date);

/// In local format, without seconds.
QString TimeText(const QTime& time);

/// The folder of a local copy, below the user's own as "~/…"; empty if there is none.
QString FolderOf(const QString& path);

/// \param state a PDF::FileInfo::CloudStatus
QString StateText(int state);

/// Of which version a picture is; empty where there is but one.
/// \param state a PDF::FileInfo::CloudStatus
/// \param isHere whether it is the local one
QString VersionText(int state, bool isHere);

/// What failed: one short sentence.
/// \param name of the document
QString ProblemTitle(const Host::CloudProblem& problem, const QString& name);

/// The reason and what to do, in the service's own words.
QString ProblemReason(const Host::CloudProblem& problem);
QString ProblemDetail(const Host::CloudProblem& problem);

/// What the libraries below said of it, for experts; often empty.
QString TechnicalText(const Host::CloudProblem& problem);

/// Names, as many as can be read at a glance, as in "a.pdf, b.pdf and 3 more".
QString SomeOf(const QStringList& names);

/// Figures of a quota in MiB; NorlisCloudProtocol::unknownQuota and unlimitedQuota are allowed too.
QString StorageText(int usedMiB, int totalMiB);

} // namespace Norlis::Window
