#pragma once

#include <contracts/Export.h>

namespace Norlis::PDF::Settings {

/// Settings of the user's cloud account, as far as the cloud manager asks for them: once, when it is constructed.
class NORLIS_CONTRACTS_EXPORT ICloudAccountSettings {
public:
    virtual ~ICloudAccountSettings() = default;

    /// Whether the files list is fetched periodically: while nobody is signed in, too, when each time emits
    /// AbstractCloudManager::AuthorizationRequired.
    virtual bool IsAutoRefreshEnabled() = 0;

    /// Time between two refreshes, in milliseconds. Not asked for without automatic refresh.
    virtual int GetAutoRefreshInterval() = 0;
};

} // namespace Norlis::PDF::Settings
