#include "apps/Workspace/App/WorkspaceMainWindow.h"
#include "apps/Workspace/App/WorkspaceMainWindow_p.h"

#include "apps/Workspace/App/WorkspaceCardPage.h"
#include "apps/Workspace/App/WorkspacePanelPage.h"
#include "apps/Workspace/App/WorkspaceTabBar.h"
#include "apps/Workspace/Cards/WorkspaceCardBase.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/TabFrame/TabFrameBase.h"
#include "UIFrame/TabFrame/TabFramePageFactory.h"
#include "UIFrame/TabFrame/TabFramePageUtil.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/ConfigCloud.h"
#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"
#include "Platform/StdUI/TabWidget.h"
#include "Platform/StdUI/Toast.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QStatusBar>
#include <QVBoxLayout>

namespace vx_ws {

namespace {

const QString kJumpStockKey = QStringLiteral("StockID");

QString FrameTitle(EnVXTabFrameKey key)
{
    switch (key) {
    case TabFrameKey_PanelWorkspace:
        return core::langx::tr(970510, "工作台");
    case TabFrameKey_WatchList:
        return core::langx::tr(970511, "自选");
    case TabFrameKey_Account:
        return core::langx::tr(970512, "账户");
    default:
        return QString();
    }
}

const EnVXTabFrameKey kFrameOrder[] = {TabFrameKey_PanelWorkspace, TabFrameKey_WatchList,
                                       TabFrameKey_Account};

QColor ThemeColor(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QString::fromLatin1(key));
}

// The status bar on the title colour with a line above it, as the window's footer.
class ThemedStatusBar : public QStatusBar
{
public:
    using QStatusBar::QStatusBar;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        {
            QPainter painter(this);
            painter.fillRect(rect(), ThemeColor("ct_title_bar"));
            painter.fillRect(QRect(0, 0, width(), 1), ThemeColor("ct_border"));
        }
        QStatusBar::paintEvent(event);
    }
};

} // namespace

CVXWorkspaceMainWindow::CVXWorkspaceMainWindow(QWidget* parent)
    : QMainWindow(parent), d(std::make_unique<Impl>())
{
    setObjectName(QStringLiteral("WorkspaceMainWindow"));
    setWindowTitle(core::langx::tr(970500, "VX 工作台"));
    setMinimumSize(320, 320);
    BuildFrames();
    BuildStatusBar();
    BuildMenus();
    RetranslateUi();
    ApplyThemeColors();
    connect(&vx_ui_res::Provider::Instance(), &vx_ui_res::Provider::ThemeChanged, this,
            &CVXWorkspaceMainWindow::ApplyThemeColors);

    CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    connect(&manager, &CVXPanelLayoutManager::LayoutDataAdded, this, &CVXWorkspaceMainWindow::OnLayoutSaved);
    connect(&manager, &CVXPanelLayoutManager::LayoutDataUpdated, this,
            &CVXWorkspaceMainWindow::OnLayoutSaved);
    connect(&manager, &CVXPanelLayoutManager::PanelLayoutExported, this,
            [this](const QString& path, bool ok) {
                ShowToast(ok ? core::langx::tr(970520, "已导出到 %1").arg(path)
                             : core::langx::tr(970521, "导出失败"));
            });
    connect(&manager, &CVXPanelLayoutManager::PanelLayoutImported, this, [this](int, bool ok) {
        // A refused file has its own message from the manager.
        if (ok)
            ShowToast(core::langx::tr(970522, "模板已导入"));
    });

    auto& bus = core::__CMessageDispatch::Instance();
    bus.Bind(
        ITabFramePageUtil::kMsgOpenTabFrame,
        [this](unsigned int, unsigned long long param, const core::CMessageBody& body) {
            CVXVariantMapTree jump;
            const std::string& bytes = body.exdata();
            if (!bytes.empty() &&
                !jump.ParseFromQByteArray(QByteArray(bytes.data(), static_cast<int>(bytes.size())))) {
                VXLOG_WARN("CVXWorkspaceMainWindow: jump data of frame {} does not parse", param);
                jump.Clear();
            }
            SwitchTabFrame(static_cast<EnVXTabFrameKey>(param), jump);
        },
        this);
    bus.Bind(
        vx_md::CVXSimMarketData::kMsgStockDataUpdate,
        [this](unsigned int, unsigned long long, const core::CMessageBody&) { UpdateClock(); }, this);
    for (unsigned int msg :
         {core::config_cloud::kMsgDownloadSucceeded, core::config_cloud::kMsgUploadSucceeded})
        bus.Bind(
            msg, [this](unsigned int, unsigned long long, const core::CMessageBody&) { SetSyncState(true); },
            this);
    for (unsigned int msg : {core::config_cloud::kMsgDownloadFailed, core::config_cloud::kMsgUploadFailed})
        bus.Bind(
            msg, [this](unsigned int, unsigned long long, const core::CMessageBody&) { SetSyncState(false); },
            this);
}

