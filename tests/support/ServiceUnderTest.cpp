#include "ServiceUnderTest.h"
#include "Client.h"
#include "Rounds.h"

namespace Norlis::Test {

std::unique_ptr<PDF::Cloud::ICloudProtocol> ServiceUnderTest::MakeProtocol()
{
    return Test::MakeProtocol(Settings());
}

bool ServiceUnderTest::PutAsOthers(const QString& name, const QByteArray& content)
{
    Put(name, content);
    return true;
}

bool ServiceUnderTest::TellsWritersApart() const
{
    return true;
}

int ServiceUnderTest::ManyDocuments() const
{
    return IsThorough() ? 10'000 : 3'000;
}

} // namespace Norlis::Test
