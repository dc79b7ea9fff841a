#pragma once

#include "SessionCommand.h"

namespace Norlis::Terminal {

/// Signs in with a new token and remembers it if the service accepts it.
class LoginCommand : public SessionCommand {
    Q_OBJECT

public:
    explicit LoginCommand(const Environment& environment);

protected:
    QString Token() override;
    void Work() override;

private:
    QString token;
};

} // namespace Norlis::Terminal
