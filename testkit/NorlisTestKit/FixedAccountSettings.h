#pragma once

#include <contracts/ICloudAccountSettings.h>

namespace Norlis::TestKit {

/// Account settings as a test sets them; counts the questions.
class FixedAccountSettings : public PDF::Settings::ICloudAccountSettings {
public:
    bool autoRefresh = false;  ///< the answer of IsAutoRefreshEnabled
    int interval = 60000;      ///< milliseconds; the answer of GetAutoRefreshInterval
    int enabledQuestions = 0;  ///< how often IsAutoRefreshEnabled was called
    int intervalQuestions = 0; ///< how often GetAutoRefreshInterval was called

    bool IsAutoRefreshEnabled() override
    {
        ++enabledQuestions;
        return autoRefresh;
    }

    int GetAutoRefreshInterval() override
    {
        ++intervalQuestions;
        return interval;
    }
};

} // namespace Norlis::TestKit
