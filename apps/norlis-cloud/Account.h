#pragma once

#include "Arguments.h"

#include <contracts/OAuth2.h>
#include <host/CloudAccountSettings.h>

#include <memory>

namespace Norlis::Terminal {

/// The service that a command works with, and all that it takes to sign in there.
class Account {
public:
    Account(const Arguments& arguments, const std::shared_ptr<Host::CloudAccountSettings>& settings);

    /// The one that the command line names, or else that of the last sign-in; empty when there is neither.
    const QUrl& Service() const;

    /// How to reach the service. Throws std::runtime_error when a file that is needed for it cannot be used.
    Social::OAuth2::AuthInfo AuthInfo() const;

    /// What signs in; empty when nobody is signed in.
    QString Token() const;

    /// Folder for the records and pictures of the service.
    QString DataFolder() const;

    /// Makes the service, the token and the way to it those of the next commands. Throws std::runtime_error when they
    /// cannot be stored.
    void Remember(const QString& token);

    /// The opposite.
    void Forget();

    /// The command that signs in, as the user can type it.
    QString LoginCommandLine() const;

    /// What to say when nobody is signed in.
    QString SignedOutText() const;

private:
    Host::ServiceAccess Access() const;

    const Arguments& arguments;
    const std::shared_ptr<Host::CloudAccountSettings> settings;
    const QUrl service;
};

} // namespace Norlis::Terminal
