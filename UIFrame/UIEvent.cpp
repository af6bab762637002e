#include "UIFrame/UIEvent.h"

#include "UIFrame/BoxObjBase.h"
#include "UIFrame/ModuleInterfaces.h"
#include "UIFrame/TabFrame/TabFrameBase.h"
#include "UIFrame/UIEventContainer.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/PluginCenter.h"

#include <QPointer>
#include <QVarLengthArray>
#include <QWidget>

#include <cstddef>
#include <typeinfo>

IVUIEventTypeBase::~IVUIEventTypeBase() = default;

QString IVUIEventTypeBase::MakeEventName(const char* className, int id)
{
    return QString::fromLatin1(className) + QString::number(id);
}

IVUIEventHandlerBase::~IVUIEventHandlerBase() = default;

IVXUIEventContainer::~IVXUIEventContainer() = default;

IQuoteModuleUtil::~IQuoteModuleUtil() = default;

namespace {

// A registered callback behind a plain reference count. Dispatch calls a copy of the handler
// (DirectHandleUIEvent), so that a handler may replace or drop its own registration while it
// runs; a member handler's callback does not fit in std::function's own storage and each copy
// would allocate. This one fits: a copy costs an increment. Handlers are registered, dropped and
// dispatched to on the main thread only, so the count needs no atomic operations.
class CSharedHandler
{
public:
    explicit CSharedHandler(VUIEventHandler::HandlerFn fn) : m_pShared(new Shared{std::move(fn), 1}) {}
    CSharedHandler(const CSharedHandler& other) : m_pShared(other.m_pShared) { ++m_pShared->refs; }
    CSharedHandler(CSharedHandler&& other) noexcept : m_pShared(other.m_pShared)
    {
        other.m_pShared = nullptr;
    }
    CSharedHandler& operator=(const CSharedHandler&) = delete;
    CSharedHandler& operator=(CSharedHandler&&) = delete;
    ~CSharedHandler()
    {
        if (m_pShared && --m_pShared->refs == 0)
            delete m_pShared;
    }
    void operator()(const IVUIEventTypeBase* event) const { m_pShared->fn(event); }

private:
    struct Shared
    {
        VUIEventHandler::HandlerFn fn;
        int refs;
    };
    Shared* m_pShared;
};

} // namespace

VUIEventHandler::VUIEventHandler() = default;

VUIEventHandler::~VUIEventHandler() = default;

void VUIEventHandler::DirectHandleUIEvent(const IVUIEventTypeBase* event)
{
    if (!event)
        return;
    const auto it = m_mapHandlers.find(event->eventName());
    if (it == m_mapHandlers.end() || !it->second)
        return;
    // A copy: the handler may replace or drop its own registration while it runs. Callbacks
    // registered here are shared ones, whose copy is a count.
    if (const auto* shared = it->second.target<CSharedHandler>()) {
        const CSharedHandler handler(*shared);
        handler(event);
        return;
    }
    const HandlerFn handler = it->second;
    handler(event);
}

bool VUIEventHandler::HasListenedEvent(const IVUIEventTypeBase* event) const
{
    return event && m_mapHandlers.count(event->eventName()) != 0;
}

void VUIEventHandler::RegisterUIEventHandler(const QString& eventName, HandlerFn handler)
{
    if (!handler) {
        m_mapHandlers[eventName] = HandlerFn();
        return;
    }
    m_mapHandlers[eventName] = CSharedHandler(std::move(handler));
}

void VUIEventHandler::UnRegisterUIEventHandler(const QString& eventName)
{
    m_mapHandlers.erase(eventName);
}

QList<QString> VUIEventHandler::ListenedEventNames() const
{
    QList<QString> names;
    for (const auto& entry : m_mapHandlers)
        names.append(entry.first);
    return names;
}

