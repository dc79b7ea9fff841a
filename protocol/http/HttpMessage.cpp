#include "HttpMessage.h"

namespace Norlis::Social {

QByteArray HttpHead::Field(const char* lowerCaseName) const
{
    for (const auto& [name, value] : fields) {
        if (name == lowerCaseName) {
            return value;
        }
    }
    return {};
}

} // namespace Norlis::Social
