// The single-card box: size limits and clamping, the record, gestures with real mouse input,
// closing tabs, the box menu, tearing a tab out, and joining a linkage group.

#include "tests/uiframe/PanelBoxTestSupport.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/PanelBox/PanelBoxCommandHooks.h"
#include "UIFrame/PanelBox/PanelBoxMenu.h"
#include "UIFrame/StateTreeTypes.h"

#include "Platform/Core/message_body.pb.h"
#include "Platform/StdUI/Menu.h"

#include "tests/common/TestSupport.h"

#include <QAction>
#include <QTimer>
#include <QUndoStack>

using namespace panelbox_test;

class PanelAtomizationBoxTest : public PanelBoxTest
{
};

TEST_F(PanelAtomizationBoxTest, SizeLimitsFollowASingleCardOnly)
{
    CAlphaCard::s_minSize = QSize(200, 100);
    CAlphaCard::s_maxSize = QSize(600, 400);
    CVXPanelAtomizationBox box(false, 0);
    EXPECT_EQ(box.GetBoxMinSize(), QSize(150, 150)); // no tab
    EXPECT_EQ(box.GetBoxMaxSize(), QSize(-1, -1));
    ASSERT_TRUE(box.Append(QString::fromLatin1(kAlpha), CVXVariantMapTree(), -1, CVXVariantMapTree()));
    EXPECT_EQ(box.GetBoxMinSize(), QSize(202, 133));
    EXPECT_EQ(box.GetBoxMaxSize(), QSize(602, 433));
    ASSERT_TRUE(box.Append(QString::fromLatin1(kBeta), CVXVariantMapTree(), -1, CVXVariantMapTree()));
    EXPECT_EQ(box.GetBoxMinSize(), QSize(150, 150));
    EXPECT_EQ(box.GetBoxMaxSize(), QSize(-1, -1));
    EXPECT_EQ(CVXPanelAtomizationBox::CardSizeAddBoxBorder(QSize(-1, 300)), QSize(-1, 333));
}

TEST_F(PanelAtomizationBoxTest, ClampingKeepsABoxAlreadyBelowItsMinimum)
{
    CAlphaCard::s_minSize = QSize(200, 100);
    CAlphaCard::s_maxSize = QSize(600, 400);
    CVXPanelAtomizationBox box(false, 0);
    box.Append(QString::fromLatin1(kAlpha), CVXVariantMapTree(), -1, CVXVariantMapTree());
    using H = CVXPanelBaseBox;

    box.setGeometry(QRect(100, 100, 300, 200));
    // Shrinking the right edge below 202 stops at 202; the left edge stays.
    EXPECT_EQ(box.AdjustRectByDrag(QRect(100, 100, 150, 200), H::HitRight), QRect(100, 100, 202, 200));
    // Dragging the left edge: the right edge stays put.
    EXPECT_EQ(box.AdjustRectByDrag(QRect(250, 100, 150, 200), H::HitLeft), QRect(198, 100, 202, 200));
    // Growing past the maximum stops at it.
    EXPECT_EQ(box.AdjustRectByDrag(QRect(100, 100, 300, 500), H::HitBottom), QRect(100, 100, 300, 433));

    // Already narrower than its minimum: it keeps its width, it does not jump to the minimum.
    box.setGeometry(QRect(100, 100, 120, 200));
    EXPECT_EQ(box.AdjustRectByDrag(QRect(100, 100, 110, 200), H::HitRight), QRect(100, 100, 120, 200));
    EXPECT_EQ(box.AdjustRectByDrag(QRect(100, 100, 160, 200), H::HitRight), QRect(100, 100, 160, 200));
}

