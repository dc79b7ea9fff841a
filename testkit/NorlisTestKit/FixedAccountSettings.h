#pragma once

#include <contracts/ICloudAccountSettings.h>

namespace Norlis::TestKit {

/// Account settings as a test sets them; counts the calls.
class FixedAccountSettings : public PDF::Settings::ICloudAccountSettings {
public:
    bool autoRefresh = false; ///< the answer of IsAutoRefreshEnabled
    int interval = 60000;     ///< milliseconds; the answer of GetAutoRefreshInterval
    int enabledCalls = 0;     ///< how often IsAutoRefreshEnabled was called
    int intervalCalls = 0;    ///< how often GetAutoRefreshInterval was called

    bool IsAutoRefreshEnabled() override
    {
        ++enabledCalls;
        return autoRefresh;
    }

    int GetAutoRefreshInterval() override
    {
        ++intervalCalls;
        return interval;
    }
};

} // namespace Norlis::TestKit
