// The program's session around the workspace: logging out and in as another user (each user
// with their own folder, layouts and window state), the watch-list frame (its cards follow a
// row click and a jump into the frame over the bus), the module interfaces UIFrame calls, and
// the theme and language choices remembered across a restart.

#include "tests/workspace/ProgramTestSupport.h"

#include "apps/Workspace/App/WorkspaceCardPage.h"
#include "apps/Workspace/App/WorkspacePreferences.h"
#include "apps/Workspace/QuoteCards/WatchlistCard.h"

#include "UIFrame/ModuleInterfaces.h"
#include "UIFrame/TabFrame/TabFrameBase.h"
#include "UIFrame/TabFrame/TabFramePageUtil.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/StdUI/Menu.h"
#include "Platform/StdUI/Toast.h"

#include <QAction>
#include <QMenuBar>
#include <QSignalSpy>

using namespace program_test;
using Field = vx_ws::CVXWorkspaceMainWindow::StatusField;
using ActionId = vx_ws::CVXWorkspaceMainWindow::ActionId;

class ProgramSessionTest : public ProgramFixture
{
protected:
    // Answers the login dialog with a typed id and a click.
    void LogInThroughTheDialog(const QString& id)
    {
        auto* dialog = OpenDialog<vx_ws::CVXWorkspaceLoginDialog>();
        ASSERT_NE(dialog, nullptr) << "no login dialog";
        auto* edit =
            dialog->findChild<QLineEdit*>(QString::fromLatin1(vx_ws::CVXWorkspaceLoginDialog::kUserEditName));
        ASSERT_NE(edit, nullptr);
        TypeInto(edit, id);
        ClickButton(dialog, "Confirm_Button");
        ASSERT_TRUE(WaitFor([this]() { return Window() != nullptr; }));
        ASSERT_TRUE(WaitFor([]() { return CVXPanelLayoutManager::Instance().PendingFileWorkCount() == 0; }));
        FlushDeletes();
    }
};

TEST_F(ProgramSessionTest, LoggingOutAndInGivesEachUserTheirOwnWorkspace)
{
    StartApp();
    const vx_ws::VXBuiltInLayout& layout = vx_ws::BuiltInLayouts().first();
    ASSERT_NE(OpenBuiltIn(core::langx::tr(layout.nameId, layout.name)), nullptr);
    Window()->Action(ActionId::SaveLayoutAs)->trigger();
    AnswerSaveDialog(QStringLiteral("Seven's desk"), QString());
    ASSERT_FALSE(
        CVXPanelLayoutManager::Instance().GetPanelLayoutData(QStringLiteral("Seven's desk")).isEmpty());
    const QString sevenFolder = core::product_path::GetUserFolder(7);

    QSignalSpy finished(app.get(), &vx_ws::CVXWorkspaceApp::Finished);
    Window()->Action(ActionId::Logout)->trigger();
    ASSERT_TRUE(WaitFor([this]() { return Window() == nullptr; }));
    EXPECT_FALSE(core::CLoginState::Instance().IsLoggedIn());
    EXPECT_EQ(core::config_cloud::DefaultClient(), nullptr);
    EXPECT_TRUE(QFile::exists(vx_ws::CVXWorkspaceWindowState::FilePath(7)));

    // The dialog offers the last user; another one logs in.
    auto* dialog = OpenDialog<vx_ws::CVXWorkspaceLoginDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->UserId(), 7u);
    LogInThroughTheDialog(QStringLiteral("8"));
    EXPECT_EQ(core::CLoginState::Instance().GetUserID(), 8u);
    EXPECT_TRUE(Window()->StatusText(Field::User).contains(QStringLiteral("8")));
    EXPECT_EQ(Panel()->Tabs()->count(), 1);
    EXPECT_NE(Panel()->CurrentGallery(), nullptr);
    EXPECT_TRUE(
        CVXPanelLayoutManager::Instance().GetPanelLayoutData(QStringLiteral("Seven's desk")).isEmpty());
    EXPECT_EQ(CVXPanelLayoutManager::Instance().GetUserFolder(), core::product_path::GetUserFolder(8));
    EXPECT_NE(CVXPanelLayoutManager::Instance().GetUserFolder(), sevenFolder);

    // Back to 7: the layout and the opened page are there again.
    Window()->Action(ActionId::Logout)->trigger();
    ASSERT_TRUE(WaitFor([this]() { return Window() == nullptr; }));
    LogInThroughTheDialog(QStringLiteral("7"));
    EXPECT_FALSE(
        CVXPanelLayoutManager::Instance().GetPanelLayoutData(QStringLiteral("Seven's desk")).isEmpty());
    ASSERT_NE(Panel()->CurrentCanvas(), nullptr);
    EXPECT_EQ(Panel()->Tabs()->tabText(Panel()->Tabs()->currentIndex()), QStringLiteral("Seven's desk"));

    // Cancelling the login dialog ends the program.
    Window()->Action(ActionId::Logout)->trigger();
    ASSERT_TRUE(WaitFor([this]() { return Window() == nullptr; }));
    dialog = OpenDialog<vx_ws::CVXWorkspaceLoginDialog>();
    ASSERT_NE(dialog, nullptr);
    ClickButton(dialog, "Cancel_Button");
    ASSERT_TRUE(WaitFor([&finished]() { return finished.count() == 1; }));
    EXPECT_EQ(finished.value(0).value(0).toInt(), 0);
}

