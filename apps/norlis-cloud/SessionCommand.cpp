#include "SessionCommand.h"

#include "ExitStatus.h"
#include "ProblemText.h"

#include <QDir>
#include <QTimer>

namespace Norlis::Terminal {

namespace {

/// The library asks for a token even where the service does not.
const auto folderToken = QStringLiteral("folder");

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
    const QUrl service = Service();
    if (service.isEmpty()) {
        RefuseSignedOut();
        return;
    }
    if (!OpenSession(service)) { // first, as it tells whether there is such a service
        return;
    }
    const QString token = Token(service);
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

QString SessionCommand::Token(const QUrl& service)
{
    const QString token = IsFolder(service) ? folderToken : settings->Token(service);
    if (token.isEmpty()) {
        RefuseSignedOut();
    }
    return token;
}

QString SessionCommand::DataFolder(const QUrl& service) const
{
    return settings->ServiceFolder(service);
}

bool SessionCommand::OpenSession(const QUrl& service)
{
    const QString folder = DataFolder(service);
    // The library stores pictures of documents in the folder for temporary files. They shall outlive the next cleaning
    // of that folder, and nobody else shall see them.
    const QString pictures = folder + "/pictures";
    QDir().mkpath(pictures);
    qputenv("TMPDIR", QFile::encodeName(pictures));

    try {
        Social::OAuth2::AuthInfo authInfo;
        authInfo.serviceUrl = service;
        session = std::make_unique<Host::CloudSession>(folder, authInfo, std::make_shared<NoAutoRefresh>());
    } catch (const std::exception& problem) {
        output.Error(QString::fromUtf8(problem.what()));
        Finish(ExitStatus::failure);
        return false;
    }
    connect(session.get(), &Host::CloudSession::Failed, this, [this](const Host::CloudProblem& problem) {
        if (isSignedIn) {
            OnFailed(problem);
        } else {
            SessionCommand::OnFailed(problem);
        }
    });
    return true;
}

QUrl SessionCommand::Service() const
{
    return arguments.service.isEmpty() ? settings->ServiceUrl() : arguments.service;
}

Host::CloudSession& SessionCommand::Session()
{
    return *session;
}

void SessionCommand::RefuseSignedOut()
{
    const QUrl service = Service();
    output.Error("You are not signed in. Run: norlis-cloud login --service " +
                 (service.isEmpty() ? "URL" : ServiceText(service)));
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

bool IsFolder(const QUrl& service)
{
    return service.isLocalFile();
}

QString ServiceText(const QUrl& service)
{
    return IsFolder(service) ? service.toLocalFile() : service.toDisplayString();
}

} // namespace Norlis::Terminal
