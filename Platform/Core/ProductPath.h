#pragma once

// Folders of the product: the application folder (resources such as "/LayoutTemplates/" sit
// below it) and one folder per user id for the user's own files. Tests point both at a
// temporary root.

#include "Platform/Core/CoreExport.h"

#include <QString>

namespace core::product_path {

// The folder of the executable, or "<root>/app" under a root override.
VXCORE_EXPORT QString GetAppFolder();
// Resources folder: "<app folder>/resources" when present, else the source tree's resources.
VXCORE_EXPORT QString GetResourceFolder();
// "<data root>/users/<userId>", created on demand (user id 0 is "guest"); the data root is the
// platform's app data location, or "<root>/data" under a root override. A folder that cannot be
// created is logged; the path is returned all the same.
VXCORE_EXPORT QString GetUserFolder(unsigned long long userId);
// The folder of the logged-in user (login state), or the "<data root>/users/guest".
VXCORE_EXPORT QString GetCurrentUserFolder();

VXCORE_EXPORT void SetRootOverride(const QString& root);
VXCORE_EXPORT void SetAppFolderOverride(const QString& folder);
VXCORE_EXPORT void ResetForTest();

} // namespace core::product_path
