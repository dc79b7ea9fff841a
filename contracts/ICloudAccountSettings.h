#pragma once

#include <contracts/Export.h>

namespace Norlis::PDF::Settings {

/// Settings of the user's cloud account, as far as the cloud manager asks for them, on its thread.
class NORLIS_CONTRACTS_EXPORT ICloudAccountSettings {
public:
    virtual ~ICloudAccountSettings() = default;

    /// Whether the files list is fetched periodically.
    virtual bool IsAutoRefreshEnabled() = 0;

    /// Time between two refreshes, in milliseconds.
    virtual int GetAutoRefreshInterval() = 0;
};

} // namespace Norlis::PDF::Settings
