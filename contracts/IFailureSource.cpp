#include "IFailureSource.h"

namespace Norlis::PDF::Cloud {

// Here, so that its type is the same one in every library: dynamic_cast compares it.
IFailureSource::~IFailureSource() = default;

} // namespace Norlis::PDF::Cloud
