// In the place of the services themselves, which are far more than what reads an address.

#include <contracts/NorlisCloudProtocol.h>

namespace Norlis::Social {

QStringList NorlisCloudProtocol::serviceSchemes()
{
    return {"file", "http", "https"};
}

} // namespace Norlis::Social
