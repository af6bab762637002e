#include "Platform/StdUI/TabWidget.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"

#include <QLayout>
#include <QPointer>
#include <QScopedValueRollback>
#include <QShowEvent>
#include <QStackedWidget>

#include <utility>
#include <vector>

namespace vx_std_ui {

namespace {

// The tab widget's one layout: the bar row on top (the bar, then the corner widget at its natural
// width, centred vertically) and the page stack below, without margins or spacing. One layout in
// place of a row widget with a layout of its own inside a box layout: every panel box carries a
// tab widget, so each widget and layout saved here is saved many times over.
class TabWidgetLayout : public QLayout
{
public:
    explicit TabWidgetLayout(QWidget* parent) : QLayout(parent)
    {
        setContentsMargins(0, 0, 0, 0);
        setSpacing(0);
    }
    ~TabWidgetLayout() override
    {
        delete m_bar;
        delete m_stack;
        delete m_corner;
    }

    // The items keep their widgets' size hints until the widgets announce a change (as the items
    // of Qt's own layouts do): the bar's hint measures every tab's text.
    void setBarAndStack(QWidget* bar, QWidget* stack)
    {
        addChildWidget(bar);
        addChildWidget(stack);
        m_bar = new QWidgetItemV2(bar);
        m_stack = new QWidgetItemV2(stack);
        invalidate();
    }

    // Null removes the corner item; the widget itself is the caller's to dispose of.
    void setCorner(QWidget* corner)
    {
        delete m_corner;
        m_corner = nullptr;
        if (corner) {
            addChildWidget(corner);
            m_corner = new QWidgetItemV2(corner);
            m_corner->setAlignment(Qt::AlignVCenter);
        }
        invalidate();
    }

    void addItem(QLayoutItem* item) override
    {
        // Only the tab widget adds items, through the setters above.
        VX_ASSERT(false && "TabWidgetLayout::addItem");
        delete item;
    }
    int count() const override { return static_cast<int>(items().size()); }
    QLayoutItem* itemAt(int index) const override
    {
        const std::vector<QLayoutItem*> all = items();
        return index >= 0 && index < static_cast<int>(all.size()) ? all[static_cast<size_t>(index)] : nullptr;
    }
    QLayoutItem* takeAt(int index) override
    {
        QLayoutItem* item = itemAt(index);
        for (QLayoutItem** slot : {&m_bar, &m_stack, &m_corner}) {
            if (item && *slot == item)
                *slot = nullptr;
        }
        invalidate();
        return item;
    }
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal | Qt::Vertical; }
    QSize sizeHint() const override { return combined(&QLayoutItem::sizeHint); }
    QSize minimumSize() const override { return combined(&QLayoutItem::minimumSize); }

    void setGeometry(const QRect& rect) override
    {
        QLayout::setGeometry(rect);
        const QSize corner = shown(m_corner) ? m_corner->sizeHint() : QSize(0, 0);
        const int rowHeight = this->rowHeight(&QLayoutItem::sizeHint);
        if (shown(m_bar))
            m_bar->setGeometry(QRect(rect.x(), rect.y(), qMax(0, rect.width() - corner.width()), rowHeight));
        if (shown(m_corner))
            m_corner->setGeometry(
                QRect(rect.right() + 1 - corner.width(), rect.y(), corner.width(), rowHeight));
        if (m_stack)
            m_stack->setGeometry(
                QRect(rect.x(), rect.y() + rowHeight, rect.width(), qMax(0, rect.height() - rowHeight)));
    }

private:
    using SizeOf = QSize (QLayoutItem::*)() const;

    static bool shown(const QLayoutItem* item) { return item && !item->isEmpty(); }

    std::vector<QLayoutItem*> items() const
    {
        std::vector<QLayoutItem*> all;
        for (QLayoutItem* item : {m_bar, m_stack, m_corner}) {
            if (item)
                all.push_back(item);
        }
        return all;
    }

    int rowHeight(SizeOf size) const
    {
        int height = 0;
        for (const QLayoutItem* item : {m_bar, m_corner}) {
            if (shown(item))
                height = qMax(height, (item->*size)().height());
        }
        return height;
    }

    QSize combined(SizeOf size) const
    {
        int rowWidth = 0;
        for (const QLayoutItem* item : {m_bar, m_corner}) {
            if (shown(item))
                rowWidth += (item->*size)().width();
        }
        const QSize stack = shown(m_stack) ? (m_stack->*size)() : QSize(0, 0);
        return QSize(qMax(rowWidth, stack.width()), rowHeight(size) + stack.height());
    }