CVXWorkspaceMainWindow::~CVXWorkspaceMainWindow()
{
    core::__CMessageDispatch::Instance().UnBindAll(this);
    for (const QMetaObject::Connection& c : d->canvasConnections)
        disconnect(c);
}

void CVXWorkspaceMainWindow::BuildFrames()
{
    auto* central = new QWidget(this);
    auto* box = new QVBoxLayout(central);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(0);
    d->frames = new vx_std_ui::VTabWidget(new CVXWorkspaceTabBar(CVXWorkspaceTabBar::Look::Frame), central);
    d->frames->setObjectName(QStringLiteral("FrameTabs"));
    box->addWidget(d->frames);
    setCentralWidget(central);

    for (EnVXTabFrameKey key : kFrameOrder) {
        auto* frame = new CVXTabFrameBase;
        frame->SetTabFrameKey(key);
        if (key == TabFrameKey_PanelWorkspace) {
            d->panelPage = new CVXWorkspacePanelPage;
            frame->SetPage(d->panelPage);
        } else if (!CVXTabFramePageFactory::Instance().Has(key) || !frame->CreatePageFromFactory()) {
            // Without the program's registration (a tool, a test) the page is made directly.
            auto* page = new CVXWorkspaceCardPage(key, key == TabFrameKey_WatchList
                                                           ? CVXWorkspaceCardPage::WatchListArrangement()
                                                           : CVXWorkspaceCardPage::AccountArrangement());
            page->Init();
            frame->SetPage(page);
        }
        d->frames->addTab(frame, FrameTitle(key), key);
        d->frameByKey.insert(key, frame);
    }
    connect(d->panelPage, &CVXWorkspacePanelPage::CurrentCanvasChanged, this,
            &CVXWorkspaceMainWindow::OnCurrentCanvasChanged);
    connect(d->frames, &vx_std_ui::VTabWidget::currentChanged, this,
            [this](int) { OnCurrentCanvasChanged(d->panelPage->CurrentCanvas()); });
}

void CVXWorkspaceMainWindow::BuildStatusBar()
{
    auto* bar = new ThemedStatusBar(this);
    bar->setObjectName(QStringLiteral("StatusBar"));
    bar->setSizeGripEnabled(false);
    bar->setFixedHeight(20);
    setStatusBar(bar);
    const auto label = [bar](const char* name, bool permanent) {
        auto* l = new QLabel(bar);
        l->setObjectName(QString::fromLatin1(name));
        l->setContentsMargins(10, 0, 10, 0);
        QFont font = l->font();
        font.setPixelSize(12);
        l->setFont(font);
        if (permanent)
            bar->addPermanentWidget(l);
        else
            bar->addWidget(l);
        return l;
    };
    d->userLabel = label("Status_User", false);
    d->securityLabel = label("Status_Security", false);
    d->syncLabel = label("Status_Sync", true);
    d->clockLabel = label("Status_Clock", true);
}

void CVXWorkspaceMainWindow::ApplyThemeColors()
{
    // Only the roles set here are the window's own; the rest follow the application palette.
    QPalette menuPalette = menuBar()->palette();
    menuPalette.setColor(QPalette::Window, ThemeColor("ct_title_bar"));
    menuBar()->setPalette(menuPalette);
    for (QLabel* label : {d->userLabel, d->securityLabel, d->clockLabel, d->syncLabel}) {
        QPalette palette = label->palette();
        const bool failed = label == d->syncLabel && d->syncState == 0;
        palette.setColor(QPalette::WindowText, ThemeColor(failed ? "ct_rise" : "ct_text_secondary"));
        label->setPalette(palette);
    }
    statusBar()->update();
}

vx_std_ui::VTabWidget* CVXWorkspaceMainWindow::Frames() const
{
    return d->frames;
}

CVXTabFrameBase* CVXWorkspaceMainWindow::Frame(EnVXTabFrameKey key) const
{
    return d->frameByKey.value(key, nullptr);
}

EnVXTabFrameKey CVXWorkspaceMainWindow::CurrentFrameKey() const
{
    const auto* frame = qobject_cast<CVXTabFrameBase*>(d->frames->currentWidget());
    return frame ? frame->GetTabFrameKey() : TabFrameKey_None;
}

