#pragma once

#include <QStringList>

namespace Norlis::Host {
class CloudSession;
} // namespace Norlis::Host

namespace Norlis::Window {

/// Of the cloud copies of documents, as the list shows them now: to find that a question was not about the newest ones.
QStringList VersionsOf(Host::CloudSession& session, const QStringList& ids);

} // namespace Norlis::Window
