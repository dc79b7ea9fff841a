#pragma once

#include "Waiting.h"
#include <testkit/contract/Client.h>

#include <contracts/NorlisCloudProtocol.h>

#include <vector>

namespace Norlis::Test {

using Social::NorlisCloudProtocol;
using TestKit::Answer;
using TestKit::AnswerPtr;
using TestKit::CloudFile;
using TestKit::NoPayload;
using TestKit::QuotaMap;

/// A user of our own protocol object.
class Client : public TestKit::Client {
public:
    /// \param token for SignIn and Authorize
    explicit Client(const Social::OAuth2::AuthInfo& authInfo, const QString& token = "token");

    AnswerPtr<NorlisCloudProtocol::ServiceCapabilities> Probe();

    /// Null after Destroy.
    NorlisCloudProtocol* Protocol() const;

    std::vector<Social::OAuth2::TransferredFile> transferred;
};

/// The protocol object, as the session uses it.
std::unique_ptr<PDF::Cloud::ICloudProtocol> MakeProtocol(const Social::OAuth2::AuthInfo& authInfo);

/// What is behind an interface that MakeProtocol has made.
NorlisCloudProtocol& ProtocolObject(PDF::Cloud::ICloudProtocol& protocol);

} // namespace Norlis::Test
