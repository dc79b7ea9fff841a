#include "KnownDocuments.h"

#include <apps/common/PrintableText.h>
#include <host/session/CloudFacts.h>
#include <host/session/CloudSession.h>

namespace Norlis::Window {

QString NameOf(Host::CloudSession& session, const QString& id)
{
    const auto* facts = session.Facts(id);
    return Apps::Printable(facts ? QString::fromStdString(facts->name) : id);
}

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
