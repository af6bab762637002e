// CVXWorkspaceMainWindow: the menus, their shortcuts and the About dialog.

#include "apps/Workspace/App/WorkspaceMainWindow.h"
#include "apps/Workspace/App/WorkspaceMainWindow_p.h"

#include "apps/Workspace/App/WorkspacePanelPage.h"
#include "apps/Workspace/App/WorkspacePreferences.h"

#include "UIFrame/Canvas/DefaultPanelLayoutExporter.h"
#include "UIFrame/Canvas/PanelCanvasMenu.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"

#include "Platform/Core/Environment.h"
#include "Platform/Core/Langx.h"
#include "Platform/Core/LoginState.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/StdUI/Dialog.h"
#include "Platform/StdUI/Menu.h"

#include <QCursor>
#include <QLabel>
#include <QMenuBar>
#include <QVBoxLayout>

namespace vx_ws {

namespace {

constexpr const char* kVersion = "1.0.0";
const QString kThemeGroup = QStringLiteral("theme");
const QString kLanguageGroup = QStringLiteral("language");

} // namespace

void CVXWorkspaceMainWindow::BuildMenus()
{
    // Rebuilt from a menu's own action (language): the old menus go once that has returned.
    for (QMenu* menu : d->menus)
        menu->deleteLater();
    d->menus.clear();
    d->actions.clear();
    menuBar()->clear();

    BuildFileMenu();
    BuildEditMenu();
    BuildViewMenu();
    d->shortcutsMenu = AddMenu(core::langx::tr(970555, "快捷方式"));
    // Layouts load after the window is made and may be renamed: the entries are made on demand.
    connect(d->shortcutsMenu, &QMenu::aboutToShow, this, &CVXWorkspaceMainWindow::RebuildShortcutsMenu);
    RebuildShortcutsMenu();
    vx_std_ui::VMenu* help = AddMenu(core::langx::tr(970560, "帮助"));
    AddMenuAction(help, ActionId::About, core::langx::tr(970561, "关于"), {}, [this]() { ShowAbout(); });

    UpdateEditActions();
}

vx_std_ui::VMenu* CVXWorkspaceMainWindow::AddMenu(const QString& title)
{
    auto* menu = new vx_std_ui::VMenu(title, this);
    menuBar()->addMenu(menu);
    d->menus.append(menu);
    return menu;
}

QAction* CVXWorkspaceMainWindow::AddMenuAction(vx_std_ui::VMenu* menu, ActionId id, const QString& text,
                                               const QList<QKeySequence>& keys, std::function<void()> slot)
{
    QAction* action = menu->addActionWithData(text, static_cast<int>(id));
    action->setShortcuts(keys);
    // Also on the window, so that the keys work while the menu bar is hidden or closed.
    addAction(action);
    connect(action, &QAction::triggered, this, std::move(slot));
    d->actions.insert(static_cast<int>(id), action);
    return action;
}

void CVXWorkspaceMainWindow::AddRadioAction(vx_std_ui::VMenu* menu, const QString& group, ActionId id,
                                            const QString& text, bool checked, std::function<void()> slot)
{
    QAction* action = menu->addRadioAction(group, text, static_cast<int>(id), checked);
    connect(action, &QAction::triggered, this, std::move(slot));
    d->actions.insert(static_cast<int>(id), action);
}

void CVXWorkspaceMainWindow::BuildFileMenu()
{
    CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    vx_std_ui::VMenu* file = AddMenu(core::langx::tr(970530, "文件"));
    AddMenuAction(file, ActionId::NewPage, core::langx::tr(970531, "新建页面"),
                  {QKeySequence(Qt::CTRL | Qt::Key_T)}, [this]() {
                      SwitchTabFrame(TabFrameKey_PanelWorkspace, CVXVariantMapTree());
                      d->panelPage->AddGalleryPage(true);
                  });
    file->addSeparator();
    AddMenuAction(file, ActionId::SaveLayout, core::langx::tr(970532, "保存布局"), {QKeySequence::Save},
                  [this]() {
                      if (CVXPanelScrollView* canvas = CurrentCanvas())
                          canvas->QuickSavePanelLayout({});
                  });
    AddMenuAction(file, ActionId::SaveLayoutAs, core::langx::tr(970533, "布局另存为…"),
                  {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)}, [this]() {
                      if (CVXPanelScrollView* canvas = CurrentCanvas())
                          canvas->SavePanelLayoutAs({});
                  });
    AddMenuAction(file, ActionId::ExportLayout, core::langx::tr(970534, "导出布局…"), {}, [this, &manager]() {
        if (CVXPanelScrollView* canvas = CurrentCanvas())
            manager.ExportPanelLayout(d->panelPage->Tabs(), d->panelPage->Tabs()->indexOf(canvas));
    });
    AddMenuAction(file, ActionId::ImportLayout, core::langx::tr(970535, "导入布局…"), {}, [this, &manager]() {
        SwitchTabFrame(TabFrameKey_PanelWorkspace, CVXVariantMapTree());
        manager.ImportPanelLayout(d->panelPage->Tabs(), d->panelPage->Tabs()->currentIndex() + 1);
    });
    if (CVXDefaultPanelLayoutExporter::Instance()) {
        auto* builtIn =
            new CVXDefaultPanelLayoutExportAction(core::langx::tr(970536, "导出为内置布局…"), file);
        builtIn->setData(static_cast<int>(ActionId::ExportBuiltIn));
        file->addAction(builtIn);
        connect(builtIn, &QAction::triggered, this, &CVXWorkspaceMainWindow::OnExportBuiltIn);
        d->actions.insert(static_cast<int>(ActionId::ExportBuiltIn), builtIn);
    }
    file->addSeparator();
    AddMenuAction(file, ActionId::Logout, core::langx::tr(970537, "退出登录"), {},
                  [this]() { Q_EMIT LogoutRequested(); });
    AddMenuAction(file, ActionId::Quit, core::langx::tr(970538, "退出"), {QKeySequence(Qt::CTRL | Qt::Key_Q)},
                  [this]() { close(); });
}

