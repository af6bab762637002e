#pragma once

// The canvas's context menu: an "add component" submenu with the card types a user adds most,
// then paste, undo and redo. The menu only turns choices into the calls given to it; the canvas
// decides what they do. Entries that cannot act now are disabled, never hidden.

#include "UIFrame/UIFrameExport.h"

#include <QString>
#include <QVector>

#include <functional>

class QWidget;

namespace vx_std_ui {
class VMenu;
}

namespace panel_canvas_menu {

struct AddEntry
{
    int textId;
    const char* fallback; // the Chinese text
    const char* cardType;
};

// The card types of the "add component" submenu, in menu order.
UIFRAME_EXPORT const QVector<AddEntry>& AddComponentEntries();

struct Actions
{
    std::function<void(const QString& cardType)> addCard;
    std::function<void()> paste;
    std::function<void()> undo;
    std::function<void()> redo;
    bool canPaste = false;
    bool canUndo = false;
    bool canRedo = false;
};

// A new menu owned by the caller; card types without a registered factory are left out.
UIFRAME_EXPORT vx_std_ui::VMenu* Build(QWidget* parent, const Actions& actions);

// Text ids of the menu's own entries.
inline constexpr int kTextAddComponent = 236260;
inline constexpr int kTextPaste = 344402;
inline constexpr int kTextUndo = 344403;
inline constexpr int kTextRedo = 344404;

} // namespace panel_canvas_menu
