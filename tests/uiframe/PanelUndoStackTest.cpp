// The canvas's undo stack: the limit of 20 steps, command ids and unsaved changes, macros, and
// commands that are applied by their push.

#include "tests/uiframe/PanelBoxTestSupport.h"

#include "UIFrame/PanelBox/PanelBoxCommandHooks.h"

#include "tests/common/TestSupport.h"

#include <QSignalSpy>
#include <QUndoStack>

using namespace panelbox_test;

namespace {
const QStringList kColors = {QStringLiteral("ck_indigo450"), QStringLiteral("ck_blue620"),
                             QStringLiteral("ck_cyan500")};
}

class PanelUndoStackTest : public PanelBoxTest
{
protected:
    // The colour set by gesture n (1-based): the list cycles, so consecutive gestures differ.
    static QString ColorOf(int n) { return kColors[n % kColors.size()]; }
};

TEST_F(PanelUndoStackTest, KeepsTwentyStepsOfTwentyOneGestures)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(10, 10, 300, 200), {{kAlpha, 1}});
    for (int n = 1; n <= 21; ++n)
        box->OnGroupColorChanged(ColorOf(n));
    EXPECT_EQ(box->GetGroupColor(), ColorOf(21));

    int undone = 0;
    while (Canvas()->CanUndo()) {
        Canvas()->Undo();
        ++undone;
    }
    EXPECT_EQ(undone, 20);
    // The first gesture fell off: its colour stays.
    EXPECT_EQ(box->GetGroupColor(), ColorOf(1));
    EXPECT_TRUE(Canvas()->CanRedo());
}

TEST_F(PanelUndoStackTest, CommandIdsTellUnsavedChanges)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(10, 10, 300, 200), {{kAlpha, 1}});
    CVXPanelUndoStack* stack = Canvas();
    const long long start = stack->GetCurrentCommandId();

    box->OnGroupColorChanged(ColorOf(1));
    box->OnGroupColorChanged(ColorOf(2));
    EXPECT_EQ(stack->GetCurrentCommandId(), start + 2);
    stack->SetPreviousSavedCommandId(stack->GetCurrentCommandId());
    EXPECT_FALSE(stack->HasUnsavedChanges());

    stack->Undo();
    EXPECT_EQ(stack->GetCurrentCommandId(), start + 1);
    EXPECT_TRUE(stack->HasUnsavedChanges());
    stack->Redo();
    EXPECT_EQ(stack->GetCurrentCommandId(), start + 2);
    EXPECT_FALSE(stack->HasUnsavedChanges());

    // Undo and a different change: as many steps as at the save, but not the saved state.
    stack->Undo();
    box->OnGroupColorChanged(ColorOf(3));
    EXPECT_EQ(stack->GetQUndoStack()->index(), 2);
    EXPECT_TRUE(stack->HasUnsavedChanges());
    // Undo back to the common state shows the id that state had.
    stack->Undo();
    EXPECT_EQ(stack->GetCurrentCommandId(), start + 1);

    // A gesture that changed nothing leaves the id alone.
    const long long before = stack->GetCurrentCommandId();
    box->OnGroupColorChanged(box->GetGroupColor());
    EXPECT_EQ(stack->GetCurrentCommandId(), before);
}

TEST_F(PanelUndoStackTest, AMacroIsOneStepWithOneId)
{
    CVXPanelAtomizationBox* a = AddBox(QRect(10, 10, 300, 200), {{kAlpha, 1}});
    CVXPanelAtomizationBox* b = AddBox(QRect(400, 10, 300, 200), {{kBeta, 2}});
    CVXPanelUndoStack* stack = Canvas();
    const long long start = stack->GetCurrentCommandId();

    stack->BeginMacro(QStringLiteral("colour both"));
    a->OnGroupColorChanged(ColorOf(1));
    b->OnGroupColorChanged(ColorOf(2));
    EXPECT_FALSE(stack->CanUndo()); // not while the macro is open
    stack->EndMacro();
    EXPECT_EQ(stack->GetCurrentCommandId(), start + 1);
    EXPECT_EQ(stack->GetQUndoStack()->count(), 1);

    stack->Undo();
    EXPECT_TRUE(a->GetGroupColor().isEmpty());
    EXPECT_TRUE(b->GetGroupColor().isEmpty());
    EXPECT_EQ(stack->GetCurrentCommandId(), start);
    stack->Redo();
    EXPECT_EQ(a->GetGroupColor(), ColorOf(1));
    EXPECT_EQ(b->GetGroupColor(), ColorOf(2));
}

TEST_F(PanelUndoStackTest, PushedCommandsAreRecordedOrAppliedAsTheyAsk)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(10, 10, 300, 200), {{kAlpha, 5}});
    const unsigned long long id = box->GetBoxId();
    CVXPanelUndoStack* stack = Canvas();
    stack->PushCommand(nullptr);
    EXPECT_FALSE(stack->CanUndo());

    // Applied by the push: the deletion happens when the command is pushed.
    auto* cmd = new panelbox_undo_cmd::Deleted;
    cmd->SetPanelBox(box);
    cmd->SetPanelScrollView(Canvas());
    cmd->BeforeCommand();
    cmd->SetApplyOnPush(true);
    stack->PushCommand(cmd);
    EXPECT_EQ(CVXPanelBoxManager::instance()->GetPanelBox(id), nullptr);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    stack->Undo();
    auto* back = dynamic_cast<CVXPanelAtomizationBox*>(CVXPanelBoxManager::instance()->GetPanelBox(id));
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(TabValues(back), std::vector<int>{5});

    // Recorded only: the gesture made the change, the push must not make it again.
    back->BeforeCommand<panelbox_undo_cmd::Deleted>();
    back->DeleteLaterEx();
    back->AfterCommand<panelbox_undo_cmd::Deleted>();
    // It replaced the undone deletion on the stack.
    EXPECT_EQ(stack->GetQUndoStack()->count(), 1);
    EXPECT_EQ(stack->GetQUndoStack()->index(), 1);
    stack->Undo();
    ASSERT_NE(CVXPanelBoxManager::instance()->GetPanelBox(id), nullptr);
    EXPECT_EQ(Canvas()->GetPanelBoxes().size(), 1);
}
