#include "Account.h"

#include <host/account/ServiceAddress.h>

namespace Norlis::Terminal {

namespace {

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
    // A user name that was given at sign-in need not be repeated.
    const bool isMeantForLast = arguments.command != "login" && arguments.service.userName().isEmpty() &&
                                IsSameApartFromUser(arguments.service, last) &&
                                settings.Token(arguments.service).isEmpty();
    return isMeantForLast ? last : arguments.service;
}

} // namespace

Account::Account(const Arguments& arguments, const std::shared_ptr<Host::CloudAccountSettings>& settings)
    : CloudAccount(settings, ChosenService(arguments, *settings), {arguments.certificateFile, arguments.allowPlainHttp})
{
}

QString Account::LoginCommandLine() const
{
    return "norlis-cloud login --service " + (Service().isEmpty() ? "URL" : Host::ServiceWord(Service()));
}

QString Account::SignedOutText() const
{
    return "You are not signed in. Run: " + LoginCommandLine();
}

} // namespace Norlis::Terminal