TEST_F(ProgramSessionTest, TheWatchListFrameFollowsARowClickAndAJumpOverTheBus)
{
    StartApp();
    vx_ws::CVXWorkspaceMainWindow* window = Window();
    vx_ws::CVXWorkspaceCardPage* page = window->WatchListPage();
    ASSERT_NE(page, nullptr);
    const QStringList types = {QStringLiteral("Watchlist"), QStringLiteral("StockHeader"),
                               QStringLiteral("KLine"), QStringLiteral("OrderBook"), QStringLiteral("Ticks")};
    for (const QString& type : types)
        EXPECT_NE(page->FindCard(type), nullptr) << type.toStdString();

    window->Frames()->setCurrentIndex(window->Frames()->indexOf(window->Frame(TabFrameKey_WatchList)));
    QCoreApplication::processEvents();
    Steps(3);
    auto* watch = qobject_cast<vx_ws::CVXWatchlistCard*>(page->FindCard(QStringLiteral("Watchlist")));
    ASSERT_NE(watch, nullptr);
    ASSERT_TRUE(watch->isVisible());
    const unsigned long shown =
        static_cast<unsigned long>(page->FindCard(QStringLiteral("KLine"))->GetStockID());
    int row = -1;
    for (int i = 0; i < static_cast<int>(watch->Model().Rows().size()) && row < 0; ++i) {
        const auto& r = watch->Model().Rows().at(i);
        if (r.known && r.id != shown && r.id != vx_ws::kDefaultStockID && !watch->RowRect(i).isEmpty())
            row = i;
    }
    ASSERT_GE(row, 0);
    const unsigned long picked = watch->Model().Rows().at(row).id;
    QTest::mouseClick(watch, Qt::LeftButton, Qt::NoModifier, watch->RowRect(row).center());
    QCoreApplication::processEvents();
    for (const QString& type : types.mid(1))
        EXPECT_EQ(page->FindCard(type)->GetStockID(), picked) << type.toStdString();
    EXPECT_EQ(page->CurrentStockID(), picked);
    EXPECT_EQ(app->LastSecurityId(), picked);

    // A jump from anywhere (bus 20160) switches the frame and shows the security.
    window->SwitchTabFrame(TabFrameKey_PanelWorkspace, CVXVariantMapTree());
    CVXVariantMapTree jump;
    const unsigned long target = picked == 1005 ? 1006 : 1005;
    jump.Set<qulonglong>(QStringLiteral("StockID"), target);
    ITabFramePageUtil::Instance().OpenTabFrameWithJumpData(TabFrameKey_WatchList, jump);
    EXPECT_EQ(window->CurrentFrameKey(), TabFrameKey_WatchList);
    for (const QString& type : types)
        EXPECT_EQ(page->FindCard(type)->GetStockID(), target) << type.toStdString();
    EXPECT_EQ(ITabFramePageUtil::Instance().GetJumpFromTabFrameKey(), TabFrameKey_PanelWorkspace);

    // The module interfaces UIFrame asks through the plug-in centre.
    auto mainFrame = core::IVXPluginCenter::CreateInterface<IMainFrameModuleUtil>();
    ASSERT_NE(mainFrame, nullptr);
    EXPECT_TRUE(mainFrame->IsMainFrameExist());
    mainFrame->SwitchTabFrame(TabFrameKey_Account, CVXVariantMapTree());
    EXPECT_EQ(window->CurrentFrameKey(), TabFrameKey_Account);

    // The watch-list frame's security is part of the window state.
    Restart();
    EXPECT_EQ(Window()->CurrentFrameKey(), TabFrameKey_Account);
    EXPECT_EQ(Window()->WatchListPage()->FindCard(QStringLiteral("KLine"))->GetStockID(), target);
    app.reset();
    EXPECT_FALSE(mainFrame->IsMainFrameExist());
}