TEST_F(PanelAtomizationBoxTest, RecordRoundTripKeepsUnopenedTabsUnchanged)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(10, 20, 400, 300), {{kAlpha, 7}, {kBeta, 8}, {kAlpha, 9}}, 1);
    // Only the tab on show was built.
    EXPECT_EQ(box->GetCardByIndex(0), nullptr);
    ASSERT_NE(box->GetCardByIndex(1), nullptr);
    EXPECT_EQ(box->GetCurrentTabIndex(), 1);
    box->UpdateBoxStockID(600000);
    box->SetGroupColor(QStringLiteral("ck_lime500"));
    EXPECT_EQ(box->GetCurrentCard()->GetStockID(), 600000u);

    CVXVariantMapTree record;
    box->GetObjRestoreData(&record);
    EXPECT_EQ(record.Get<VXPanelBoxType>(QStringLiteral("BoxType"), VXPanelBoxType_CombinationBox),
              VXPanelBoxType_AtomizationBox);
    EXPECT_EQ(record.Get<QRect>(QStringLiteral("PanelBoxPos")), QRect(10, 20, 400, 300));
    EXPECT_EQ(record.Get<int>(QStringLiteral("CurVisibleCard")), 1);
    EXPECT_EQ(record.Get<unsigned long long>(QStringLiteral("StockID")), 600000u);
    EXPECT_EQ(record.Get<QString>(QStringLiteral("strGroupColor")), QStringLiteral("ck_lime500"));
    EXPECT_EQ(TabValues(box), (std::vector<int>{7, 8, 9}));

    CVXPanelAtomizationBox copy(false, 0);
    copy.SetObjRestoreData(record);
    EXPECT_EQ(TabValues(&copy), (std::vector<int>{7, 8, 9}));
    EXPECT_EQ(copy.GetCurrentTabIndex(), 1);
    EXPECT_EQ(copy.GetStockID(), 600000u);
    CVXVariantMapTree again;
    copy.GetObjRestoreData(&again);
    again.Set<QRect>(QStringLiteral("PanelBoxPos"), record.Get<QRect>(QStringLiteral("PanelBoxPos")));
    EXPECT_EQ(again, record);
}

TEST_F(PanelAtomizationBoxTest, DraggingTheTitleMovesAndOneUndoPutsItBack)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(100, 100, 500, 300), {{kAlpha, 1}});
    // In the content's coordinates: the box moves under the mouse.
    QWidget* content = Canvas()->GetContentWidget();
    const QPoint grab = box->mapTo(content, FreeTitlePoint(box));
    Press(content, grab);
    MoveTo(content, grab + QPoint(10, 10));
    EXPECT_EQ(box->pos(), QPoint(110, 110));
    MoveTo(content, grab + QPoint(120, 90));
    Release(content, grab + QPoint(120, 90));
    EXPECT_EQ(box->geometry(), QRect(220, 190, 500, 300));
    ASSERT_EQ(Canvas()->GetQUndoStack()->count(), 1);
    Canvas()->Undo();
    EXPECT_EQ(box->geometry(), QRect(100, 100, 500, 300));

    // A press and release without movement records nothing.
    Click(box, FreeTitlePoint(box));
    EXPECT_EQ(Canvas()->GetQUndoStack()->count(), 1);
    EXPECT_TRUE(Canvas()->CanRedo());
}

TEST_F(PanelAtomizationBoxTest, DraggingTheRightEdgeResizesWithinTheLimits)
{
    CAlphaCard::s_minSize = QSize(200, 100);
    CVXPanelAtomizationBox* box = AddBox(QRect(100, 100, 500, 300), {{kAlpha, 1}});
    const QPoint edge(box->width() - 3, 150);
    Press(box, edge);
    MoveTo(box, edge - QPoint(50, 0));
    EXPECT_EQ(box->geometry(), QRect(100, 100, 450, 300));
    MoveTo(box, edge - QPoint(450, 0));
    EXPECT_EQ(box->geometry(), QRect(100, 100, 202, 300));
    Release(box, edge - QPoint(450, 0));
    ASSERT_EQ(Canvas()->GetQUndoStack()->count(), 1);
    Canvas()->Undo();
    EXPECT_EQ(box->geometry(), QRect(100, 100, 500, 300));
}

