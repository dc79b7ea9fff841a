#include "LogoutCommand.h"

#include "ExitStatus.h"
#include "Text.h"

#include <host/account/ServiceAddress.h>

#include <QJsonObject>

namespace Norlis::Terminal {

LogoutCommand::LogoutCommand(const Environment& environment) : Command(environment) {}

void LogoutCommand::Start()
{
    const QUrl& service = account.Service();
    if (!service.isEmpty()) {
        account.Forget();
    }
    if (output.IsJson()) {
        output.Json(QJsonDocument(QJsonObject{{"service", service.toString()}, {"signedIn", false}}));
    } else if (service.isEmpty()) {
        output.Line("You were not signed in.");
    } else {
        output.Line("Signed out of " + Printable(Host::ServiceText(service)));
    }
    emit Finished(ExitStatus::success);
}

} // namespace Norlis::Terminal
