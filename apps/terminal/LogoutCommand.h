#pragma once

#include "Command.h"

namespace Norlis::Terminal {

/// Forgets the token of a service.
class LogoutCommand : public Command {
    Q_OBJECT

public:
    explicit LogoutCommand(const Environment& environment);

    void Start() override;
};

} // namespace Norlis::Terminal
