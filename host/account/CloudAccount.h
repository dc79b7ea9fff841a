#pragma once

#include "CloudAccountSettings.h"
#include <host/session/CloudSession.h>

#include <memory>

namespace Norlis::Host {

/// One service, and all that it takes to sign in there. Used on one thread.
class CloudAccount {
public:
    /// \param settings where the account is remembered; shared
    /// \param service  what ServiceAddress gave; empty when there is none yet
    /// \param access   on top of what the settings remember of the way to it
    CloudAccount(const std::shared_ptr<CloudAccountSettings>& settings, const QUrl& service,
                 const ServiceAccess& access = {});

    /// The address that the constructor was given.
    const QUrl& Service() const;

    /// How to reach the service. Throws std::runtime_error, with a text for the user, when a file that is needed for it
    /// cannot be used.
    Social::OAuth2::AuthInfo AuthInfo() const;

    /// What signs in; empty when nobody is signed in. For a folder, which asks for none, it is never empty.
    QString Token() const;

    /// Folder for the records and pictures of the service.
    QString DataFolder() const;

    /// Opens the records of the service; see CloudSession for what it throws. One session of a process at a time: the
    /// folder for temporary files, in which the library stores pictures, becomes one of the session's own.
    /// \param folder DataFolder(), or another one for a second list of the same service
    std::unique_ptr<CloudSession>
    OpenSession(const QString& folder, const std::shared_ptr<PDF::Settings::ICloudAccountSettings>& refresh) const;

    /// Makes the service, the token and the way to it those that the settings know. Throws std::runtime_error when they
    /// cannot be stored.
    void Remember(const QString& token);

    /// The opposite. The token goes first, whatever else fails.
    void Forget();

private:
    ServiceAccess Access() const;

    const std::shared_ptr<CloudAccountSettings> settings;
    const QUrl service;
    const ServiceAccess access;
};

} // namespace Norlis::Host
