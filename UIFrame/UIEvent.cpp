#include "UIFrame/UIEvent.h"

#include "UIFrame/BoxObjBase.h"
#include "UIFrame/ModuleInterfaces.h"
#include "UIFrame/TabFrame/TabFrameBase.h"
#include "UIFrame/UIEventContainer.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/PluginCenter.h"

#include <QHash>
#include <QPointer>
#include <QVarLengthArray>
#include <QWidget>

#include <typeinfo>
#include <vector>

IVUIEventTypeBase::~IVUIEventTypeBase() = default;

QString IVUIEventTypeBase::MakeEventName(const char* className, int id)
{
    return QString::fromLatin1(className) + QString::number(id);
}

IVUIEventHandlerBase::~IVUIEventHandlerBase() = default;

IVXUIEventContainer::~IVXUIEventContainer() = default;

IQuoteModuleUtil::~IQuoteModuleUtil() = default;

VUIEventHandler::VUIEventHandler() = default;

VUIEventHandler::~VUIEventHandler() = default;

void VUIEventHandler::DirectHandleUIEvent(const IVUIEventTypeBase* event)
{
    if (!event)
        return;
    const auto it = m_mapHandlers.find(event->eventName());
    if (it == m_mapHandlers.end() || !it->second)
        return;
    // A copy: the handler may replace or drop its own registration while it runs.
    const HandlerFn handler = it->second;
    handler(event);
}

bool VUIEventHandler::HasListenedEvent(const IVUIEventTypeBase* event) const
{
    return event && m_mapHandlers.count(event->eventName()) != 0;
}

void VUIEventHandler::RegisterUIEventHandler(const QString& eventName, HandlerFn handler)
{
    m_mapHandlers[eventName] = std::move(handler);
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
// comparing type names across libraries, and most widgets of a tree (Qt's own buttons, bars,
// stacks) are no handlers at all. Whether the cast succeeds depends only on the dynamic type, so
// that answer is remembered per type; the cast itself runs only for the types that are handlers.
// Keyed by the type_info's address: a type seen through two libraries just gets two entries.
// Dispatch runs on the main thread only.
IVUIEventHandlerBase* AsHandler(QWidget* widget)
{
    static QHash<const void*, bool> s_isHandler;
    const void* type = &typeid(*widget);
    const auto it = s_isHandler.constFind(type);
    if (it != s_isHandler.constEnd() && !it.value())
        return nullptr;
    IVUIEventHandlerBase* handler = dynamic_cast<IVUIEventHandlerBase*>(widget);
    if (it == s_isHandler.constEnd())
        s_isHandler.insert(type, handler != nullptr);
    return handler;
}

bool HasChildWidgets(const QWidget* widget)
{
    for (const QObject* object : widget->children()) {
        if (object->isWidgetType())
            return true;
    }
    return false;
}

// The walk below a root that has already handled the event (or was left out). Children that are
// neither handlers nor hold any widget cannot react: they are passed over without a guard, which
// spares a guarded pointer per leaf widget of the tree.
void DispatchToChildren(QWidget* root, const IVUIEventTypeBase* event, QWidget* exclude, QWidget* skip)
{
    struct Entry
    {
        QPointer<QWidget> child;
        IVUIEventHandlerBase* handler;
    };
    QVarLengthArray<Entry, 16> children;
    for (QObject* object : root->children()) {
        if (!object->isWidgetType())
            continue;
        auto* child = static_cast<QWidget*>(object);
        IVUIEventHandlerBase* handler = AsHandler(child);
        if (!handler && !HasChildWidgets(child))
            continue;
        children.append(Entry{QPointer<QWidget>(child), handler});
    }

    for (const Entry& entry : children) {
        QWidget* child = entry.child.data();
        if (!child) {
            VX_ASSERT_LEVEL(kReleasedDuringDispatch, core::assertion::kLevelWarning);
            continue;
        }
        if (child == skip)
            continue;
        if (entry.handler && !entry.handler->IsContinueDispatchUIEventToAllChild()) {
            if (child != exclude)
                entry.handler->DirectHandleUIEvent(event);
            continue;
        }
        if (entry.handler && child != exclude) {
            entry.handler->DirectHandleUIEvent(event);
            if (!entry.child) {
                VX_ASSERT_LEVEL(kReleasedDuringDispatch, core::assertion::kLevelWarning);
                continue;
            }
        }
        DispatchToChildren(child, event, exclude, skip);
    }
}

// The recursive walk; `skip` is a subtree left out entirely (a tab frame's current page, which
// gets its own pass).
void DispatchToSubtree(QWidget* root, const IVUIEventTypeBase* event, QWidget* exclude, QWidget* skip)
{
    QPointer<QWidget> guardRoot(root);
    if (root != exclude) {
        if (IVUIEventHandlerBase* handler = AsHandler(root))
            handler->DirectHandleUIEvent(event);
    }
    if (!guardRoot) {
        VX_ASSERT_LEVEL(kReleasedDuringDispatch, core::assertion::kLevelWarning);
        return;
    }
    DispatchToChildren(root, event, exclude, skip);
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
