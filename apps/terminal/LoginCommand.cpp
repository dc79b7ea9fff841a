#include "LoginCommand.h"

#include "ExitStatus.h"
#include "Text.h"
#include "TokenInput.h"

#include <host/account/ServiceAddress.h>

#include <QJsonObject>

namespace Norlis::Terminal {

namespace {

QString QuestionFor(const QUrl& service)
{
    const QString user = service.userName(QUrl::FullyDecoded);
    return user.isEmpty()
               ? "Token for " + Host::ServiceText(service) + ": "
               : "Password for " + user + " at " + Host::ServiceText(service.adjusted(QUrl::RemoveUserInfo)) + ": ";
}

} // namespace

LoginCommand::LoginCommand(const Environment& environment) : SessionCommand(environment) {}

QString LoginCommand::Token()
{
    const QUrl& service = account.Service();
    if (Host::IsFolder(service)) {
        return SessionCommand::Token();
    }
    try {
        if (!arguments.tokenFile.isEmpty()) {
            token = TokenFromFile(arguments.tokenFile);
        } else if (const auto typed = TokenFromStandardInput(QuestionFor(service), interruptDescriptor)) {
            token = *typed;
        } else {
            Finish(ExitStatus::interrupted);
        }
    } catch (const NoToken& problem) {
        if (!arguments.tokenFile.isEmpty()) {
            Fail(problem);
        } else { // there are servers that ask for none
            token = Host::CloudAccount::TokenForNone();
            isTokenGiven = false;
        }
    } catch (const std::runtime_error& problem) {
        Fail(problem);
    }
    return token;
}

void LoginCommand::Fail(const std::runtime_error& problem)
{
    output.Error(QString::fromUtf8(problem.what()));
    Finish(ExitStatus::failure);
}

QString LoginCommand::SignInAdvice() const
{
    return isTokenGiven ? SessionCommand::SignInAdvice()
                        : "No password or token was given. Enter one: " + account.LoginCommandLine();
}

void LoginCommand::Work()
{
    const QUrl& service = account.Service();
    try {
        account.Remember(token);
    } catch (const std::runtime_error& problem) {
        Fail(problem);
        return;
    }
    if (output.IsJson()) {
        output.Json(QJsonDocument(QJsonObject{{"service", service.toString()}, {"signedIn", true}}));
    } else {
        output.Line("Signed in to " + Printable(Host::ServiceText(service)));
    }
    Finish(ExitStatus::success);
}

} // namespace Norlis::Terminal
