#pragma once

// CVXWorkspacePanelPage: the page of the panel workspace frame (key 20004). A tab widget of
// pages, each a layout gallery (CVXPanelLayoutPage) or an opened layout (CVXPanelScrollView);
// a "+" button adds a gallery page; closing a canvas with unsaved changes asks first (save,
// discard, cancel). The page is never empty: closing the last page leaves a fresh gallery.
// CurrentCanvasChanged fires when another canvas (or none) becomes the current page.

#include "apps/Workspace/App/WorkspaceWindowState.h"

#include "UIFrame/TabFrame/TabFramePageBase.h"

#include "Platform/StdUI/TabWidget.h"

#include <QPointer>
#include <QVector>

class CVXPanelLayoutPage;
class CVXPanelScrollView;
class CVXTabWidgetRestore;

namespace vx_std_ui {
class VIconButton;
}

namespace vx_ws {

class CVXWorkspacePanelPage : public CVXTabFramePageBase
{
    Q_OBJECT
public:
    explicit CVXWorkspacePanelPage(QWidget* parent = nullptr);
    ~CVXWorkspacePanelPage() override;

    CVXTabWidgetRestore* Tabs() const;
    vx_std_ui::VIconButton* NewPageButton() const;

    // A new gallery page after the others, made current when asked.
    CVXPanelLayoutPage* AddGalleryPage(bool makeCurrent = true);
    CVXPanelScrollView* CurrentCanvas() const;
    CVXPanelLayoutPage* CurrentGallery() const;
    QVector<CVXPanelScrollView*> Canvases() const;

    // Opens a layout in the current gallery's place, or in a new gallery page when a canvas is
    // current. Null when there is no such layout.
    CVXPanelScrollView* OpenLayout(unsigned long long layoutKey);

    // A close click on a tab: a canvas with unsaved changes asks first.
    void RequestClosePage(int index);
    // Removes the page without asking; the last page is replaced by a fresh gallery.
    void ClosePage(int index);
    // Every page gone, one fresh gallery left (logout, a state that failed to build).
    void Reset();

    // The pages as the window state keeps them, and back. ApplyState replaces every page; the
    // state has been checked by CVXWorkspaceWindowState::FromJson.
    void CaptureState(CVXWorkspaceWindowState* state) const;
    void ApplyState(const CVXWorkspaceWindowState& state);

Q_SIGNALS:
    void CurrentCanvasChanged(CVXPanelScrollView* canvas);
    void PageCountChanged(int count);

private:
    void OnCurrentChanged(int index);
    void RemovePage(int index);
    vx_std_ui::TabId NextTabId();

    CVXTabWidgetRestore* m_tabs = nullptr;
    vx_std_ui::VIconButton* m_newPage = nullptr;
    QPointer<CVXPanelScrollView> m_currentCanvas;
    vx_std_ui::TabId m_nextTabId = 1;
};

} // namespace vx_ws
