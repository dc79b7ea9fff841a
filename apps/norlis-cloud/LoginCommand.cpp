#include "LoginCommand.h"

#include "ExitStatus.h"
#include "TokenInput.h"

#include <QJsonObject>

#include <stdexcept>

namespace Norlis::Terminal {

LoginCommand::LoginCommand(const Environment& environment) : SessionCommand(environment) {}

QString LoginCommand::Token(const QUrl& service)
{
    if (IsFolder(service)) {
        return SessionCommand::Token(service);
    }
    try {
        if (!arguments.tokenFile.isEmpty()) {
            token = TokenFromFile(arguments.tokenFile);
        } else if (const auto typed =
                       TokenFromStandardInput("Token for " + ServiceText(service) + ": ", interruptDescriptor)) {
            token = *typed;
        } else {
            Finish(ExitStatus::interrupted);
        }
    } catch (const std::runtime_error& problem) {
        output.Error(QString::fromUtf8(problem.what()));
        Finish(ExitStatus::failure);
    }
    return token;
}

void LoginCommand::Work()
{
    const QUrl service = Service();
    try {
        if (!IsFolder(service)) {
            settings->SetToken(service, token);
        }
        settings->SetServiceUrl(service);
    } catch (const std::runtime_error& problem) {
        output.Error(QString::fromUtf8(problem.what()));
        Finish(ExitStatus::failure);
        return;
    }
    if (output.IsJson()) {
        output.Json(QJsonDocument(QJsonObject{{"service", service.toString()}, {"signedIn", true}}));
    } else {
        output.Line("Signed in to " + output.Name(ServiceText(service)));
    }
    Finish(ExitStatus::success);
}

} // namespace Norlis::Terminal
