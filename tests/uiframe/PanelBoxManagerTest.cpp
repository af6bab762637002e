// The box manager: registry, active box, selection through real mouse presses, and the
// clipboard.

#include "tests/uiframe/PanelBoxTestSupport.h"

#include "UIFrame/PanelBox/PanelBoxMask.h"

#include "tests/common/TestSupport.h"

#include <QSignalSpy>

using namespace panelbox_test;

class PanelBoxManagerTest : public PanelBoxTest
{
protected:
    CVXPanelBoxManager* Mgr() { return CVXPanelBoxManager::instance(); }
    // A point inside the box's card, away from every edge band.
    static QPoint ContentPoint(CVXPanelAtomizationBox* box)
    {
        return QPoint(box->width() / 2, box->height() / 2);
    }
};

TEST_F(PanelBoxManagerTest, RegistryKeepsOneBoxPerId)
{
    CVXPanelAtomizationBox a(false, 501);
    EXPECT_EQ(Mgr()->GetPanelBox(501), &a);
    Mgr()->AddPanelBox(nullptr);
    Mgr()->RemovePanelBox(nullptr);
    {
        // Another box under a taken id neither replaces the first nor removes it when it goes.
        CVXPanelAtomizationBox clash(false, 501);
        EXPECT_EQ(Mgr()->GetPanelBox(501), &a);
    }
    EXPECT_EQ(Mgr()->GetPanelBox(501), &a);
    Mgr()->RemovePanelBox(&a);
    EXPECT_EQ(Mgr()->GetPanelBox(501), nullptr);
    EXPECT_EQ(Mgr()->GetPanelBox(0), nullptr);
}

TEST_F(PanelBoxManagerTest, ClickShiftClickAndContentClickSelect)
{
    CVXPanelAtomizationBox* a = AddBox(QRect(10, 10, 500, 300), {{kAlpha, 1}});
    CVXPanelAtomizationBox* b = AddBox(QRect(530, 10, 400, 300), {{kBeta, 2}});
    QSignalSpy active(Mgr(), &CVXPanelBoxManager::ActivePanelBoxChanged);

    Click(a, FreeTitlePoint(a));
    EXPECT_EQ(Mgr()->GetSelectedPanelBoxs(), QVector<CVXPanelBaseBox*>{a});
    EXPECT_EQ(Mgr()->GetActivePanelBox(), a);
    EXPECT_EQ(Mgr()->GetCurrentPanelScrollView(), Canvas());
    EXPECT_EQ(active.count(), 1);
    EXPECT_TRUE(a->GetMask()->IsSelected());

    Click(b, ContentPoint(b), Qt::ShiftModifier);
    EXPECT_EQ(Mgr()->GetSelectedPanelBoxs(), (QVector<CVXPanelBaseBox*>{a, b}));
    EXPECT_EQ(Mgr()->GetActivePanelBox(), b);
    EXPECT_EQ(active.count(), 2);

    // Pressing the title of a selected box keeps the group (it is about to be dragged).
    Click(a, FreeTitlePoint(a));
    EXPECT_EQ(Mgr()->GetSelectedPanelBoxs(), (QVector<CVXPanelBaseBox*>{a, b}));

    Click(b, ContentPoint(b));
    EXPECT_EQ(Mgr()->GetSelectedPanelBoxs(), QVector<CVXPanelBaseBox*>{b});
    EXPECT_FALSE(a->GetMask()->IsSelected());
    EXPECT_TRUE(b->GetMask()->IsSelected());
    EXPECT_EQ(active.count(), 4);

    // The same box again: no signal.
    Click(b, ContentPoint(b));
    EXPECT_EQ(active.count(), 4);

    // The canvas outside any box: nothing active, nothing selected, the canvas stays current.
    Click(Canvas()->GetContentWidget(), QPoint(700, 600));
    EXPECT_TRUE(Mgr()->GetSelectedPanelBoxs().isEmpty());
    EXPECT_EQ(Mgr()->GetActivePanelBox(), nullptr);
    EXPECT_EQ(Mgr()->GetCurrentPanelScrollView(), Canvas());
    EXPECT_EQ(active.count(), 5);
    EXPECT_FALSE(b->GetMask()->IsSelected());
}

TEST_F(PanelBoxManagerTest, APressOutsideEveryCanvasForgetsTheCanvas)
{
    CVXPanelAtomizationBox* a = AddBox(QRect(10, 10, 500, 300), {{kAlpha, 1}});
    Click(a, ContentPoint(a));
    ASSERT_EQ(Mgr()->GetCurrentPanelScrollView(), Canvas());

    QWidget elsewhere;
    elsewhere.resize(200, 100);
    elsewhere.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&elsewhere));
    QTest::mouseClick(elsewhere.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
    EXPECT_EQ(Mgr()->GetCurrentPanelScrollView(), nullptr);
    EXPECT_EQ(Mgr()->GetActivePanelBox(), nullptr);
    EXPECT_TRUE(Mgr()->GetSelectedPanelBoxs().isEmpty());
}

TEST_F(PanelBoxManagerTest, ClipboardKeepsRecordsRelativeToTheGroup)
{
    Mgr()->UpdateCopyData();
    EXPECT_TRUE(Mgr()->GetCopyData().isEmpty());

    CVXPanelAtomizationBox* a = AddBox(QRect(100, 50, 300, 200), {{kAlpha, 1}, {kBeta, 2}});
    CVXPanelAtomizationBox* b = AddBox(QRect(450, 80, 250, 150), {{kBeta, 3}});
    Mgr()->SetSelectedPanelBoxs({a, b});
    Mgr()->UpdateCopyData();
    const QVector<VXPanelBoxCopyData> copies = Mgr()->GetCopyData();
    ASSERT_EQ(copies.size(), 2);
    EXPECT_EQ(copies[0].rcGeometry, QRect(0, 0, 300, 200));
    EXPECT_EQ(copies[1].rcGeometry, QRect(350, 30, 250, 150));
    EXPECT_EQ(copies[0].data.Get<QVector<CVXVariantMapTree>>(QStringLiteral("Cards")).size(), 2);

    // One tab of the active box.
    Mgr()->SetActivePanelBox(a);
    Mgr()->UpdateCopyData(1);
    const QVector<VXPanelBoxCopyData> one = Mgr()->GetCopyData();
    ASSERT_EQ(one.size(), 1);
    EXPECT_EQ(one[0].rcGeometry, QRect(0, 0, 300, 200));
    const auto cards = one[0].data.Get<QVector<CVXVariantMapTree>>(QStringLiteral("Cards"));
    ASSERT_EQ(cards.size(), 1);
    EXPECT_EQ(cards[0].Get<QString>(QStringLiteral("CardType")), QString::fromLatin1(kBeta));
    EXPECT_EQ(cards[0].Get<CVXVariantMapTree>(QStringLiteral("CardData")).Get<int>(QStringLiteral("Value")),
              2);

    // A deleted box is no longer part of the selection.
    b->DeleteLaterEx();
    EXPECT_EQ(Mgr()->GetSelectedPanelBoxs(), QVector<CVXPanelBaseBox*>{a});
    Mgr()->ClearSelectedPanelBox();
    Mgr()->UpdateCopyData();
    EXPECT_TRUE(Mgr()->GetCopyData().isEmpty());
}