TEST_F(ProgramSessionTest, LayoutShortcutsOpenTheirLayoutAndAreKept)
{
    StartApp();
    const vx_ws::VXBuiltInLayout& layout = vx_ws::BuiltInLayouts().first();
    CVXPanelScrollView* canvas = OpenBuiltIn(core::langx::tr(layout.nameId, layout.name));
    ASSERT_NE(canvas, nullptr);
    Window()->Action(ActionId::SaveLayout)->trigger();
    AnswerSaveDialog(QStringLiteral("Quick"), QString());
    ASSERT_TRUE(canvas->AddShortcut());
    vx_std_ui::VMenu* menu = Window()->ShortcutsMenu();
    Q_EMIT menu->aboutToShow();
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions().first()->text(), QStringLiteral("Quick"));
    EXPECT_TRUE(menu->actions().first()->isEnabled());

    Restart();
    menu = Window()->ShortcutsMenu();
    Q_EMIT menu->aboutToShow();
    ASSERT_EQ(menu->actions().size(), 1);
    const int pagesBefore = Panel()->Tabs()->count();
    menu->actions().first()->trigger();
    FlushDeletes();
    EXPECT_EQ(Panel()->Tabs()->count(), pagesBefore + 1);
    ASSERT_NE(Panel()->CurrentCanvas(), nullptr);
    EXPECT_EQ(Panel()->CurrentCanvas()->GetTabTitle(), QStringLiteral("Quick"));
}

TEST_F(ProgramSessionTest, ThemeAndLanguageChoicesApplyAtOnceAndAreRemembered)
{
    StartApp();
    vx_ws::CVXWorkspaceMainWindow* window = Window();
    const QPalette lightPalette = QApplication::palette();
    const QImage lightImage = window->grab().toImage();
    EXPECT_EQ(window->menuBar()->actions().first()->text(), QStringLiteral("文件"));

    window->Action(ActionId::ThemeDark)->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(vx_ui_res::Provider::Instance().CurrentTheme(), vx_ui_res::Theme::Dark);
    EXPECT_NE(QApplication::palette().color(QPalette::Window), lightPalette.color(QPalette::Window));
    EXPECT_NE(window->grab().toImage(), lightImage);

    window->Action(ActionId::LanguageEnglish)->trigger();
    FlushDeletes();
    // The menus are rebuilt in English at once, with a word that the rest follows on restart.
    EXPECT_EQ(window->menuBar()->actions().first()->text(), QStringLiteral("File"));
    EXPECT_TRUE(window->Action(ActionId::LanguageEnglish)->isChecked());
    EXPECT_TRUE(window->Action(ActionId::ThemeDark)->isChecked());
    auto* toast = window->findChild<vx_std_ui::VToast*>(QString::fromLatin1(vx_std_ui::VToast::kObjectName));
    ASSERT_NE(toast, nullptr);
    EXPECT_FALSE(toast->text().isEmpty());

    const vx_ws::CVXWorkspacePreferences prefs =
        vx_ws::CVXWorkspacePreferences::Load(vx_ws::CVXWorkspacePreferences::FilePath());
    EXPECT_EQ(prefs.theme, QStringLiteral("dark"));
    EXPECT_EQ(prefs.language, QStringLiteral("en"));
    EXPECT_EQ(prefs.lastUserId, 7u);

    app.reset();
    vx_ui_res::Provider::Instance().ResetForTest();
    core::langx::ResetForTest();
    Restart();
    EXPECT_EQ(vx_ui_res::Provider::Instance().CurrentTheme(), vx_ui_res::Theme::Dark);
    EXPECT_EQ(core::langx::GetLanguage(), QStringLiteral("en"));
    EXPECT_EQ(Window()->Frames()->tabText(0), QStringLiteral("Workspace"));
}
