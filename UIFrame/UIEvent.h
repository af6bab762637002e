#pragma once

// Card and UI events: synchronous notifications that a card raises from itself and that the
// dispatcher offers to every handler of the card's surroundings (box, sibling cards, canvas).
//
// An event names itself with its class name followed by its decimal id ("CardEventClicked50");
// handlers are registered under that name. Events live on the raiser's stack for the duration
// of the dispatch; a handler that keeps one takes a clone().

#include "UIFrame/UIFrameExport.h"

#include <QList>
#include <QString>

#include <functional>
#include <map>

class QWidget;

class UIFRAME_EXPORT IVUIEventTypeBase
{
public:
    // Built once per class and returned by reference.
    virtual const QString& eventName() const = 0;
    // A new copy owned by the caller.
    virtual IVUIEventTypeBase* clone() const = 0;
    virtual ~IVUIEventTypeBase();

protected:
    static QString MakeEventName(const char* className, int id);
};

// Base of every concrete event: Derived supplies `static const QString& EventName()` (built
// with MakeEventName(#Derived, Id) in a function-local static) and stays copyable.
template <typename Derived, int Id> class TVUIEventType : public IVUIEventTypeBase
{
public:
    static constexpr int kEventId = Id;

    const QString& eventName() const override { return Derived::EventName(); }
    IVUIEventTypeBase* clone() const override { return new Derived(static_cast<const Derived&>(*this)); }
};

class UIFRAME_EXPORT IVUIEventHandlerBase
{
public:
    virtual ~IVUIEventHandlerBase();
    virtual void DirectHandleUIEvent(const IVUIEventTypeBase* event) = 0;
    // False: the handler takes the event itself but the dispatcher does not descend into the
    // widget's children.
    virtual bool IsContinueDispatchUIEventToAllChild() const { return true; }
    virtual bool HasListenedEvent(const IVUIEventTypeBase* event) const = 0;
};

// A handler map from event name to callback, ordered by name. Listening classes register their
// handlers in their constructors:
//     RegisterUIEventHandler<CardEventClicked>(this, &CMyBox::OnCardEventClicked);
class UIFRAME_EXPORT VUIEventHandler : public IVUIEventHandlerBase
{
public:
    using HandlerFn = std::function<void(const IVUIEventTypeBase*)>;

    VUIEventHandler();
    ~VUIEventHandler() override;
    VUIEventHandler(const VUIEventHandler&) = delete;
    VUIEventHandler& operator=(const VUIEventHandler&) = delete;

    // Calls the handler registered under the event's name; no handler, or one without a
    // callable target, does nothing.
    void DirectHandleUIEvent(const IVUIEventTypeBase* event) override;
    bool HasListenedEvent(const IVUIEventTypeBase* event) const override;

    // The callback that casts the event to Event and calls the member on the owner.
    template <typename Owner, typename Event>
    static HandlerFn wrapEventHandler(Owner* owner, void (Owner::*member)(const Event*))
    {
        return [owner, member](const IVUIEventTypeBase* event) {
            if (const auto* typed = dynamic_cast<const Event*>(event))
                (owner->*member)(typed);
        };
    }

    template <typename Event, typename Owner>
    void RegisterUIEventHandler(Owner* owner, void (Owner::*member)(const Event*))
    {
        RegisterUIEventHandler(Event::EventName(), wrapEventHandler<Owner, Event>(owner, member));
    }

    // Replaces an earlier handler under the same name.
    void RegisterUIEventHandler(const QString& eventName, HandlerFn handler);
    void UnRegisterUIEventHandler(const QString& eventName);
    // Registered names in order (diagnostics, tests).
    QList<QString> ListenedEventNames() const;

private:
    std::map<QString, HandlerFn> m_mapHandlers;
};

namespace core::ui_event {

// Offers the event to the surroundings of `source`: the nearest holder above it (box, canvas,
// tab frame, main frame, splitter or stacked page) and that holder's whole widget subtree.
// The quote module's hook (IQuoteModuleUtil) sees every event first. The source itself is left
// out unless includeSource. Null arguments are assertion failures and dispatch nothing.
//
// A panel-workspace frame (key 20004) holds one opened layout per page: there the frame itself
// and only its current page receive the event, and only when the source lies inside that page,
// so that events never cross from one layout page into another. At any other tab frame the
// current page comes last and is skipped when the frame reports the event consumed. A source
// inside the expanded region that its holder shows now reaches only the region's current
// content and the region.
UIFRAME_EXPORT void DispatchCardEvent(QWidget* source, const IVUIEventTypeBase* event,
                                      bool includeSource = false);

// The root (unless it is `exclude`) and its whole subtree; null arguments are assertions.
UIFRAME_EXPORT void DispatchUIEventToAllChildRecursivelyWithThis(QWidget* root,
                                                                 const IVUIEventTypeBase* event,
                                                                 QWidget* exclude = nullptr);

// The expanded region holding `source` (an ancestor region, else the region of the source's
// tab frame): its current content and its subtree. Nothing when there is no region.
UIFRAME_EXPORT void DispatchCardEventToExpandedRegion(QWidget* source, const IVUIEventTypeBase* event,
                                                      bool includeSource = false);

} // namespace core::ui_event

namespace Platform::UIEvent {

// The walk under every dispatch: root handles the event (unless it is `exclude`), then each
// child widget from a snapshot taken after that, in order. A child destroyed meanwhile is
// reported (non-fatal assertion "存在对象在事件处理中被释放的情况") and skipped; a child whose
// handler does not continue dispatch handles the event without its subtree.
UIFRAME_EXPORT void DispatchUIEventToAllChildRecursively(QWidget* root, const IVUIEventTypeBase* event,
                                                         QWidget* exclude = nullptr);

} // namespace Platform::UIEvent
