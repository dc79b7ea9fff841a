#include "DownloadCommand.h"

#include "DocumentEntry.h"
#include "DocumentLookup.h"
#include "ExitStatus.h"
#include "Text.h"

#include <QFileInfo>

namespace Norlis::Terminal {

using PDF::Cloud::AbstractCloudManager;

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
    connect(&Session().Cloud(), &AbstractCloudManager::DownloadingProgressValueChanged, this,
            [this](const std::shared_ptr<const PDF::FileInfo>& file, int percent) {
                ShowProgress(QString::fromStdString(PDF::FileInfo(*file).GetId()), percent);
            });
    WithFreshList([this] { Begin(); });
}

bool DownloadCommand::CancelJob(const QString& id)
{
    Session().CancelDownload(id);
    return true;
}

void DownloadCommand::Begin()
{
    const auto found = FindDocuments(Session().Documents(), arguments.operands);
    for (const QString& problem : found.problems) {
        ReportFailure(problem);
    }
    for (const auto& document : found.documents) {
        Expect(document.id, document.name);
        Session().Download(document.id, arguments.targetFolder);
    }
    EndIfDone();
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
