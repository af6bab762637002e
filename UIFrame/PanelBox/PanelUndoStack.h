#pragma once

// CVXPanelUndoStack: the undo stack of a canvas (a base class of CVXPanelScrollView). At most 20
// steps are kept. A gesture in progress owns one pending command between BeforeCommand and
// AfterCommand (see CVXPanelBaseBox). Command ids count pushes, undos and redos so that the
// canvas can tell unsaved changes: the layout is unsaved whenever the current id differs from
// the id stored at the last save. A macro counts as one step.

#include "UIFrame/UIFrameExport.h"

#include <QString>

#include <memory>

class QUndoStack;

namespace panelbox_undo_cmd {
class IBaseCmd;
}

class UIFRAME_EXPORT CVXPanelUndoStack
{
public:
    static constexpr int kUndoLimit = 20;

    CVXPanelUndoStack();
    virtual ~CVXPanelUndoStack();

    CVXPanelUndoStack(const CVXPanelUndoStack&) = delete;
    CVXPanelUndoStack& operator=(const CVXPanelUndoStack&) = delete;

    // Null is ignored. A command that asks to be applied on push is redone by the push; any other
    // is only recorded (its change was made by the gesture).
    void PushCommand(panelbox_undo_cmd::IBaseCmd* cmd);
    void Undo();
    void Redo();
    bool CanUndo() const;
    bool CanRedo() const;
    void BeginMacro(const QString& text);
    void EndMacro();

    long long GetCurrentCommandId() const;
    long long GetPreviousSavedCommandId() const;
    void SetPreviousSavedCommandId(long long id);
    bool HasUnsavedChanges() const { return GetCurrentCommandId() != GetPreviousSavedCommandId(); }
    // Forgets every command (and any pending one); the current and the saved id both become `id`,
    // so a freshly restored canvas has no unsaved changes. Ids issued later stay above it.
    void ClearHistory(long long id);

    // The pending command of a gesture in progress (owned by the stack).
    panelbox_undo_cmd::IBaseCmd* GetPendingCommand() const;
    // Deletes any earlier pending command.
    void SetPendingCommand(panelbox_undo_cmd::IBaseCmd* cmd);
    // Hands the pending command to the caller and clears the slot.
    panelbox_undo_cmd::IBaseCmd* TakePendingCommand();

    // The Qt stack behind it (signals canUndoChanged / canRedoChanged / indexChanged).
    QUndoStack* GetQUndoStack() const;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};