void CVXWorkspaceMainWindow::SwitchTabFrame(EnVXTabFrameKey key, const CVXVariantMapTree& jumpData)
{
    CVXTabFrameBase* frame = Frame(key);
    if (!frame) {
        VXLOG_WARN("CVXWorkspaceMainWindow::SwitchTabFrame: no frame {}", static_cast<unsigned int>(key));
        return;
    }
    const EnVXTabFrameKey from = CurrentFrameKey();
    if (from != key)
        ITabFramePageUtil::Instance().SetJumpFromTabFrameKey(from);
    d->frames->setCurrentIndex(d->frames->indexOf(frame));
    if (auto* page = qobject_cast<CVXWorkspaceCardPage*>(frame->GetPage())) {
        const unsigned long long stock = jumpData.Get<qulonglong>(kJumpStockKey, 0);
        if (stock != 0)
            page->ShowStock(stock);
    }
}

CVXWorkspacePanelPage* CVXWorkspaceMainWindow::PanelPage() const
{
    return d->panelPage;
}

CVXWorkspaceCardPage* CVXWorkspaceMainWindow::WatchListPage() const
{
    CVXTabFrameBase* frame = Frame(TabFrameKey_WatchList);
    return frame ? qobject_cast<CVXWorkspaceCardPage*>(frame->GetPage()) : nullptr;
}

CVXWorkspaceCardPage* CVXWorkspaceMainWindow::AccountPage() const
{
    CVXTabFrameBase* frame = Frame(TabFrameKey_Account);
    return frame ? qobject_cast<CVXWorkspaceCardPage*>(frame->GetPage()) : nullptr;
}

CVXPanelScrollView* CVXWorkspaceMainWindow::CurrentCanvas() const
{
    // The edit actions must not reach a canvas the user cannot see.
    if (CurrentFrameKey() != TabFrameKey_PanelWorkspace)
        return nullptr;
    return d->panelPage->CurrentCanvas();
}

QAction* CVXWorkspaceMainWindow::Action(ActionId id) const
{
    return d->actions.value(static_cast<int>(id), nullptr);
}

vx_std_ui::VMenu* CVXWorkspaceMainWindow::AddComponentMenu() const
{
    return d->addComponentMenu;
}

vx_std_ui::VMenu* CVXWorkspaceMainWindow::ShortcutsMenu() const
{
    return d->shortcutsMenu;
}

void CVXWorkspaceMainWindow::SetUserId(unsigned long long userId)
{
    d->userId = userId;
    d->userLabel->setText(core::langx::tr(970513, "用户 %1").arg(userId));
}

void CVXWorkspaceMainWindow::SetLastSecurity(unsigned long long stockId)
{
    d->stockId = stockId;
    if (stockId == 0) {
        d->securityLabel->clear();
        return;
    }
    QString name = QString::number(stockId);
    const vx_md::CVXSimMarketData* feed = MarketData();
    if (feed && feed->Contains(static_cast<unsigned long>(stockId))) {
        const vx_md::SecurityInfo info = feed->GetSecurity(static_cast<unsigned long>(stockId));
        name = QString::fromStdString(info.code) + QLatin1Char(' ') + QString::fromStdString(info.name);
    }
    d->securityLabel->setText(core::langx::tr(970514, "最近查看 %1").arg(name));
}

QString CVXWorkspaceMainWindow::StatusText(StatusField field) const
{
    switch (field) {
    case StatusField::User:
        return d->userLabel->text();
    case StatusField::Clock:
        return d->clockLabel->text();
    case StatusField::Security:
        return d->securityLabel->text();
    case StatusField::Sync:
        return d->syncLabel->text();
    }
    return QString();
}

void CVXWorkspaceMainWindow::UpdateClock()
{
    const vx_md::CVXSimMarketData* feed = MarketData();
    d->clockLabel->setText(
        feed ? core::langx::tr(970515, "行情 %1").arg(CVXWorkspaceCardBase::FormatTime(feed->Time()))
             : QString());
}

void CVXWorkspaceMainWindow::SetSyncState(bool ok)
{
    d->syncState = ok ? 1 : 0;
    d->syncLabel->setText(ok ? core::langx::tr(970516, "已同步") : core::langx::tr(970517, "同步失败"));
    ApplyThemeColors();
}

void CVXWorkspaceMainWindow::ShowToast(const QString& text)
{
    vx_std_ui::VToast::Show(centralWidget(), text);
}

void CVXWorkspaceMainWindow::OnLayoutSaved(unsigned long long key)
{
    // Loading and other devices' changes announce layouts too: only the layout of the canvas
    // in front of the user is worth a word.
    CVXPanelScrollView* canvas = CurrentCanvas();
    if (!canvas || canvas->GetObjKey() != key)
        return;
    const CVXPanelLayoutTemplate layout = CVXPanelLayoutManager::Instance().GetPanelLayoutData(key);
    if (layout.isEmpty() || !layout.isCustomized())
        return;
    ShowToast(core::langx::tr(970519, "已保存「%1」").arg(layout.title()));
}

