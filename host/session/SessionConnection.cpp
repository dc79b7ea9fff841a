#include "SessionConnection.h"

#include <chrono>

namespace Norlis::Host {

using Connection = CloudSession::Connection;
using PDF::Cloud::AbstractCloudManager;
using Request = CloudProblem::Request;
using Social::OAuth2::FailureKind;

namespace {

constexpr std::chrono::seconds delays[] = {std::chrono::seconds(5), std::chrono::seconds(15), std::chrono::seconds(60)};
constexpr int lastDelay = static_cast<int>(std::size(delays)) - 1;
constexpr int lastDelayOfFolders = 0; // to look for one costs next to nothing

} // namespace

SessionConnection::SessionConnection(const SessionContext& context, std::function<void(bool)> resume)
    : QObject(&context.session),
      context(context),
      resume(std::move(resume)),
      retry(this)
{
    const auto& manager = context.cloud.Manager();
    connect(&manager, &AbstractCloudManager::AuthorizationCompleted, this, &SessionConnection::OnAnswered);
    connect(&manager, &AbstractCloudManager::RetrievingFilesListStarted, this, [this] { isListing = true; });
    connect(&context.session, &CloudSession::ListRefreshed, this, &SessionConnection::OnAnswered);
    connect(&context.session, &CloudSession::Failed, this, &SessionConnection::OnFailed);
    connect(&context.session, &CloudSession::UploadWaiting, this, &SessionConnection::OnBroken);
    connect(&context.session, &CloudSession::DownloadWaiting, this, &SessionConnection::OnBroken);
    const auto onSuccess = [this] {
        if (state == Connection::Offline) {
            OnAnswered();
        }
    };
    connect(&context.session, &CloudSession::DocumentUploaded, this, onSuccess);
    connect(&context.session, &CloudSession::DocumentDownloaded, this, onSuccess);
    connect(&manager, &AbstractCloudManager::RemoveFileFinished, this, onSuccess);
    connect(&manager, &AbstractCloudManager::RetrievingUserQuotaFinished, this, onSuccess);
    connect(&manager, &AbstractCloudManager::RetrieveFilePreviewFinished, this, &SessionConnection::OnPicture);
    connect(&context.session, &CloudSession::PageDrawn, this, [this](qint64, const DrawnPage& page) {
        if (!page.picture.isNull() && page.pageCount == 0) { // which is known of files on this computer
            OnPicture();
        }
    });
    retry.setSingleShot(true);
    connect(&retry, &QTimer::timeout, this, &SessionConnection::TryNow);
    connect(&network, &NetworkWatch::Changed, this, [this] {
        if (state == Connection::Offline) {
            failedAttempts = 0;
            retry.stop();
            TryNow();
        }
    });
}

void SessionConnection::Start(const QString& newToken)
{
    token = newToken;
    failedAttempts = 0;
    retry.stop();
    context.cloud.SetPatient(true);
    const auto guard = lifetime.Watch();
    SetState(Connection::Connecting);
    if (guard) {
        context.cloud.Manager().Authorization(token);
    }
}

void SessionConnection::Stop()
{
    token.clear();
    retry.stop();
    context.cloud.SetPatient(false);
    const auto guard = lifetime.Watch();
    SetState(Connection::SignedOut);
    if (guard) {
        resume(false); // what waits fails then
    }
}

void SessionConnection::TryNow()
{
    if (token.isEmpty() || state == Connection::Connecting) {
        return;
    }
    const auto guard = lifetime.Watch();
    if (!context.cloud.IsSignedIn()) {
        SetState(Connection::Connecting);
        if (guard) {
            context.cloud.Manager().Authorization(token);
        }
        return;
    }
    isListing = false;
    context.cloud.Manager().RetrieveFilesList();
    if (!guard) {
        return;
    }
    if (isListing) {
        SetState(Connection::Connecting);
    } else { // a transfer is running, which may tell
        TryLater();
    }
}

Connection SessionConnection::State() const
{
    return state;
}

QDateTime SessionConnection::NextAttempt() const
{
    return retry.isActive() && state == Connection::Offline
               ? QDateTime::currentDateTime().addMSecs(retry.remainingTime())
               : QDateTime();
}

void SessionConnection::OnAnswered()
{
    if (token.isEmpty()) {
        return;
    }
    retry.stop();
    failedAttempts = 0;
    const bool wasAway = std::exchange(isAway, false);
    const auto guard = lifetime.Watch();
    SetState(Connection::Online);
    if (guard) {
        resume(wasAway);
    }
}

void SessionConnection::OnFailed(const CloudProblem& problem)
{
    if (token.isEmpty() || (problem.request != Request::SignIn && problem.request != Request::List)) {
        return;
    }
    if (problem.cause.kind == FailureKind::NotSignedIn && problem.cause.operation < 0) {
        return; // the service was not asked: it may just be away
    }
    if (problem.cause.kind == FailureKind::Unavailable) {
        isAway = true;
        failedAttempts += retry.isActive() ? 0 : 1; // what the user tries leaves the next attempt where it is
        TryLater();
    } else if (problem.request == Request::SignIn || problem.cause.kind == FailureKind::NotSignedIn) {
        Stop(); // the token is no good
    } else {
        OnAnswered(); // in some way
    }
}

void SessionConnection::OnPicture()
{
    if (state == Connection::Offline && !std::exchange(hasSeenPicture, true)) {
        TryNow();
    }
}

void SessionConnection::OnBroken()
{
    if (state == Connection::Online) {
        TryLater();
    }
}

void SessionConnection::SetState(Connection newState)
{
    if (state != newState) {
        state = newState;
        emit context.session.ConnectionChanged();
    }
}

void SessionConnection::TryLater()
{
    if (!retry.isActive()) {
        hasSeenPicture = false;
        retry.start(delays[qBound(0, failedAttempts - 1, context.cloud.IsFolder() ? lastDelayOfFolders : lastDelay)]);
    }
    state = Connection::Offline;
    emit context.session.ConnectionChanged(); // of the next attempt, at least
}

} // namespace Norlis::Host
