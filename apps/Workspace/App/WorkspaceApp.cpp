#include "apps/Workspace/App/WorkspaceApp.h"

#include "apps/Workspace/App/WorkspaceCardPage.h"
#include "apps/Workspace/App/WorkspaceLoginDialog.h"
#include "apps/Workspace/App/WorkspaceMainWindow.h"
#include "apps/Workspace/App/WorkspaceModules.h"
#include "apps/Workspace/App/WorkspacePanelPage.h"
#include "apps/Workspace/App/WorkspaceWindowState.h"
#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/Trade/SimTradeService.h"

#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/TabFrame/TabFramePageUtil.h"

#include "Platform/Core/ConfigCloud.h"
#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/LoginState.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/StdUI/ThemeResource.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QImage>
#include <QPixmap>
#include <QThread>
#include <QTimer>

#include <cstdio>

namespace vx_ws {

namespace {

// Enough simulated seconds for charts, ticks and books to fill.
constexpr int kScreenshotSteps = 60;

void PrintError(const QString& message)
{
    std::fprintf(stderr, "vxworkspace: %s\n", message.toLocal8Bit().constData());
    std::fflush(stderr);
}

} // namespace

struct CVXWorkspaceApp::Impl
{
    CVXWorkspaceOptions options;
    CVXWorkspacePreferences prefs;
    std::unique_ptr<vx_md::CVXSimMarketData> feed;
    std::unique_ptr<vx_trade::CVXSimTradeService> trade;
    std::unique_ptr<CVXWorkspaceModules> modules;
    std::unique_ptr<core::config_cloud::CConfigCloudClient> cloud;
    QPointer<CVXWorkspaceMainWindow> window;
    QPointer<CVXWorkspaceLoginDialog> loginDialog;
    unsigned long long lastSecurity = 0;
    bool started = false;
};

CVXWorkspaceApp::CVXWorkspaceApp(CVXWorkspaceOptions options, QObject* parent)
    : QObject(parent), d(std::make_unique<Impl>())
{
    d->options = std::move(options);
}

CVXWorkspaceApp::~CVXWorkspaceApp()
{
    delete d->loginDialog.data();
    CloseSession(!d->options.IsScreenshot());
    d->modules.reset();
    if (d->started) {
        CVXWorkspaceCardPage::UnRegisterPageFactories();
        SetTradeService(nullptr);
        SetMarketData(nullptr);
    }
    d->trade.reset();
    d->feed.reset();
}

void CVXWorkspaceApp::Start()
{
    if (d->started) {
        VXLOG_WARN("CVXWorkspaceApp::Start: started already");
        return;
    }
    d->started = true;
    if (!d->options.dataDir.isEmpty()) {
        core::product_path::SetRootOverride(d->options.dataDir);
        // The built-in layouts sit next to the executable, whatever the data folder.
        core::product_path::SetAppFolderOverride(QCoreApplication::applicationDirPath());
    }
    d->prefs = CVXWorkspacePreferences::Load(CVXWorkspacePreferences::FilePath());
    // Widgets without a palette of their own follow the application palette.
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this,
            []() { vx_ui_res::Provider::Instance().ApplyApplicationPalette(); });
    ApplyTheme(d->options.theme.isEmpty() ? d->prefs.theme : d->options.theme);
    const QString language = d->options.language.isEmpty() ? d->prefs.language : d->options.language;
    if (!core::langx::SetLanguage(language))
        VXLOG_WARN("CVXWorkspaceApp::Start: language {} unavailable", language);

    d->feed = std::make_unique<vx_md::CVXSimMarketData>(d->options.seed);
    if (d->options.historySeconds > 0)
        d->feed->WarmUp(d->options.historySeconds);
    d->trade = std::make_unique<vx_trade::CVXSimTradeService>(d->feed.get());
    SetMarketData(d->feed.get());
    SetTradeService(d->trade.get());
    RegisterWorkspaceCards();
    CVXWorkspaceCardPage::RegisterPageFactories();
    // Built now so that it listens to the "switch back" notification from the start.
    ITabFramePageUtil::Instance();

