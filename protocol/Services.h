#pragma once

#include <protocol/service/ServiceKind.h>

#include <vector>

namespace Norlis::Social {

/// All that there are.
const std::vector<ServiceKind>& ServiceKinds();

/// Throws std::invalid_argument, with a text for the user, when the address is that of no service.
CloudServiceFactory ServiceFor(const OAuth2::AuthInfo& authInfo, const std::string& programName);

} // namespace Norlis::Social
