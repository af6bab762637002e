#pragma once

// CVXWorkspaceMainWindow: the trader's main window. Frame tabs across the top (the panel
// workspace, the watch list, the account), each a CVXTabFrameBase with its key; the menus act on
// the current canvas of the panel workspace and are disabled while there is none; the status
// bar shows the user, the feed's clock, the last security looked at and the cloud sync state.
// It handles bus message 20160 (open a frame with jump data) while it lives. Its state is
// captured into / applied from a CVXWorkspaceWindowState; SaveState writes it to the file
// given by SetStateFilePath, which closeEvent does too.
//
// The menus (WorkspaceMenus.cpp) are rebuilt by RetranslateUi after a language change.

#include "apps/Workspace/App/WorkspaceWindowState.h"

#include "UIFrame/TabFrame/TabFrameKey.h"

#include "Platform/StdUI/ThemeResource.h"

#include <QKeySequence>
#include <QList>
#include <QMainWindow>

#include <functional>
#include <memory>

class CVXTabFrameBase;
class CVXPanelScrollView;
class CVXVariantMapTree;
class QAction;
class QLabel;

namespace vx_std_ui {
class VMenu;
class VTabWidget;
} // namespace vx_std_ui

namespace vx_ws {

class CVXWorkspaceCardPage;
class CVXWorkspacePanelPage;

class CVXWorkspaceMainWindow : public QMainWindow
{
    Q_OBJECT
public:
    enum class ActionId
    {
        NewPage,
        SaveLayout,
        SaveLayoutAs,
        ExportLayout,
        ImportLayout,
        ExportBuiltIn, // only in builds that are not release versions
        Logout,
        Quit,
        Undo,
        Redo,
        CopyBox,
        PasteBox,
        DeleteBox,
        ThemeLight,
        ThemeDark,
        LanguageChinese,
        LanguageEnglish,
        About,
    };

    enum class StatusField
    {
        User,
        Clock,
        Security,
        Sync,
    };

    explicit CVXWorkspaceMainWindow(QWidget* parent = nullptr);
    ~CVXWorkspaceMainWindow() override;

    vx_std_ui::VTabWidget* Frames() const;
    CVXTabFrameBase* Frame(EnVXTabFrameKey key) const;
    EnVXTabFrameKey CurrentFrameKey() const;
    // Makes the frame current and hands it the jump data ("StockID": qulonglong shows that
    // security on the watch-list page); an unknown key is logged and ignored.
    void SwitchTabFrame(EnVXTabFrameKey key, const CVXVariantMapTree& jumpData);
    CVXWorkspacePanelPage* PanelPage() const;
    CVXWorkspaceCardPage* WatchListPage() const;
    CVXWorkspaceCardPage* AccountPage() const;
    CVXPanelScrollView* CurrentCanvas() const;

    // The action, null for ExportBuiltIn in a release version.
    QAction* Action(ActionId id) const;
    vx_std_ui::VMenu* AddComponentMenu() const;
    vx_std_ui::VMenu* ShortcutsMenu() const;

    void SetUserId(unsigned long long userId);
    void SetLastSecurity(unsigned long long stockId);
    QString StatusText(StatusField field) const;

    // A shortcut to a panel layout ("PanelShortcutId" in params): listed in the Shortcuts menu,
    // which opens the layout. True when the shortcut exists afterwards.
    bool AddShortcut(const CVXVariantMapTree& params);
    QStringList Shortcuts() const;
    // Opens the layout of a shortcut in the panel workspace; false when no layout has it.
    bool OpenShortcut(const QString& shortcutId);

    void CaptureState(CVXWorkspaceWindowState* state) const;
    // Replaces the pages, frame, security and shortcuts; geometry only when `withGeometry`.
    void ApplyState(const CVXWorkspaceWindowState& state, bool withGeometry);
    void SetStateFilePath(const QString& path);
    QString StateFilePath() const;
    // Writes the state file (nothing without a path); false when it could not be written.
    bool SaveState() const;

    // Menu texts, frame titles and status labels in the current language; checks the theme and
    // language entries.
    void RetranslateUi();

    // Shows a short message over the window.
    void ShowToast(const QString& text);

Q_SIGNALS:
    void LogoutRequested();
    // The user closed the window (Quit, the title bar): the state has been saved.
    void QuitRequested();
    void ThemeRequested(vx_ui_res::Theme theme);
    void LanguageRequested(const QString& language);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    // WorkspaceMenus.cpp
    void BuildMenus();
    void BuildFileMenu();
    void BuildEditMenu();
    void BuildViewMenu();
    vx_std_ui::VMenu* AddMenu(const QString& title);
    // A menu entry that is also a window action (its keys work with the menu closed).
    QAction* AddMenuAction(vx_std_ui::VMenu* menu, ActionId id, const QString& text,
                           const QList<QKeySequence>& keys, std::function<void()> slot);
    void AddRadioAction(vx_std_ui::VMenu* menu, const QString& group, ActionId id, const QString& text,
                        bool checked, std::function<void()> slot);
    void UpdateEditActions();
    void RebuildShortcutsMenu();
    void ShowAbout();
    void OnExportBuiltIn();

    void BuildFrames();
    void BuildStatusBar();
    void OnCurrentCanvasChanged(CVXPanelScrollView* canvas);
    void OnLayoutSaved(unsigned long long key);
    void UpdateClock();
    void SetSyncState(bool ok);
    // The menu bar and status bar in the theme's colours (the rest paints itself).
    void ApplyThemeColors();

    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_ws
