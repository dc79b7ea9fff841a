#include "CloudSituation.h"

#include <apps/window/texts/KnownDocuments.h>
#include <apps/window/texts/Texts.h>
#include <apps/window/widgets/MessageBar.h>
#include <contracts/NorlisCloudProtocol.h>

namespace Norlis::Window {

using Host::CloudProblem;
using Host::CloudSession;
using PDF::Cloud::AbstractCloudManager;

CloudSituation::CloudSituation(CloudSession& session, MessageBar& message, StatusLine& status)
    : session(session),
      message(message),
      status(status)
{
    const auto& cloud = session.Cloud();
    connect(&cloud, &AbstractCloudManager::AuthorizationCompleted, this, &CloudSituation::OnSignedIn);
    connect(&cloud, &AbstractCloudManager::RetrievingFilesListStarted, this, [this] {
        isRefreshing = true;
        isListOld = false;
        askedAt = QDateTime::currentDateTime();
        emit Changed();
    });
    connect(&session, &CloudSession::ListRefreshed, this, &CloudSituation::OnListRefreshed);
    connect(&session, &CloudSession::ConnectionChanged, this, &CloudSituation::OnConnectionChanged);
    connect(&session, &CloudSession::Failed, this, &CloudSituation::OnFailed);
    connect(&session, &CloudSession::ManyDocumentsGone, this, &CloudSituation::OnManyGone);
    connect(&status, &StatusLine::TryNowChosen, &session, &CloudSession::TryNow);
    connect(&status, &StatusLine::StopWaitingChosen, &session, &CloudSession::StopWaiting);
    status.Storage().Follow(session);
}

void CloudSituation::SignIn(const QString& newToken)
{
    token = newToken;
    askedAt = QDateTime::currentDateTime();
    session.StaySignedIn(token);
    emit Changed();
}

void CloudSituation::OnSignedIn()
{
    isSignedIn = true;
    token.clear();
    message.Close(Topic::signIn);
    session.Refresh();
    session.Cloud().UserQuota();
    emit Changed();
}

bool CloudSituation::IsSignedIn() const
{
    return isSignedIn;
}

bool CloudSituation::IsOffline() const
{
    return session.ConnectionState() == CloudSession::Connection::Offline;
}

bool CloudSituation::HasList() const
{
    return !refreshedAt.isNull();
}

void CloudSituation::RefreshOldList()
{
    if (isListOld) {
        session.Refresh();
    }
}

void CloudSituation::Describe(StatusLine::Situation& situation) const
{
    situation.isRefreshing = isRefreshing;
    situation.isSigningIn = !token.isEmpty();
    situation.askedAt = askedAt;
    situation.refreshedAt = refreshedAt;
    situation.isOffline = isAway;
    situation.nextAttempt = session.NextAttempt();
}

void CloudSituation::OnListRefreshed()
{
    isRefreshing = false;
    refreshedAt = QDateTime::currentDateTime();
    message.Close(Topic::list);
    if (session.Documents().FilesCount() >= countBeforeLoss) {
        message.Close(Topic::loss);
    }
    emit Changed();
}

void CloudSituation::OnConnectionChanged()
{
    // Also while it is tried again, which may be over in a moment.
    const bool wasAway = isAway;
    isAway = IsOffline() || (isAway && session.ConnectionState() == CloudSession::Connection::Connecting);
    if (wasAway && !isAway) {
        isListOld = true;
        emit CameBack();
    }
    emit Changed();
}

void CloudSituation::OnFailed(const CloudProblem& problem)
{
    const MessageBar::Remedy signInAgain = {tr("Sign In…"), [this] { emit SignInRequested(); }};
    if (problem.request == CloudProblem::Request::List) {
        isRefreshing = false;
        emit Changed();
    }
    const bool isConnecting =
        problem.request == CloudProblem::Request::SignIn || problem.request == CloudProblem::Request::List;
    if (isConnecting && IsOffline()) {
        status.Explain(ProblemReason(problem), TechnicalText(problem)); // which counts the seconds: no advice
        emit Changed();
        return;
    }
    if (problem.request != CloudProblem::Request::SignIn && !session.IsSignedIn()) {
        if (isSignedIn) { // otherwise an earlier request has reported it
            isSignedIn = false;
            message.Show(Topic::signIn, tr("You have been signed out."), ProblemDetail(problem), {signInAgain});
            emit Changed();
        }
        return;
    }
    const QString title = ProblemTitle(problem, NameOf(session, problem.subject));
    const QString detail = ProblemDetail(problem);
    switch (problem.request) {
    case CloudProblem::Request::SignIn:
        message.Show(Topic::signIn, title, detail, {{tr("Try Again"), [this] { SignIn(token); }}, signInAgain});
        message.SetDetails(TechnicalText(problem));
        emit Changed();
        break;
    case CloudProblem::Request::List:
        message.Show(Topic::list, title, detail, {{tr("Try Again"), [this] { session.Refresh(); }}});
        message.SetDetails(TechnicalText(problem));
        break;
    case CloudProblem::Request::Remove:
        message.Show(Topic::removal, title, detail,
                     {{tr("Try Again"), [this, id = problem.subject] { session.Remove(id); }}});
        message.SetDetails(TechnicalText(problem));
        message.SetSubject(problem.subject);
        break;
    case CloudProblem::Request::Quota:
        status.Storage().Show(Social::NorlisCloudProtocol::unknownQuota, Social::NorlisCloudProtocol::unknownQuota);
        break;
    case CloudProblem::Request::Upload:
    case CloudProblem::Request::Download:
        break; // shown in the list of transfers
    case CloudProblem::Request::Preview:
        break; // the document is shown without a preview
    }
}

void CloudSituation::OnManyGone(int gone, int before)
{
    countBeforeLoss = before;
    message.Show(Topic::loss, tr("%1 of the %2 documents are gone from the list.").arg(gone).arg(before),
                 tr("If nobody removed them, check the cloud. Their local copies are remembered for a month."));
}

} // namespace Norlis::Window
