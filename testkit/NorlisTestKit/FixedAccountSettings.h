#pragma once

#include <contracts/ICloudAccountSettings.h>

namespace Norlis::TestKit {

/// Account settings as a test sets them; counts the questions.
class FixedAccountSettings : public PDF::Settings::ICloudAccountSettings {
public:
    bool autoRefresh = false;
    int interval = 60000; ///< milliseconds
    int enabledQuestions = 0;
    int intervalQuestions = 0;

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
