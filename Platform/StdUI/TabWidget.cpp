#include "Platform/StdUI/TabWidget.h"

#include "Platform/StdUI/IconButton.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"

#include <QApplication>
#include <QBoxLayout>
#include <QMouseEvent>
#include <QPointer>
#include <QScopedValueRollback>
#include <QShowEvent>
#include <QStackedWidget>
#include <QStyle>

#include <atomic>
#include <utility>
#include <vector>

namespace vx_std_ui {
namespace detail {

struct TabIds
{
    TabId id = kNoTabId;
    unsigned long long globalId = 0;
};

} // namespace detail
} // namespace vx_std_ui

Q_DECLARE_METATYPE(vx_std_ui::detail::TabIds)

namespace vx_std_ui {
namespace {

unsigned long long NextGlobalId()
{
    static std::atomic<unsigned long long> next{1};
    return next.fetch_add(1, std::memory_order_relaxed);
}

} // namespace

struct VTabBarBase::Impl
{
    TabId pendingId = kNoTabId; // the id of the tab being inserted by insertTabWithId()
    bool dragOutEnabled = true;

    // The tab under the last left press, by global id so that reordering does not lose it.
    unsigned long long pressedGlobalId = 0;
    QPoint pressPos;
    bool dragOutDone = false; // TabDragOut was emitted for the current press
};

VTabBarBase::VTabBarBase(QWidget* parent) : QTabBar(parent), d(std::make_unique<Impl>()) {}

VTabBarBase::~VTabBarBase() = default;

// The ids are kept in the tab's data because QTabBar emits currentChanged before tabInserted()
// and tabRemoved() run: data stored in the tab itself is right at every signal. A tab without
// data is the one being inserted; it gets its global id on first access.
static detail::TabIds ReadIds(const QTabBar* bar, int index)
{
    const QVariant v = bar->tabData(index);
    return v.canConvert<detail::TabIds>() ? v.value<detail::TabIds>() : detail::TabIds{};
}

TabId VTabBarBase::tabId(int index) const
{
    if (index < 0 || index >= count())
        return kNoTabId;
    detail::TabIds ids = ReadIds(this, index);
    if (ids.globalId == 0)
        return d->pendingId;
    return ids.id;
}

void VTabBarBase::setTabId(int index, TabId id)
{
    if (index < 0 || index >= count()) {
        VXLOG_WARN("VTabBarBase::setTabId: bad index {} (count {})", index, count());
        return;
    }
    detail::TabIds ids = ReadIds(this, index);
    if (ids.globalId == 0)
        ids.globalId = NextGlobalId();
    ids.id = id;
    setTabData(index, QVariant::fromValue(ids));
}

unsigned long long VTabBarBase::tabGlobalId(int index) const
{
    if (index < 0 || index >= count())
        return 0;
    detail::TabIds ids = ReadIds(this, index);
    if (ids.globalId == 0) {
        ids.id = d->pendingId;
        ids.globalId = NextGlobalId();
        // Reading assigns the id of a tab still being inserted; the tab is not const data.
        const_cast<VTabBarBase*>(this)->setTabData(index, QVariant::fromValue(ids));
    }
    return ids.globalId;
}

int VTabBarBase::indexOfTabId(TabId id) const
{
    if (id == kNoTabId)
        return -1;
    for (int i = 0; i < count(); ++i)
        if (tabId(i) == id)
            return i;
    return -1;
}

int VTabBarBase::indexOfGlobalId(unsigned long long globalId) const
{
    if (globalId == 0)
        return -1;
    for (int i = 0; i < count(); ++i)
        if (tabGlobalId(i) == globalId)
            return i;
    return -1;
}

int VTabBarBase::insertTabWithId(int index, const QString& text, TabId id)
{
    QScopedValueRollback<TabId> pending(d->pendingId, id);
    const int inserted = QTabBar::insertTab(index, text);
    tabGlobalId(inserted); // stores the pending id with a fresh global id
    return inserted;
}

void VTabBarBase::setTabDragOutEnabled(bool on)
{
    d->dragOutEnabled = on;
}

bool VTabBarBase::isTabDragOutEnabled() const
{
    return d->dragOutEnabled;
}

void VTabBarBase::tabInserted(int index)
{
    tabGlobalId(index);
    if (tabsClosable())
        installCloseButton(index);
    QTabBar::tabInserted(index);
}

void VTabBarBase::installCloseButton(int index)
{
    // The style's own close button draws a platform glyph that does not follow our theme.
    const ButtonPosition side =
        static_cast<ButtonPosition>(style()->styleHint(QStyle::SH_TabBar_CloseButtonPosition, nullptr, this));
    QWidget* previous = tabButton(index, side);
    if (qobject_cast<VIconButton*>(previous))
        return;
    auto* button = new VIconButton(IconGlyph::Close, QString(), this);
    button->SetButtonSize(QSize(16, 16));
    connect(button, &QAbstractButton::clicked, this, [this, button, side] {
        for (int i = 0; i < count(); ++i) {
            if (tabButton(i, side) == button) {
                Q_EMIT tabCloseRequested(i);
                return;
            }
        }
    });
    setTabButton(index, side, button);
    if (previous)
        previous->deleteLater();
}

void VTabBarBase::installCloseButtons()
{
    for (int i = 0; i < count(); ++i)
        installCloseButton(i);
}

void VTabBarBase::tabRemoved(int index)
{
    QTabBar::tabRemoved(index);
}

void VTabBarBase::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        d->pressedGlobalId = tabGlobalId(tabAt(event->pos()));
        d->pressPos = event->pos();
        d->dragOutDone = false;
    }
    QTabBar::mousePressEvent(event);
}

