#pragma once

#include "Command.h"
#include "ShownVersions.h"

#include <host/session/CloudSession.h>

#include <memory>

namespace Norlis::Terminal {

/// A command that talks to the cloud: it signs in, does its work, saves the list and ends.
class SessionCommand : public Command {
    Q_OBJECT

public:
    explicit SessionCommand(const Environment& environment);
    ~SessionCommand() override;

    void Start() override;
    void Interrupt() override;

protected:
    /// Called once the user is signed in.
    virtual void Work() = 0;

    /// Called when a request failed after the sign-in. By default reports the failure and ends.
    virtual void OnFailed(const Host::CloudProblem& problem);

    /// The token to sign in with; empty if there is none, in which case the command has been ended. By default the
    /// stored one.
    virtual QString Token();

    /// What to do when the server does not accept the token.
    virtual QString SignInAdvice() const;

    /// Folder for the records and previews of the service.
    virtual QString DataFolder() const;

    /// Opens the records of the service without contacting the cloud. On failure returns false, after calling Finish.
    bool OpenSession();

    Host::CloudSession& Session();

    /// Saved when the command ends.
    ShownVersions& Shown();

    /// Reports that nobody is signed in, and ends.
    void FailSignedOut();

    /// Saves and ends. Further calls have no effect.
    void Finish(int exitStatus);
    bool IsFinishing() const;

private:
    void HandleFailure(Host::CloudProblem problem);
    void Close(int exitStatus);

    std::unique_ptr<Host::CloudSession> session;
    std::unique_ptr<ShownVersions> shown; ///< read when it is needed first
    bool isSignedIn = false;
    bool isFinishing = false;
};

} // namespace Norlis::Terminal
