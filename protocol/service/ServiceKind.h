#pragma once

#include "CloudService.h"
#include <contracts/OAuth2.h>

#include <QStringList>

#include <memory>
#include <optional>
#include <string>

namespace Norlis::Social {

/// A kind of cloud, as it enters itself in protocol/Services.cpp.
struct ServiceKind {
    QStringList schemes; ///< of the addresses that are its own
    QString example;     ///< of an address, behind the words "give the address of"

    /// Why there can be no such service, for the user; nothing when there can be.
    std::optional<QString> (*validate)(const OAuth2::AuthInfo& authInfo);

    /// Called on the worker thread.
    std::unique_ptr<CloudService> (*make)(const OAuth2::AuthInfo& authInfo, const std::string& programName,
                                          const CloudService::Listener& listener);
};

} // namespace Norlis::Social
