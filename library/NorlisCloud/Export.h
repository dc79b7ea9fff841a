#pragma once

#include <QtGlobal>

#if defined(NorlisCloud_EXPORTS)
#define NORLIS_CLOUD_EXPORT Q_DECL_EXPORT
#else
#define NORLIS_CLOUD_EXPORT Q_DECL_IMPORT
#endif