namespace {

constexpr const char* kReleasedDuringDispatch = "存在对象在事件处理中被释放的情况";

// A cross cast from QWidget to the handler interface walks the object's whole class hierarchy,
// comparing type names across libraries, and the walk below asks it of every widget of a tree.
// Whether the cast succeeds, and where the handler part of the object sits relative to its
// QWidget part, depend only on the dynamic type (the classes involved use no virtual
// inheritance): the cast runs once per type and the answer is kept in a fixed open-addressing
// table keyed by the type_info's address (a type seen through two libraries gets two entries).
// Past half the table's size new types are cast every time rather than kept. Dispatch runs on the
// main thread only.
class HandlerCastCache
{
public:
    IVUIEventHandlerBase* Cast(QWidget* widget)
    {
        const std::type_info* type = &typeid(*widget);
        size_t i = (reinterpret_cast<quintptr>(type) >> 4) & (kSlots - 1);
        while (m_slots[i].type != type) {
            if (!m_slots[i].type)
                return CastAndKeep(widget, type, i);
            i = (i + 1) & (kSlots - 1);
        }
        const Slot& slot = m_slots[i];
        return slot.isHandler
                   ? reinterpret_cast<IVUIEventHandlerBase*>(reinterpret_cast<char*>(widget) + slot.offset)
                   : nullptr;
    }

private:
    static constexpr size_t kSlots = 1024; // a power of two

    struct Slot
    {
        const std::type_info* type = nullptr;
        std::ptrdiff_t offset = 0;
        bool isHandler = false;
    };

    IVUIEventHandlerBase* CastAndKeep(QWidget* widget, const std::type_info* type, size_t free)
    {
        IVUIEventHandlerBase* handler = dynamic_cast<IVUIEventHandlerBase*>(widget);
        if (m_used * 2 < kSlots) {
            ++m_used;
            m_slots[free] =
                Slot{type, handler ? reinterpret_cast<char*>(handler) - reinterpret_cast<char*>(widget) : 0,
                     handler != nullptr};
        }
        return handler;
    }

    Slot m_slots[kSlots];
    size_t m_used = 0;
};

HandlerCastCache s_handlerCasts;

IVUIEventHandlerBase* AsHandler(QWidget* widget)
{
    return s_handlerCasts.Cast(widget);
}

// The walk offers the event to every widget below a root, in the order of the children lists as
// they are when each list is reached; handlers may delete widgets meanwhile. A guarded pointer per
// widget (or per level) would cost more than the rest of the walk, so the walk tells living from
// deleted children another way: a deleted child leaves its parent's list of children. Each level
// keeps the list it started from; as long as no handler ran since the level was last checked, or
// the root's list still equals the one taken, every child taken lives; otherwise a child lives
// when the root, alive itself (asked of the level above), still lists it. Only the top root
// carries a guarded pointer.
struct WalkContext
{
    QPointer<QWidget> top;
    unsigned handlersRun = 0; // handlers called so far: nothing can have been deleted in between
};

// One level of the walk: a widget whose children are offered the event, taken as they were when
// the walk reached it. What the walk needs of each child is read here, in one pass over the list:
// the reads of the children's data do not depend on each other, so their cache misses overlap, as
// they do in a plain visit of the tree, instead of being taken one by one between handler calls.
struct WalkLevel
{
    struct Entry
    {
        QObject* object;
        IVUIEventHandlerBase* handler; // for a widget that handles events
        bool widget;
        bool hasChildren;
    };

    WalkLevel(WalkContext* c, const WalkLevel* p, QWidget* r)
        : context(c), parent(p), root(r), checkedAt(c->handlersRun)
    {
        const QObjectList& children = r->children();
        entries.resize(children.size());
        Entry* entry = entries.data();
        for (QObject* object : children) {
            *entry = Entry{object, nullptr, object->isWidgetType(), false};
            if (entry->widget) {
                entry->handler = AsHandler(static_cast<QWidget*>(object));
                entry->hasChildren = !object->children().isEmpty();
            }
            ++entry;
        }
    }

    bool RootAlive() const { return parent ? parent->ChildAlive(root) : !context->top.isNull(); }

    // Whether `child`, one of `entries`, still lives.
    bool ChildAlive(QObject* child) const
    {
        if (checkedAt == context->handlersRun)
            return true;
        if (!RootAlive())
            return false;
        if (Unchanged()) {
            checkedAt = context->handlersRun;
            return true;
        }
        return root->children().contains(child);
    }

