#include "Services.h"

#include <protocol/folder/FolderService.h>
#include <protocol/webdav/WebDavService.h>

#include <algorithm>
#include <stdexcept>

namespace Norlis::Social {

const std::vector<ServiceKind>& ServiceKinds()
{
    // A line for each. Everything else about a service is in its own folder.
    static const std::vector<ServiceKind> kinds = {
        FolderService::Kind(),
        WebDavService::Kind(),
    };
    return kinds;
}

CloudServiceFactory ServiceFor(const OAuth2::AuthInfo& authInfo, const std::string& programName)
{
    const QUrl& url = authInfo.serviceUrl;
    const auto& kinds = ServiceKinds();
    const auto kind = std::find_if(kinds.begin(), kinds.end(),
                                   [&](const ServiceKind& each) { return each.schemes.contains(url.scheme()); });
    std::optional<QString> problem;
    if (kind != kinds.end()) {
        problem = kind->validate(authInfo);
    } else {
        QStringList examples;
        for (const ServiceKind& each : kinds) {
            examples.append(each.example);
        }
        problem = "give the address of " + examples.join(", or of ");
    }
    if (problem) {
        throw std::invalid_argument(QStringLiteral("\"%1\" cannot be used as a cloud service: %2")
                                        .arg(url.toDisplayString(QUrl::RemoveUserInfo), *problem)
                                        .toStdString());
    }
    return [make = kind->make, authInfo, programName](const CloudService::Listener& listener) {
        return make(authInfo, programName, listener);
    };
}

} // namespace Norlis::Social
