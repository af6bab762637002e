#pragma once

// CVXWorkspaceApp: the workspace program without its QApplication. Start() brings up the
// simulated feed and broker, the cards, the module interfaces, the theme and the language, then
// logs in (the --user id, or the login dialog). After login the user has a cloud client on the
// store file, the layout manager's data and the main window with the window state of the last
// run. Logout saves and closes all that and asks again; destroying the app does the same
// without asking. Finished(code) tells the host that the program should end (login cancelled,
// screenshot written or refused).
//
// Tests make the app in-process on a temporary data folder (feedIntervalMs 0: they step the
// feed themselves); destroying and making it again on the same folder is a restart.

#include "apps/Workspace/App/WorkspaceOptions.h"
#include "apps/Workspace/App/WorkspacePreferences.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

namespace vx_md {
class CVXSimMarketData;
}
namespace vx_trade {
class CVXSimTradeService;
}
namespace core::config_cloud {
class CConfigCloudClient;
}

namespace vx_ws {

class CVXWorkspaceLoginDialog;
class CVXWorkspaceMainWindow;
class CVXWorkspaceModules;

class CVXWorkspaceApp : public QObject
{
    Q_OBJECT
public:
    explicit CVXWorkspaceApp(CVXWorkspaceOptions options, QObject* parent = nullptr);
    ~CVXWorkspaceApp() override;

    void Start();
    // False (logged) for user id 0.
    bool LoginAs(unsigned long long userId);
    void Logout();

    CVXWorkspaceMainWindow* MainWindow() const;
    // The open login dialog, null when none.
    CVXWorkspaceLoginDialog* LoginDialog() const;
    vx_md::CVXSimMarketData* Feed() const;
    vx_trade::CVXSimTradeService* TradeService() const;
    core::config_cloud::CConfigCloudClient* CloudClient() const;
    const CVXWorkspaceOptions& Options() const;
    const CVXWorkspacePreferences& Preferences() const;
    unsigned long long LastSecurityId() const;

    // Runs `done` once the layout manager has no file work left (the layouts of the login are
    // in), or with false after `timeoutMs`.
    void WhenLayoutsLoaded(std::function<void(bool)> done, int timeoutMs = 20000);

    // The layout whose shown title is `title` (a built-in one under its translated or its own
    // title, or a user layout); false when none.
    static bool FindLayoutByTitle(const QString& title, unsigned long long* key);

Q_SIGNALS:
    void Finished(int exitCode);
    void LoggedIn(unsigned long long userId);
    void LoggedOut(unsigned long long userId);

private:
    void ApplyTheme(const QString& theme);
    void OnLanguageRequested(const QString& language);
    void OnThemeRequested(int theme);
    void ShowLoginDialog();
    void MakeMainWindow(unsigned long long userId);
    void CloseSession(bool saveState);
    void RunScreenshot();
    void WriteScreenshot();

    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_ws
