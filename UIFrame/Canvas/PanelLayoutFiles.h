#pragma once

// Layout files on disk, without the manager's state: reading a layout file in the current or
// the old format, writing one atomically, listing a user folder's layout files and the small
// configuration file that remembers the recently exported folder. Safe on any thread.

#include "Platform/Core/Concurrency.h"
#include "UIFrame/Canvas/PanelLayoutTemplate.h"

#include <QList>
#include <QString>

namespace panel_layout_files {

using ErrorValue = core::ErrorCode::CommonErrorValue;

enum class ReadResult
{
    CurrentFormat,
    OldFormat,
    Failed,
};

// Reads `path` into *target: first the current format, then, from the file's start, the old one.
// Failed (target untouched) for an empty path, a missing or unreadable file or one that holds
// neither format; the reason is logged with the file's path. `caller` names the function in logs.
ReadResult ReadLayoutFile(CVXPanelLayoutTemplate* target, const QString& path, const char* caller);

// Writes the template in the current format through a QSaveFile: the previous file is replaced
// only when everything was written, and stays as it was otherwise. False on any failure
// (logged), for an empty path and for an empty template.
bool WriteLayoutFile(const CVXPanelLayoutTemplate& layout, const QString& path);

// Paths of the "*.vxl" files (files only) of a folder, sorted by name.
core::ErrorOrValue<QList<QString>, ErrorValue> ListLayoutFiles(const QString& folder);

// The recently exported folder's configuration file: JSON {"RecentlyExportedFolder": "..."}.
QString RecentFolderConfigName();
core::ErrorOrValue<QString, ErrorValue> ReadRecentFolder(const QString& configPath);
core::ErrorOrValue<bool, ErrorValue> WriteRecentFolder(const QString& configPath, const QString& folder);

} // namespace panel_layout_files
