#pragma once

// The command hooks of CVXPanelBaseBox: the bracket around every user gesture that changes a box.
// Include this where gestures are bracketed (it needs the command classes and the undo stack).

#include "UIFrame/PanelBox/PanelBaseBox.h"
#include "UIFrame/PanelBox/PanelUndoCmd.h"
#include "UIFrame/PanelBox/PanelUndoStack.h"

#include <utility>

// Without an undo stack nothing. Otherwise a new Cmd attached to this box replaces (deletes) any
// command still pending and records the state before the gesture.
template <typename Cmd, typename... Args> void CVXPanelBaseBox::BeforeCommand(Args&&... args)
{
    CVXPanelUndoStack* stack = GetUndoStack();
    if (!stack)
        return;
    auto* cmd = new Cmd;
    cmd->SetPanelBox(this);
    cmd->SetPanelScrollView(GetPanelScrollView());
    stack->SetPendingCommand(cmd);
    cmd->BeforeCommand(std::forward<Args>(args)...);
}

// When the pending command is a Cmd attached to this box: it records the state after, and is
// pushed when it reports a change, deleted otherwise; the pending slot is cleared either way.
template <typename Cmd> void CVXPanelBaseBox::AfterCommand()
{
    CVXPanelUndoStack* stack = GetUndoStack();
    if (!stack)
        return;
    auto* cmd = dynamic_cast<Cmd*>(stack->GetPendingCommand());
    if (!cmd || cmd->GetPanelBoxId() != GetBoxId())
        return;
    stack->TakePendingCommand();
    cmd->AfterCommand();
    if (cmd->IsChanged())
        stack->PushCommand(cmd);
    else
        delete cmd;
}

template <typename Cmd> bool CVXPanelBaseBox::IsCurrentCommand() const
{
    CVXPanelUndoStack* stack = GetUndoStack();
    return stack && dynamic_cast<Cmd*>(stack->GetPendingCommand()) != nullptr;
}
