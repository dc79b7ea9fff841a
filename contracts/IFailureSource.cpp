#include "IFailureSource.h"

namespace Norlis::PDF::Cloud {

IFailureSource::~IFailureSource() = default;

} // namespace Norlis::PDF::Cloud