void VTabBarBase::mouseMoveEvent(QMouseEvent* event)
{
    if (d->dragOutDone) {
        event->accept();
        return;
    }
    const bool leftDown = event->buttons() & Qt::LeftButton;
    if (d->dragOutEnabled && leftDown && d->pressedGlobalId != 0) {
        const int dy = qAbs(event->pos().y() - d->pressPos.y());
        if (dy > QApplication::startDragDistance() && !rect().contains(event->pos())) {
            const int index = indexOfGlobalId(d->pressedGlobalId);
            if (index >= 0) {
                d->dragOutDone = true;
                // End QTabBar's own press (and any reorder drag) first, so that the bar is idle
                // when a handler takes the tab away.
                QMouseEvent release(QEvent::MouseButtonRelease, event->localPos(), event->windowPos(),
                                    event->screenPos(), Qt::LeftButton, Qt::NoButton, event->modifiers());
                QTabBar::mouseReleaseEvent(&release);
                const QPoint globalPos = event->globalPos();
                Q_EMIT TabDragOut(index, globalPos);
                event->accept();
                return;
            }
        }
    }
    QTabBar::mouseMoveEvent(event);
}

void VTabBarBase::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        d->pressedGlobalId = 0;
        if (d->dragOutDone) {
            // QTabBar already had its release when the drag left the bar.
            d->dragOutDone = false;
            event->accept();
            return;
        }
    }
    QTabBar::mouseReleaseEvent(event);
}

namespace {

// Stands in the stack for a lazy page until the page is created.
class LazyPlaceholder : public QWidget
{
public:
    LazyPlaceholder() { setObjectName(QStringLiteral("VTabWidgetLazyPlaceholder")); }
};

} // namespace

struct VTabWidget::Impl
{
    struct Entry
    {
        QWidget* widget = nullptr;            // the page, or the placeholder while lazy
        std::shared_ptr<PageFactory> factory; // set while the page is not created
        unsigned long long key = 0;           // tells entries apart across moves
    };

    VTabWidget* q = nullptr;
    VTabBarBase* bar = nullptr;
    QWidget* barRow = nullptr;
    QHBoxLayout* barRowLayout = nullptr;
    QStackedWidget* stack = nullptr;
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
        stack->addWidget(widget);
        const int inserted = bar->insertTabWithId(index, text, id);
        VX_ASSERT(inserted == index);
        syncStackCurrent();
        return index;
    }

    void syncStackCurrent()
    {
        const int current = bar->currentIndex();
        if (valid(current) && stack->currentWidget() != entries[current].widget)
            stack->setCurrentWidget(entries[current].widget);
    }

    // Removes the tab; returns the created page (still parented to the stack) or nullptr.
    QWidget* take(int index)
    {
        Entry e = entries[index];
        entries.erase(entries.begin() + index);
        // The bar picks the next current tab while the old page still sits in the stack, so
        // the stack switches straight from the old page to the new one.
        bar->removeTab(index);
        stack->removeWidget(e.widget);
        if (e.factory) {
            delete e.widget;
            return nullptr;
        }
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

        QWidget* placeholder = entries[index].widget;
        entries[index].widget = page;
        entries[index].factory.reset();
        stack->addWidget(page);
        syncStackCurrent();
        stack->removeWidget(placeholder);
        delete placeholder;

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

VTabWidget::VTabWidget(QWidget* parent) : QWidget(parent), d(std::make_unique<Impl>())
{
    d->q = this;
    d->bar = new VTabBarBase;
    d->bar->setObjectName(QStringLiteral("VTabWidgetBar"));
    d->bar->setDrawBase(false);
    // Tabs keep their natural width; the rest of the row is free for the corner widget.
    d->bar->setExpanding(false);
    d->stack = new QStackedWidget;
    d->stack->setObjectName(QStringLiteral("VTabWidgetStack"));

    d->barRow = new QWidget;
    d->barRowLayout = new QHBoxLayout(d->barRow);
    d->barRowLayout->setContentsMargins(0, 0, 0, 0);
    d->barRowLayout->setSpacing(0);
    d->barRowLayout->addWidget(d->bar, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(d->barRow);
    layout->addWidget(d->stack, 1);

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
    const int inserted = d->insert(index, new LazyPlaceholder, std::move(factory), text, id);
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
    d->barRow->setVisible(visible);
}

bool VTabWidget::isTabBarVisible() const
{
    return !d->barRow->isHidden();
}

void VTabWidget::setTabsClosable(bool closable)
{
    d->bar->setTabsClosable(closable);
    if (closable)
        d->bar->installCloseButtons();
}

void VTabWidget::setCornerWidget(QWidget* widget)
{
    if (widget == d->corner)
        return;
    if (d->corner) {
        // We own the old corner widget; it may be the sender of the call that replaces it.
        d->barRowLayout->removeWidget(d->corner);
        d->corner->hide();
        d->corner->deleteLater();
    }
    d->corner = widget;
    if (widget) {
        d->barRowLayout->addWidget(widget, 0, Qt::AlignVCenter);
        widget->show();
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
