// What every panel box has: ids, hit testing through its own size, the command hooks around a
// gesture, late deletion and the mask.

#include "tests/uiframe/PanelBoxTestSupport.h"

#include "UIFrame/PanelBox/PanelBoxCommandHooks.h"
#include "UIFrame/PanelBox/PanelBoxMask.h"

#include "tests/common/TestSupport.h"

#include <QPointer>
#include <QUndoStack>

#include <limits>

using namespace panelbox_test;
using panelbox_undo_cmd::Moved;
using panelbox_undo_cmd::Resized;

class PanelBaseBoxTest : public PanelBoxTest
{
};

TEST_F(PanelBaseBoxTest, IdsIncreaseNeverZeroAndWrapToOne)
{
    const unsigned long long first = CVXPanelBaseBox::GenerateNewId();
    const unsigned long long second = CVXPanelBaseBox::GenerateNewId();
    EXPECT_NE(first, 0u);
    EXPECT_EQ(second, first + 1);

    // A box given no id takes the next one; a box given an id keeps it.
    CVXPanelAtomizationBox fresh(false, 0);
    EXPECT_EQ(fresh.GetBoxId(), second + 1);
    CVXPanelAtomizationBox kept(false, 77);
    EXPECT_EQ(kept.GetBoxId(), 77u);

    const unsigned long long max = std::numeric_limits<unsigned long long>::max();
    CVXPanelBaseBox::SetIdCounterForTest(max - 1);
    EXPECT_EQ(CVXPanelBaseBox::GenerateNewId(), max);
    EXPECT_EQ(CVXPanelBaseBox::GenerateNewId(), 1u); // the increment wrapped: 0 is skipped
    EXPECT_EQ(CVXPanelBaseBox::GenerateNewId(), 2u);
    CVXPanelBaseBox::SetIdCounterForTest(second + 1000);
}

TEST_F(PanelBaseBoxTest, HitTestUsesTheBoxSize)
{
    CVXPanelAtomizationBox box(false, 0);
    box.resize(300, 200);
    struct Row
    {
        QPoint point;
        CVXPanelBaseBox::HitPos expected;
    };
    const Row rows[] = {
        {{3, 3}, CVXPanelBaseBox::HitTopLeft},    {{150, 20}, CVXPanelBaseBox::HitTitle},
        {{150, 40}, CVXPanelBaseBox::HitNone},    {{296, 196}, CVXPanelBaseBox::HitBottomRight},
        {{150, 8}, CVXPanelBaseBox::HitTop},      {{7, 100}, CVXPanelBaseBox::HitLeft},
        {{8, 100}, CVXPanelBaseBox::HitNone},     {{293, 100}, CVXPanelBaseBox::HitRight},
        {{296, 3}, CVXPanelBaseBox::HitTopRight}, {{3, 196}, CVXPanelBaseBox::HitBottomLeft},
    };
    for (const Row& row : rows)
        EXPECT_EQ(box.HitTestMouseMove(row.point), row.expected) << row.point.x() << "," << row.point.y();
    // A wider box moves the right band with it.
    box.resize(600, 200);
    EXPECT_EQ(box.HitTestMouseMove({293, 100}), CVXPanelBaseBox::HitNone);
    EXPECT_EQ(box.HitTestMouseMove({593, 100}), CVXPanelBaseBox::HitRight);
}

TEST_F(PanelBaseBoxTest, DeleteLaterExUnregistersAtOnceAndDeletesLater)
{
    auto* box = new CVXPanelAtomizationBox(false, 0);
    const unsigned long long id = box->GetBoxId();
    EXPECT_EQ(CVXPanelBoxManager::instance()->GetPanelBox(id), box);
    QPointer<CVXPanelAtomizationBox> guard(box);

    box->DeleteLaterEx();
    EXPECT_EQ(CVXPanelBoxManager::instance()->GetPanelBox(id), nullptr);
    EXPECT_TRUE(box->IsDeleted());
    EXPECT_FALSE(guard.isNull()); // still there until the event loop runs
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(guard.isNull());
}

