#include "CloudVersions.h"

#include <host/session/CloudFacts.h>
#include <host/session/CloudSession.h>

namespace Norlis::Window {

QStringList VersionsOf(Host::CloudSession& session, const QStringList& ids)
{
    QStringList versions;
    for (const QString& id : ids) {
        const auto* facts = session.Facts(id);
        versions.append(facts ? QString::fromStdString(facts->hash) : QString());
    }
    return versions;
}

} // namespace Norlis::Window
