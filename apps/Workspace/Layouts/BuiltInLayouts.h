#pragma once

// The built-in layouts of the workspace program: what a new user finds in the layout gallery.
// Each is a table of single-card boxes at explicit geometry on a canvas of BuiltInCanvasSize(),
// some boxes holding several cards as tabs, the boxes of one linkage group showing one security
// (and the trade boxes one account). They are built in code and written to disk by the layout
// manager's own exporter (WriteBuiltInLayouts), never shipped as hand-made files.

#include "Platform/Core/VariantMapTree.h"

#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

class CVXPanelScrollView;

namespace vx_trade {
class CVXSimTradeService;
}

namespace vx_ws {

struct VXBuiltInBox
{
    QRect geometry;        // on the canvas, border and title strip included
    QStringList cardTypes; // one tab per card, the first one shown
    QString groupId;       // linkage group; empty: the box follows nothing
    bool trade = false;    // takes the layout's account
    // What the first card starts with (its restore data, in the card's own keys); empty: the
    // card's defaults.
    CVXVariantMapTree cardData;
};

struct VXBuiltInLayout
{
    int nameId = 0; // texts of the gallery: the Chinese fallback is stored in the file
    const char* name = "";
    int remarksId = 0;
    const char* remarks = "";
    // "<fileBase>.vxl", "<fileBase>_white.png", "<fileBase>_black.png".
    QString fileBase;
    // The security the linked boxes show when the layout is opened.
    unsigned long stockId = 0;
    QVector<VXBuiltInBox> boxes;
    // The trade boxes take the broker's margin account rather than its default (cash) one: a
    // strategy with sold legs is refused in a cash account.
    bool marginAccount = false;
};

// The canvas the layouts are drawn for: the page of a 1280 x 800 main window.
QSize BuiltInCanvasSize();

// In gallery order.
const QVector<VXBuiltInLayout>& BuiltInLayouts();

// The box record (as CVXPanelAtomizationBox saves it) of one box of `layout`; `accountId` 0
// leaves trade boxes without an account (their cards use the broker's default one).
CVXVariantMapTree BuiltInBoxRecord(const VXBuiltInLayout& layout, const VXBuiltInBox& box,
                                   unsigned long long accountId);

// The account the layout's trade boxes are given: the first margin account of `broker` when the
// layout asks for one (the default account when the broker has none), else the default account.
unsigned long long BuiltInLayoutAccountID(const VXBuiltInLayout& layout,
                                          const vx_trade::CVXSimTradeService& broker);

// Adds the layout's boxes to an empty canvas. A box whose card types all lack a factory is
// skipped (logged by the canvas); a missing type among several only loses its tab. Returns the
// number of boxes made.
int FillBuiltInCanvas(const VXBuiltInLayout& layout, CVXPanelScrollView* canvas,
                      unsigned long long accountId);

// The card types of the layouts that have no registered factory, sorted, each once.
QStringList MissingBuiltInCardTypes();

// Name of the catalogue file the layout manager reads in the templates folder.
QString BuiltInCatalogueFileName();

// Writes every built-in layout into `folder` (created when missing): for each, the layout file
// and its light and dark previews through CVXPanelLayoutManager::ExportDefaultPanelLayout, then
// the catalogue. The card factories must be registered by the caller; the function installs its
// own simulated feed (fixed seed, stepped a fixed number of times) and broker for the time it
// runs and puts back the services, theme and exporter flag it found (the layout manager's file
// dialog hook is left empty). The exporter remembers the folder in the current user folder: the
// generator points the product root at a scratch folder. Same inputs give byte-identical files,
// previews included (the painting is deterministic). False with `error` set when a layout could
// not be written; files written before the failure stay.
bool WriteBuiltInLayouts(const QString& folder, QString* error);

} // namespace vx_ws
