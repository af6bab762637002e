#pragma once

// CVXPanelLayoutPage: the gallery a new page of the panel workspace shows before the user has
// chosen what it shall hold. It lists the layouts as preview cards on three tab pages (all,
// built-in, the user's own), opens a chosen layout as a canvas in its own place in the tab
// widget that holds it (CVXTabWidgetRestore), starts a blank canvas, and deletes user layouts
// after asking. The lists are built on first use and follow the layout manager's signals; the
// built-in layouts' previews follow the theme.
// CVXPanelLayoutTabBar is the gallery's tab bar, with its own tab drawing.

#include "UIFrame/RestoreBase.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/StdUI/TabWidget.h"

#include <QMap>
#include <QMargins>
#include <QWidget>

#include <functional>
#include <memory>

class CVXPanelLayoutList;
class CVXPanelLayoutPreview;
class CVXPanelLayoutTemplate;
class CVXPanelScrollView;
class CVXTabWidgetRestore;
class QDataStream;
class QStackedWidget;

class UIFRAME_EXPORT CVXPanelLayoutTabBar : public vx_std_ui::VTabBarBase
{
    Q_OBJECT
public:
    explicit CVXPanelLayoutTabBar(QWidget* parent = nullptr);
    ~CVXPanelLayoutTabBar() override;

    // Room around each tab's text, inside the tab.
    static QMargins TabContentMargins();

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    // The background of one tab: a rounded pill for the current tab, a light one under the mouse.
    virtual void drawTabBackground(QPainter* painter, int index, const QRect& rect) const;

private:
    int m_hoveredIndex = -1;
};

class UIFRAME_EXPORT CVXPanelLayoutPage : public QWidget, public CVXRestoreBase
{
    Q_OBJECT
public:
    // The gallery's pages, in the order of its tabs.
    enum TabPage : int
    {
        All = 0,       // every layout
        Default = 1,   // built-in layouts
        Customize = 2, // the user's own layouts
    };
    Q_ENUM(TabPage)

    explicit CVXPanelLayoutPage(QWidget* parent = nullptr);
    ~CVXPanelLayoutPage() override;

    void SetCurrentTabPage(TabPage page);
    TabPage GetCurrentTabPage() const;
    CVXPanelLayoutTabBar* GetTabBar() const;

    // The page's list, built on first use: the add-layout card, then the page's layouts.
    CVXPanelLayoutList* GetPanelLayoutList(TabPage page);
    // The list when it has been built; null otherwise.
    CVXPanelLayoutList* FindPanelLayoutList(TabPage page) const;
    void InitPanelLayoutPreviews(CVXPanelLayoutList* list, TabPage page);
    void InitLayoutOperationConnection(CVXPanelLayoutPreview* preview);

    // The tab widget that holds this gallery (its nearest CVXTabWidgetRestore ancestor), and the
    // widget that is the gallery's page in it (this page or the container around it).
    CVXTabWidgetRestore* GetPanelTabWidget() const;
    QWidget* GetPanelPage(CVXTabWidgetRestore* tabWidget) const;

    // "TabPage": the current tab page; restoring selects it.
    using CVXRestoreBase::GetObjRestoreData;
    using CVXRestoreBase::SetObjRestoreData;
    void GetObjRestoreData(CVXVariantMapTree* data) const override;
    void SetObjRestoreData(const CVXVariantMapTree& data) override;

    // Whether a layout is listed on a page: all on All, built-in ones on Default, the user's own
    // on Customize.
    static bool BelongsTo(TabPage page, const CVXPanelLayoutTemplate& layout);

Q_SIGNALS:
    void CurrentTabPageChanged(CVXPanelLayoutPage::TabPage page);

public Q_SLOTS:
    void OnLayoutAdded(unsigned long long layoutKey);
    void OnLayoutUpdated(unsigned long long layoutKey);
    void OnLayoutRemoved(unsigned long long layoutKey);
    // Both replace the gallery in its tab widget by a canvas and return it (null on failure:
    // no such layout, or no tab widget holds the gallery). The gallery is deleted later.
    CVXPanelScrollView* OnAddPanelLayoutRequest();
    CVXPanelScrollView* OnOpenPanelLayoutRequest(unsigned long long layoutKey, bool isDefaultLayout);
    // Asks the delete question; the layout manager removes the layout on confirmation.
    void OnDeletePanelLayoutRequest(unsigned long long layoutKey);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void CreateTabBar();
    void OnTabBarCurrentChanged(int index);
    CVXPanelLayoutPreview* MakePreview(const CVXPanelLayoutTemplate& layout);
    void FillPreview(CVXPanelLayoutPreview* preview, const CVXPanelLayoutTemplate& layout) const;
    // The built-in layouts' previews of every built list, read again for the new theme.
    void OnThemeChanged();
    // Puts the canvas in the gallery's place in the tab widget, current; false when no tab
    // widget holds the gallery (the canvas is then the caller's).
    bool ReplaceByCanvas(CVXPanelScrollView* canvas, const QString& title,
                         const std::function<void(CVXPanelScrollView*)>& fill);

    struct Impl;
    std::unique_ptr<Impl> d;
};

// Written as a qint32.
UIFRAME_EXPORT QDataStream& operator<<(QDataStream& stream, CVXPanelLayoutPage::TabPage page);
UIFRAME_EXPORT QDataStream& operator>>(QDataStream& stream, CVXPanelLayoutPage::TabPage& page);
