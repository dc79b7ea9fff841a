#pragma once

#include <host/Export.h>

#include <QSettings>
#include <QString>
#include <QUrl>

namespace Norlis::Host {

/// How a service is reached, beside its address; see Social::OAuth2::AuthInfo.
struct ServiceAccess {
    QString certificateFile = {}; ///< path of a PEM file; empty trusts what the system trusts
    bool allowPlainHttp = false;  ///< takes `http:` beyond loopback
};

/// The user's cloud account: which service, how it is reached, and the token that signs in. The token is usually a
/// password.
///
/// Settings stand in `settings.ini`; tokens stand apart, one file per service. All of it is readable for the user
/// alone. Used on one thread.
class NORLIS_HOST_EXPORT CloudAccountSettings {
public:
    /// \param folder created when missing, private to the user. One that is there keeps its permissions.
    /// Throws std::runtime_error when it cannot be used, or when other users may write to it.
    explicit CloudAccountSettings(const QString& folder);

    /// The service that was signed in to last; empty when there is none. A password in it is not kept.
    QUrl ServiceUrl() const;

    /// As ServiceUrl, also when it was forgotten since: to be offered to whoever signs in again.
    QUrl LastServiceUrl() const;

    /// Like the others that store something, this throws std::runtime_error when it cannot be stored. Until the program
    /// ends the settings are what was set nevertheless. Empty forgets it.
    void SetServiceUrl(const QUrl& url);

    /// Empty when nobody is signed in to the service.
    QString Token(const QUrl& service) const;

    /// Throws std::runtime_error when the token cannot be stored safely.
    void SetToken(const QUrl& service, const QString& token);

    /// Deletes the file with the token; nothing happens when there is none.
    void ForgetToken(const QUrl& service);

    /// The defaults unless it was set.
    ServiceAccess Access(const QUrl& service) const;

    /// Remembers how one service is reached.
    void SetAccess(const QUrl& service, const ServiceAccess& access);

    /// A folder of its own for the data of one service, inside the settings' folder; private to the user and created
    /// when missing. Throws std::runtime_error when it cannot be.
    QString ServiceFolder(const QUrl& service) const;

private:
    QUrl UrlAt(const char* key) const;
    QString TokenFile(const QUrl& service) const;

    QString folder;
    QSettings settings;
};

} // namespace Norlis::Host