    QLayoutItem* m_bar = nullptr;
    QLayoutItem* m_stack = nullptr;
    QLayoutItem* m_corner = nullptr;
};

} // namespace

struct VTabWidget::Impl
{
    struct Entry
    {
        QWidget* widget = nullptr;            // the page; null while lazy
        std::shared_ptr<PageFactory> factory; // set while the page is not created
        unsigned long long key = 0;           // tells entries apart across moves
    };

    VTabWidget* q = nullptr;
    VTabBarBase* bar = nullptr;
    TabBarStyle style = TabBarStyle::Normal;
    TabWidgetLayout* layout = nullptr;
    bool barShown = true;
    QStackedWidget* stack = nullptr;
    // Shown in the stack while the current tab is lazy and not built; made when first needed.
    QWidget* emptyPage = nullptr;
    QPointer<QWidget> corner;

    // One entry per tab, in tab order. The stack's own order does not matter: moving a tab
    // leaves the stack alone so that no page is hidden and shown again.
    std::vector<Entry> entries;
    unsigned long long nextKey = 1;
    unsigned long long currentKey = 0; // key of the current entry, 0 for none
    bool clearing = false;
    std::vector<unsigned long long> creating; // keys whose factory is running

    bool valid(int index) const { return index >= 0 && index < static_cast<int>(entries.size()); }

    int indexOfKey(unsigned long long key) const
    {
        for (size_t i = 0; i < entries.size(); ++i)
            if (entries[i].key == key)
                return static_cast<int>(i);
        return -1;
    }

    int insert(int index, QWidget* widget, std::shared_ptr<PageFactory> factory, const QString& text,
               TabId id)
    {
        const int n = static_cast<int>(entries.size());
        if (index < 0 || index > n)
            index = n;
        Entry e;
        e.widget = widget;
        e.factory = std::move(factory);
        e.key = nextKey++;
        // The entry and the stack are ready before the bar emits anything.
        entries.insert(entries.begin() + index, e);
        if (widget)
            stack->addWidget(widget);
        const int inserted = bar->insertTabWithId(index, text, id);
        VX_ASSERT(inserted == index);
        syncStackCurrent();
        return index;
    }

    void syncStackCurrent()
    {
        const int current = bar->currentIndex();
        if (!valid(current))
            return;
        QWidget* shown = entries[current].widget;
        if (!shown) {
            if (!emptyPage) {
                emptyPage = new QWidget;
                emptyPage->setObjectName(QStringLiteral("VTabWidgetLazyPlaceholder"));
                stack->addWidget(emptyPage);
            }
            shown = emptyPage;
        }
        if (stack->currentWidget() != shown)
            stack->setCurrentWidget(shown);
    }

    // Removes the tab; returns the created page (still parented to the stack) or nullptr.
    QWidget* take(int index)
    {
        Entry e = entries[index];
        entries.erase(entries.begin() + index);
        // The bar picks the next current tab while the old page still sits in the stack, so
        // the stack switches straight from the old page to the new one.
        bar->removeTab(index);
        if (e.factory)
            return nullptr;
        stack->removeWidget(e.widget);
        return e.widget;
    }

    void onBarCurrentChanged(int index)
    {
        syncStackCurrent();
        if (clearing)
            return;
        const unsigned long long key = valid(index) ? entries[index].key : 0;
        if (key == currentKey)
            return;
        currentKey = key;
        if (valid(index) && entries[index].factory && q->isVisible()) {
            createPage(index);
            if (currentKey != key)
                return; // the factory switched tabs; that switch was reported already
            index = indexOfKey(key);
        }
        Q_EMIT q->currentChanged(index);
    }

    void onBarTabMoved(int from, int to)
    {
        if (!VX_ASSERT(valid(from) && valid(to)))
            return;
        Entry e = entries[from];
        entries.erase(entries.begin() + from);
        entries.insert(entries.begin() + to, e);
        Q_EMIT q->tabMoved(from, to);
    }

    // Creates the lazy page of a tab; returns the page, or nullptr when the factory gave none.
    QWidget* createPage(int index)
    {
        Entry& entry = entries[index];
        if (!entry.factory)
            return entry.widget;
        const unsigned long long key = entry.key;
        for (unsigned long long k : creating)
            if (k == key)
                return nullptr; // asked again from inside its own factory
        const std::shared_ptr<PageFactory> factory = entry.factory;

        creating.push_back(key);
        QWidget* page = factory->create();
        creating.pop_back();

        // The factory may have changed the tabs; find the entry again.
        index = indexOfKey(key);
        if (!page) {
            VXLOG_WARN("VTabWidget::createPage: the factory of tab {} (\"{}\") created no page", index,
                       index >= 0 ? bar->tabText(index) : QString());
            return nullptr;
        }
        if (index < 0 || !entries[index].factory) {
            VXLOG_WARN("VTabWidget::createPage: tab was removed or created while its page was built");
            delete page;
            return index >= 0 ? entries[index].widget : nullptr;
        }

        entries[index].widget = page;
        entries[index].factory.reset();
        stack->addWidget(page);
        syncStackCurrent();

        factory->afterSetParent(page);
        index = indexOfKey(key);
        if (index >= 0)
            Q_EMIT q->pageCreated(index, page);
        return page;
    }

