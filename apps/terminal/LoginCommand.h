#pragma once

#include "SessionCommand.h"

#include <stdexcept>

namespace Norlis::Terminal {

/// Signs in with a new token and remembers it if the service accepts it.
class LoginCommand : public SessionCommand {
    Q_OBJECT

public:
    explicit LoginCommand(const Environment& environment);

protected:
    QString Token() override;
    void Work() override;
    QString SignInAdvice() const override;

private:
    void Fail(const std::runtime_error& problem);

    QString token;
    bool isTokenGiven = true;
};

} // namespace Norlis::Terminal
