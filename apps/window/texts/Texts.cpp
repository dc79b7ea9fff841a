#include "Texts.h"

#include "ServiceTexts.h"

#include <apps/common/PrintableText.h>
#include <contracts/NorlisCloudProtocol.h>

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QRegularExpression>
#include <QTextDocument>

#include <ctime>

namespace Norlis::Window {

using Request = Host::CloudProblem::Request;
using Status = PDF::FileInfo::CloudStatus;

namespace {

constexpr qint64 bytesPerMiB = 1024 * 1024;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(Texts)
};

QString TimeLeftText(qint64 seconds)
{
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    if (seconds < 2 * minute) {
        return Texts::tr("%1 s left").arg(seconds);
    }
    return seconds < 2 * hour ? Texts::tr("%1 min left").arg((seconds + minute - 1) / minute)
                              : Texts::tr("%1 h left").arg((seconds + hour - 1) / hour);
}

/// The short one, with all of the year.
QString DateFormat()
{
    const QString format = QLocale().dateFormat(QLocale::ShortFormat);
    return format.contains("yyyy") ? format : QString(format).replace("yy", "yyyy");
}

/// What a server answered in figures, at the end of a reason.
const QRegularExpression& StatusPattern()
{
    static const QRegularExpression pattern(" \\(([0-9]{3})\\)");
    return pattern;
}

QString AsSentence(QString text)
{
    if (!text.isEmpty() && !text.endsWith('.')) {
        text += '.';
    }
    return text.left(1).toUpper() + text.mid(1); // the text may be empty: clazy:exclude=qstring-left
}

} // namespace

QString SizeText(qint64 bytes)
{
    return QLocale().formattedDataSize(bytes, bytes < 1024 ? 0 : 1);
}

QString ProgressText(qint64 transferred, qint64 size, std::optional<double> rate, std::optional<qint64> left)
{
    QStringList parts = {Texts::tr("%1 of %2").arg(SizeText(transferred), SizeText(size))};
    if (rate) {
        parts.append(Texts::tr("%1/s").arg(SizeText(static_cast<qint64>(*rate))));
    }
    if (left) {
        parts.append(TimeLeftText(*left));
    }
    return parts.join(" · ");
}

QString ToolTipText(QStringList lines)
{
    lines.removeAll(QString());
    return lines.isEmpty() ? QString() : Qt::convertFromPlainText(lines.join('\n'), Qt::WhiteSpaceNormal);
}

QString DateText(const QDateTime& date)
{
    if (!date.isValid()) {
        return {};
    }
    // Qt would look twice whether the time zone has changed, which takes longer than painting the text.
    const std::time_t seconds = date.toSecsSinceEpoch();
    std::tm local = {};
    localtime_r(&seconds, &local);
    const QDate day(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    constexpr qint64 twoDays = 48 * 60 * 60;
    const bool isNear = qAbs(QDateTime::currentSecsSinceEpoch() - seconds) < twoDays; // otherwise nobody need look
    return isNear && day == QDate::currentDate()
               ? Texts::tr("Today, %1").arg(TimeText(QTime(local.tm_hour, local.tm_min)))
               : QLocale().toString(day, DateFormat());
}

QString TimeText(const QTime& time)
{
    return QLocale().toString(time, QLocale().timeFormat(QLocale::ShortFormat).remove(":ss"));
}

QString FolderOf(const QString& path)
{
    const QString folder = path.left(qMax(0, path.lastIndexOf('/')));
    const QString home = QDir::homePath();
    const bool isAtHome = folder == home || folder.startsWith(home + '/');
    return QDir::toNativeSeparators(isAtHome ? '~' + folder.mid(home.size()) : folder);
}

QString StateText(int state)
{
    switch (static_cast<Status>(state)) {
    case Status::OnlyInCloud:
        return Texts::tr("Only in the cloud");
    case Status::InSync:
        return Texts::tr("Up to date");
    case Status::ChangedLocally:
        return Texts::tr("Changed on this computer");
    case Status::ChangedInCloud:
        return Texts::tr("Changed in the cloud");
    case Status::ChangedOnBothSides:
        return Texts::tr("Changed on both sides");
    case Status::NotUploaded:
    case Status::NoSuchDocument:
        break;
    }
    return Texts::tr("Not in the cloud");
}

QString VersionText(int state, bool isHere)
{
    switch (static_cast<Status>(state)) {
    case Status::ChangedLocally:
    case Status::ChangedInCloud:
    case Status::ChangedOnBothSides:
        return isHere ? Texts::tr("The version on this computer") : Texts::tr("The version in the cloud");
    default:
        return {};
    }
}

QString ProblemTitle(const Host::CloudProblem& problem, const QString& name)
{
    switch (problem.request) {
    case Request::SignIn:
        return Texts::tr("Signing in failed.");
    case Request::List:
        return Texts::tr("The list of documents is not up to date.");
    case Request::Upload:
        return Texts::tr("“%1” was not uploaded.").arg(name);
    case Request::Download:
        return Texts::tr("“%1” was not downloaded.").arg(name);
    case Request::Remove:
        return Texts::tr("“%1” was not removed.").arg(name);
    case Request::Preview:
        return Texts::tr("There is no preview of “%1”.").arg(name);
    case Request::Quota:
        return Texts::tr("The cloud does not report how much storage is used.");
    }
    return {};
}

QString ProblemReason(const Host::CloudProblem& problem)
{
    QString reason = problem.cause.reason.isEmpty() ? problem.message : problem.cause.reason;
    reason.remove(StatusPattern());
    return Apps::Printable(AsSentence(InUsersLanguage(reason)));
}

QString ProblemDetail(const Host::CloudProblem& problem)
{
    const QString advice = Apps::Printable(AsSentence(InUsersLanguage(problem.cause.advice)));
    return (ProblemReason(problem) + ' ' + advice).trimmed();
}

QString TechnicalText(const Host::CloudProblem& problem)
{
    const auto status = StatusPattern().match(problem.cause.reason);
    const QString answer = status.hasMatch() ? "HTTP " + status.captured(1) : QString();
    return Apps::Printable(problem.cause.details.isEmpty() || answer.isEmpty() ? answer + problem.cause.details
                                                                               : answer + ": " + problem.cause.details);
}

QString SomeOf(const QStringList& names)
{
    constexpr int most = 5;
    const QString first = names.mid(0, most).join(", ");
    return names.size() <= most ? first : Texts::tr("%1 and %n more", nullptr, names.size() - most).arg(first);
}

QString StorageText(int usedMiB, int totalMiB)
{
    const bool isLimited = totalMiB >= 0;
    if (usedMiB < 0) {
        return isLimited ? Texts::tr("%1 of storage").arg(SizeText(totalMiB * bytesPerMiB)) : QString();
    }
    // Used storage is rounded up: of so little no more is known.
    const QString used =
        usedMiB == 1 ? Texts::tr("Up to %1").arg(SizeText(bytesPerMiB)) : SizeText(usedMiB * bytesPerMiB);
    return isLimited ? Texts::tr("%1 of %2 used").arg(used, SizeText(totalMiB * bytesPerMiB))
                     : Texts::tr("%1 used").arg(used);
}

} // namespace Norlis::Window