TEST_F(PanelBaseBoxTest, WithoutACanvasGesturesRecordNothing)
{
    CVXPanelAtomizationBox box(false, 0);
    EXPECT_EQ(box.GetUndoStack(), nullptr);
    box.BeforeCommand<Moved>();
    EXPECT_FALSE(box.IsCurrentCommand<Moved>());
    box.move(40, 40);
    box.AfterCommand<Moved>();
    EXPECT_EQ(box.pos(), QPoint(40, 40));

    // Recording a move by hand still needs a canvas.
    vxtest::ExpectAssertion("GetPanelScrollView()");
    Moved cmd;
    cmd.SetPanelBox(&box);
    cmd.BeforeCommand();
    EXPECT_EQ(vxtest::CountAssertions("GetPanelScrollView()"), 1);
    EXPECT_TRUE(cmd.GetPositionsBefore().isEmpty());
}

TEST_F(PanelBaseBoxTest, HooksPushOnlyRealChangesAndReplaceThePendingCommand)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(10, 10, 300, 200), {{kAlpha, 1}});
    CVXPanelAtomizationBox* other = AddBox(QRect(400, 10, 300, 200), {{kBeta, 2}});
    CVXPanelUndoStack* stack = box->GetUndoStack();
    ASSERT_EQ(stack, Canvas());

    // A move that ends where it started adds no step.
    box->BeforeCommand<Moved>();
    EXPECT_TRUE(box->IsCurrentCommand<Moved>());
    box->AfterCommand<Moved>();
    EXPECT_EQ(stack->GetPendingCommand(), nullptr);
    EXPECT_FALSE(stack->CanUndo());

    // A new gesture replaces one never finished.
    box->BeforeCommand<Moved>();
    box->BeforeCommand<Resized>();
    EXPECT_TRUE(box->IsCurrentCommand<Resized>());
    // Finishing another box's or another kind's command leaves the pending one alone.
    other->AfterCommand<Resized>();
    EXPECT_NE(stack->GetPendingCommand(), nullptr);
    box->resize(320, 200);
    box->AfterCommand<Resized>();
    EXPECT_EQ(stack->GetPendingCommand(), nullptr);
    ASSERT_TRUE(stack->CanUndo());
    EXPECT_EQ(stack->GetQUndoStack()->count(), 1);

    stack->Undo();
    EXPECT_EQ(box->geometry(), QRect(10, 10, 300, 200));
    stack->Redo();
    EXPECT_EQ(box->geometry(), QRect(10, 10, 320, 200));
}

TEST_F(PanelBaseBoxTest, MaskShowsWhileSelectedDraggedOrLinked)
{
    CVXPanelAtomizationBox box(false, 0);
    box.resize(300, 200);
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
    CVXPanelBoxMask* mask = box.GetMask();
    ASSERT_NE(mask, nullptr);
    EXPECT_TRUE(mask->isHidden());
    EXPECT_TRUE(mask->testAttribute(Qt::WA_TransparentForMouseEvents));

    box.SetGroupColor(QStringLiteral("ck_indigo450"));
    EXPECT_EQ(box.GetGroupColor(), QStringLiteral("ck_indigo450"));
    EXPECT_FALSE(mask->isHidden());
    EXPECT_EQ(mask->geometry(), box.rect());
    box.SetGroupColor(QString());
    EXPECT_TRUE(mask->isHidden());

    mask->SetSelected(true);
    EXPECT_FALSE(mask->isHidden());
    box.resize(320, 240);
    EXPECT_EQ(mask->geometry(), QRect(0, 0, 320, 240));
    mask->SetSelected(false);
    mask->SetDragging(true);
    EXPECT_FALSE(mask->isHidden());
    mask->SetDragging(false);
    EXPECT_TRUE(mask->isHidden());
}