TEST_F(PanelAtomizationBoxTest, ClosingTheLastTabDeletesTheBoxAndUndoBringsItBack)
{
    CVXPanelAtomizationBox* box = AddBox(QRect(40, 40, 400, 300), {{kAlpha, 11}});
    const unsigned long long id = box->GetBoxId();
    box->RemoveTabAt(0);
    EXPECT_EQ(CVXPanelBoxManager::instance()->GetPanelBox(id), nullptr);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(Canvas()->GetPanelBoxes().isEmpty());

    Canvas()->Undo();
    auto* back = dynamic_cast<CVXPanelAtomizationBox*>(CVXPanelBoxManager::instance()->GetPanelBox(id));
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(TabValues(back), std::vector<int>{11});
    EXPECT_EQ(back->geometry(), QRect(40, 40, 400, 300));
    EXPECT_TRUE(back->isVisible());
}

TEST_F(PanelAtomizationBoxTest, AddComponentMenuCreatesTheCardAndReportsTheEntry)
{
    CVXCardFactoryMgr::Instance().RegisterFactory(std::make_shared<TplVXCardFactory<CChartCard>>(), true);
    CVXPanelAtomizationBox* box = AddBox(QRect(40, 40, 500, 300), {{kAlpha, 1}});
    auto* menuButton = box->findChild<QWidget*>(QStringLiteral("PanelBoxMenuButton"));
    ASSERT_NE(menuButton, nullptr);

    QStringList topEntries;
    bool triggered = false;
    QTimer::singleShot(0, box, [&]() {
        auto* menu = qobject_cast<vx_std_ui::VMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (QAction* action : menu->actions())
            topEntries << action->text();
        vx_std_ui::VMenu* add = nullptr;
        for (QAction* action : menu->actions()) {
            if (action->menu() && action->text() == QStringLiteral("添加组件"))
                add = static_cast<vx_std_ui::VMenu*>(action->menu());
        }
        ASSERT_NE(add, nullptr);
        ASSERT_EQ(add->actions().size(), 12);
        QAction* chart = add->findAction(QStringLiteral("KLine"));
        ASSERT_NE(chart, nullptr);
        EXPECT_EQ(chart->text(), QStringLiteral("走势图"));
        EXPECT_TRUE(chart->isEnabled());
        // A type nobody registered is shown but cannot be chosen.
        QAction* trade = add->findAction(QStringLiteral("SecuritiesAccInfo"));
        ASSERT_NE(trade, nullptr);
        EXPECT_FALSE(trade->isEnabled());
        chart->trigger();
        triggered = true;
        menu->close();
    });
    QTest::mouseClick(Window(), Qt::LeftButton, Qt::NoModifier, ToWindow(menuButton, QPoint(12, 12)));
    ASSERT_TRUE(triggered);
    // Colour, switch and add; no detach entry while pop-out windows do not exist.
    EXPECT_EQ(topEntries, (QStringList{QStringLiteral("颜色设置"), QStringLiteral("切换组件"),
                                       QStringLiteral("添加组件")}));
    ASSERT_EQ(box->GetTabCount(), 2);
    EXPECT_EQ(box->GetCurrentTabIndex(), 1);
    EXPECT_EQ(box->GetCurrentCard()->GetCardObjType(), QStringLiteral("KLine"));
    // Cards write exposure reports of their own; the menu wrote exactly one click report.
    std::vector<std::string> clicks;
    for (const std::string& line : Reports()) {
        if (line.find(panelbox_menu::kAddComponentReportName) != std::string::npos)
            clicks.push_back(line);
    }
    ASSERT_EQ(clicks.size(), 1u);
    EXPECT_NE(clicks[0].find("\"option_name\":\"2\""), std::string::npos) << clicks[0];
}

