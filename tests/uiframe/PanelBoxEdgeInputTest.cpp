// A single-card box seen through real mouse input on a shown canvas: its edge bands lie over its
// card and resize the box whatever the card holds there, hovering them shows the resize cursors
// without leaving one on the card, windows of the box are no part of its bands; the title strip's
// buttons sit where the row's rules put them and paint their state; the mask comes when needed.

#include "tests/uiframe/PanelBoxTestSupport.h"

#include "UIFrame/PanelBox/PanelBoxMask.h"

#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QUndoStack>

using namespace panelbox_test;

namespace {

// A push button over the whole card, as a card's own control reaching its edges would be.
QPushButton* CoverCardWithButton(CVXPanelAtomizationBox* box)
{
    CVXCardObjBase* card = box->GetCurrentCard();
    auto* button = new QPushButton(QStringLiteral("card control"), card);
    button->setGeometry(card->rect());
    button->show();
    button->raise();
    return button;
}

} // namespace

class PanelBoxEdgeInputTest : public PanelBoxTest
{
protected:
    void TearDown() override
    {
        vx_ui_res::Provider::Instance().ResetForTest();
        PanelBoxTest::TearDown();
    }
    int Commands() { return Canvas()->GetQUndoStack()->count(); }
};

TEST_F(PanelBoxEdgeInputTest, BandsOverTheCardResizeTheBoxAndTheCardNeverSeesThePress)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(100, 100, 400, 300), {{kAlpha, 1}});
    QPushButton* button = CoverCardWithButton(box);
    QSignalSpy pressed(button, &QPushButton::pressed);
    QSignalSpy clicked(button, &QPushButton::clicked);

    // The bottom band (y >= H - 7) over the card's button.
    const QPoint bottom(200, 297);
    ASSERT_EQ(box->childAt(bottom), button) << "the card covers the band";
    Press(box, bottom);
    MoveTo(box, bottom + QPoint(0, 40));
    EXPECT_EQ(box->geometry(), QRect(100, 100, 400, 340));
    Release(box, bottom + QPoint(0, 40));
    EXPECT_EQ(Commands(), 1);

    // The left band (x <= 7): the right edge stays where it is. Points in the canvas's content,
    // which stays put while the box moves.
    ASSERT_EQ(box->childAt(QPoint(3, 150)), button);
    QWidget* content = Canvas()->GetContentWidget();
    const QPoint left = box->mapTo(content, QPoint(3, 150));
    Press(content, left);
    MoveTo(content, left - QPoint(30, 0));
    Release(content, left - QPoint(30, 0));
    EXPECT_EQ(box->geometry(), QRect(70, 100, 430, 340));
    EXPECT_EQ(Commands(), 2);
    EXPECT_EQ(pressed.count(), 0) << "presses in the bands are the box's";

    // Inside the bands the card's button works as ever and the box stays put.
    Click(box, QPoint(200, 150));
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_EQ(box->geometry(), QRect(70, 100, 430, 340));
    EXPECT_EQ(Commands(), 2);
}

TEST_F(PanelBoxEdgeInputTest, ACornerOverTheCardMovesBothOfItsEdges)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(100, 100, 400, 300), {{kAlpha, 1}});
    CoverCardWithButton(box);
    // Bottom-right (hit 20): x >= W - 7 and y >= H - 7.
    // Points in the canvas's content, which stays put while the box moves.
    QWidget* content = Canvas()->GetContentWidget();
    const QPoint corner = box->mapTo(content, QPoint(397, 297));
    Press(content, corner);
    MoveTo(content, corner + QPoint(30, 20));
    Release(content, corner + QPoint(30, 20));
    EXPECT_EQ(box->geometry(), QRect(100, 100, 430, 320));
    // Bottom-left (hit 18): the left edge and the bottom move, the top and right stay.
    const QPoint other = box->mapTo(content, QPoint(3, 317));
    Press(content, other);
    MoveTo(content, other + QPoint(-20, 10));
    Release(content, other + QPoint(-20, 10));
    EXPECT_EQ(box->geometry(), QRect(80, 100, 450, 330));
    EXPECT_EQ(Commands(), 2);
    Canvas()->Undo();
    Canvas()->Undo();
    EXPECT_EQ(box->geometry(), QRect(100, 100, 400, 300));
}

TEST_F(PanelBoxEdgeInputTest, HoveringABandShowsItsCursorAndNoCursorStaysOnTheCard)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(100, 100, 400, 300), {{kAlpha, 1}});
    QPushButton* button = CoverCardWithButton(box);
    CVXCardObjBase* card = box->GetCurrentCard();

    MoveTo(box, QPoint(200, 150));
    EXPECT_FALSE(box->testAttribute(Qt::WA_SetCursor));
    MoveTo(box, QPoint(397, 150));
    ASSERT_TRUE(box->testAttribute(Qt::WA_SetCursor));
    EXPECT_EQ(box->cursor().shape(), Qt::SizeHorCursor);
    MoveTo(box, QPoint(3, 297));
    EXPECT_EQ(box->cursor().shape(), Qt::SizeBDiagCursor);
    MoveTo(box, QPoint(200, 297));
    EXPECT_EQ(box->cursor().shape(), Qt::SizeVerCursor);

    // Back inside: the box takes its cursor back, and the card and its control never had one.
    MoveTo(box, QPoint(200, 150));
    EXPECT_FALSE(box->testAttribute(Qt::WA_SetCursor));
    EXPECT_FALSE(card->testAttribute(Qt::WA_SetCursor));
    EXPECT_FALSE(button->testAttribute(Qt::WA_SetCursor));
}

