#include "SessionCommand.h"

#include "ExitStatus.h"
#include "ProblemText.h"

#include <QTimer>

namespace Norlis::Terminal {

namespace {

/// A program that ends when its work is done refreshes its list when it needs it.
class NoAutoRefresh : public PDF::Settings::ICloudAccountSettings {
public:
    bool IsAutoRefreshEnabled() override
    {
        return false;
    }

    int GetAutoRefreshInterval() override
    {
        return 0;
    }
};

} // namespace

SessionCommand::SessionCommand(const Environment& environment) : Command(environment) {}

SessionCommand::~SessionCommand() = default;

void SessionCommand::Start()
{
    if (account.Service().isEmpty()) {
        RefuseSignedOut();
        return;
    }
    if (!OpenSession()) { // first, as it tells whether there is such a service
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
        RefuseSignedOut();
    }
    return token;
}

QString SessionCommand::DataFolder() const
{
    return account.DataFolder();
}

bool SessionCommand::OpenSession()
{
    try {
        session = Host::CloudSession::Open(account, DataFolder(), std::make_shared<NoAutoRefresh>());
    } catch (const std::exception& problem) {
        output.Error(QString::fromUtf8(problem.what()));
        Finish(ExitStatus::failure);
        return false;
    }
    connect(session.get(), &Host::CloudSession::Failed, this, &SessionCommand::HandleFailure);
    return true;
}

void SessionCommand::HandleFailure(Host::CloudProblem problem)
{
    const auto signInAgain = QStringLiteral("Sign in again");
    const bool isSignedOutMeanwhile = isSignedIn && !session->IsSignedIn();
    if (isSignedOutMeanwhile || problem.cause.advice.startsWith(signInAgain)) {
        problem.cause.advice = signInAgain + ": " + account.LoginCommandLine();
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

void SessionCommand::RefuseSignedOut()
{
    output.Error(account.SignedOutText());
    Finish(ExitStatus::failure);
}

void SessionCommand::Finish(int exitStatus)
{
    if (!isFinishing) {
        isFinishing = true;
        output.SetStatus({});
        // The session may be in the middle of telling something.
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
    emit Finished(exitStatus);
}

} // namespace Norlis::Terminal
