#pragma once

#include <QMetaType>

namespace Norlis::Test {

/// The meta-type that is registered under a name.
inline int TypeNamed(const char* name)
{
#if QT_VERSION_MAJOR < 6
    return QMetaType::type(name);
#else
    return QMetaType::fromName(name).id();
#endif
}

} // namespace Norlis::Test
