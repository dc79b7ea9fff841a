#include <contracts/AbstractCloudManager.h>

#include <contracts/MetaTypes.h>

namespace Norlis::PDF::Cloud {

AbstractCloudManager::AbstractCloudManager()
{
    RegisterMetaTypes();
}

AbstractCloudManager::~AbstractCloudManager() = default;

} // namespace Norlis::PDF::Cloud
