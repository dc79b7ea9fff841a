#include "CloudAccount.h"

#include "ServiceAddress.h"

#include <QFile>

#include <stdexcept>

namespace Norlis::Host {

namespace {

/// The library asks for a token even where the service does not.
const auto tokenForNone = QStringLiteral("none");

constexpr qint64 maxCertificateFile = 16 * 1024 * 1024; // bytes; the systems' own have less than one MiB

/// Asked here, because what goes wrong in a handshake is much harder to understand.
void CheckCertificateFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(
            QStringLiteral("The certificate file %1 cannot be read: %2").arg(path, file.errorString()).toStdString());
    }
    if (!file.read(maxCertificateFile).contains("-----BEGIN CERTIFICATE-----")) {
        throw std::runtime_error(
            QStringLiteral("The file %1 contains no certificate in PEM format").arg(path).toStdString());
    }
}

} // namespace

CloudAccount::CloudAccount(const std::shared_ptr<CloudAccountSettings>& settings, const QUrl& service,
                           const ServiceAccess& access)
    : settings(settings),
      service(service),
      access(access)
{
}

const QUrl& CloudAccount::Service() const
{
    return service;
}

Social::OAuth2::AuthInfo CloudAccount::AuthInfo() const
{
    const auto current = Access();
    if (!current.certificateFile.isEmpty()) {
        CheckCertificateFile(current.certificateFile);
    }
    Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = service;
    authInfo.certificateFile = current.certificateFile;
    authInfo.allowPlainHttp = current.allowPlainHttp;
    return authInfo;
}

QString CloudAccount::Token() const
{
    return IsFolder(service) ? tokenForNone : settings->Token(service);
}

QString CloudAccount::TokenForNone()
{
    return tokenForNone;
}

QString CloudAccount::DataFolder() const
{
    return settings->ServiceFolder(service);
}

void CloudAccount::Remember(const QString& token)
{
    if (!IsFolder(service)) {
        settings->SetToken(service, token);
        settings->SetAccess(service, Access());
    }
    settings->SetServiceUrl(service);
}

void CloudAccount::Forget()
{
    settings->ForgetToken(service);
    settings->SetAccess(service, {});
    if (service == settings->ServiceUrl()) {
        settings->SetServiceUrl({});
    }
}

/// What is remembered, and on top of it what was asked for.
ServiceAccess CloudAccount::Access() const
{
    auto current = settings->Access(service);
    if (!access.certificateFile.isEmpty()) {
        current.certificateFile = access.certificateFile;
    }
    current.allowPlainHttp = current.allowPlainHttp || access.allowPlainHttp;
    return current;
}

} // namespace Norlis::Host