TEST_F(PanelAtomizationBoxTest, TearingATabOutMakesABoxThatFollowsTheMouse)
{
    CVXPanelAtomizationBox* source = AddBox(QRect(20, 20, 500, 300), {{kAlpha, 1}, {kBeta, 2}});
    Canvas()->SetSnapEnabled(false); // positions below are worked out without snapping
    const unsigned long long tabId = source->GetTabIds().at(1);
    vx_std_ui::VTabBarBase* bar = source->GetTabBar();
    const QPoint onTab = bar->tabRect(1).center();

    Press(bar, onTab);
    MoveTo(bar, onTab + QPoint(0, 30));
    MoveTo(bar, onTab + QPoint(0, 80));
    ASSERT_EQ(Canvas()->GetPanelBoxes().size(), 2);
    auto* torn = dynamic_cast<CVXPanelAtomizationBox*>(Canvas()->GetPanelBoxes().at(1));
    ASSERT_NE(torn, nullptr);
    EXPECT_EQ(TabValues(source), std::vector<int>{1});
    EXPECT_EQ(TabValues(torn), std::vector<int>{2});
    EXPECT_EQ(torn->GetTabIds(), QVector<unsigned long long>{tabId});
    EXPECT_EQ(torn->size(), source->size());

    // Torn out at the first move that left the bar: the box sits 16 px up-left of that point and
    // then follows the mouse.
    const QPoint tornAt = bar->mapTo(Canvas()->GetContentWidget(), onTab + QPoint(0, 30)) - QPoint(16, 16);
    MoveTo(bar, onTab + QPoint(200, 300));
    QApplication::processEvents();
    EXPECT_EQ(torn->pos(), tornAt + QPoint(200, 270));
    Release(bar, onTab + QPoint(200, 300));
    QApplication::processEvents();

    ASSERT_EQ(Canvas()->GetQUndoStack()->count(), 1);
    Canvas()->Undo();
    EXPECT_EQ(TabValues(source), (std::vector<int>{1, 2}));
    EXPECT_EQ(source->GetTabIds().at(1), tabId);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(Canvas()->GetPanelBoxes().size(), 1);
    Canvas()->Redo();
    EXPECT_EQ(TabValues(source), std::vector<int>{1});
    ASSERT_EQ(Canvas()->GetPanelBoxes().size(), 2);
}

TEST_F(PanelAtomizationBoxTest, JoiningAGroupTakesOrGivesItsValuesAndLeavingAnnouncesIt)
{
    std::vector<std::pair<QString, QString>> left;
    core::__CMessageDispatch::Instance().Bind(
        CVXPanelScrollView::kMsgPanelGroupLeft,
        [&left](unsigned int, unsigned long long, const core::CMessageBody& body) {
            left.emplace_back(QString::fromStdString(body.exdata()), QString::fromStdString(body.exparam()));
        },
        this);
    CVXPanelAtomizationBox* first = AddBox(QRect(20, 20, 400, 300), {{kAlpha, 1}});
    CVXPanelAtomizationBox* second = AddBox(QRect(450, 20, 400, 300), {{kBeta, 2}});
    first->UpdateBoxStockID(600000);
    const QString scope = Canvas()->GetCurrentTabColorString();

    first->OnGroupIDChanged(QStringLiteral("1"));
    EXPECT_EQ(CVXPanelLinkageData::GetInstance().GetStockID(scope, QStringLiteral("1")), 600000u);
    second->OnGroupIDChanged(QStringLiteral("1"));
    EXPECT_EQ(second->GetStockID(), 600000u);
    EXPECT_EQ(second->GetCurrentCard()->GetStockID(), 600000u);
    EXPECT_TRUE(left.empty());

    second->OnGroupIDChanged(QStringLiteral("2"));
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0], std::make_pair(scope, QStringLiteral("1")));

    // A box of a group that goes announces the group it left.
    first->DeleteLaterEx();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_EQ(left.size(), 2u);
    EXPECT_EQ(left[1].second, QStringLiteral("1"));
    core::__CMessageDispatch::Instance().UnBind(CVXPanelScrollView::kMsgPanelGroupLeft, this);
}

TEST_F(PanelAtomizationBoxTest, AStockChangeInOneCardReachesTheOtherBoxOfTheGroup)
{
    CVXPanelAtomizationBox* first = AddBox(QRect(20, 20, 400, 300), {{kAlpha, 1}});
    CVXPanelAtomizationBox* second = AddBox(QRect(450, 20, 400, 300), {{kBeta, 2}});
    first->OnGroupIDChanged(QStringLiteral("7"));
    second->OnGroupIDChanged(QStringLiteral("7"));

    CardEventStockIDChanged event(700123);
    core::ui_event::DispatchCardEvent(first->GetCurrentCard(), &event, true);
    EXPECT_EQ(first->GetStockID(), 700123u);
    EXPECT_EQ(second->GetStockID(), 700123u);
    EXPECT_EQ(second->GetCurrentCard()->GetStockID(), 700123u);
}
