// The undo commands on a real canvas: deletion and re-creation under the same id, moves and
// resizes, colour and group, a closed tab, and commands whose box is gone.

#include "tests/uiframe/PanelBoxTestSupport.h"

#include "UIFrame/PanelBox/PanelBoxCommandHooks.h"

#include "tests/common/TestSupport.h"

#include <QScrollBar>
#include <QUndoStack>

using namespace panelbox_test;
using namespace panelbox_undo_cmd;

class PanelUndoCmdTest : public PanelBoxTest
{
protected:
    CVXPanelAtomizationBox* Find(unsigned long long id)
    {
        return dynamic_cast<CVXPanelAtomizationBox*>(CVXPanelBoxManager::instance()->GetPanelBox(id));
    }
};

TEST_F(PanelUndoCmdTest, DeletionUndoRedoKeepsIdGeometryTabsAndCurrentTab)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(20, 30, 500, 300), {{kAlpha, 1}, {kBeta, 2}, {kAlpha, 3}}, 1);
    const unsigned long long id = box->GetBoxId();
    const QVector<unsigned long long> tabIds = box->GetTabIds();
    box->OnClickClose();
    EXPECT_EQ(Find(id), nullptr);
    EXPECT_TRUE(Canvas()->GetPanelBoxes().isEmpty());
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    for (int round = 0; round < 2; ++round) {
        Canvas()->Undo();
        CVXPanelAtomizationBox* back = Find(id);
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(back->geometry(), QRect(20, 30, 500, 300));
        EXPECT_EQ(TabValues(back), (std::vector<int>{1, 2, 3}));
        EXPECT_EQ(back->GetCurrentTabIndex(), 1);
        EXPECT_EQ(back->GetTabIds(), tabIds);
        QString type;
        back->GetTabCardData(1, &type, nullptr);
        EXPECT_EQ(type, QString::fromLatin1(kBeta));

        Canvas()->Redo();
        EXPECT_EQ(Find(id), nullptr);
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(PanelUndoCmdTest, MoveAndResizeAreUndoneAndRedone)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(20, 30, 300, 200), {{kAlpha, 1}});
    CVXPanelAtomizationBox* other = AddBox(QRect(400, 30, 300, 200), {{kBeta, 2}});

    box->BeforeCommand<Moved>();
    box->move(60, 90);
    box->AfterCommand<Moved>();
    box->BeforeCommand<Resized>();
    box->setGeometry(QRect(50, 80, 350, 260));
    box->AfterCommand<Resized>();
    ASSERT_EQ(Canvas()->GetQUndoStack()->count(), 2);

    Canvas()->Undo();
    EXPECT_EQ(box->geometry(), QRect(60, 90, 300, 200));
    Canvas()->Undo();
    EXPECT_EQ(box->geometry(), QRect(20, 30, 300, 200));
    EXPECT_EQ(other->geometry(), QRect(400, 30, 300, 200));
    Canvas()->Redo();
    Canvas()->Redo();
    EXPECT_EQ(box->geometry(), QRect(50, 80, 350, 260));
}

TEST_F(PanelUndoCmdTest, AMoveThatShiftedEveryBoxPutsThemAllBack)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(20, 30, 300, 200), {{kAlpha, 1}});
    CVXPanelAtomizationBox* other = AddBox(QRect(400, 30, 300, 200), {{kBeta, 2}});
    box->BeforeCommand<Moved>();
    box->move(60, 30);
    other->move(440, 30); // as the canvas does when it shifts its content
    box->AfterCommand<Moved>();
    auto* cmd = static_cast<const Moved*>(Canvas()->GetQUndoStack()->command(0));
    EXPECT_EQ(cmd->GetPositionsBefore().size(), 2);
    Canvas()->Undo();
    EXPECT_EQ(box->pos(), QPoint(20, 30));
    EXPECT_EQ(other->pos(), QPoint(400, 30));
}

