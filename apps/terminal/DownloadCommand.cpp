#include "DownloadCommand.h"

#include "DocumentEntry.h"
#include "DocumentLookup.h"
#include "ExitStatus.h"
#include "Text.h"

#include <host/session/CloudFacts.h>
#include <host/session/OtherName.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

namespace Norlis::Terminal {

DownloadCommand::DownloadCommand(const Environment& environment) : BatchCommand(environment, "Downloading") {}

void DownloadCommand::Work()
{
    if (!QFileInfo(arguments.targetFolder).isDir()) {
        output.Error(QStringLiteral("The folder %1 does not exist. Create it, or choose another one with --to")
                         .arg(arguments.targetFolder));
        Finish(ExitStatus::failure);
        return;
    }
    connect(&Session(), &Host::CloudSession::DocumentDownloaded, this, &DownloadCommand::OnDownloaded);
    connect(&Session(), &Host::CloudSession::DownloadCanceled, this, &DownloadCommand::OnCanceled);
    connect(&Session(), &Host::CloudSession::DownloadProgress, this, &DownloadCommand::ShowProgress);
    WithFreshList([this] { Begin(); });
}

bool DownloadCommand::CancelJob(const QString& id)
{
    if (!CancelDecision(id)) {
        Session().CancelDownload(id);
    }
    return true;
}

void DownloadCommand::Begin()
{
    const auto found = FindDocuments(Session().Documents(), arguments.operands);
    for (const QString& problem : found.problems) {
        ReportFailure(problem);
    }
    for (const auto& document : found.documents) {
        const auto* facts = Session().Facts(document.id);
        Expect(document.id, document.name, facts ? static_cast<qint64>(facts->size) : 0);
        Session().Download(document.id, arguments.targetFolder);
    }
    EndIfDone();
}

void DownloadCommand::OnFailed(const Host::CloudProblem& problem)
{
    using Kind = Social::OAuth2::FailureKind;
    const bool isConflict = problem.cause.kind == Kind::Conflict || problem.cause.kind == Kind::NameTaken;
    if (!isConflict || !IsExpected(problem.subject) || decided.contains(problem.subject)) {
        BatchCommand::OnFailed(problem);
        return;
    }
    decided.insert(problem.subject);
    Decide(problem.subject, QStringLiteral("\"%1\": %2").arg(problem.cause.document, problem.cause.reason),
           OnConflict::Fail, [this, problem](OnConflict choice) { DecideAbout(problem, choice); });
}

void DownloadCommand::DecideAbout(const Host::CloudProblem& problem, OnConflict choice)
{
    const QString& id = problem.subject;
    const auto entry = EntryOf(Session(), id);
    const QDir folder(arguments.targetFolder);
    const QString target = entry ? folder.filePath(entry->name) : QString();
    const bool isCopy = entry && QFileInfo(target).canonicalFilePath() == entry->path;
    if (entry && choice == OnConflict::Both && problem.cause.kind == Social::OAuth2::FailureKind::NameTaken) {
        Session().DownloadBeside(id, arguments.targetFolder);
        return;
    }
    if (entry && choice == OnConflict::Both &&
        !Host::MoveToOtherName(target, QSysInfo::machineHostName(), QDate::currentDate()).isEmpty()) {
        Session().Download(id, arguments.targetFolder);
        return;
    }
    if (entry && choice == OnConflict::Mine) {
        Succeed(id);
        if (output.IsJson()) {
            QJsonObject result = JsonOf(*entry);
            result["action"] = "skipped";
            output.Json(QJsonDocument(result));
        } else {
            output.Line("skipped " + Printable(target));
        }
        return;
    }
    if (isCopy && choice == OnConflict::Theirs) {
        Session().UseCloudVersion(id);
        return;
    }
    BatchCommand::OnFailed(problem);
}

void DownloadCommand::OnDownloaded(const QString& id, const QString& path)
{
    const auto entry = EntryOf(Session(), id);
    if (!IsExpected(id) || !entry) {
        return;
    }
    Shown().Note(*entry);
    Succeed(id);
    if (output.IsJson()) {
        QJsonObject result = JsonOf(*entry);
        result["action"] = "downloaded";
        result["path"] = QFileInfo(path).canonicalFilePath(); // the list may show another copy
        output.Json(QJsonDocument(result));
    } else {
        const QString& hash = entry->md5Hash; // not every service has one
        output.Line("downloaded " + Printable(path) + (hash.isEmpty() ? QString() : "  MD5 " + Printable(hash)));
    }
}

} // namespace Norlis::Terminal
