#pragma once

// Server time: the local clock plus the offset last reported by the server (the cloud store).

#include "Platform/Core/CoreExport.h"

namespace core::time_date {

VXCORE_EXPORT long long GetServerTimeMs();
VXCORE_EXPORT void SetServerTimeOffsetMs(long long offsetMs);
VXCORE_EXPORT long long GetServerTimeOffsetMs();

} // namespace core::time_date
