#include <contracts/AbstractFileManager.h>

#include <contracts/MetaTypes.h>

namespace Norlis::PDF {

AbstractFileManager::AbstractFileManager()
{
    RegisterMetaTypes();
}

AbstractFileManager::~AbstractFileManager() = default;

} // namespace Norlis::PDF
