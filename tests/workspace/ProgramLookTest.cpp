// How the main window presents itself: the frame and page tab bars painted in the theme's
// colours (row, current tab, hovered tab) and following a theme switch from the menu, the
// --frame start option over the remembered frame, the account frame switched as one page from its
// single account picker, and built-in layouts found by their own
// Chinese title while the program speaks English.

#include "tests/workspace/ProgramTestSupport.h"

#include "apps/Workspace/App/WorkspaceCardPage.h"
#include "apps/Workspace/App/WorkspaceTabBar.h"
#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/AccInfoCard.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"
#include "apps/Workspace/TradeCards/PositionCard.h"

#include "UIFrame/TabFrame/TabFrameBase.h"

#include "Platform/StdUI/IconButton.h"

#include <QAction>

using namespace program_test;
using ActionId = vx_ws::CVXWorkspaceMainWindow::ActionId;

namespace {

QRgb Theme(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QString::fromLatin1(key)).rgb();
}

// The window's pixel at a point of one of its widgets.
QRgb PixelAt(const QImage& windowImage, QWidget* widget, QPoint local)
{
    return windowImage.pixel(widget->mapTo(widget->window(), local));
}

} // namespace

class ProgramLookTest : public ProgramFixture
{
};

TEST_F(ProgramLookTest, TabBarsAreDrawnInTheThemeAndFollowASwitchFromTheMenu)
{
    StartApp();
    vx_ws::CVXWorkspaceMainWindow* window = Window();
    auto* frameBar = qobject_cast<vx_ws::CVXWorkspaceTabBar*>(window->Frames()->tabBar());
    auto* pageBar = qobject_cast<vx_ws::CVXWorkspaceTabBar*>(Panel()->Tabs()->tabBar());
    ASSERT_NE(frameBar, nullptr);
    ASSERT_NE(pageBar, nullptr);
    ASSERT_EQ(frameBar->currentIndex(), 0);
    // The built-in layout gives the page bar a second tab to compare the current one with.
    const vx_ws::VXBuiltInLayout& layout = vx_ws::BuiltInLayouts().first();
    ASSERT_NE(OpenBuiltIn(core::langx::tr(layout.nameId, layout.name)), nullptr);
    Panel()->AddGalleryPage(false);
    ASSERT_EQ(Panel()->Tabs()->currentIndex(), 0);
    QCoreApplication::processEvents();

    QWidget* pageRow = Panel()->Tabs();
    QWidget* corner = Panel()->NewPageButton();
    const auto check = [&](const char* when) {
        SCOPED_TRACE(when);
        const QImage image = window->grab().toImage();
        // Rows: beyond the last tab, and behind the new-page button's row left of it.
        const QRect lastFrameTab = frameBar->tabRect(frameBar->count() - 1);
        EXPECT_EQ(PixelAt(image, frameBar, QPoint(lastFrameTab.right() + 20, 4)), Theme("ct_title_bar"));
        EXPECT_EQ(PixelAt(image, pageRow, QPoint(corner->x() - 3, 3)), Theme("ct_tab_inactive"));
        // The current frame tab is underlined in the accent colour; the others are not.
        const QRect current = frameBar->tabRect(0);
        const QRect other = frameBar->tabRect(1);
        EXPECT_EQ(PixelAt(image, frameBar, QPoint(current.center().x(), current.bottom())),
                  Theme("ct_selected"));
        EXPECT_NE(PixelAt(image, frameBar, QPoint(other.center().x(), other.bottom())), Theme("ct_selected"));
        // The current page tab stands out in the active colour with its accent on top; a
        // background tab keeps the row's colour.
        const QRect page = pageBar->tabRect(0);
        const QRect background = pageBar->tabRect(1);
        EXPECT_EQ(PixelAt(image, pageBar, QPoint(page.left() + 4, page.center().y())),
                  Theme("ct_tab_active"));
        EXPECT_EQ(PixelAt(image, pageBar, QPoint(page.center().x(), page.top())), Theme("ct_selected"));
        EXPECT_EQ(PixelAt(image, pageBar, QPoint(background.left() + 4, background.center().y())),
                  Theme("ct_tab_inactive"));
    };
    check("light");
    ASSERT_NE(Theme("ct_tab_active"), Theme("ct_tab_inactive"));

    window->Action(ActionId::ThemeDark)->trigger();
    QCoreApplication::processEvents();
    ASSERT_EQ(vx_ui_res::Provider::Instance().CurrentTheme(), vx_ui_res::Theme::Dark);
    check("dark");

    // The mouse over a frame tab lights it; a click there shows that frame.
    const QRect watch = frameBar->tabRect(1);
    const QPoint hoverSpot(watch.left() + 6, watch.center().y());
    QTest::mouseMove(WindowOf(frameBar), InWindow(frameBar, watch.center()));
    QCoreApplication::processEvents();
    EXPECT_EQ(PixelAt(window->grab().toImage(), frameBar, hoverSpot), Theme("ct_hover"));
    QTest::mouseClick(WindowOf(frameBar), Qt::LeftButton, Qt::NoModifier, InWindow(frameBar, watch.center()));
    QCoreApplication::processEvents();
    EXPECT_EQ(window->CurrentFrameKey(), TabFrameKey_WatchList);
    const QImage afterClick = window->grab().toImage();
    EXPECT_EQ(PixelAt(afterClick, frameBar, QPoint(watch.center().x(), watch.bottom())),
              Theme("ct_selected"));
}