void CVXWorkspaceMainWindow::BuildEditMenu()
{
    vx_std_ui::VMenu* edit = AddMenu(core::langx::tr(970540, "编辑"));
    AddMenuAction(edit, ActionId::Undo, core::langx::tr(970541, "撤销"), {QKeySequence(Qt::CTRL | Qt::Key_Z)},
                  [this]() {
                      if (CVXPanelScrollView* canvas = CurrentCanvas())
                          canvas->Undo();
                  });
    AddMenuAction(edit, ActionId::Redo, core::langx::tr(970542, "重做"),
                  {QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)},
                  [this]() {
                      if (CVXPanelScrollView* canvas = CurrentCanvas())
                          canvas->Redo();
                  });
    edit->addSeparator();
    AddMenuAction(edit, ActionId::CopyBox, core::langx::tr(970543, "复制面板"),
                  {QKeySequence(Qt::CTRL | Qt::Key_C)}, [this]() {
                      if (CurrentCanvas())
                          CVXPanelBoxManager::instance()->UpdateCopyData();
                  });
    AddMenuAction(edit, ActionId::PasteBox, core::langx::tr(970544, "粘贴面板"),
                  {QKeySequence(Qt::CTRL | Qt::Key_V)}, [this]() {
                      CVXPanelScrollView* canvas = CurrentCanvas();
                      if (!canvas || CVXPanelBoxManager::instance()->GetCopyData().isEmpty())
                          return;
                      // Boxes are pasted where the mouse points; from the menu bar it points nowhere
                      // on the canvas, so say how instead of doing nothing.
                      const QPoint cursor = canvas->GetContentWidget()->mapFromGlobal(QCursor::pos());
                      if (!canvas->GetVisibleRectInView().contains(cursor)) {
                          ShowToast(core::langx::tr(970546, "请将鼠标指向画布上要粘贴的位置，再按 Ctrl+V"));
                          return;
                      }
                      canvas->Paste();
                  });
    AddMenuAction(edit, ActionId::DeleteBox, core::langx::tr(970545, "删除面板"),
                  {QKeySequence(Qt::Key_Delete)}, [this]() {
                      if (CVXPanelScrollView* canvas = CurrentCanvas())
                          canvas->DeleteSelectedBoxes();
                  });
}

// Theme and language as radio groups, then the cards a canvas can add.
void CVXWorkspaceMainWindow::BuildViewMenu()
{
    vx_std_ui::VMenu* view = AddMenu(core::langx::tr(970550, "视图"));
    const bool dark = vx_ui_res::Provider::Instance().CurrentTheme() == vx_ui_res::Theme::Dark;
    vx_std_ui::VMenu* theme = view->addSubMenu(core::langx::tr(970551, "主题"));
    AddRadioAction(theme, kThemeGroup, ActionId::ThemeLight, core::langx::tr(970552, "浅色"), !dark,
                   [this]() { Q_EMIT ThemeRequested(vx_ui_res::Theme::Light); });
    AddRadioAction(theme, kThemeGroup, ActionId::ThemeDark, core::langx::tr(970553, "深色"), dark,
                   [this]() { Q_EMIT ThemeRequested(vx_ui_res::Theme::Dark); });
    const bool english = core::langx::GetLanguage() == QLatin1String("en");
    // The language names are written in their own language on purpose.
    vx_std_ui::VMenu* language = view->addSubMenu(core::langx::tr(970554, "语言"));
    AddRadioAction(language, kLanguageGroup, ActionId::LanguageChinese, QStringLiteral("中文"), !english,
                   [this]() { Q_EMIT LanguageRequested(QStringLiteral("zh_CN")); });
    AddRadioAction(language, kLanguageGroup, ActionId::LanguageEnglish, QStringLiteral("English"), english,
                   [this]() { Q_EMIT LanguageRequested(QStringLiteral("en")); });
    view->addSeparator();
    d->addComponentMenu = view->addSubMenu(core::langx::tr(panel_canvas_menu::kTextAddComponent, "添加组件"));
    for (const panel_canvas_menu::AddEntry& entry : panel_canvas_menu::AddComponentEntries()) {
        const QString cardType = QString::fromLatin1(entry.cardType);
        if (!CVXCardFactoryMgr::Instance().HasFactory(cardType))
            continue;
        QAction* action =
            d->addComponentMenu->addActionWithData(core::langx::tr(entry.textId, entry.fallback), cardType);
        connect(action, &QAction::triggered, this, [this, cardType]() {
            if (CVXPanelScrollView* canvas = CurrentCanvas())
                canvas->AddPanelBoxWithCardInitType(cardType, CVXVariantMapTree());
        });
    }
}