    CVXWorkspaceModules::Hooks hooks;
    hooks.mainFrameExists = [this]() { return !d->window.isNull(); };
    hooks.switchTabFrame = [this](EnVXTabFrameKey key, const CVXVariantMapTree& jump) {
        if (d->window)
            d->window->SwitchTabFrame(key, jump);
    };
    hooks.addShortcut = [this](const CVXVariantMapTree& params) {
        return d->window && d->window->AddShortcut(params);
    };
    hooks.securityViewed = [this](unsigned long long id) {
        d->lastSecurity = id;
        if (d->window)
            d->window->SetLastSecurity(id);
    };
    d->modules = std::make_unique<CVXWorkspaceModules>(std::move(hooks));
    d->modules->Register();

    if (d->options.IsScreenshot()) {
        RunScreenshot();
        return;
    }
    if (d->options.feedIntervalMs > 0)
        d->feed->Start(d->options.feedIntervalMs);
    if (d->options.userId != 0)
        LoginAs(d->options.userId);
    else
        ShowLoginDialog();
}

void CVXWorkspaceApp::ApplyTheme(const QString& theme)
{
    vx_ui_res::Provider& provider = vx_ui_res::Provider::Instance();
    provider.SetTheme(theme == QLatin1String("dark") ? vx_ui_res::Theme::Dark : vx_ui_res::Theme::Light);
    provider.ApplyApplicationPalette();
}

bool CVXWorkspaceApp::LoginAs(unsigned long long userId)
{
    if (userId == 0) {
        VXLOG_WARN("CVXWorkspaceApp::LoginAs: user id 0");
        return false;
    }
    if (core::CLoginState::Instance().IsLoggedIn())
        CloseSession(true);
    if (!core::CLoginState::Instance().Login(userId)) {
        VXLOG_WARN("CVXWorkspaceApp::LoginAs: login of {} refused", userId);
        return false;
    }
    d->prefs.lastUserId = userId;
    d->prefs.Save(CVXWorkspacePreferences::FilePath());

    const QString store =
        d->options.storeFile.isEmpty() ? CVXWorkspacePreferences::DefaultStorePath() : d->options.storeFile;
    d->cloud = std::make_unique<core::config_cloud::CConfigCloudClient>(store);
    d->cloud->SetUserID(userId);
    core::config_cloud::SetDefaultClient(d->cloud.get());
    CVXPanelLayoutManager::Instance().InitData();

    MakeMainWindow(userId);
    Q_EMIT LoggedIn(userId);
    return true;
}

void CVXWorkspaceApp::MakeMainWindow(unsigned long long userId)
{
    auto* window = new CVXWorkspaceMainWindow;
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    d->window = window;
    window->SetUserId(userId);
    window->SetLastSecurity(d->lastSecurity);
    connect(window, &CVXWorkspaceMainWindow::LogoutRequested, this, [this]() {
        // The request comes from a menu of the window that Logout deletes.
        QTimer::singleShot(0, this, [this]() { Logout(); });
    });
    connect(window, &CVXWorkspaceMainWindow::QuitRequested, this, [this]() { Q_EMIT Finished(0); });
    connect(window, &CVXWorkspaceMainWindow::ThemeRequested, this,
            [this](vx_ui_res::Theme theme) { OnThemeRequested(static_cast<int>(theme)); });
    connect(window, &CVXWorkspaceMainWindow::LanguageRequested, this, &CVXWorkspaceApp::OnLanguageRequested);

    bool maximized = false;
    if (!d->options.IsScreenshot()) {
        const QString path = CVXWorkspaceWindowState::FilePath(userId);
        window->SetStateFilePath(path);
        CVXWorkspaceWindowState state;
        switch (CVXWorkspaceWindowState::Load(path, &state)) {
        case CVXWorkspaceWindowState::LoadResult::Loaded:
            window->ApplyState(state, !d->options.size.isValid());
            maximized = state.maximized && !d->options.size.isValid();
            break;
        case CVXWorkspaceWindowState::LoadResult::SetAside:
            QTimer::singleShot(0, window, [window]() {
                window->ShowToast(core::langx::tr(970571, "窗口状态文件已损坏，已重新开始"));
            });
            break;
        case CVXWorkspaceWindowState::LoadResult::Missing:
            break;
        }
    }
    if (d->options.frame != 0)
        window->SwitchTabFrame(static_cast<EnVXTabFrameKey>(d->options.frame), CVXVariantMapTree());
    if (d->options.size.isValid() || d->options.IsScreenshot())
        window->resize(d->options.IsScreenshot() ? d->options.EffectiveScreenshotSize() : d->options.size);
    else if (window->geometry().size() == window->minimumSize() || window->width() < 800)
        window->resize(CVXWorkspaceOptions::kDefaultWidth, CVXWorkspaceOptions::kDefaultHeight);
    if (maximized)
        window->showMaximized();
    else
        window->show();
}

