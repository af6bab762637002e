#pragma once

#include <QtCore/qglobal.h>

#if defined(VXSTDUI_LIBRARY)
#define VXSTDUI_EXPORT Q_DECL_EXPORT
#else
#define VXSTDUI_EXPORT Q_DECL_IMPORT
#endif
