#pragma once

#include <QtCore/qglobal.h>

#if defined(VXCORE_LIBRARY)
#define VXCORE_EXPORT Q_DECL_EXPORT
#else
#define VXCORE_EXPORT Q_DECL_IMPORT
#endif