TEST_F(ProgramLookTest, FrameOptionShowsThatFrameOverTheRememberedOne)
{
    StartApp();
    Window()->SwitchTabFrame(TabFrameKey_WatchList, CVXVariantMapTree());
    Restart();
    EXPECT_EQ(Window()->CurrentFrameKey(), TabFrameKey_WatchList);

    options.frame = TabFrameKey_Account;
    app.reset();
    Restart();
    EXPECT_EQ(Window()->CurrentFrameKey(), TabFrameKey_Account);
    ASSERT_NE(Window()->AccountPage(), nullptr);
    EXPECT_TRUE(Window()->AccountPage()->isVisible());
    EXPECT_FALSE(Window()->WatchListPage()->isVisible());
    // The edit actions stay off while the account frame is in front.
    EXPECT_FALSE(Window()->Action(ActionId::SaveLayout)->isEnabled());
}

TEST_F(ProgramLookTest, TheAccountFrameHasOneAccountPickerAndEveryCardFollowsIt)
{
    options.frame = TabFrameKey_Account;
    StartApp();
    vx_ws::CVXWorkspaceCardPage* page = Window()->AccountPage();
    ASSERT_NE(page, nullptr);
    vx_trade::CVXSimTradeService* service = app->TradeService();
    ASSERT_NE(service, nullptr);
    const unsigned long long first = service->DefaultAccountID();
    unsigned long long other = 0;
    for (const vx_trade::AccountInfo& account : service->Accounts()) {
        if (account.id != first && other == 0)
            other = account.id;
    }
    ASSERT_NE(other, 0u);

    // One picker on the page, however many account cards it holds.
    std::vector<vx_ws::CVXAccountCardBase*> cards;
    int shownPickers = 0;
    for (CVXCardObjBase* card : page->Cards()) {
        auto* accountCard = qobject_cast<vx_ws::CVXAccountCardBase*>(card);
        ASSERT_NE(accountCard, nullptr) << card->GetCardObjType().toStdString();
        cards.push_back(accountCard);
        if (accountCard->AccountSelector()->isVisible())
            ++shownPickers;
        EXPECT_EQ(accountCard->AccountID(), first) << card->GetCardObjType().toStdString();
    }
    ASSERT_EQ(cards.size(), 4u);
    EXPECT_EQ(shownPickers, 1);
    vx_ws::CVXAccountSelector* picker = page->AccountPicker();
    ASSERT_NE(picker, nullptr);
    ASSERT_TRUE(picker->isVisible());

    // The other account picked once, with the mouse: every card of the page shows it.
    QTest::mouseClick(picker, Qt::LeftButton, Qt::NoModifier, picker->rect().center());
    vx_std_ui::VMenu* menu = picker->OpenMenu();
    ASSERT_NE(menu, nullptr);
    QAction* action = menu->findAction(QVariant::fromValue<qulonglong>(other));
    ASSERT_NE(action, nullptr);
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(action).center());
    QCoreApplication::processEvents();
    EXPECT_EQ(page->CurrentAccountID(), other);
    for (vx_ws::CVXAccountCardBase* card : cards)
        EXPECT_EQ(card->AccountID(), other) << card->GetCardObjType().toStdString();
    EXPECT_EQ(picker->AccountID(), other);

    // What the cards show is the other account's, read back against the broker.
    auto* positions =
        qobject_cast<vx_ws::CVXPositionCard*>(page->FindCard(QStringLiteral("SecuritiesTradePosition")));
    auto* info = qobject_cast<vx_ws::CVXAccInfoCard*>(page->FindCard(QStringLiteral("SecuritiesAccInfo")));
    ASSERT_TRUE(positions && info);
    std::vector<unsigned long long> shown;
    for (const vx_ws::PositionRow& row : positions->Rows())
        shown.push_back(row.stockId);
    std::vector<unsigned long long> held;
    for (const vx_trade::Position& position : service->Positions(other))
        held.push_back(position.stockId);
    EXPECT_EQ(shown, held);
    EXPECT_EQ(info->FieldText(vx_ws::CVXAccInfoCard::EnField::Cash),
              vx_ws::CVXAccountCardBase::FormatMoney(service->Summary(other).cash));
}