TEST_F(PanelUndoCmdTest, ColourAndGroupChanges)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(20, 30, 300, 200), {{kAlpha, 1}});
    box->OnGroupColorChanged(QStringLiteral("ck_blue620"));
    box->OnGroupColorChanged(QStringLiteral("ck_blue620")); // the colour it already has
    EXPECT_EQ(Canvas()->GetQUndoStack()->count(), 1);

    box->OnGroupIDChanged(QStringLiteral("3"));
    EXPECT_EQ(box->GetGroupID(), QStringLiteral("3"));
    EXPECT_EQ(Canvas()->GetQUndoStack()->count(), 2);
    box->OnGroupIDChanged(QStringLiteral("3"));
    EXPECT_EQ(Canvas()->GetQUndoStack()->count(), 2);

    Canvas()->Undo();
    EXPECT_TRUE(box->GetGroupID().isEmpty());
    EXPECT_EQ(box->GetGroupColor(), QStringLiteral("ck_blue620"));
    Canvas()->Undo();
    EXPECT_TRUE(box->GetGroupColor().isEmpty());
    Canvas()->Redo();
    Canvas()->Redo();
    EXPECT_EQ(box->GetGroupID(), QStringLiteral("3"));
    EXPECT_EQ(box->GetGroupColor(), QStringLiteral("ck_blue620"));
}

TEST_F(PanelUndoCmdTest, AClosedTabComesBackAtItsIndexWithItsData)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(20, 30, 500, 300), {{kAlpha, 1}, {kBeta, 2}, {kAlpha, 3}});
    const QVector<unsigned long long> tabIds = box->GetTabIds();
    box->RemoveTabAt(1);
    EXPECT_EQ(TabValues(box), (std::vector<int>{1, 3}));
    ASSERT_TRUE(Canvas()->CanUndo());
    auto* cmd = static_cast<const CardDeleted*>(Canvas()->GetQUndoStack()->command(0));
    EXPECT_EQ(cmd->GetIndex(), 1);
    EXPECT_EQ(cmd->GetCardType(), QString::fromLatin1(kBeta));

    Canvas()->Undo();
    EXPECT_EQ(TabValues(box), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(box->GetTabIds(), tabIds);
    EXPECT_EQ(box->GetCurrentTabIndex(), 1);
    Canvas()->Redo();
    EXPECT_EQ(TabValues(box), (std::vector<int>{1, 3}));
}

TEST_F(PanelUndoCmdTest, ACommandWhoseBoxIsGoneDoesNothing)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(20, 30, 300, 200), {{kAlpha, 1}});
    CVXPanelAtomizationBox* other = AddBox(QRect(400, 30, 300, 200), {{kBeta, 2}});
    box->OnGroupColorChanged(QStringLiteral("ck_red400"));
    box->BeforeCommand<Resized>();
    box->resize(400, 260);
    box->AfterCommand<Resized>();
    // Gone by a path that records nothing.
    box->DeleteLaterEx();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    Canvas()->Undo();
    Canvas()->Undo();
    EXPECT_EQ(Canvas()->GetPanelBoxes(), QVector<CVXPanelBaseBox*>{other});
    EXPECT_EQ(other->geometry(), QRect(400, 30, 300, 200));
    Canvas()->Redo();
    Canvas()->Redo();
    EXPECT_EQ(Canvas()->GetPanelBoxes().size(), 1);
}

TEST_F(PanelUndoCmdTest, ScrollStateIsRestoredWithoutTheCanvasReacting)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(20, 30, 300, 200), {{kAlpha, 1}});
    QWidget* content = Canvas()->GetContentWidget();
    const QSize sizeBefore = content->size();
    const int hBefore = Canvas()->horizontalScrollBar()->value();

    auto* cmd = new ScrollViewChanged;
    cmd->SetPanelBox(box);
    cmd->BeforeCommand();
    content->resize(sizeBefore + QSize(600, 0));
    Canvas()->horizontalScrollBar()->setMaximum(600);
    Canvas()->horizontalScrollBar()->setValue(250);
    cmd->AfterCommand();
    ASSERT_TRUE(cmd->IsChanged());
    // The canvas may have answered the scroll by itself; the command keeps what it saw.
    const ScrollViewChanged::ViewState after = cmd->GetViewAfter();
    EXPECT_NE(after.contentSize, sizeBefore);
    Canvas()->PushCommand(cmd);

    Canvas()->Undo();
    EXPECT_EQ(content->size(), sizeBefore);
    EXPECT_EQ(Canvas()->horizontalScrollBar()->value(), hBefore);
    Canvas()->Redo();
    EXPECT_EQ(content->size(), after.contentSize);
    EXPECT_EQ(Canvas()->horizontalScrollBar()->value(), after.nScrollX);
}
