#pragma once

#include <QtGlobal>

#if defined(NorlisHost_EXPORTS)
#define NORLIS_HOST_EXPORT Q_DECL_EXPORT
#else
#define NORLIS_HOST_EXPORT Q_DECL_IMPORT
#endif
