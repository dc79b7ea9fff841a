#include "CloudDocuments.h"

#include <host/account/CloudAccount.h>
#include <host/account/ServiceAddress.h>

#include <QDir>
#include <QPointer>
#include <QStandardPaths>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <utility>

namespace Norlis::Qml {

using Host::CloudAccount;
using Host::CloudProblem;
using Host::CloudSession;
using PDF::Cloud::AbstractCloudManager;
using Social::OAuth2::Failure;
using Social::OAuth2::FailureKind;

namespace {

QString NameOf(CloudProblem::Request request)
{
    using Request = CloudProblem::Request;
    switch (request) {
    case Request::SignIn:
        return QStringLiteral("signIn");
    case Request::List:
        return QStringLiteral("list");
    case Request::Upload:
        return QStringLiteral("upload");
    case Request::Download:
        return QStringLiteral("download");
    case Request::Remove:
        return QStringLiteral("remove");
    case Request::Preview:
        return QStringLiteral("preview");
    case Request::Quota:
        return QStringLiteral("quota");
    }
    return {};
}

QString NameOf(FailureKind kind)
{
    switch (kind) {
    case FailureKind::Other:
        return QStringLiteral("other");
    case FailureKind::Conflict:
        return QStringLiteral("conflict");
    case FailureKind::NameTaken:
        return QStringLiteral("nameTaken");
    case FailureKind::Unavailable:
        return QStringLiteral("unavailable");
    case FailureKind::NotSignedIn:
        return QStringLiteral("notSignedIn");
    }
    return {};
}

QVariantMap ProblemOf(const QString& request, const CloudProblem& problem)
{
    const Failure& cause = problem.cause;
    return {
        {"request", request},         {"subject", problem.subject}, {"text", problem.Text()},
        {"message", problem.message}, {"reason", cause.reason},     {"advice", cause.advice},
        {"details", cause.details},   {"kind", NameOf(cause.kind)},
    };
}

QVariantMap ProblemOf(const QString& request, const QString& subject, const QString& message, const QString& reason)
{
    CloudProblem problem;
    problem.subject = subject;
    problem.message = message;
    problem.cause.reason = reason;
    return ProblemOf(request, problem);
}

/// Of what QML gives for a file: a path counts as one.
QString LocalPath(const QUrl& file)
{
    return file.isLocalFile() ? file.toLocalFile() : file.toString();
}

} // namespace

CloudDocuments::CloudDocuments(QObject* parent) : QObject(parent) {}

CloudDocuments::~CloudDocuments()
{
    blockSignals(true);
    session.reset(); // now: views hear that the list is empty, and may ask the element for something
}

QString CloudDocuments::Service() const
{
    return service;
}

void CloudDocuments::SetService(const QString& text)
{
    if (service == text) {
        return;
    }
    service = text;
    const QPointer guard(this);
    emit serviceChanged();
    if (guard) {
        Open();
    }
}

QString CloudDocuments::DataFolder() const
{
    return dataFolder;
}

void CloudDocuments::SetDataFolder(const QString& folder)
{
    if (dataFolder == folder) {
        return;
    }
    dataFolder = folder;
    const QPointer guard(this);
    emit dataFolderChanged();
    if (guard) {
        Open();
    }
}

int CloudDocuments::RefreshInterval() const
{
    return refreshInterval;
}

void CloudDocuments::SetRefreshInterval(int milliseconds)
{
    const int interval = std::max(milliseconds, 0);
    if (refreshInterval == interval) {
        return;
    }
    refreshInterval = interval;
    if (session) {
        session->RefreshEvery(std::chrono::milliseconds(refreshInterval));
    }
    emit refreshIntervalChanged();
}

bool CloudDocuments::IsSignedIn() const
{
    return isSignedIn;
}

int CloudDocuments::ConnectionState() const
{
    return static_cast<int>(session ? session->ConnectionState() : CloudSession::Connection::SignedOut);
}

QDateTime CloudDocuments::NextAttempt() const
{
    return session ? session->NextAttempt() : QDateTime();
}

QAbstractItemModel* CloudDocuments::Documents() const
{
    return model;
}

void CloudDocuments::classBegin()
{
    isComplete = false; // the properties come one by one
}

void CloudDocuments::componentComplete()
{
    isComplete = true;
    Open();
}

void CloudDocuments::Open()
{
    if (!isComplete) {
        return;
    }
    const QPointer guard(this);
    session.reset(); // saves its list, which the next one may read; views hear that it is empty
    if (!guard) {
        return;
    }
    const QPointer former(std::exchange(model, nullptr));
    obstacle.clear();
    if (service.isEmpty()) {
        obstacle = QStringLiteral("No service is set");
    } else {
        OpenSession();
    }
    emit documentsChanged();
    if (former) {
        former->deleteLater(); // a view may be in the middle of it
    }
    if (!guard) {
        return;
    }
    emit connectionChanged();
    if (guard) {
        NoteSignIn();
    }
}

void CloudDocuments::OpenSession()
{
    const QUrl folder(dataFolder);
    const auto local = folder.isLocalFile()   ? folder.toLocalFile()
                       : dataFolder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
                                              : dataFolder;
    try {
        const CloudAccount account(std::make_shared<Host::CloudAccountSettings>(local), Host::ServiceAddress(service));
        session = std::make_unique<CloudSession>(account.DataFolder(), account.AuthInfo());
    } catch (const std::exception& error) {
        obstacle = QString::fromUtf8(error.what());
        if (obstacle.endsWith('.')) { // as in other problems
            obstacle.chop(1);
        }
        FailLater(ProblemOf("open", {}, QStringLiteral("The cloud cannot be opened"), obstacle));
        return;
    }
    model = new Host::CloudDocumentsModel(session->Documents(), session->CloudSizes(), this);
    ConnectSession();
    session->RefreshEvery(std::chrono::milliseconds(refreshInterval));
}

void CloudDocuments::ConnectSession()
{
    connect(session.get(), &CloudSession::ListRefreshed, this, &CloudDocuments::refreshed);
    connect(session.get(), &CloudSession::ManyDocumentsGone, this, &CloudDocuments::manyDocumentsGone);
    connect(session.get(), &CloudSession::LocalCopyRead, this, &CloudDocuments::localCopyRead);
    connect(session.get(), &CloudSession::LocalCopyChanged, this, &CloudDocuments::localCopyChanged);
    connect(session.get(), &CloudSession::CopyLeftBehind, this, &CloudDocuments::copyLeftBehind);
    connect(session.get(), &CloudSession::ReadyToClose, this, &CloudDocuments::readyToClose);
    connect(session.get(), &CloudSession::DocumentUploaded, this, &CloudDocuments::uploaded);
    connect(session.get(), &CloudSession::UploadCanceled, this, &CloudDocuments::uploadCanceled);
    connect(session.get(), &CloudSession::UploadWaiting, this, &CloudDocuments::uploadWaiting);
    connect(session.get(), &CloudSession::DocumentDownloaded, this, &CloudDocuments::downloaded);
    connect(session.get(), &CloudSession::DownloadCanceled, this, &CloudDocuments::downloadCanceled);
    connect(session.get(), &CloudSession::DownloadWaiting, this, &CloudDocuments::downloadWaiting);
    connect(session.get(), &CloudSession::ConnectionChanged, this, &CloudDocuments::connectionChanged);
    connect(session.get(), &CloudSession::DocumentRemoved, this, &CloudDocuments::removed);
    connect(session.get(), &CloudSession::RemovalPendingChanged, model, &Host::CloudDocumentsModel::SetHidden);
    connect(session.get(), &CloudSession::Failed, this, [this](const CloudProblem& problem) {
        const QPointer guard(this);
        NoteSignIn(); // a password that is taken no longer
        if (guard) {
            emit failed(ProblemOf(NameOf(problem.request), problem));
        }
    });

    const auto& cloud = session->Cloud();
    connect(&cloud, &AbstractCloudManager::AuthorizationCompleted, this, [this] {
        session->Refresh();
        NoteSignIn();
    });
    connect(&cloud, &AbstractCloudManager::AuthorizationRequired, this, [this] {
        const QPointer guard(this);
        NoteSignIn();
        if (guard) {
            emit signInRequired();
        }
    });
    connect(&cloud, &AbstractCloudManager::LoggedOut, this, &CloudDocuments::NoteSignIn);
    connect(session.get(), &CloudSession::UploadProgress, this, &CloudDocuments::uploadProgress);
    connect(session.get(), &CloudSession::DownloadProgress, this, &CloudDocuments::downloadProgress);
}

void CloudDocuments::NoteSignIn()
{
    const bool isNow = session && session->IsSignedIn();
    if (std::exchange(isSignedIn, isNow) != isNow) {
        emit signedInChanged();
    }
}

CloudSession* CloudDocuments::SessionFor(Request request, const QString& subject)
{
    if (!session) {
        FailLater(ProblemOf(NameOf(request), subject, QStringLiteral("No cloud is open"), obstacle));
    }
    return session.get();
}

void CloudDocuments::FailLater(const QVariantMap& problem)
{
    QMetaObject::invokeMethod(
        this, [this, problem] { emit failed(problem); }, Qt::QueuedConnection);
}

void CloudDocuments::signIn(const QString& password)
{
    if (const auto cloud = SessionFor(Request::SignIn)) {
        cloud->StaySignedIn(password.isEmpty() ? CloudAccount::TokenForNone() : password);
    }
}

void CloudDocuments::tryNow()
{
    if (session) {
        session->TryNow();
    }
}

void CloudDocuments::signOut()
{
    if (session) {
        session->SignOut();
    }
}

void CloudDocuments::refresh()
{
    if (const auto cloud = SessionFor(Request::List)) {
        cloud->Refresh();
    }
}

void CloudDocuments::upload(const QList<QUrl>& files)
{
    QStringList paths;
    std::transform(files.begin(), files.end(), std::back_inserter(paths), LocalPath);
    if (const auto cloud = SessionFor(Request::Upload, paths.value(0))) {
        cloud->Upload(paths);
    }
}

void CloudDocuments::uploadChanges(const QString& id)
{
    if (const auto cloud = SessionFor(Request::Upload, id)) {
        cloud->UploadChanges(id);
    }
}

void CloudDocuments::replaceInCloud(const QString& id)
{
    if (const auto cloud = SessionFor(Request::Upload, id)) {
        cloud->ReplaceInCloud(id);
    }
}

void CloudDocuments::replaceWith(const QString& id, const QUrl& file)
{
    if (const auto cloud = SessionFor(Request::Upload, LocalPath(file))) {
        cloud->ReplaceWith(id, LocalPath(file));
    }
}

void CloudDocuments::keepBoth(const QString& id)
{
    if (const auto cloud = SessionFor(Request::Upload, id)) {
        cloud->KeepBoth(id);
    }
}

void CloudDocuments::useCloudVersion(const QString& id)
{
    if (const auto cloud = SessionFor(Request::Download, id)) {
        cloud->UseCloudVersion(id);
    }
}

void CloudDocuments::download(const QString& id, const QUrl& folder)
{
    if (const auto cloud = SessionFor(Request::Download, id)) {
        cloud->Download(id, LocalPath(folder));
    }
}

void CloudDocuments::downloadBeside(const QString& id, const QUrl& folder)
{
    if (const auto cloud = SessionFor(Request::Download, id)) {
        cloud->DownloadBeside(id, LocalPath(folder));
    }
}

void CloudDocuments::cancelUpload(const QString& path)
{
    if (session) {
        session->CancelUpload(path);
    }
}

void CloudDocuments::cancelDownload(const QString& id)
{
    if (session) {
        session->CancelDownload(id);
    }
}

void CloudDocuments::remove(const QString& id)
{
    if (const auto cloud = SessionFor(Request::Remove, id)) {
        cloud->Remove(id);
    }
}

void CloudDocuments::removeLater(const QStringList& ids, int milliseconds)
{
    if (const auto cloud = SessionFor(Request::Remove, ids.value(0))) {
        cloud->RemoveLater(ids, std::chrono::milliseconds(qMax(0, milliseconds)));
    }
}

void CloudDocuments::undoRemoval(const QStringList& ids)
{
    if (session) {
        session->UndoRemoval(ids);
    }
}

void CloudDocuments::showPreviews(const QStringList& ids)
{
    if (session) {
        session->ShowPreviews(ids);
    }
}

void CloudDocuments::readLocalCopy(const QUrl& file)
{
    if (session) {
        session->ReadLocalCopy(LocalPath(file));
    }
}

void CloudDocuments::watchLocalCopy(const QUrl& file)
{
    if (session) {
        session->WatchLocalCopy(LocalPath(file));
    }
}

void CloudDocuments::prepareToClose()
{
    if (session) {
        session->PrepareToClose();
    } else {
        QMetaObject::invokeMethod(this, &CloudDocuments::readyToClose, Qt::QueuedConnection);
    }
}

QUrl CloudDocuments::viewingFolder(const QString& id) const
{
    const QString folder = session ? session->ViewingFolder(id) : QString();
    return !folder.isEmpty() && QDir().mkpath(folder) ? QUrl::fromLocalFile(folder) : QUrl();
}

QString CloudDocuments::documentNamed(const QString& name) const
{
    return session ? session->DocumentNamed(name) : QString();
}

QString CloudDocuments::documentAt(const QUrl& file) const
{
    return session ? session->DocumentAt(LocalPath(file)) : QString();
}

} // namespace Norlis::Qml
