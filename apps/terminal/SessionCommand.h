#pragma once

#include "Command.h"

#include <host/session/CloudSession.h>

#include <memory>

namespace Norlis::Terminal {

/// A command that talks to the cloud: signs in, works, saves the list, ends.
class SessionCommand : public Command {
    Q_OBJECT

public:
    explicit SessionCommand(const Environment& environment);
    ~SessionCommand() override;

    void Start() override;
    void Interrupt() override;

protected:
    /// Called when the user is signed in.
    virtual void Work() = 0;

    /// Called when a request failed after the sign-in. Complains and gives up unless overridden.
    virtual void OnFailed(const Host::CloudProblem& problem);

    /// The token to sign in with; empty when there is none and no reason to go on. Looks for the kept one unless
    /// overridden.
    virtual QString Token();

    /// Folder for the records and pictures of the service.
    virtual QString DataFolder() const;

    /// Opens the records of the service without asking the cloud. False, and Finish was called, when it failed.
    bool OpenSession();

    Host::CloudSession& Session();

    /// Complains that nobody is signed in, and gives up.
    void RefuseSignedOut();

    /// Saves and ends. Further calls change nothing.
    void Finish(int exitStatus);
    bool IsFinishing() const;

private:
    void HandleFailure(Host::CloudProblem problem);
    void Close(int exitStatus);

    std::unique_ptr<Host::CloudSession> session;
    bool isSignedIn = false;
    bool isFinishing = false;
};

} // namespace Norlis::Terminal
