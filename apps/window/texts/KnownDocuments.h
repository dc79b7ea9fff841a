#pragma once

#include <QStringList>

namespace Norlis::Host {
class CloudSession;
} // namespace Norlis::Host

namespace Norlis::Window {

// What the list tells of documents, found at once.

/// For the user; the id itself if the list has no such document.
QString NameOf(Host::CloudSession& session, const QString& id);

/// Of the cloud copies of documents, as the list shows them now: to find that a question was not about the newest ones.
QStringList VersionsOf(Host::CloudSession& session, const QStringList& ids);

} // namespace Norlis::Window
