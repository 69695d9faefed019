#pragma once

#include <QtGlobal>

#if defined(QXBASE_BUILDING)
#define QXBASE_EXPORT Q_DECL_EXPORT
#else
#define QXBASE_EXPORT Q_DECL_IMPORT
#endif
