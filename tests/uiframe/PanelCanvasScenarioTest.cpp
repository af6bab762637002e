// The canvas as a user works it, with real mouse and key events through the window: dragging boxes
// by their title strips into snapping reach, resizing against limits and neighbours, dragging past
// the content's origin, tearing a tab out and dropping it on another box's tab bar, copy and paste
// at the cursor, Delete and undo. Each step checks what the user would see and checkSanity().
//
// Snapping reach, worked out from the rules: both rectangles are widened by 2 px per side and an
// edge snaps when the widened edges are at most 14 apart. For a box B right of a box A that is
// B.left - A.right - 4 <= 14, i.e. B.left <= A.right + 18; snapped, B.left = A.right + 5, which
// leaves 4 free pixels between them.

#include "tests/uiframe/CanvasTestSupport.h"

#include "tests/common/TestSupport.h"

#include <QCursor>
#include <QDir>
#include <QImage>

using namespace canvas_test;

namespace {

class PanelCanvasScenarioTest : public CanvasFixture
{
protected:
    // Two boxes side by side: A at the margin, B placed at x = 400 for the test.
    void TwoBoxes(CVXPanelAtomizationBox** a, CVXPanelAtomizationBox** b)
    {
        *a = AddLinkBox();
        *b = AddLinkBox();
        ASSERT_NE(*a, nullptr);
        ASSERT_NE(*b, nullptr);
        (*b)->move(400, 4);
        ASSERT_EQ((*a)->geometry(), QRect(4, 4, 302, 233));
    }
};

TEST_F(PanelCanvasScenarioTest, MovedBoxSnapsWithinReachOnly)
{
    CVXPanelAtomizationBox* a = nullptr;
    CVXPanelAtomizationBox* b = nullptr;
    TwoBoxes(&a, &b);
    const int undoBefore = canvas->GetQUndoStack()->count();

    // A.right = 305. Left edge dropped at 305 + 18 = 323: in reach, ends at 310 (a 4 px gap).
    Drag(b, TitlePoint(b), QPoint(323 - 400, 0));
    EXPECT_EQ(b->geometry(), QRect(310, 4, 302, 233)) << "moving keeps the size";
    EXPECT_EQ(canvas->GetQUndoStack()->count(), undoBefore + 1);
    checkSanity(canvas);

    // Back to 400, then to 305 + 19 = 324: one pixel out of reach, it stays where it was dropped.
    b->move(400, 4);
    Drag(b, TitlePoint(b), QPoint(324 - 400, 0));
    EXPECT_EQ(b->geometry(), QRect(324, 4, 302, 233));

    // With snapping switched off the in-reach drop stays where it was dropped too.
    b->move(400, 4);
    canvas->SetSnapEnabled(false);
    Drag(b, TitlePoint(b), QPoint(323 - 400, 0));
    EXPECT_EQ(b->geometry(), QRect(323, 4, 302, 233));
    checkSanity(canvas);

    // A move that ends where it started adds no undo step.
    const int count = canvas->GetQUndoStack()->count();
    Drag(b, TitlePoint(b), QPoint(0, 0));
    EXPECT_EQ(canvas->GetQUndoStack()->count(), count);
}

TEST_F(PanelCanvasScenarioTest, ResizeIsClampedAndSnapsOnlyTheDraggedEdge)
{
    CVXPanelAtomizationBox* a = nullptr;
    CVXPanelAtomizationBox* b = nullptr;
    TwoBoxes(&a, &b);

    // The bottom-right corner pulled far inwards: one card of minimum 50 x 50 holds the box at
    // 52 x 83 (border 2 x 33), with the top-left corner fixed.
    Drag(a, QPoint(a->width() - 3, a->height() - 3), QPoint(-280, -200));
    EXPECT_EQ(a->geometry(), QRect(4, 4, 52, 83));
    checkSanity(canvas);

    // Restore the size, then pull the right edge to 382 (B.left 400 - 18): the right edge snaps to
    // 395 (4 free pixels before 400), the left edge, top and bottom stay.
    canvas->Undo();
    ASSERT_EQ(a->geometry(), QRect(4, 4, 302, 233));
    Drag(a, QPoint(a->width() - 3, 100), QPoint(382 - 305, 0));
    EXPECT_EQ(a->geometry(), QRect(QPoint(4, 4), QPoint(395, 236)));
    checkSanity(canvas);

    // Undo gives back the width from before the gesture.
    canvas->Undo();
    EXPECT_EQ(a->geometry(), QRect(4, 4, 302, 233));
}

TEST_F(PanelCanvasScenarioTest, DraggingLeftOfTheOriginShiftsTheCanvasNotTheView)
{
    CVXPanelAtomizationBox* a = nullptr;
    CVXPanelAtomizationBox* b = nullptr;
    TwoBoxes(&a, &b);
    const QPoint bOnScreen = b->mapToGlobal(QPoint(0, 0));

    // A dragged 40 px to the left and 100 px down (out of the top wall's reach): it would start at
    // x = -36, items at L = -40: every box moves right by 40 and the horizontal value rises by 40.
    Drag(a, TitlePoint(a), QPoint(-40, 100));
    EXPECT_EQ(a->pos(), QPoint(4, 104));
    EXPECT_EQ(b->pos(), QPoint(440, 4));
    EXPECT_EQ(canvas->horizontalScrollBar()->value(), 40);
    EXPECT_EQ(b->mapToGlobal(QPoint(0, 0)), bOnScreen) << "B did not move on screen";
    checkSanity(canvas);
}

TEST_F(PanelCanvasScenarioTest, TabTornOutThenDroppedOnAnotherTabBar)
{
    CVXPanelAtomizationBox* a = nullptr;
    CVXPanelAtomizationBox* b = nullptr;
    TwoBoxes(&a, &b);
    ASSERT_TRUE(a->Append(QString::fromLatin1(CLinkCard::kCardType), {}, -1, {}));
    ASSERT_EQ(a->GetTabCount(), 2);
    a->SetCurrentTabIndex(1);
    ASSERT_NE(CardOf(a, 1), nullptr);
    CardOf(a, 1)->note = QStringLiteral("travelling");
    const unsigned long long aId = a->GetBoxId();
    QWidget* content = canvas->GetContentWidget();

    // Step 1: press the second tab, pull it down out of the bar and let go over empty canvas
    // (x 400, y 400 is below B and right of A): a new box of its own holds the card there.
    vx_std_ui::VTabBarBase* bar = a->GetTabBar();
    ASSERT_NE(bar, nullptr);
    const QPoint tab = bar->tabRect(1).center();
    Press(bar, tab);
    for (int y = 10; y <= 60; y += 10)
        MoveTo(bar, tab + QPoint(0, y));
    QCoreApplication::processEvents();
    ASSERT_EQ(a->GetTabCount(), 1) << "the tab left its box";
    MoveTo(content, QPoint(400, 400));
    QCoreApplication::processEvents();
    QCursor::setPos(content->mapToGlobal(QPoint(400, 400)));
    Release(content, QPoint(400, 400));
    QCoreApplication::processEvents();
    ASSERT_EQ(canvas->GetPanelBoxes().size(), 3);
    auto* torn = qobject_cast<CVXPanelAtomizationBox*>(canvas->GetPanelBoxes()[2]);
    ASSERT_NE(torn, nullptr);
    ASSERT_NE(CardOf(torn), nullptr);
    EXPECT_EQ(CardOf(torn)->note, QStringLiteral("travelling"));
    EXPECT_TRUE(torn->geometry().contains(QPoint(400, 400)));
    EXPECT_EQ(b->GetTabCount(), 1);
    checkSanity(canvas);

    // Step 2: drag the new box by its title strip until the pointer is over B's tab bar, release:
    // B takes the card as its last, current tab and the emptied box goes.
    vx_std_ui::VTabBarBase* bBar = b->GetTabBar();
    const QPoint barPoint = bBar->mapToGlobal(QPoint(bBar->width() - 20, bBar->height() / 2));
    const QPoint from = TitlePoint(torn);
    Drag(torn, from, barPoint - torn->mapToGlobal(from));
    FlushDeletes();
    ASSERT_EQ(b->GetTabCount(), 2);
    EXPECT_EQ(b->GetCurrentTabIndex(), 1);
    ASSERT_NE(CardOf(b, 1), nullptr);
    EXPECT_EQ(CardOf(b, 1)->note, QStringLiteral("travelling"));
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 2);
    checkSanity(canvas);

