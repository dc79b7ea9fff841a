#pragma once

#include "Command.h"

#include <host/CloudSession.h>

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
    virtual QString Token(const QUrl& service);

    /// Folder for the records and pictures of a service.
    virtual QString DataFolder(const QUrl& service) const;

    /// Opens the records of a service without asking the cloud. False, and Finish was called, when it failed.
    bool OpenSession(const QUrl& service);

    /// The service that the arguments or the last sign-in name; empty when there is none.
    QUrl Service() const;

    Host::CloudSession& Session();

    /// Complains that nobody is signed in, and gives up.
    void RefuseSignedOut();

    /// Saves and ends. Further calls change nothing.
    void Finish(int exitStatus);
    bool IsFinishing() const;

private:
    void Close(int exitStatus);

    std::unique_ptr<Host::CloudSession> session;
    bool isSignedIn = false;
    bool isFinishing = false;
};

/// Whether a service needs no token.
bool IsFolder(const QUrl& service);

/// The service as the user knows it: a path or an address.
QString ServiceText(const QUrl& service);

} // namespace Norlis::Terminal
