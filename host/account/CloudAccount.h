#pragma once

#include "CloudAccountSettings.h"

#include <contracts/OAuth2.h>
#include <host/Export.h>

#include <memory>

namespace Norlis::Host {

/// One service, and all that it takes to sign in there. Used on one thread.
class NORLIS_HOST_EXPORT CloudAccount {
public:
    /// \param settings where the account is remembered; shared
    /// \param service  what ServiceAddress gave; empty when there is none yet
    /// \param access   on top of what the settings remember of it
    CloudAccount(const std::shared_ptr<CloudAccountSettings>& settings, const QUrl& service,
                 const ServiceAccess& access = {});

    /// The address that the constructor was given.
    const QUrl& Service() const;

    /// How to reach the service. Throws std::runtime_error, with a text for the user, when a file that is needed for it
    /// cannot be used.
    Social::OAuth2::AuthInfo AuthInfo() const;

    /// What signs in; empty when nobody is signed in. For a folder, which asks for none, it is never empty.
    QString Token() const;

    /// What to sign in with, and to Remember, where the service asks for no password.
    static QString TokenForNone();

    /// Folder for the records and previews of the service.
    QString DataFolder() const;

    /// Stores the service, the token and the access to it in the settings. Throws std::runtime_error when they cannot
    /// be stored.
    void Remember(const QString& token);

    /// Removes them from the settings; the token first, whatever else fails. Throws as Remember does.
    void Forget();

private:
    ServiceAccess Access() const;

    const std::shared_ptr<CloudAccountSettings> settings;
    const QUrl service;
    const ServiceAccess access;
};

} // namespace Norlis::Host