void CVXWorkspaceMainWindow::OnCurrentCanvasChanged(CVXPanelScrollView*)
{
    for (const QMetaObject::Connection& c : d->canvasConnections)
        disconnect(c);
    d->canvasConnections.clear();
    if (CVXPanelScrollView* canvas = CurrentCanvas()) {
        d->canvasConnections.append(connect(canvas, &CVXPanelScrollView::canUndoChanged, this,
                                            [this](bool) { UpdateEditActions(); }));
        d->canvasConnections.append(connect(canvas, &CVXPanelScrollView::canRedoChanged, this,
                                            [this](bool) { UpdateEditActions(); }));
    }
    UpdateEditActions();
}

bool CVXWorkspaceMainWindow::AddShortcut(const CVXVariantMapTree& params)
{
    const QString id = params.Get<QString>(QStringLiteral("PanelShortcutId"));
    if (id.isEmpty() || id.size() > CVXWorkspaceWindowState::kMaxTitleLength) {
        VXLOG_WARN("CVXWorkspaceMainWindow::AddShortcut: no usable PanelShortcutId");
        return false;
    }
    if (d->shortcuts.contains(id))
        return true;
    if (d->shortcuts.size() >= CVXWorkspaceWindowState::kMaxShortcuts) {
        ShowToast(core::langx::tr(970523, "快捷方式已达上限"));
        return false;
    }
    d->shortcuts.append(id);
    RebuildShortcutsMenu();
    return true;
}

QStringList CVXWorkspaceMainWindow::Shortcuts() const
{
    return d->shortcuts;
}

bool CVXWorkspaceMainWindow::OpenShortcut(const QString& shortcutId)
{
    long long key = 0;
    if (!CVXPanelLayoutManager::Instance().SearchTemplateOfShortcutId(shortcutId, key)) {
        ShowToast(core::langx::tr(970524, "该快捷方式的布局已不存在"));
        return false;
    }
    SwitchTabFrame(TabFrameKey_PanelWorkspace, CVXVariantMapTree());
    return d->panelPage->OpenLayout(static_cast<unsigned long long>(key)) != nullptr;
}

void CVXWorkspaceMainWindow::CaptureState(CVXWorkspaceWindowState* state) const
{
    state->maximized = isMaximized();
    state->geometry = state->maximized ? normalGeometry() : geometry();
    state->currentFrame = CurrentFrameKey();
    if (!CVXWorkspaceWindowState::IsKnownFrame(state->currentFrame))
        state->currentFrame = TabFrameKey_PanelWorkspace;
    const CVXWorkspaceCardPage* watch = WatchListPage();
    state->watchListStockId = watch ? watch->CurrentStockID() : 0;
    d->panelPage->CaptureState(state);
    state->shortcuts = d->shortcuts;
}

void CVXWorkspaceMainWindow::ApplyState(const CVXWorkspaceWindowState& state, bool withGeometry)
{
    if (withGeometry && state.geometry.isValid())
        setGeometry(state.geometry);
    d->panelPage->ApplyState(state);
    if (CVXWorkspaceCardPage* watch = WatchListPage())
        watch->ShowStock(state.watchListStockId);
    d->shortcuts = state.shortcuts;
    RebuildShortcutsMenu();
    if (CVXTabFrameBase* frame = Frame(state.currentFrame))
        d->frames->setCurrentIndex(d->frames->indexOf(frame));
    OnCurrentCanvasChanged(d->panelPage->CurrentCanvas());
}

void CVXWorkspaceMainWindow::SetStateFilePath(const QString& path)
{
    d->statePath = path;
}

QString CVXWorkspaceMainWindow::StateFilePath() const
{
    return d->statePath;
}

bool CVXWorkspaceMainWindow::SaveState() const
{
    if (d->statePath.isEmpty())
        return false;
    CVXWorkspaceWindowState state;
    CaptureState(&state);
    return CVXWorkspaceWindowState::Save(state, d->statePath);
}

void CVXWorkspaceMainWindow::closeEvent(QCloseEvent* event)
{
    SaveState();
    event->accept();
    Q_EMIT QuitRequested();
}

void CVXWorkspaceMainWindow::RetranslateUi()
{
    setWindowTitle(core::langx::tr(970500, "VX 工作台"));
    for (int i = 0; i < d->frames->count(); ++i)
        d->frames->setTabText(i, FrameTitle(static_cast<EnVXTabFrameKey>(d->frames->tabId(i))));
    BuildMenus();
    SetUserId(d->userId);
    SetLastSecurity(d->stockId);
    if (d->syncState < 0)
        d->syncLabel->setText(core::langx::tr(970518, "等待同步"));
    else
        SetSyncState(d->syncState == 1);
    UpdateClock();
}

} // namespace vx_ws