    // The root (known alive) still has exactly the children taken.
    bool Unchanged() const
    {
        const QObjectList& now = root->children();
        const int count = static_cast<int>(entries.size());
        if (now.size() != count)
            return false;
        const Entry* taken = entries.constData();
        for (int i = 0; i < count; ++i) {
            if (now.at(i) != taken[i].object)
                return false;
        }
        return true;
    }

    WalkContext* context;
    const WalkLevel* parent; // the level whose children include `root`; null for the top root
    QWidget* root;
    QVarLengthArray<Entry, 8> entries; // the root's children when the level was reached
    mutable unsigned checkedAt;        // handlersRun when all of `entries` last lived
};

// Offers the event to the children of level.root and their subtrees. Children that are neither
// handlers nor hold anything are passed over.
void DispatchToChildren(const WalkLevel& level, const IVUIEventTypeBase* event, QWidget* exclude,
                        QWidget* skip)
{
    WalkContext* context = level.context;
    for (const WalkLevel::Entry& entry : level.entries) {
        if (!entry.widget || (!entry.handler && !entry.hasChildren) || entry.object == skip)
            continue;
        if (!level.ChildAlive(entry.object)) {
            VX_ASSERT_LEVEL(kReleasedDuringDispatch, core::assertion::kLevelWarning);
            continue;
        }
        auto* child = static_cast<QWidget*>(entry.object);
        const bool descend = !entry.handler || entry.handler->IsContinueDispatchUIEventToAllChild();
        if (entry.handler && child != exclude) {
            entry.handler->DirectHandleUIEvent(event);
            ++context->handlersRun;
            if (descend && !level.ChildAlive(child)) {
                VX_ASSERT_LEVEL(kReleasedDuringDispatch, core::assertion::kLevelWarning);
                continue;
            }
        }
        if (descend)
            DispatchToChildren(WalkLevel(context, &level, child), event, exclude, skip);
    }
}

// The recursive walk; `skip` is a subtree left out entirely (a tab frame's current page, which
// gets its own pass).
void DispatchToSubtree(QWidget* root, const IVUIEventTypeBase* event, QWidget* exclude, QWidget* skip)
{
    WalkContext context;
    context.top = root;
    if (root != exclude) {
        if (IVUIEventHandlerBase* handler = AsHandler(root))
            handler->DirectHandleUIEvent(event);
    }
    if (!context.top) {
        VX_ASSERT_LEVEL(kReleasedDuringDispatch, core::assertion::kLevelWarning);
        return;
    }
    DispatchToChildren(WalkLevel(&context, nullptr, root), event, exclude, skip);
}

std::string DescribeWidget(const QWidget* widget)
{
    const QString name = widget->objectName();
    if (name.isEmpty())
        return widget->metaObject()->className();
    return fmt::format("{}({})", widget->metaObject()->className(), name);
}

IVXUIEventContainer* ContainerRole(QWidget* widget)
{
    return dynamic_cast<IVXUIEventContainer*>(widget);
}

bool IsRegion(QWidget* widget)
{
    IVXUIEventContainer* role = ContainerRole(widget);
    return role && role->ContainerKind() == EnVXUIEventContainerKind::ExpandedRegion;
}

// Content first, then the region; content that lives inside the region is reached through it.
void DispatchToRegion(QWidget* region, const IVUIEventTypeBase* event, QWidget* exclude)
{
    QPointer<QWidget> guardRegion(region);
    QWidget* content = ContainerRole(region)->CurrentRegionContent();
    if (content && content != region && !region->isAncestorOf(content))
        DispatchToSubtree(content, event, exclude, nullptr);
    if (guardRegion)
        DispatchToSubtree(region, event, exclude, nullptr);
}

void DispatchAtTabFrame(CVXTabFrameBase* frame, QWidget* source, const IVUIEventTypeBase* event,
                        QWidget* exclude)
{
    QPointer<QWidget> guardFrame(frame);
    QPointer<QWidget> page(frame->CurrentPage());
    if (frame->GetTabFrameKey() == TabFrameKey_PanelWorkspace) {
        if (frame != exclude)
            frame->DirectHandleUIEvent(event);
        if (guardFrame && page && page->isAncestorOf(source))
            DispatchToSubtree(page, event, exclude, nullptr);
        return;
    }

    DispatchToSubtree(frame, event, exclude, page);
    if (!guardFrame || frame->IsEventConsumed(event))
        return;
    if (page)
        DispatchToSubtree(page, event, exclude, nullptr);
}

} // namespace

