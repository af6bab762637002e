#include "UIFrame/CardEvents.h"

#define VX_DEFINE_EVENT_NAME(Class)                                                                          \
    const QString& Class::EventName()                                                                        \
    {                                                                                                        \
        static const QString name = MakeEventName(#Class, Class::kEventId);                                  \
        return name;                                                                                         \
    }

VX_DEFINE_EVENT_NAME(CardEventStockIDChanged)
VX_DEFINE_EVENT_NAME(CardEventAccountInfoChanged)
VX_DEFINE_EVENT_NAME(UIEventRestoreFootPrint)
VX_DEFINE_EVENT_NAME(CardEventComboOptionChanged)
VX_DEFINE_EVENT_NAME(UIEventOpenDrillDownPageMainFrame)
VX_DEFINE_EVENT_NAME(CardEventOptionIndexChanged)
VX_DEFINE_EVENT_NAME(CardEventInnerPageSwitch)
VX_DEFINE_EVENT_NAME(CardEventInnerPageBack)
VX_DEFINE_EVENT_NAME(CardEventClicked)
VX_DEFINE_EVENT_NAME(CardEventDoubleClicked)
VX_DEFINE_EVENT_NAME(CardEventSearchClicked)
VX_DEFINE_EVENT_NAME(CardEventUnderlyingTypeChanged)
VX_DEFINE_EVENT_NAME(CardEventPostionsOpenPlaceOrderInner)
VX_DEFINE_EVENT_NAME(CardEventOpenTradeOrdersInner)
VX_DEFINE_EVENT_NAME(CardEventPostionsOpenPlaceOrderComboOptionInner)
VX_DEFINE_EVENT_NAME(CardEventPlaceOrderComboOptionOpenOptionChainInner)
VX_DEFINE_EVENT_NAME(CardEventCommonJumpInner)
VX_DEFINE_EVENT_NAME(CardEventPostionsOpenPlaceOrder)
VX_DEFINE_EVENT_NAME(CardEventOpenTradeOrders)
VX_DEFINE_EVENT_NAME(CardEventPostionsOpenPlaceOrderComboOption)
VX_DEFINE_EVENT_NAME(CardEventCommonJump)
VX_DEFINE_EVENT_NAME(CardEventPlaceOrderComboOptionOpenOptionChain)
VX_DEFINE_EVENT_NAME(CardEventExpandedRegionTabChangedEvent)
