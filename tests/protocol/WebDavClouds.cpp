#include "WebDavUnderTest.h"

namespace Norlis::Test {

std::vector<KindOfCloud> KindsOfClouds()
{
    std::vector<KindOfCloud> kinds;
    for (const ServerKind kind : AllServerKinds()) {
        kinds.push_back({NameOf(kind), [kind] { return std::make_unique<WebDavUnderTest>(SharedServer(kind)); }});
    }
    return kinds;
}

} // namespace Norlis::Test
