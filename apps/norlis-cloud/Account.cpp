#include "Account.h"

#include "ServiceAddress.h"

#include <QFile>

#include <stdexcept>

namespace Norlis::Terminal {

namespace {

/// The library asks for a token even where the service does not.
const auto folderToken = QStringLiteral("folder");

constexpr qint64 largestCertificateFile = 16 * 1024 * 1024; // bytes; the systems' own have less than one MiB

bool IsSameApartFromUser(const QUrl& one, const QUrl& other)
{
    return one.adjusted(QUrl::RemoveUserInfo) == other.adjusted(QUrl::RemoveUserInfo);
}

QUrl ChosenService(const Arguments& arguments, const Host::CloudAccountSettings& settings)
{
    const QUrl last = settings.ServiceUrl();
    if (arguments.service.isEmpty()) {
        return last;
    }
    // Whoever has said at the sign-in who they are need not repeat it.
    const bool isMeantForLast = arguments.command != "login" && arguments.service.userName().isEmpty() &&
                                IsSameApartFromUser(arguments.service, last) &&
                                settings.Token(arguments.service).isEmpty();
    return isMeantForLast ? last : arguments.service;
}

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

Account::Account(const Arguments& arguments, const std::shared_ptr<Host::CloudAccountSettings>& settings)
    : arguments(arguments),
      settings(settings),
      service(ChosenService(arguments, *settings))
{
}

const QUrl& Account::Service() const
{
    return service;
}

Social::OAuth2::AuthInfo Account::AuthInfo() const
{
    const auto access = Access();
    if (!access.certificateFile.isEmpty()) {
        CheckCertificateFile(access.certificateFile);
    }
    Social::OAuth2::AuthInfo authInfo;
    authInfo.serviceUrl = service;
    authInfo.certificateFile = access.certificateFile;
    authInfo.allowPlainHttp = access.allowPlainHttp;
    return authInfo;
}

QString Account::Token() const
{
    return IsFolder(service) ? folderToken : settings->Token(service);
}

QString Account::DataFolder() const
{
    return settings->ServiceFolder(service);
}

void Account::Remember(const QString& token)
{
    if (!IsFolder(service)) {
        settings->SetToken(service, token);
        settings->SetAccess(service, Access());
    }
    settings->SetServiceUrl(service);
}

void Account::Forget()
{
    settings->ForgetToken(service);
    settings->SetAccess(service, {});
    if (service == settings->ServiceUrl()) {
        settings->SetServiceUrl({});
    }
}

QString Account::LoginCommandLine() const
{
    return "norlis-cloud login --service " + (service.isEmpty() ? "URL" : ServiceText(service));
}

QString Account::SignedOutText() const
{
    return "You are not signed in. Run: " + LoginCommandLine();
}

/// What is remembered, and on top of it what the command line says.
Host::ServiceAccess Account::Access() const
{
    auto access = settings->Access(service);
    if (!arguments.certificateFile.isEmpty()) {
        access.certificateFile = arguments.certificateFile;
    }
    access.allowPlainHttp = access.allowPlainHttp || arguments.allowPlainHttp;
    return access;
}

} // namespace Norlis::Terminal
