#pragma once

#include "Command.h"

#include <contracts/NorlisCloudProtocol.h>

#include <memory>

namespace Norlis::Terminal {

/// Shows what the service supports. Does not open the records, so other commands can run at the same time.
class DoctorCommand : public Command {
    Q_OBJECT

public:
    explicit DoctorCommand(const Environment& environment);
    ~DoctorCommand() override;

    void Start() override;

private:
    void SignIn(const QString& token);
    void Probe();
    void Show(const Social::NorlisCloudProtocol::ServiceCapabilities& capabilities);
    void Fail(const QString& text);

    Social::OAuth2::Failure cause; ///< why the last request failed
    std::unique_ptr<Social::NorlisCloudProtocol> protocol;
};

} // namespace Norlis::Terminal
