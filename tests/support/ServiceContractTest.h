#pragma once

#include "Client.h"
#include "Files.h"
#include "ServiceUnderTest.h"
#include <testkit/contract/ContractTest.h>

namespace Norlis::Test {

/// What holds for our own protocol object over every kind of service, beside the contract. The client is signed in.
class ServiceContractTest : public TestKit::SignedInContractTest {
protected:
    ServiceUnderTest& Service() const
    {
        return static_cast<ServiceUnderTest&>(*cloud);
    }

    NorlisCloudProtocol& Protocol() const
    {
        return ProtocolObject(*client.Protocol());
    }
};

} // namespace Norlis::Test