void CVXWorkspaceMainWindow::UpdateEditActions()
{
    CVXPanelScrollView* canvas = CurrentCanvas();
    const bool hasCanvas = canvas != nullptr;
    for (ActionId id :
         {ActionId::SaveLayout, ActionId::SaveLayoutAs, ActionId::ExportLayout, ActionId::ExportBuiltIn,
          ActionId::CopyBox, ActionId::PasteBox, ActionId::DeleteBox}) {
        if (QAction* action = Action(id))
            action->setEnabled(hasCanvas);
    }
    if (QAction* undo = Action(ActionId::Undo))
        undo->setEnabled(hasCanvas && canvas->CanUndo());
    if (QAction* redo = Action(ActionId::Redo))
        redo->setEnabled(hasCanvas && canvas->CanRedo());
    if (d->addComponentMenu)
        d->addComponentMenu->setEnabled(hasCanvas && !d->addComponentMenu->actions().isEmpty());
}

void CVXWorkspaceMainWindow::RebuildShortcutsMenu()
{
    if (!d->shortcutsMenu)
        return;
    d->shortcutsMenu->clear();
    const CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    for (const QString& id : d->shortcuts) {
        long long key = 0;
        QString title;
        if (manager.SearchTemplateOfShortcutId(id, key))
            title = manager.GetPanelLayoutData(static_cast<unsigned long long>(key)).title();
        // A layout not loaded yet (or deleted) keeps its entry, greyed, under the id's title part.
        QAction* action = d->shortcutsMenu->addActionWithData(
            title.isEmpty() ? id.section(QLatin1Char('_'), 0, 0) : title, id);
        action->setEnabled(!title.isEmpty());
        connect(action, &QAction::triggered, this, [this, id]() { OpenShortcut(id); });
    }
    if (d->shortcuts.isEmpty()) {
        QAction* none = d->shortcutsMenu->addAction(core::langx::tr(970556, "（无）"));
        none->setEnabled(false);
    }
}

void CVXWorkspaceMainWindow::OnExportBuiltIn()
{
    CVXPanelScrollView* canvas = CurrentCanvas();
    CVXDefaultPanelLayoutExporter* exporter = CVXDefaultPanelLayoutExporter::Instance();
    if (!canvas || !exporter)
        return;
    // On only while this export renders the canvas: a later plain export is the user's own.
    const bool was = CVXDefaultPanelLayoutExporter::IsExportDefaultPanelLayout();
    exporter->SetExportDefaultPanelLayout(true);
    CVXPanelLayoutManager::Instance().ExportDefaultPanelLayout(d->panelPage->Tabs(),
                                                               d->panelPage->Tabs()->indexOf(canvas));
    exporter->SetExportDefaultPanelLayout(was);
}

void CVXWorkspaceMainWindow::ShowAbout()
{
    auto* dialog = new vx_std_ui::VDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(QStringLiteral("About_Dialog"));
    dialog->setTitle(core::langx::tr(970561, "关于"));
    const QString text = core::langx::tr(970562, "%1\n版本 %2\nQt %3\n数据目录 %4")
                             .arg(core::langx::tr(970500, "VX 工作台"), QString::fromLatin1(kVersion),
                                  QString::fromLatin1(qVersion()), CVXWorkspacePreferences::DataRoot());
    auto* label = new QLabel(text, dialog);
    label->setObjectName(QStringLiteral("About_Text"));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    dialog->contentLayout()->addWidget(label);
    vx_std_ui::VButton* ok =
        dialog->addButton(core::langx::tr(970563, "确定"), vx_std_ui::VButton::Style::Primary,
                          QStringLiteral("Confirm_Button"));
    dialog->setDefaultButton(ok);
    connect(ok, &QAbstractButton::clicked, dialog, &QDialog::accept);
    dialog->open();
}

} // namespace vx_ws
