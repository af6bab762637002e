#include "UIFrame/PanelBox/PanelUndoStack.h"

#include "UIFrame/PanelBox/PanelUndoCmd.h"

#include <QUndoStack>

#include <algorithm>
#include <vector>

// Command ids: every state of the stack (index 0 .. count) carries an id. A push or a macro
// gives the new state a fresh id, one above any issued before; undo and redo move to the id of
// the state they reach. Along one line of history this counts pushes, undos and redos; after an
// undo followed by a new push the new state never reuses the id of the state it replaced, so a
// layout saved there does not look unchanged.
struct CVXPanelUndoStack::Impl
{
    QUndoStack stack;
    panelbox_undo_cmd::IBaseCmd* pending = nullptr;
    std::vector<long long> stateIds{0}; // stateIds[i]: the id of stack index i
    long long lastIssued = 0;
    long long current = 0;
    long long previousSaved = 0;
    int macroDepth = 0;

    // A new state after the current index: the redo branch is gone.
    void IssueNewState()
    {
        stateIds.resize(static_cast<size_t>(stack.index()) + 1);
        stateIds.push_back(++lastIssued);
        current = lastIssued;
    }

    // The stack drops its oldest commands beyond the limit; drop their states too.
    void DropFallenStates()
    {
        const size_t wanted = static_cast<size_t>(stack.count()) + 1;
        if (stateIds.size() > wanted)
            stateIds.erase(stateIds.begin(), stateIds.begin() + static_cast<long>(stateIds.size() - wanted));
    }

    void SyncCurrent() { current = stateIds[static_cast<size_t>(stack.index())]; }
};

CVXPanelUndoStack::CVXPanelUndoStack() : d(std::make_unique<Impl>())
{
    d->stack.setUndoLimit(kUndoLimit);
}

CVXPanelUndoStack::~CVXPanelUndoStack()
{
    delete d->pending;
}

void CVXPanelUndoStack::PushCommand(panelbox_undo_cmd::IBaseCmd* cmd)
{
    if (!cmd)
        return;
    if (d->macroDepth == 0)
        d->IssueNewState();
    if (cmd->IsApplyOnPush()) {
        d->stack.push(cmd);
    } else {
        // The gesture already made the change: the push only records it.
        cmd->SetSkipRedo(true);
        d->stack.push(cmd);
        cmd->SetSkipRedo(false);
    }
    if (d->macroDepth == 0)
        d->DropFallenStates();
}

void CVXPanelUndoStack::Undo()
{
    if (!CanUndo())
        return;
    d->stack.undo();
    d->SyncCurrent();
}

void CVXPanelUndoStack::Redo()
{
    if (!CanRedo())
        return;
    d->stack.redo();
    d->SyncCurrent();
}

bool CVXPanelUndoStack::CanUndo() const
{
    return d->macroDepth == 0 && d->stack.canUndo();
}

bool CVXPanelUndoStack::CanRedo() const
{
    return d->macroDepth == 0 && d->stack.canRedo();
}

void CVXPanelUndoStack::BeginMacro(const QString& text)
{
    if (d->macroDepth == 0)
        d->IssueNewState();
    ++d->macroDepth;
    d->stack.beginMacro(text);
}

void CVXPanelUndoStack::EndMacro()
{
    if (d->macroDepth == 0)
        return;
    --d->macroDepth;
    d->stack.endMacro();
    if (d->macroDepth == 0)
        d->DropFallenStates();
}

long long CVXPanelUndoStack::GetCurrentCommandId() const
{
    return d->current;
}

long long CVXPanelUndoStack::GetPreviousSavedCommandId() const
{
    return d->previousSaved;
}

void CVXPanelUndoStack::SetPreviousSavedCommandId(long long id)
{
    d->previousSaved = id;
}

void CVXPanelUndoStack::ClearHistory(long long id)
{
    SetPendingCommand(nullptr);
    d->stack.clear();
    d->macroDepth = 0;
    d->stateIds.assign(1, id);
    d->lastIssued = std::max(d->lastIssued, id);
    d->current = id;
    d->previousSaved = id;
}

panelbox_undo_cmd::IBaseCmd* CVXPanelUndoStack::GetPendingCommand() const
{
    return d->pending;
}

void CVXPanelUndoStack::SetPendingCommand(panelbox_undo_cmd::IBaseCmd* cmd)
{
    if (d->pending == cmd)
        return;
    delete d->pending;
    d->pending = cmd;
}

panelbox_undo_cmd::IBaseCmd* CVXPanelUndoStack::TakePendingCommand()
{
    panelbox_undo_cmd::IBaseCmd* cmd = d->pending;
    d->pending = nullptr;
    return cmd;
}

QUndoStack* CVXPanelUndoStack::GetQUndoStack() const
{
    return &d->stack;
}
