#include "CopiedDocuments.h"

#include <apps/window/transfers/Transfers.h>
#include <host/session/CloudSession.h>

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

namespace Norlis::Window {

using Host::CloudProblem;
using Host::CloudSession;

QStringList LocalPaths(const QMimeData* data)
{
    QStringList paths;
    const auto urls = data ? data->urls() : QList<QUrl>();
    for (const QUrl& url : urls) {
        if (url.isLocalFile()) {
            paths.append(url.toLocalFile());
        }
    }
    return paths;
}

CopiedDocuments::CopiedDocuments(CloudSession& session, Transfers& transfers) : session(session), transfers(transfers)
{
    connect(&session, &CloudSession::DocumentDownloaded, this, [this](const QString& id, const QString& path) {
        if (fetched.remove(id)) {
            paths.append(path);
            PutWhenComplete();
        }
    });
    connect(&session, &CloudSession::DownloadCanceled, this, &CopiedDocuments::Drop);
    connect(&session, &CloudSession::Failed, this, [this](const CloudProblem& problem) {
        if (problem.request == CloudProblem::Request::Download) {
            Drop(problem.subject);
        }
    });
}

void CopiedDocuments::Copy(const QStringList& present, const QSet<QString>& absent)
{
    paths = present;
    fetched = absent;
    PutWhenComplete();
    for (const QString& id : absent) {
        const QString folder = session.ViewingFolder(id);
        QDir().mkpath(folder);
        transfers.Download(id, folder);
    }
}

void CopiedDocuments::Drop(const QString& id)
{
    if (fetched.remove(id)) {
        PutWhenComplete();
    }
}

void CopiedDocuments::PutWhenComplete()
{
    if (!fetched.isEmpty() || paths.isEmpty()) {
        return;
    }
    QList<QUrl> urls;
    for (const QString& path : qAsConst(paths)) {
        urls.append(QUrl::fromLocalFile(path));
    }
    const auto data = new QMimeData; // which the clipboard takes
    data->setUrls(urls);
    QGuiApplication::clipboard()->setMimeData(data);
    paths.clear();
}

} // namespace Norlis::Window