    void createCurrentIfVisible()
    {
        const int current = bar->currentIndex();
        if (valid(current) && entries[current].factory && q->isVisible())
            createPage(current);
    }
};

VTabWidget::VTabWidget(QWidget* parent) : VTabWidget(TabBarStyle::Normal, parent) {}

VTabWidget::VTabWidget(TabBarStyle style, QWidget* parent) : QWidget(parent), d(std::make_unique<Impl>())
{
    d->style = style;
    setUp(new VTabBarBase);
}

VTabWidget::VTabWidget(VTabBarBase* tabBar, QWidget* parent) : QWidget(parent), d(std::make_unique<Impl>())
{
    if (!tabBar)
        tabBar = new VTabBarBase;
    // The entries mirror the bar's tabs one to one; tabs made elsewhere have no entry.
    while (tabBar->count() > 0)
        tabBar->removeTab(tabBar->count() - 1);
    setUp(tabBar);
}

void VTabWidget::setUp(VTabBarBase* tabBar)
{
    d->q = this;
    d->bar = tabBar;
    if (d->bar->objectName().isEmpty())
        d->bar->setObjectName(QStringLiteral("VTabWidgetBar"));
    d->bar->setDrawBase(false);
    // Tabs keep their natural width; the rest of the row is free for the corner widget.
    d->bar->setExpanding(d->style == TabBarStyle::Expanding);
    if (d->style == TabBarStyle::Document) {
        d->bar->setMovable(true);
        d->bar->setTabsClosable(true);
    }
    d->stack = new QStackedWidget;
    d->stack->setObjectName(QStringLiteral("VTabWidgetStack"));

    d->layout = new TabWidgetLayout(this);
    d->layout->setBarAndStack(d->bar, d->stack);

    connect(d->bar, &QTabBar::currentChanged, this, [this](int index) { d->onBarCurrentChanged(index); });
    connect(d->bar, &QTabBar::tabMoved, this, [this](int from, int to) { d->onBarTabMoved(from, to); });
    connect(d->bar, &QTabBar::tabCloseRequested, this, &VTabWidget::tabCloseRequested);
}

VTabWidget::~VTabWidget()
{
    // The children die after d; keep the bar from reaching back into it.
    disconnect(d->bar, nullptr, this, nullptr);
}

VTabBarBase* VTabWidget::tabBar() const
{
    return d->bar;
}

VTabWidget::TabBarStyle VTabWidget::tabBarStyle() const
{
    return d->style;
}

int VTabWidget::addTab(QWidget* page, const QString& text, TabId id)
{
    return insertTab(count(), page, text, id);
}

int VTabWidget::insertTab(int index, QWidget* page, const QString& text, TabId id)
{
    if (!page) {
        VXLOG_WARN("VTabWidget::insertTab: null page for tab \"{}\"", text);
        return -1;
    }
    if (indexOf(page) >= 0) {
        VXLOG_WARN("VTabWidget::insertTab: the page of tab \"{}\" is already in this widget", text);
        return -1;
    }
    const int inserted = d->insert(index, page, nullptr, text, id);
    Q_EMIT tabCountChanged(count());
    return inserted;
}

int VTabWidget::addLazyTab(std::shared_ptr<PageFactory> factory, const QString& text, TabId id)
{
    return insertLazyTab(count(), std::move(factory), text, id);
}

int VTabWidget::insertLazyTab(int index, std::shared_ptr<PageFactory> factory, const QString& text, TabId id)
{
    if (!factory) {
        VXLOG_WARN("VTabWidget::insertLazyTab: null factory for tab \"{}\"", text);
        return -1;
    }
    const int inserted = d->insert(index, nullptr, std::move(factory), text, id);
    Q_EMIT tabCountChanged(count());
    return inserted;
}

QWidget* VTabWidget::takeTab(int index)
{
    if (!d->valid(index)) {
        VXLOG_WARN("VTabWidget::takeTab: bad index {} (count {})", index, count());
        return nullptr;
    }
    QWidget* page = d->take(index);
    if (page)
        page->setParent(nullptr);
    Q_EMIT tabCountChanged(count());
    return page;
}