TEST_F(PanelBoxEdgeInputTest, AWindowOfTheBoxIsNoPartOfItsBands)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(100, 100, 400, 300), {{kAlpha, 1}});
    // A tool window of the box lying over the box's right band on the screen.
    auto* tool = new QWidget(box, Qt::Tool);
    auto* toolButton = new QPushButton(QStringLiteral("tool"), tool);
    toolButton->setGeometry(0, 0, 120, 80);
    tool->setGeometry(QRect(box->mapToGlobal(QPoint(390, 100)), QSize(120, 80)));
    tool->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(tool));
    QSignalSpy clicked(toolButton, &QPushButton::clicked);

    const QPoint inTool(5, 40); // on the screen: x 395 of the box, in its right band
    ASSERT_EQ(box->mapFromGlobal(tool->mapToGlobal(inTool)), QPoint(395, 140));
    QTest::mouseMove(tool->windowHandle(), inTool);
    QTest::mouseClick(tool->windowHandle(), Qt::LeftButton, Qt::NoModifier, inTool);
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_EQ(box->geometry(), QRect(100, 100, 400, 300));
    EXPECT_EQ(Commands(), 0);
    EXPECT_FALSE(box->testAttribute(Qt::WA_SetCursor));
}

TEST_F(PanelBoxEdgeInputTest, TitleButtonsSitWhereTheRowPutsThemAndPaintTheirState)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(100, 100, 400, 300), {{kAlpha, 1}});
    auto* row = box->findChild<QWidget*>(QStringLiteral("PanelBoxTitleButtons"));
    auto* group = box->findChild<QWidget*>(QStringLiteral("PanelBoxGroupButton"));
    auto* menu = box->findChild<QWidget*>(QStringLiteral("PanelBoxMenuButton"));
    auto* close = box->findChild<QWidget*>(QStringLiteral("PanelBoxCloseButton"));
    ASSERT_TRUE(row && group && menu && close);
    // 4 px in from the left, 2 px apart, 8 px clear of the right, centred in the 31 px strip:
    // 4 + 22 + 2 + 24 + 2 + 24 + 8 = 86.
    EXPECT_EQ(row->size(), QSize(86, 31));
    EXPECT_EQ(group->geometry(), QRect(4, 4, 22, 22));
    EXPECT_EQ(menu->geometry(), QRect(28, 3, 24, 24));
    EXPECT_EQ(close->geometry(), QRect(54, 3, 24, 24));
    // At the right end of the title strip, one pixel of frame in from the box's right edge.
    EXPECT_EQ(row->mapTo(box, QPoint(row->width() - 1, 0)), QPoint(box->width() - 2, 1));

    vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    const QColor text = theme.GetColor(QStringLiteral("ct_text_secondary"));
    const QColor hover = theme.GetColor(QStringLiteral("ct_hover"));
    const auto near = [](const QColor& a, const QColor& b) {
        return qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue()) < 60;
    };
    const QPoint centre(12, 12); // on the cross
    const QPoint beside(2, 12);  // left of the cross, inside the rounded background
    // The mouse comes from inside the box, as a user's would.
    MoveTo(box, QPoint(200, 150));
    const QColor idle = close->grab().toImage().pixelColor(beside);
    EXPECT_TRUE(near(close->grab().toImage().pixelColor(centre), text));
    EXPECT_NE(idle, hover);
    MoveTo(close, centre);
    EXPECT_EQ(close->grab().toImage().pixelColor(beside), hover) << "hovered: the theme's hover background";
    MoveTo(menu, QPoint(12, 12));
    EXPECT_EQ(close->grab().toImage().pixelColor(beside), idle);

    // Still a button: a click closes the box.
    const unsigned long long id = box->GetBoxId();
    Click(close, centre);
    EXPECT_EQ(CVXPanelBoxManager::instance()->GetPanelBox(id), nullptr);
    EXPECT_TRUE(Canvas()->GetPanelBoxes().isEmpty());
}

TEST_F(PanelBoxEdgeInputTest, TheMaskIsMadeWhenTheBoxFirstNeedsOne)
{
    CVXPanelAtomizationBox* plain = AddBox(QRect(40, 40, 300, 200), {{kAlpha, 1}});
    EXPECT_EQ(plain->findChild<CVXPanelBoxMask*>(), nullptr) << "an unlinked, unselected box has none";
    EXPECT_TRUE(plain->GetGroupColor().isEmpty());

    // Selecting the box by a click on its title strip.
    Click(plain, FreeTitlePoint(plain));
    auto* mask = plain->findChild<CVXPanelBoxMask*>();
    ASSERT_NE(mask, nullptr);
    EXPECT_TRUE(mask->IsSelected());
    EXPECT_TRUE(mask->isVisible());
    EXPECT_EQ(plain->GetMask(), mask);

    // A box restored with a group colour shows it from the start.
    CVXVariantMapTree record = MakeRecord(QRect(400, 40, 300, 200), {{kAlpha, 2}});
    record.Set<QString>(QStringLiteral("strGroupColor"), QStringLiteral("ck_indigo450"));
    auto* linked = dynamic_cast<CVXPanelAtomizationBox*>(Canvas()->CreateBoxFromRecord(record, 0));
    ASSERT_NE(linked, nullptr);
    auto* linkedMask = linked->findChild<CVXPanelBoxMask*>();
    ASSERT_NE(linkedMask, nullptr);
    EXPECT_EQ(linkedMask->GetGroupColor(), QStringLiteral("ck_indigo450"));
    EXPECT_EQ(linked->GetGroupColor(), QStringLiteral("ck_indigo450"));
    EXPECT_TRUE(linkedMask->isVisible());
}
