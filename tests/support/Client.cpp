#include "Client.h"

#include <host/session/ProtocolAdapter.h>

#include <QPixmap>

namespace Norlis::Test {

namespace {

Social::OAuth2::AuthInfo WithTransferredInto(std::vector<Social::OAuth2::TransferredFile>* transferred,
                                             Social::OAuth2::AuthInfo authInfo)
{
    authInfo.onTransferred = [transferred](const Social::OAuth2::TransferredFile& file) {
        transferred->push_back(file);
    };
    return authInfo;
}

} // namespace

Client::Client(const Social::OAuth2::AuthInfo& authInfo, const QString& token)
    : TestKit::Client(MakeProtocol(WithTransferredInto(&transferred, authInfo)), token)
{
}

AnswerPtr<NorlisCloudProtocol::ServiceCapabilities> Client::Probe()
{
    using Capabilities = NorlisCloudProtocol::ServiceCapabilities;
    return Start<Capabilities>(
        [&](const AnswerPtr<Capabilities>& answer) { return Protocol()->probeService(DoneInto(answer)); });
}

NorlisCloudProtocol* Client::Protocol() const
{
    auto* const protocol = TestKit::Client::Protocol();
    return protocol ? &ProtocolObject(*protocol) : nullptr;
}

std::unique_ptr<PDF::Cloud::ICloudProtocol> MakeProtocol(const Social::OAuth2::AuthInfo& authInfo)
{
    return std::make_unique<Host::ProtocolAdapter>(authInfo, "tests");
}

NorlisCloudProtocol& ProtocolObject(PDF::Cloud::ICloudProtocol& protocol)
{
    return dynamic_cast<Host::ProtocolAdapter&>(protocol).Protocol();
}

} // namespace Norlis::Test
