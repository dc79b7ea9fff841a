#include "Texts.h"

#include <apps/common/PrintableText.h>
#include <contracts/NorlisCloudProtocol.h>

#include <QCoreApplication>
#include <QLocale>
#include <QTextDocument>

namespace Norlis::Window {

using Request = Host::CloudProblem::Request;
using Status = PDF::FileInfo::CloudStatus;

namespace {

constexpr qint64 bytesPerMiB = 1024 * 1024;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(Texts)
};

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

QString ToolTipText(const QStringList& lines)
{
    return Qt::convertFromPlainText(lines.join('\n'), Qt::WhiteSpaceNormal);
}

QString DateText(const QDateTime& date)
{
    const QDateTime local = date.toLocalTime();
    if (!local.isValid()) {
        return {};
    }
    return local.date() == QDate::currentDate() ? Texts::tr("Today, %1").arg(TimeText(local.time()))
                                                : QLocale().toString(local.date(), QLocale::ShortFormat);
}

QString TimeText(const QTime& time)
{
    return QLocale().toString(time, QLocale().timeFormat(QLocale::ShortFormat).remove(":ss"));
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

QString ProblemDetail(const Host::CloudProblem& problem)
{
    const QString reason = problem.cause.reason.isEmpty() ? problem.message : problem.cause.reason;
    return Apps::Printable((AsSentence(reason) + ' ' + AsSentence(problem.cause.advice)).trimmed());
}

QString StorageText(int usedMiB, int totalMiB)
{
    const bool isLimited = totalMiB >= 0;
    if (usedMiB < 0) {
        return isLimited ? Texts::tr("%1 of storage").arg(SizeText(totalMiB * bytesPerMiB)) : QString();
    }
    const QString used = SizeText(usedMiB * bytesPerMiB);
    return isLimited ? Texts::tr("%1 of %2 used").arg(used, SizeText(totalMiB * bytesPerMiB))
                     : Texts::tr("%1 used").arg(used);
}

} // namespace Norlis::Window
