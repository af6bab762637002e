// VMenu: actions with data, checkable and exclusive items, submenus, and Triggered reported
// once per trigger for mouse, keyboard and programmatic activation.

#include "Platform/StdUI/Menu.h"
#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace vx_std_ui;

namespace {

QAction* TriggeredAt(const QSignalSpy& spy, int i)
{
    return spy.at(i).at(0).value<QAction*>();
}

class MenuTest : public ::testing::Test
{
protected:
    void TearDown() override { vx_ui_res::Provider::Instance().ResetForTest(); }
};

TEST_F(MenuTest, ActionsCarryTheirDataAndAreFoundByIt)
{
    VMenu menu;
    QAction* buy = menu.addActionWithData(QStringLiteral("Buy"), 1);
    QAction* sell = menu.addActionWithData(QIcon(), QStringLiteral("Sell"), QStringLiteral("sell"));
    menu.addSeparator();
    VMenu* sub = menu.addSubMenu(QStringLiteral("More"));
    QAction* cancel = sub->addActionWithData(QStringLiteral("Cancel all"), 9);

    EXPECT_EQ(buy->text(), QStringLiteral("Buy"));
    EXPECT_EQ(buy->data().toInt(), 1);
    EXPECT_EQ(menu.findAction(1), buy);
    EXPECT_EQ(menu.findAction(QStringLiteral("sell")), sell);
    EXPECT_EQ(menu.findAction(9), cancel) << "submenus are searched";
    EXPECT_EQ(menu.findAction(9, false), nullptr);
    EXPECT_EQ(menu.findAction(QVariant()), nullptr) << "separators and submenu entries are not items";
    EXPECT_EQ(menu.findAction(12345), nullptr);

    EXPECT_EQ(sub->title(), QStringLiteral("More"));
    EXPECT_EQ(sub->parent(), &menu) << "the submenu is owned by its menu";
    EXPECT_EQ(sub->parentMenu(), &menu);
    EXPECT_EQ(menu.parentMenu(), nullptr);
    EXPECT_TRUE(menu.actions().contains(sub->menuAction()));
}

TEST_F(MenuTest, TriggeredReachesTheMenuAndEveryParentOnce)
{
    VMenu root;
    VMenu* sub = root.addSubMenu(QStringLiteral("Linkage"));
    VMenu* subsub = sub->addSubMenu(QStringLiteral("Colour"));
    QAction* top = root.addActionWithData(QStringLiteral("Top"), 1);
    QAction* deep = subsub->addActionWithData(QStringLiteral("Red"), 2);
    QSignalSpy rootSpy(&root, &VMenu::Triggered);
    QSignalSpy subSpy(sub, &VMenu::Triggered);
    QSignalSpy deepSpy(subsub, &VMenu::Triggered);

    deep->trigger();
    ASSERT_EQ(rootSpy.count(), 1);
    ASSERT_EQ(subSpy.count(), 1);
    ASSERT_EQ(deepSpy.count(), 1);
    EXPECT_EQ(TriggeredAt(rootSpy, 0), deep);
    EXPECT_EQ(TriggeredAt(subSpy, 0), deep);

    top->trigger();
    EXPECT_EQ(rootSpy.count(), 2);
    EXPECT_EQ(TriggeredAt(rootSpy, 1), top);
    EXPECT_EQ(subSpy.count(), 1) << "a parent's action is not reported by its submenus";

    // Once the submenu is taken out, its actions no longer reach the old parent.
    root.removeAction(sub->menuAction());
    EXPECT_EQ(sub->parentMenu(), nullptr);
    deep->trigger();
    EXPECT_EQ(rootSpy.count(), 2);
    EXPECT_EQ(subSpy.count(), 2);

    // A removed action is no longer reported.
    root.removeAction(top);
    top->trigger();
    EXPECT_EQ(rootSpy.count(), 2);
    delete top;
}

TEST_F(MenuTest, MouseClickOnAShownMenuTriggersTheItem)
{
    VMenu menu;
    menu.addActionWithData(QStringLiteral("Quote"), 1);
    QAction* chart = menu.addActionWithData(QStringLiteral("Chart"), 2);
    QSignalSpy spy(&menu, &VMenu::Triggered);
    menu.popup(QPoint(50, 50));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));

    QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier, menu.actionGeometry(chart).center());
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(TriggeredAt(spy, 0), chart);
    EXPECT_FALSE(menu.isVisible()) << "choosing an item closes the menu";
}

