#pragma once

#include "SessionCommand.h"

namespace Norlis::Terminal {

/// Shows how much storage is used.
class QuotaCommand : public SessionCommand {
    Q_OBJECT

public:
    explicit QuotaCommand(const Environment& environment);

protected:
    void Work() override;

private:
    void Show(int used, int total);
};

} // namespace Norlis::Terminal
