#pragma once

// The main window's state, shared by its two source files.

#include "apps/Workspace/App/WorkspaceMainWindow.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QMetaObject>
#include <QStringList>

namespace vx_ws {

struct CVXWorkspaceMainWindow::Impl
{
    vx_std_ui::VTabWidget* frames = nullptr;
    QMap<unsigned int, CVXTabFrameBase*> frameByKey;
    CVXWorkspacePanelPage* panelPage = nullptr;

    QHash<int, QAction*> actions;
    QList<QMenu*> menus;
    vx_std_ui::VMenu* addComponentMenu = nullptr;
    vx_std_ui::VMenu* shortcutsMenu = nullptr;

    QLabel* userLabel = nullptr;
    QLabel* clockLabel = nullptr;
    QLabel* securityLabel = nullptr;
    QLabel* syncLabel = nullptr;

    unsigned long long userId = 0;
    unsigned long long stockId = 0;
    int syncState = -1; // -1 nothing heard yet, 0 failed, 1 synced
    QStringList shortcuts;
    QString statePath;
    QList<QMetaObject::Connection> canvasConnections;
};

} // namespace vx_ws
