#include "apps/Workspace/App/WorkspacePanelPage.h"

#include "apps/Workspace/App/WorkspaceTabBar.h"

#include "UIFrame/Canvas/PanelLayoutDialogs.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutPage.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/StdUI/IconButton.h"

#include <QVBoxLayout>

namespace vx_ws {

namespace {

QString GalleryTitle()
{
    return core::langx::tr(970501, "新页面");
}

} // namespace

CVXWorkspacePanelPage::CVXWorkspacePanelPage(QWidget* parent) : CVXTabFramePageBase(parent)
{
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(0);
    m_tabs = new CVXTabWidgetRestore(new CVXWorkspaceTabBar(CVXWorkspaceTabBar::Look::Page), this);
    m_tabs->setObjectName(QStringLiteral("PanelPageTabs"));
    m_tabs->setTabsClosable(true);
    box->addWidget(m_tabs);

    m_newPage = new vx_std_ui::VIconButton(vx_std_ui::IconGlyph::Add, core::langx::tr(970502, "新建页面"));
    m_newPage->setObjectName(QStringLiteral("NewPage_Button"));
    m_tabs->setCornerWidget(m_newPage);
    connect(m_newPage, &QAbstractButton::clicked, this, [this]() { AddGalleryPage(true); });
    connect(m_tabs, &vx_std_ui::VTabWidget::tabCloseRequested, this,
            &CVXWorkspacePanelPage::RequestClosePage);
    connect(m_tabs, &vx_std_ui::VTabWidget::currentChanged, this, &CVXWorkspacePanelPage::OnCurrentChanged);
    connect(m_tabs, &vx_std_ui::VTabWidget::tabCountChanged, this, &CVXWorkspacePanelPage::PageCountChanged);
    AddGalleryPage(true);
}

CVXWorkspacePanelPage::~CVXWorkspacePanelPage() = default;

CVXTabWidgetRestore* CVXWorkspacePanelPage::Tabs() const
{
    return m_tabs;
}

vx_std_ui::VIconButton* CVXWorkspacePanelPage::NewPageButton() const
{
    return m_newPage;
}

vx_std_ui::TabId CVXWorkspacePanelPage::NextTabId()
{
    return m_nextTabId++;
}

CVXPanelLayoutPage* CVXWorkspacePanelPage::AddGalleryPage(bool makeCurrent)
{
    auto* gallery = new CVXPanelLayoutPage;
    const int index = m_tabs->addTab(gallery, GalleryTitle(), NextTabId());
    if (makeCurrent)
        m_tabs->setCurrentIndex(index);
    return gallery;
}

CVXPanelScrollView* CVXWorkspacePanelPage::CurrentCanvas() const
{
    return qobject_cast<CVXPanelScrollView*>(m_tabs->currentWidget());
}

CVXPanelLayoutPage* CVXWorkspacePanelPage::CurrentGallery() const
{
    return qobject_cast<CVXPanelLayoutPage*>(m_tabs->currentWidget());
}

QVector<CVXPanelScrollView*> CVXWorkspacePanelPage::Canvases() const
{
    QVector<CVXPanelScrollView*> result;
    for (int i = 0; i < m_tabs->count(); ++i) {
        if (auto* canvas = qobject_cast<CVXPanelScrollView*>(m_tabs->widget(i)))
            result.append(canvas);
    }
    return result;
}

CVXPanelScrollView* CVXWorkspacePanelPage::OpenLayout(unsigned long long layoutKey)
{
    const CVXPanelLayoutTemplate layout = CVXPanelLayoutManager::Instance().GetPanelLayoutData(layoutKey);
    if (layout.isEmpty()) {
        VXLOG_WARN("CVXWorkspacePanelPage::OpenLayout: no layout {}", layoutKey);
        return nullptr;
    }
    CVXPanelLayoutPage* gallery = CurrentGallery();
    if (!gallery)
        gallery = AddGalleryPage(true);
    return gallery->OnOpenPanelLayoutRequest(layoutKey, !layout.isCustomized());
}

void CVXWorkspacePanelPage::RequestClosePage(int index)
{
    auto* canvas = qobject_cast<CVXPanelScrollView*>(m_tabs->widget(index));
    if (!canvas || !canvas->HasUnsavedChanges()) {
        ClosePage(index);
        return;
    }
    m_tabs->setCurrentIndex(index);
    QPointer<CVXWorkspacePanelPage> self(this);
    QPointer<CVXPanelScrollView> target(canvas);
    const auto closeTarget = [self, target]() {
        if (self && target)
            self->ClosePage(self->m_tabs->indexOf(target));
    };
    CVXPanelLayoutCloseDialog::AreYouWantToContinueClosing(
        this, [target, closeTarget](CVXPanelLayoutCloseDialog::Result result) {
            if (!target)
                return;
            switch (result) {
            case CVXPanelLayoutCloseDialog::Result::Save:
                // A canvas without a layout of its own asks for a name first; cancelling that
                // keeps it open.
                target->QuickSavePanelLayout(closeTarget);
                break;
            case CVXPanelLayoutCloseDialog::Result::Discard:
                closeTarget();
                break;
            case CVXPanelLayoutCloseDialog::Result::Cancel:
                break;
            }
        });
}

void CVXWorkspacePanelPage::ClosePage(int index)
{
    if (index < 0 || index >= m_tabs->count()) {
        VXLOG_WARN("CVXWorkspacePanelPage::ClosePage: no page {}", index);
        return;
    }
    RemovePage(index);
    if (m_tabs->count() == 0)
        AddGalleryPage(true);
}

void CVXWorkspacePanelPage::RemovePage(int index)
{
    QWidget* page = m_tabs->takeTab(index);
    if (page) {
        // Hidden at once so that nothing of it paints or takes events until the deletion runs.
        page->hide();
        page->deleteLater();
    }
}

void CVXWorkspacePanelPage::Reset()
{
    while (m_tabs->count() > 0)
        RemovePage(m_tabs->count() - 1);
    AddGalleryPage(true);
}

void CVXWorkspacePanelPage::CaptureState(CVXWorkspaceWindowState* state) const
{
    state->pages.clear();
    for (int i = 0; i < m_tabs->count(); ++i) {
        CVXWorkspaceWindowState::Page page;
        QWidget* widget = m_tabs->widget(i);
        if (auto* canvas = qobject_cast<CVXPanelScrollView*>(widget)) {
            page.kind = CVXWorkspaceWindowState::PageKind::Canvas;
            page.title = canvas->GetTabTitle().isEmpty() ? m_tabs->tabText(i) : canvas->GetTabTitle();
            page.layoutKey = canvas->GetObjKey();
            canvas->GetObjRestoreData(&page.canvas);
            page.unsaved = canvas->HasUnsavedChanges();
        } else if (auto* gallery = qobject_cast<CVXPanelLayoutPage*>(widget)) {
            page.kind = CVXWorkspaceWindowState::PageKind::Gallery;
            page.title = m_tabs->tabText(i);
            page.galleryTab = gallery->GetCurrentTabPage();
        } else {
            continue;
        }
        page.title = page.title.left(CVXWorkspaceWindowState::kMaxTitleLength);
        state->pages.append(page);
    }
    state->currentPage = qMax(0, m_tabs->currentIndex());
    if (state->currentPage >= state->pages.size())
        state->currentPage = 0;
}

void CVXWorkspacePanelPage::ApplyState(const CVXWorkspaceWindowState& state)
{
    while (m_tabs->count() > 0)
        RemovePage(m_tabs->count() - 1);
    for (const CVXWorkspaceWindowState::Page& page : state.pages) {
        if (page.kind == CVXWorkspaceWindowState::PageKind::Gallery) {
            CVXPanelLayoutPage* gallery = AddGalleryPage(false);
            gallery->SetCurrentTabPage(static_cast<CVXPanelLayoutPage::TabPage>(page.galleryTab));
            continue;
        }
        // Filled while hidden, as the gallery does: a shown canvas would lay out every box again
        // as each one arrives.
        auto* canvas = new CVXPanelScrollView;
        canvas->SetTabTitle(page.title);
        m_tabs->addTab(canvas, page.title, NextTabId());
        canvas->SetObjRestoreData(page.canvas);
        canvas->SetObjKey(page.layoutKey);
        if (page.unsaved)
            canvas->SetPreviousSavedCommandId(canvas->GetCurrentCommandId() - 1);
    }
    if (m_tabs->count() == 0)
        AddGalleryPage(false);
    m_tabs->setCurrentIndex(qBound(0, state.currentPage, m_tabs->count() - 1));
    OnCurrentChanged(m_tabs->currentIndex());
}

void CVXWorkspacePanelPage::OnCurrentChanged(int)
{
    CVXPanelScrollView* canvas = CurrentCanvas();
    if (canvas == m_currentCanvas.data())
        return;
    m_currentCanvas = canvas;
    Q_EMIT CurrentCanvasChanged(canvas);
}

} // namespace vx_ws
