#pragma once

#include <contracts/Ability.h>
#include <contracts/NorlisCloudSharingResult.h>

namespace Norlis::PDF::Cloud {

/// The cloud as the cloud manager sees it; see Ability.h for what every request promises.
class NORLIS_CONTRACTS_EXPORT ICloudProtocol
    : public Social::Protocol<Social::Ability::Auth, Social::Ability::File<Social::NorlisCloudSharingResult>,
                              Social::Ability::Quota, Social::Ability::Preview> {};

} // namespace Norlis::PDF::Cloud