void VTabWidget::removeTab(int index)
{
    if (!d->valid(index)) {
        VXLOG_WARN("VTabWidget::removeTab: bad index {} (count {})", index, count());
        return;
    }
    if (QWidget* page = d->take(index)) {
        // Late deletion: the page may be the sender of the call that closes its tab.
        page->hide();
        page->deleteLater();
    }
    Q_EMIT tabCountChanged(count());
}

void VTabWidget::clear()
{
    if (d->entries.empty())
        return;
    const bool hadCurrent = d->currentKey != 0;
    {
        QScopedValueRollback<bool> clearing(d->clearing, true);
        while (!d->entries.empty()) {
            if (QWidget* page = d->take(count() - 1)) {
                page->hide();
                page->deleteLater();
            }
        }
        d->currentKey = 0;
    }
    if (hadCurrent)
        Q_EMIT currentChanged(-1);
    Q_EMIT tabCountChanged(0);
}

void VTabWidget::moveTab(int from, int to)
{
    if (!d->valid(from) || !d->valid(to)) {
        VXLOG_WARN("VTabWidget::moveTab: bad move {} -> {} (count {})", from, to, count());
        return;
    }
    if (from == to)
        return;
    d->bar->moveTab(from, to);
}

int VTabWidget::count() const
{
    return static_cast<int>(d->entries.size());
}

int VTabWidget::currentIndex() const
{
    return d->bar->currentIndex();
}

void VTabWidget::setCurrentIndex(int index)
{
    if (!d->valid(index)) {
        VXLOG_WARN("VTabWidget::setCurrentIndex: bad index {} (count {})", index, count());
        return;
    }
    d->bar->setCurrentIndex(index);
}

QWidget* VTabWidget::currentWidget() const
{
    return widget(currentIndex(), false);
}

QWidget* VTabWidget::widget(int index, bool bCreate) const
{
    if (!d->valid(index))
        return nullptr;
    const Impl::Entry& e = d->entries[index];
    if (!e.factory)
        return e.widget;
    return bCreate ? d->createPage(index) : nullptr;
}

int VTabWidget::indexOf(const QWidget* page) const
{
    if (!page)
        return -1;
    for (size_t i = 0; i < d->entries.size(); ++i)
        if (d->entries[i].widget == page && !d->entries[i].factory)
            return static_cast<int>(i);
    return -1;
}

bool VTabWidget::isPageCreated(int index) const
{
    return d->valid(index) && !d->entries[index].factory;
}

std::shared_ptr<PageFactory> VTabWidget::pageFactory(int index) const
{
    return d->valid(index) ? d->entries[index].factory : nullptr;
}

QString VTabWidget::tabText(int index) const
{
    return d->bar->tabText(index);
}

void VTabWidget::setTabText(int index, const QString& text)
{
    if (!d->valid(index)) {
        VXLOG_WARN("VTabWidget::setTabText: bad index {} (count {})", index, count());
        return;
    }
    d->bar->setTabText(index, text);
}

TabId VTabWidget::tabId(int index) const
{
    return d->bar->tabId(index);
}

void VTabWidget::setTabId(int index, TabId id)
{
    d->bar->setTabId(index, id);
}

unsigned long long VTabWidget::tabGlobalId(int index) const
{
    return d->bar->tabGlobalId(index);
}

int VTabWidget::indexOfTabId(TabId id) const
{
    return d->bar->indexOfTabId(id);
}

void VTabWidget::setTabBarVisible(bool visible)
{
    d->barShown = visible;
    d->bar->setVisible(visible);
    if (d->corner)
        d->corner->setVisible(visible);
}

bool VTabWidget::isTabBarVisible() const
{
    return d->barShown;
}

void VTabWidget::setTabsClosable(bool closable)
{
    d->bar->setTabsClosable(closable);
}

void VTabWidget::setCornerWidget(QWidget* widget)
{
    if (widget == d->corner)
        return;
    if (d->corner) {
        // We own the old corner widget; it may be the sender of the call that replaces it.
        d->layout->setCorner(nullptr);
        d->corner->hide();
        d->corner->deleteLater();
    }
    d->corner = widget;
    if (widget) {
        d->layout->setCorner(widget);
        widget->setVisible(d->barShown);
    }
}

QWidget* VTabWidget::cornerWidget() const
{
    return d->corner;
}

void VTabWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    d->createCurrentIfVisible();
}

} // namespace vx_std_ui