void CVXWorkspaceApp::CloseSession(bool saveState)
{
    if (d->window) {
        if (saveState)
            d->window->SaveState();
        delete d->window.data();
        // The cards give their feed subscriptions back when their deferred deletions run.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    // The user's saves reach the user's folder before anyone else logs in.
    QDeadlineTimer deadline(10000);
    while (CVXPanelLayoutManager::Instance().PendingFileWorkCount() > 0 && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    const unsigned long long userId = core::CLoginState::Instance().GetUserID();
    if (userId != 0) {
        core::CLoginState::Instance().Logout();
        Q_EMIT LoggedOut(userId);
    }
    if (d->cloud) {
        if (core::config_cloud::DefaultClient() == d->cloud.get())
            core::config_cloud::SetDefaultClient(nullptr);
        d->cloud.reset();
    }
}

void CVXWorkspaceApp::Logout()
{
    CloseSession(true);
    CVXPanelLayoutManager::Instance().ClearAllPanelLayouts();
    ShowLoginDialog();
}

void CVXWorkspaceApp::ShowLoginDialog()
{
    if (d->loginDialog)
        return;
    QPointer<CVXWorkspaceApp> self(this);
    d->loginDialog =
        CVXWorkspaceLoginDialog::Ask(nullptr, d->prefs.lastUserId, [self](unsigned long long id) {
            if (!self)
                return;
            // The dialog is still finishing; the main window comes after it has gone.
            QTimer::singleShot(0, self, [self, id]() {
                if (!self)
                    return;
                if (id == 0)
                    Q_EMIT self->Finished(0);
                else
                    self->LoginAs(id);
            });
        });
}

void CVXWorkspaceApp::OnThemeRequested(int theme)
{
    const bool dark = static_cast<vx_ui_res::Theme>(theme) == vx_ui_res::Theme::Dark;
    d->prefs.theme = dark ? QStringLiteral("dark") : QStringLiteral("light");
    d->prefs.Save(CVXWorkspacePreferences::FilePath());
    ApplyTheme(d->prefs.theme);
}

void CVXWorkspaceApp::OnLanguageRequested(const QString& language)
{
    if (!core::langx::SetLanguage(language)) {
        VXLOG_WARN("CVXWorkspaceApp::OnLanguageRequested: language {} unavailable", language);
        return;
    }
    d->prefs.language = language;
    d->prefs.Save(CVXWorkspacePreferences::FilePath());
    if (d->window) {
        d->window->RetranslateUi();
        d->window->ShowToast(core::langx::tr(970570, "菜单已切换语言，其余界面重启后生效"));
    }
}

CVXWorkspaceMainWindow* CVXWorkspaceApp::MainWindow() const
{
    return d->window.data();
}

CVXWorkspaceLoginDialog* CVXWorkspaceApp::LoginDialog() const
{
    return d->loginDialog.data();
}

vx_md::CVXSimMarketData* CVXWorkspaceApp::Feed() const
{
    return d->feed.get();
}

vx_trade::CVXSimTradeService* CVXWorkspaceApp::TradeService() const
{
    return d->trade.get();
}

core::config_cloud::CConfigCloudClient* CVXWorkspaceApp::CloudClient() const
{
    return d->cloud.get();
}

const CVXWorkspaceOptions& CVXWorkspaceApp::Options() const
{
    return d->options;
}

const CVXWorkspacePreferences& CVXWorkspaceApp::Preferences() const
{
    return d->prefs;
}

unsigned long long CVXWorkspaceApp::LastSecurityId() const
{
    return d->lastSecurity;
}

void CVXWorkspaceApp::WhenLayoutsLoaded(std::function<void(bool)> done, int timeoutMs)
{
    auto* timer = new QTimer(this);
    auto elapsed = std::make_shared<QElapsedTimer>();
    elapsed->start();
    timer->setInterval(20);
    connect(timer, &QTimer::timeout, this, [timer, elapsed, timeoutMs, done = std::move(done)]() {
        const bool loaded = CVXPanelLayoutManager::Instance().PendingFileWorkCount() == 0;
        if (!loaded && elapsed->elapsed() < timeoutMs)
            return;
        timer->stop();
        timer->deleteLater();
        done(loaded);
    });
    timer->start();
}

bool CVXWorkspaceApp::FindLayoutByTitle(const QString& title, unsigned long long* key)
{
    const CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    const QList<CVXPanelLayoutTemplate>& layouts = manager.GetPanelLayoutDataListRef();
    const auto found = [key](const CVXPanelLayoutTemplate& layout) {
        if (key)
            *key = layout.layoutKey();
        return true;
    };
    // The manager holds a built-in layout under its translated title; a user layout under the
    // title the user gave it.
    for (const CVXPanelLayoutTemplate& layout : layouts) {
        QString shown = layout.title();
        if (const CVXPanelLayoutManager::DefaultLayoutEntry* entry =
                manager.GetDefaultLayoutEntry(layout.layoutKey());
            entry && !layout.isCustomized())
            shown = core::langx::tr(entry->nNameLangID, layout.title());
        if (shown == title || layout.title() == title)
            return found(layout);
    }
    // A built-in layout's own (Chinese) title is only in its file: command lines and scripts
    // name it the same whatever the language.
    for (const CVXPanelLayoutTemplate& layout : layouts) {
        const CVXPanelLayoutManager::DefaultLayoutEntry* entry =
            manager.GetDefaultLayoutEntry(layout.layoutKey());
        if (!entry || layout.isCustomized())
            continue;
        CVXPanelLayoutTemplate own;
        if (CVXPanelLayoutManager::LoadPanelLayoutFromFile(&own, entry->strLayoutFilePath, false) &&
            own.title() == title)
            return found(layout);
    }
    return false;
}

void CVXWorkspaceApp::RunScreenshot()
{
    LoginAs(d->options.userId != 0 ? d->options.userId : 1);
    WhenLayoutsLoaded([this](bool loaded) {
        if (!loaded)
            VXLOG_WARN("CVXWorkspaceApp::RunScreenshot: layouts still loading; going on");
        if (!d->options.layoutName.isEmpty()) {
            unsigned long long key = 0;
            if (!FindLayoutByTitle(d->options.layoutName, &key)) {
                PrintError(QStringLiteral("no layout named '%1'").arg(d->options.layoutName));
                Q_EMIT Finished(2);
                return;
            }
            if (!d->window || !d->window->PanelPage()->OpenLayout(key)) {
                PrintError(QStringLiteral("the layout '%1' could not be opened").arg(d->options.layoutName));
                Q_EMIT Finished(2);
                return;
            }
        }
        for (int i = 0; i < kScreenshotSteps; ++i) {
            d->feed->Step();
            QCoreApplication::processEvents();
        }
        // Painting settles (lazy pages, layouts, deferred updates) before the grab.
        QTimer::singleShot(100, this, [this]() { WriteScreenshot(); });
    });
}

void CVXWorkspaceApp::WriteScreenshot()
{
    if (!d->window) {
        PrintError(QStringLiteral("no main window to render"));
        Q_EMIT Finished(1);
        return;
    }
    QCoreApplication::processEvents();
    const QImage image = d->window->grab().toImage();
    if (image.isNull() || !image.save(d->options.screenshotFile, "PNG")) {
        PrintError(QStringLiteral("cannot write %1").arg(d->options.screenshotFile));
        Q_EMIT Finished(1);
        return;
    }
    Q_EMIT Finished(0);
}

} // namespace vx_ws
