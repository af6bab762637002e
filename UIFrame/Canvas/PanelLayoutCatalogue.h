#pragma once

// The built-in layout catalogue: which catalogue file applies (bank edition first, then the
// main broker), reading its entries, and loading the built-in layouts the entries name.
// No manager state; safe on any thread.

#include "UIFrame/Canvas/PanelLayoutManager.h"

namespace panel_layout_catalogue {

using Entry = CVXPanelLayoutManager::DefaultLayoutEntry;
using ErrorValue = core::ErrorCode::CommonErrorValue;

// The broker whose clients get the Japanese catalogue.
inline constexpr int kJapanBrokerId = 1012;

// "DefaultPanelLayoutEleBank.json" in the bank edition, else "DefaultPanelLayoutJP.json" for
// broker 1012, else "DefaultPanelLayout.json".
QString CatalogueFileName(bool bankEdition, int firstMainBrokerId);

// "<app folder>/LayoutTemplates/".
QString TemplatesFolder(const QString& appFolder);

// The entries of the catalogue in `templatesFolder`, in file order, "File" and "Image" made
// paths in that folder. An object without "NameLangID" is skipped; one without "RemarksLangID"
// is kept (logged). Errors carry the texts shown to maintainers plus the path.
core::ErrorOrValue<QList<Entry>, ErrorValue> ReadCatalogue(const QString& templatesFolder,
                                                           const QString& catalogueFileName);

} // namespace panel_layout_catalogue