    // Undo the drop: the torn-out box is back with its card, B has its one tab.
    canvas->Undo();
    FlushDeletes();
    EXPECT_EQ(b->GetTabCount(), 1);
    ASSERT_EQ(canvas->GetPanelBoxes().size(), 3);
    checkSanity(canvas);
    // Undo the tear: A has both tabs again and the extra box is gone.
    canvas->Undo();
    FlushDeletes();
    auto* aAgain = qobject_cast<CVXPanelAtomizationBox*>(CVXPanelBoxManager::instance()->GetPanelBox(aId));
    ASSERT_NE(aAgain, nullptr);
    EXPECT_EQ(aAgain->GetTabCount(), 2);
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 2);
    checkSanity(canvas);
}

TEST_F(PanelCanvasScenarioTest, CopyPasteAtTheCursorThenDeleteAndUndo)
{
    CVXPanelAtomizationBox* a = AddLinkBox();
    CardOf(a)->note = QStringLiteral("copied");

    // Click the box (it becomes the selection), copy with Ctrl+C.
    Press(a, TitlePoint(a));
    Release(a, TitlePoint(a));
    ASSERT_TRUE(CVXPanelBoxManager::instance()->IsPanelBoxSelected(a));
    QTest::keyClick(canvas, Qt::Key_C, Qt::ControlModifier);
    ASSERT_EQ(CVXPanelBoxManager::instance()->GetCopyData().size(), 1);

    // Ctrl+V with the cursor at (420, 300) of the view: the copy's top-left lands there.
    QCursor::setPos(canvas->viewport()->mapToGlobal(QPoint(420, 300)));
    QTest::keyClick(canvas, Qt::Key_V, Qt::ControlModifier);
    ASSERT_EQ(canvas->GetPanelBoxes().size(), 2);
    auto* pasted = qobject_cast<CVXPanelAtomizationBox*>(canvas->GetPanelBoxes()[1]);
    ASSERT_NE(pasted, nullptr);
    EXPECT_EQ(pasted->geometry(), QRect(420, 300, 302, 233));
    EXPECT_NE(pasted->GetBoxId(), a->GetBoxId());
    ASSERT_NE(CardOf(pasted), nullptr);
    EXPECT_EQ(CardOf(pasted)->note, QStringLiteral("copied"));
    checkSanity(canvas);

    // With the cursor outside the view nothing is pasted.
    QCursor::setPos(canvas->mapToGlobal(QPoint(-50, -50)));
    QTest::keyClick(canvas, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 2);

    // Select the pasted box, press Delete: it goes; Ctrl+Z brings it back with its id and place.
    const unsigned long long pastedId = pasted->GetBoxId();
    Press(pasted, TitlePoint(pasted));
    Release(pasted, TitlePoint(pasted));
    QTest::keyClick(canvas, Qt::Key_Delete);
    FlushDeletes();
    ASSERT_EQ(canvas->GetPanelBoxes().size(), 1);
    EXPECT_EQ(CVXPanelBoxManager::instance()->GetPanelBox(pastedId), nullptr);
    QTest::keyClick(canvas, Qt::Key_Z, Qt::ControlModifier);
    FlushDeletes();
    ASSERT_EQ(canvas->GetPanelBoxes().size(), 2);
    CVXPanelBaseBox* back = CVXPanelBoxManager::instance()->GetPanelBox(pastedId);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->geometry(), QRect(420, 300, 302, 233));
    checkSanity(canvas);

    // Ctrl+Z again removes the paste; Ctrl+Shift+Z and Ctrl+Y redo both steps.
    QTest::keyClick(canvas, Qt::Key_Z, Qt::ControlModifier);
    FlushDeletes();
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 1);
    QTest::keyClick(canvas, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    FlushDeletes();
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 2);
    QTest::keyClick(canvas, Qt::Key_Y, Qt::ControlModifier);
    FlushDeletes();
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 1);
    checkSanity(canvas);
}