TEST_F(ProgramLookTest, BuiltInLayoutsAreFoundByTheirOwnTitleInEitherLanguage)
{
    options.language = QStringLiteral("en");
    StartApp();
    ASSERT_EQ(core::langx::GetLanguage(), QStringLiteral("en"));
    const CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    for (const vx_ws::VXBuiltInLayout& layout : vx_ws::BuiltInLayouts()) {
        const QString chinese = QString::fromUtf8(layout.name);
        const QString english = core::langx::tr(layout.nameId, layout.name);
        SCOPED_TRACE(chinese.toStdString());
        ASSERT_NE(english, chinese) << "no English title to tell the two apart";
        unsigned long long byEnglish = 0;
        unsigned long long byChinese = 0;
        ASSERT_TRUE(vx_ws::CVXWorkspaceApp::FindLayoutByTitle(english, &byEnglish));
        ASSERT_TRUE(vx_ws::CVXWorkspaceApp::FindLayoutByTitle(chinese, &byChinese));
        EXPECT_EQ(byChinese, byEnglish);
        EXPECT_EQ(manager.GetPanelLayoutData(byChinese).title(), english);
        EXPECT_FALSE(manager.GetPanelLayoutData(byChinese).isCustomized());
    }
    unsigned long long key = 42;
    EXPECT_FALSE(vx_ws::CVXWorkspaceApp::FindLayoutByTitle(QStringLiteral("No such layout"), &key));
    EXPECT_EQ(key, 42u);

    // A layout the user saved under a built-in's Chinese title is that user layout in English
    // too: the titles the manager holds come first.
    CVXPanelScrollView* canvas = OpenBuiltIn(
        core::langx::tr(vx_ws::BuiltInLayouts().first().nameId, vx_ws::BuiltInLayouts().first().name));
    ASSERT_NE(canvas, nullptr);
    const QString taken = QString::fromUtf8(vx_ws::BuiltInLayouts().last().name);
    canvas->SaveLayoutImpl(taken, QString(), {});
    ASSERT_TRUE(WaitFor([]() { return CVXPanelLayoutManager::Instance().PendingFileWorkCount() == 0; }));
    ASSERT_TRUE(vx_ws::CVXWorkspaceApp::FindLayoutByTitle(taken, &key));
    EXPECT_TRUE(manager.GetPanelLayoutData(key).isCustomized());
}
