#include "FolderUnderTest.h"

namespace Norlis::Test {

std::vector<KindOfCloud> KindsOfClouds()
{
    return {{"Folder", [] { return std::make_unique<FolderUnderTest>(); }}};
}

} // namespace Norlis::Test
