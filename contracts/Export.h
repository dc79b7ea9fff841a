#pragma once

#include <QtGlobal>

// Symbols are hidden by default; a class that crosses a library's border says which library it belongs to.
#if defined(NorlisContracts_EXPORTS)
#define NORLIS_CONTRACTS_EXPORT Q_DECL_EXPORT
#else
#define NORLIS_CONTRACTS_EXPORT Q_DECL_IMPORT
#endif

#if defined(NorlisSocial_EXPORTS)
#define NORLIS_SOCIAL_EXPORT Q_DECL_EXPORT
#else
#define NORLIS_SOCIAL_EXPORT Q_DECL_IMPORT
#endif
