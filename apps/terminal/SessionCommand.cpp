#include "SessionCommand.h"

#include "ExitStatus.h"
#include "ProblemText.h"

#include <QTimer>

namespace Norlis::Terminal {

SessionCommand::SessionCommand(const Environment& environment) : Command(environment) {}

SessionCommand::~SessionCommand() = default;

void SessionCommand::Start()
{
    if (account.Service().isEmpty()) {
        FailSignedOut();
        return;
    }
    if (!OpenSession()) { // first, because it reports a service that does not exist
        return;
    }
    const QString token = Token();
    if (token.isEmpty()) {
        return;
    }
    connect(&session->Cloud(), &PDF::Cloud::AbstractCloudManager::AuthorizationCompleted, this, [this] {
        isSignedIn = true;
        Work();
    });
    session->Cloud().Authorization(token);
}

void SessionCommand::Interrupt()
{
    Finish(ExitStatus::interrupted);
}

void SessionCommand::OnFailed(const Host::CloudProblem& problem)
{
    output.Error(ProblemText(problem));
    Finish(ExitStatus::failure);
}

QString SessionCommand::Token()
{
    const QString token = account.Token();
    if (token.isEmpty()) {
        FailSignedOut();
    }
    return token;
}

QString SessionCommand::SignInAdvice() const
{
    return "Sign in again: " + account.LoginCommandLine();
}

QString SessionCommand::DataFolder() const
{
    return account.DataFolder();
}

bool SessionCommand::OpenSession()
{
    try {
        session = std::make_unique<Host::CloudSession>(DataFolder(), account.AuthInfo());
    } catch (const std::exception& problem) {
        output.Error(QString::fromUtf8(problem.what()));
        Finish(ExitStatus::failure);
        return false;
    }
    connect(session.get(), &Host::CloudSession::Failed, this, &SessionCommand::HandleFailure);
    connect(session.get(), &Host::CloudSession::ManyDocumentsGone, this, [this](int gone, int before) {
        output.Error(QStringLiteral("%1 of the %2 documents that were in the list are gone from it. If nobody removed "
                                    "them, check the service. Their local copies are remembered for a month")
                         .arg(gone)
                         .arg(before));
    });
    return true;
}

void SessionCommand::HandleFailure(Host::CloudProblem problem)
{
    const bool wasSignedOut = isSignedIn && !session->IsSignedIn();
    if (wasSignedOut || problem.cause.advice.startsWith("Sign in again")) {
        problem.cause.advice = SignInAdvice();
    }
    if (isSignedIn) {
        OnFailed(problem);
    } else {
        SessionCommand::OnFailed(problem);
    }
}

Host::CloudSession& SessionCommand::Session()
{
    return *session;
}

ShownVersions& SessionCommand::Shown()
{
    if (!shown) {
        shown = std::make_unique<ShownVersions>(account.DataFolder());
    }
    return *shown;
}

void SessionCommand::FailSignedOut()
{
    output.Error(account.SignedOutText());
    Finish(ExitStatus::failure);
}

void SessionCommand::Finish(int exitStatus)
{
    if (!isFinishing) {
        isFinishing = true;
        output.SetStatus({});
        // The session may be in the middle of emitting a signal.
        QTimer::singleShot(0, this, [this, exitStatus] { Close(exitStatus); });
    }
}

bool SessionCommand::IsFinishing() const
{
    return isFinishing;
}

void SessionCommand::Close(int exitStatus)
{
    if (session) {
        session->disconnect(this);
        try {
            session->SaveAndClose();
        } catch (const std::exception& problem) {
            output.Error(QString::fromUtf8(problem.what()));
            exitStatus = exitStatus == ExitStatus::success ? ExitStatus::failure : exitStatus;
        }
        session.reset();
    }
    if (shown) {
        shown->Save();
    }
    emit Finished(exitStatus);
}

} // namespace Norlis::Terminal
