#pragma once

#include <QtCore/qglobal.h>

#if defined(UIFRAME_LIBRARY)
#define UIFRAME_EXPORT Q_DECL_EXPORT
#else
#define UIFRAME_EXPORT Q_DECL_IMPORT
#endif