namespace Platform::UIEvent {

void DispatchUIEventToAllChildRecursively(QWidget* root, const IVUIEventTypeBase* event, QWidget* exclude)
{
    if (!root || !event)
        return;
    DispatchToSubtree(root, event, exclude, nullptr);
}

} // namespace Platform::UIEvent

namespace core::ui_event {

void DispatchUIEventToAllChildRecursivelyWithThis(QWidget* pRoot, const IVUIEventTypeBase* pEvent,
                                                  QWidget* exclude)
{
    bool valid = VX_ASSERT(pRoot);
    valid = VX_ASSERT(pEvent) && valid;
    if (!valid)
        return;
    DispatchToSubtree(pRoot, pEvent, exclude, nullptr);
}

void DispatchCardEvent(QWidget* pSource, const IVUIEventTypeBase* pEvent, bool includeSource)
{
    bool valid = VX_ASSERT(pSource);
    valid = VX_ASSERT(pEvent) && valid;
    if (!valid)
        return;

    VXLOG_INFO("[Dispatch] Widget = {}, event = {}", DescribeWidget(pSource), pEvent->eventName());

    QPointer<QWidget> guardSource(pSource);
    if (core::IVXPluginCenter::Instance().Has(IQuoteModuleUtil::InterfaceName())) {
        if (auto quote = core::IVXPluginCenter::CreateInterface<IQuoteModuleUtil>())
            quote->OnCardEvent(pSource, pEvent);
    }
    if (!guardSource)
        return;

    QWidget* exclude = includeSource ? nullptr : pSource;
    QWidget* region = nullptr;
    QWidget* container = nullptr;
    for (QWidget* widget = pSource->parentWidget(); widget; widget = widget->parentWidget()) {
        if (dynamic_cast<CVXBoxObjBase*>(widget)) {
            container = widget;
            break;
        }
        if (IVXUIEventContainer* role = ContainerRole(widget)) {
            if (role->ContainerKind() == EnVXUIEventContainerKind::ExpandedRegion) {
                if (!region)
                    region = widget;
                continue;
            }
            container = widget;
            break;
        }
    }

    if (!container) {
        DispatchToSubtree(pSource, pEvent, exclude, nullptr);
        return;
    }
    if (auto* frame = dynamic_cast<CVXTabFrameBase*>(container)) {
        DispatchAtTabFrame(frame, pSource, pEvent, exclude);
        return;
    }
    IVXUIEventContainer* role = ContainerRole(container);
    if (region && role && role->CurrentExpandedRegion() == region) {
        DispatchToRegion(region, pEvent, exclude);
        return;
    }
    DispatchToSubtree(container, pEvent, exclude, nullptr);
}

void DispatchCardEventToExpandedRegion(QWidget* pSource, const IVUIEventTypeBase* pEvent, bool includeSource)
{
    bool valid = VX_ASSERT(pSource);
    valid = VX_ASSERT(pEvent) && valid;
    if (!valid)
        return;

    QWidget* region = nullptr;
    CVXTabFrameBase* frame = nullptr;
    for (QWidget* widget = pSource; widget && !region; widget = widget->parentWidget()) {
        if (IsRegion(widget))
            region = widget;
        else if (!frame)
            frame = dynamic_cast<CVXTabFrameBase*>(widget);
    }
    if (!region && frame && frame->GetExpandedRegion() && IsRegion(frame->GetExpandedRegion()))
        region = frame->GetExpandedRegion();
    if (!region)
        return;
    DispatchToRegion(region, pEvent, includeSource ? nullptr : pSource);
}

} // namespace core::ui_event
