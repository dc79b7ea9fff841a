#include "CloudAccount.h"

#include "ServiceAddress.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace Norlis::Host {

namespace {

/// The library asks for a token even where the service does not.
const auto folderToken = QStringLiteral("folder");

constexpr qint64 largestCertificateFile = 16 * 1024 * 1024; // bytes; the systems' own have less than one MiB

/// Asked here, because what goes wrong in a handshake is much harder to understand.
void CheckCertificateFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(
            QStringLiteral("The certificate file %1 cannot be read: %2").arg(path, file.errorString()).toStdString());
    }
    if (!file.read(largestCertificateFile).contains("-----BEGIN CERTIFICATE-----")) {
        throw std::runtime_error(
            QStringLiteral("There is no certificate in PEM form in the file %1").arg(path).toStdString());
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
    const auto way = Access();
    if (!way.certificateFile.isEmpty()) {
        CheckCertificateFile(way.certificateFile);
    }
    Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = service;
    authInfo.certificateFile = way.certificateFile;
    authInfo.allowPlainHttp = way.allowPlainHttp;
    return authInfo;
}

QString CloudAccount::Token() const
{
    return IsFolder(service) ? folderToken : settings->Token(service);
}

QString CloudAccount::DataFolder() const
{
    return settings->ServiceFolder(service);
}

std::unique_ptr<CloudSession>
CloudAccount::OpenSession(const QString& folder,
                          const std::shared_ptr<PDF::Settings::ICloudAccountSettings>& refresh) const
{
    // The library stores pictures of documents in the folder for temporary files. They shall outlive the next cleaning
    // of that folder, and nobody else shall see them.
    const QString pictures = folder + "/pictures";
    QDir().mkpath(pictures);
    qputenv("TMPDIR", QFile::encodeName(pictures));
    return std::make_unique<CloudSession>(folder, AuthInfo(), refresh);
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
    auto way = settings->Access(service);
    if (!access.certificateFile.isEmpty()) {
        way.certificateFile = access.certificateFile;
    }
    way.allowPlainHttp = way.allowPlainHttp || access.allowPlainHttp;
    return way;
}

} // namespace Norlis::Host
