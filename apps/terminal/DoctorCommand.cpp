#include "DoctorCommand.h"

#include "ExitStatus.h"
#include "ProblemText.h"
#include "Text.h"

#include <QJsonObject>

#include <stdexcept>

namespace Norlis::Terminal {

using Social::NorlisCloudProtocol;

DoctorCommand::DoctorCommand(const Environment& environment) : Command(environment) {}

DoctorCommand::~DoctorCommand() = default;

void DoctorCommand::Start()
{
    const QString token = account.Service().isEmpty() ? QString() : account.Token();
    if (token.isEmpty()) {
        Fail(account.SignedOutText());
        return;
    }
    auto authInfo = account.AuthInfo();
    authInfo.onFailure = [this](const Social::OAuth2::Failure& failure) { cause = failure; };
    try {
        protocol = std::make_unique<NorlisCloudProtocol>(authInfo, "Norlis");
    } catch (const std::invalid_argument& problem) {
        Fail(QString::fromUtf8(problem.what()));
        return;
    }
    SignIn(token);
}

void DoctorCommand::SignIn(const QString& token)
{
    protocol->auth({{NorlisCloudProtocol::SSO_TOKEN, token}}, [this](qint64, Social::RequestResult result) {
        if (result == Social::Success) {
            Probe();
        } else {
            Fail(FailureText("Signing in failed", cause));
        }
    });
}

void DoctorCommand::Probe()
{
    protocol->probeService(
        [this](qint64, Social::RequestResult result, const NorlisCloudProtocol::ServiceCapabilities& capabilities) {
            if (result == Social::Success) {
                Show(capabilities);
            } else {
                Fail(FailureText("Checking the service failed", cause));
            }
        });
}

void DoctorCommand::Show(const NorlisCloudProtocol::ServiceCapabilities& capabilities)
{
    QJsonObject object;
    QString table;
    int nameColumns = 0;
    for (const auto& capability : capabilities) {
        nameColumns = qMax(nameColumns, DisplayWidth(Printable(capability.first)));
    }
    for (const auto& [name, finding] : capabilities) {
        object[name] = finding;
        table += PadRight(Printable(name), nameColumns) + "  " + Printable(finding) + '\n';
    }
    if (output.IsJson()) {
        output.Json(QJsonDocument(object));
    } else {
        output.Lines(table);
    }
    emit Finished(ExitStatus::success);
}

void DoctorCommand::Fail(const QString& text)
{
    output.Error(text);
    emit Finished(ExitStatus::failure);
}

} // namespace Norlis::Terminal
