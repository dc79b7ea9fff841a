#include <tests/support/FolderUnderTest.h>
#include <tests/support/WebDavUnderTest.h>

namespace Norlis::TestKit {

using namespace Test;

std::vector<KindOfCloud> KindsOfClouds()
{
    std::vector<KindOfCloud> kinds{{"Folder", [] { return std::make_unique<FolderUnderTest>(); }}};
    for (const ServerKind kind : TestedServerKinds()) {
        kinds.push_back({NameOf(kind), [kind] { return std::make_unique<WebDavUnderTest>(SharedServer(kind)); }});
    }
    return kinds;
}

} // namespace Norlis::TestKit