// A picture of a canvas with a few linked boxes. With VX_SCREENSHOT_DIR set it is saved there to
// be looked at; either way it must show the boxes: frames darker than the background and the
// title strips present.
TEST_F(PanelCanvasScenarioTest, GrabShowsTheBoxes)
{
    CVXPanelAtomizationBox* a = AddLinkBox();
    CVXPanelAtomizationBox* b = AddLinkBox();
    CVXPanelAtomizationBox* c = AddLinkBox();
    ASSERT_TRUE(b->Append(QString::fromLatin1(CLinkCard::kCardType), {}, -1, {}));
    a->SetGroupID(QStringLiteral("1"));
    b->SetGroupID(QStringLiteral("1"));
    c->SetGroupID(QStringLiteral("2"));
    CardOf(a)->UserPicksStock(600000);
    QCoreApplication::processEvents();

    const QPixmap pixmap = canvas->GrabPixmap();
    ASSERT_EQ(pixmap.size(), canvas->size());
    const QByteArray dir = qgetenv("VX_SCREENSHOT_DIR");
    if (!dir.isEmpty()) {
        QDir().mkpath(QString::fromLocal8Bit(dir));
        EXPECT_TRUE(pixmap.save(QDir(QString::fromLocal8Bit(dir)).filePath(QStringLiteral("canvas.png"))));
    }
    const QImage image = pixmap.toImage();
    // The background between A (ends at x 305) and B (starts at 310), and inside A's body.
    const QColor gap = image.pixelColor(307, 100);
    int differentColumns = 0;
    for (int x = 0; x < 320; ++x) {
        if (image.pixelColor(x, 100) != gap)
            ++differentColumns;
    }
    EXPECT_GT(differentColumns, 4) << "the boxes are drawn, not only the background";
    EXPECT_NE(image.pixelColor(4, 100), gap) << "A's left frame line";
    EXPECT_NE(image.pixelColor(305, 100), gap) << "A's right frame line";
}

} // namespace
