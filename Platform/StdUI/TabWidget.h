#pragma once

// VTabWidget and VTabBarBase: a tab widget whose tabs carry ids and whose pages can be created
// on demand. Every tab has a tab id (kNoTabId when none was given) and a process-wide unique
// global id. A lazy tab holds a TIFactory<QWidget, void> and no widget; the real page is created
// the first time the tab is current in a shown widget (or when widget() is asked for it with
// bCreate true), then afterSetParent() is called once it sits in the stack. Until then one empty
// page, shared by all lazy tabs of the widget, stands in the stack when such a tab is current.

#include "Platform/StdUI/Factory.h"
#include "Platform/StdUI/StdUIExport.h"

#include <QTabBar>
#include <QWidget>

#include <memory>

class QStackedWidget;
class QBoxLayout;
class QShowEvent;

namespace vx_std_ui {

using TabId = unsigned long long;
inline constexpr TabId kNoTabId = 0x8000000000000000ULL;

using PageFactory = TIFactory<QWidget, void>;

class VXSTDUI_EXPORT VTabBarBase : public QTabBar
{
    Q_OBJECT
public:
    explicit VTabBarBase(QWidget* parent = nullptr);
    ~VTabBarBase() override;

    TabId tabId(int index) const; // kNoTabId for a bad index or a tab without id
    void setTabId(int index, TabId id);
    unsigned long long tabGlobalId(int index) const; // 0 for a bad index
    int indexOfTabId(TabId id) const;                // -1 when absent
    int indexOfGlobalId(unsigned long long globalId) const;
    // Inserts a tab that carries `id` from the start, so that handlers of the signals emitted
    // during the insertion already see it. The ids live in the tabs' data: do not call
    // setTabData() on this bar.
    int insertTabWithId(int index, const QString& text, TabId id);

    // Dragging a pressed tab vertically beyond the drag distance and out of the bar's rectangle
    // emits TabDragOut once per press, with the tab index and the global cursor position; the
    // bar's own press (and reorder drag) ends there. Horizontal drags reorder a movable bar.
    void setTabDragOutEnabled(bool on);
    bool isTabDragOutEnabled() const;

    // Closable tabs show a close glyph at their right end, painted by the bar in the theme's
    // colours (no button widget per tab); a click on it emits tabCloseRequested(index). These
    // hide QTabBar's functions of the same name: call them on the VTabBarBase.
    void setTabsClosable(bool closable);
    bool tabsClosable() const;
    // The close glyph of a tab in bar coordinates; empty for a bad index or a bar without glyphs.
    QRect closeGlyphRect(int index) const;
    // The tab whose glyph the mouse is over (-1 for none) and whether it is pressed there.
    int hoveredCloseGlyph() const;
    bool isCloseGlyphDown() const;

Q_SIGNALS:
    void TabDragOut(int index, const QPoint& globalPos);

protected:
    bool event(QEvent* event) override;
    QSize tabSizeHint(int index) const override;
    void tabInserted(int index) override;
    void tabRemoved(int index) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

class VXSTDUI_EXPORT VTabWidget : public QWidget
{
    Q_OBJECT
public:
    // How the built-in bar behaves. Normal: tabs keep their natural width, fixed order.
    // Document: movable tabs with themed close glyphs. Expanding: tabs share the bar's width.
    enum class TabBarStyle
    {
        Normal,
        Document,
        Expanding,
    };

    explicit VTabWidget(QWidget* parent = nullptr);
    VTabWidget(TabBarStyle style, QWidget* parent = nullptr);
    // Uses a ready bar (a derived bar with its own drawing). The bar must have no tabs yet
    // (any it has are removed); the widget takes ownership of it. A null bar gives the default.
    VTabWidget(VTabBarBase* tabBar, QWidget* parent = nullptr);
    ~VTabWidget() override;

    VTabBarBase* tabBar() const;
    TabBarStyle tabBarStyle() const;

    // The tab widget takes ownership of the page. Returns the index, -1 for a null page.
    int addTab(QWidget* page, const QString& text, TabId id = kNoTabId);
    int insertTab(int index, QWidget* page, const QString& text, TabId id = kNoTabId);
    // A lazy tab; the factory is kept until the page is created. -1 for a null factory.
    int addLazyTab(std::shared_ptr<PageFactory> factory, const QString& text, TabId id = kNoTabId);
    int insertLazyTab(int index, std::shared_ptr<PageFactory> factory, const QString& text,
                      TabId id = kNoTabId);

    // Removes the tab; the page (if created) is returned to the caller, who owns it then.
    QWidget* takeTab(int index);
    // Removes the tab and deletes its page later.
    void removeTab(int index);
    void clear();

    // Moves a tab, keeping its page, ids and current state.
    void moveTab(int from, int to);

    int count() const;
    // currentChanged fires when another tab (or none) becomes current, not when moving,
    // inserting or removing other tabs only shifts the current tab's index.
    int currentIndex() const;
    void setCurrentIndex(int index);
    QWidget* currentWidget() const;

    // The page of a tab; for a lazy tab not yet created: nullptr, or the new page when bCreate.
    QWidget* widget(int index, bool bCreate = false) const;
    int indexOf(const QWidget* page) const;
    bool isPageCreated(int index) const;
    // The factory of a lazy tab whose page is not created yet; null otherwise.
    std::shared_ptr<PageFactory> pageFactory(int index) const;

    QString tabText(int index) const;
    void setTabText(int index, const QString& text);
    TabId tabId(int index) const;
    void setTabId(int index, TabId id);
    unsigned long long tabGlobalId(int index) const;
    int indexOfTabId(TabId id) const;

    void setTabBarVisible(bool visible);
    bool isTabBarVisible() const;
    void setTabsClosable(bool closable);
    // A widget shown at the right end of the tab bar row (e.g. a box's buttons); not owned
    // before the call, owned after.
    void setCornerWidget(QWidget* widget);
    QWidget* cornerWidget() const;

Q_SIGNALS:
    void currentChanged(int index);
    void tabCloseRequested(int index);
    void tabMoved(int from, int to);
    // A lazy page was created (index, page), after afterSetParent().
    void pageCreated(int index, QWidget* page);
    void tabCountChanged(int count);

protected:
    // The current lazy page of a hidden tab widget is created when the widget is shown.
    void showEvent(QShowEvent* event) override;

private:
    void setUp(VTabBarBase* tabBar);

    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_std_ui