TEST_F(MenuTest, KeyboardOpensASubmenuAndTriggersItsItem)
{
    VMenu root;
    QAction* first = root.addActionWithData(QStringLiteral("Open"), 1);
    VMenu* sub = root.addSubMenu(QStringLiteral("Group"));
    QAction* red = sub->addActionWithData(QStringLiteral("Red"), QStringLiteral("red"));
    sub->addActionWithData(QStringLiteral("Blue"), QStringLiteral("blue"));
    QSignalSpy rootSpy(&root, &VMenu::Triggered);
    QSignalSpy subSpy(sub, &VMenu::Triggered);

    root.popup(QPoint(40, 40));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&root));
    QTest::keyClick(&root, Qt::Key_Down);
    EXPECT_EQ(root.activeAction(), first);
    QTest::keyClick(&root, Qt::Key_Down);
    EXPECT_EQ(root.activeAction(), sub->menuAction());
    QTest::keyClick(&root, Qt::Key_Right);
    ASSERT_TRUE(sub->isVisible());
    EXPECT_EQ(rootSpy.count(), 0) << "opening a submenu triggers nothing";
    if (!sub->activeAction())
        QTest::keyClick(sub, Qt::Key_Down);
    EXPECT_EQ(sub->activeAction(), red);
    QTest::keyClick(sub, Qt::Key_Return);

    ASSERT_EQ(subSpy.count(), 1);
    ASSERT_EQ(rootSpy.count(), 1);
    EXPECT_EQ(TriggeredAt(rootSpy, 0), red);
    EXPECT_EQ(TriggeredAt(rootSpy, 0)->data().toString(), QStringLiteral("red"));
    EXPECT_FALSE(sub->isVisible());
    EXPECT_FALSE(root.isVisible());
}

TEST_F(MenuTest, CheckableAndExclusiveItems)
{
    VMenu menu;
    QAction* grid = menu.addCheckableAction(QStringLiteral("Show grid"), QStringLiteral("grid"), true);
    EXPECT_TRUE(grid->isCheckable());
    EXPECT_TRUE(grid->isChecked());
    grid->trigger();
    EXPECT_FALSE(grid->isChecked());

    QAction* red = menu.addRadioAction(QStringLiteral("colour"), QStringLiteral("Red"), 1, false);
    QAction* green = menu.addRadioAction(QStringLiteral("colour"), QStringLiteral("Green"), 2, true);
    QAction* small = menu.addRadioAction(QStringLiteral("size"), QStringLiteral("Small"), 3, true);
    EXPECT_EQ(menu.checkedAction(QStringLiteral("colour")), green);
    EXPECT_EQ(menu.checkedAction(QStringLiteral("size")), small);
    EXPECT_EQ(menu.checkedAction(QStringLiteral("missing")), nullptr);

    QSignalSpy spy(&menu, &VMenu::Triggered);
    red->trigger();
    EXPECT_TRUE(red->isChecked());
    EXPECT_FALSE(green->isChecked());
    EXPECT_TRUE(small->isChecked()) << "groups are independent";
    EXPECT_EQ(menu.checkedAction(QStringLiteral("colour")), red);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(TriggeredAt(spy, 0), red);
    EXPECT_FALSE(grid->isChecked()) << "plain checkable items are not part of a group";
}

TEST_F(MenuTest, MenusFollowTheThemeThroughTheirPalette)
{
    auto& provider = vx_ui_res::Provider::Instance();
    VMenu menu;
    VMenu* sub = menu.addSubMenu(QStringLiteral("Sub"));
    EXPECT_EQ(menu.palette().color(QPalette::Window), provider.GetColor(QStringLiteral("ct_bg_primary")));
    EXPECT_EQ(menu.styleSheet(), QString());

    provider.SetTheme(vx_ui_res::Theme::Dark);
    const QColor darkBg = provider.GetColor(QStringLiteral("ct_bg_primary"), vx_ui_res::Theme::Dark);
    ASSERT_NE(darkBg, provider.GetColor(QStringLiteral("ct_bg_primary"), vx_ui_res::Theme::Light));
    EXPECT_EQ(menu.palette().color(QPalette::Window), darkBg);
    EXPECT_EQ(sub->palette().color(QPalette::Window), darkBg);
    EXPECT_EQ(menu.palette().color(QPalette::Text),
              provider.GetColor(QStringLiteral("ct_text_primary"), vx_ui_res::Theme::Dark));
}

} // namespace
