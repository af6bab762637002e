#pragma once

// The card events of the frame. Each class names itself "<ClassName><Id>", e.g.
// CardEventStockIDChanged::EventName() == "CardEventStockIDChanged9".
//
// Request events (search, order panel, orders list, combo-option order, option chain, jump) are
// raised by the cards of the quote and trade modules and read by the single-card box and the
// canvas. The "...Inner" forms are what a single-card box re-raises for the canvas when it
// cannot satisfy a request inside itself: the same request plus the box that re-raised it
// (pSender) and that box's linkage group id.

#include "UIFrame/UIEvent.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QPointer>
#include <QString>
#include <QWidget>

enum class EnVXOrderSide : int
{
    None = 0,
    Buy = 1,
    Sell = 2,
};

// Open an order-entry panel prefilled for one security.
struct UIFRAME_EXPORT VXPlaceOrderRequest
{
    unsigned long long u64StockID = 0;
    EnVXOrderSide enSide = EnVXOrderSide::None;
    long long llQuantity = 0; // 0: let the panel choose
    double dPrice = 0.0;      // 0: market / let the panel choose
    CVXVariantMapTree accountInfo;
};

// Open the orders list of an account, optionally filtered to one security (0: all).
struct UIFRAME_EXPORT VXTradeOrdersRequest
{
    unsigned long long u64StockID = 0;
    CVXVariantMapTree accountInfo;
};

// Open the combo-option order panel for a strategy (its legs in comboOptionInfo).
struct UIFRAME_EXPORT VXComboOptionOrderRequest
{
    CVXVariantMapTree comboOptionInfo;
    EnVXOrderSide enSide = EnVXOrderSide::None;
    long long llQuantity = 0;
    double dPrice = 0.0;
    CVXVariantMapTree accountInfo;
};

// Open the option chain of an underlying from the combo-option order panel.
struct UIFRAME_EXPORT VXOptionChainRequest
{
    unsigned long long u64UnderlyingStockID = 0;
    CVXVariantMapTree comboOptionInfo;
    CVXVariantMapTree accountInfo;
};

// Open (or bring forward) a card of a given type and hand it jump data.
struct UIFRAME_EXPORT VXCommonJumpRequest
{
    QString strTargetCardType;
    CVXVariantMapTree jumpData;
};

class UIFRAME_EXPORT CardEventStockIDChanged : public TVUIEventType<CardEventStockIDChanged, 9>
{
public:
    static const QString& EventName();
    CardEventStockIDChanged() = default;
    explicit CardEventStockIDChanged(unsigned long long id, CVXVariantMapTree extra = {})
        : u64StockID(id), extraData(std::move(extra))
    {
    }

    unsigned long long u64StockID = 0;
    CVXVariantMapTree extraData;
};

class UIFRAME_EXPORT CardEventAccountInfoChanged : public TVUIEventType<CardEventAccountInfoChanged, 14>
{
public:
    static const QString& EventName();
    CardEventAccountInfoChanged() = default;
    explicit CardEventAccountInfoChanged(CVXVariantMapTree info) : accountInfo(std::move(info)) {}

    CVXVariantMapTree accountInfo;
};

class UIFRAME_EXPORT UIEventRestoreFootPrint : public TVUIEventType<UIEventRestoreFootPrint, 20>
{
public:
    static const QString& EventName();
    UIEventRestoreFootPrint() = default;
    explicit UIEventRestoreFootPrint(CVXVariantMapTree data) : footPrintData(std::move(data)) {}

    CVXVariantMapTree footPrintData;
};

class UIFRAME_EXPORT CardEventComboOptionChanged : public TVUIEventType<CardEventComboOptionChanged, 23>
{
public:
    static const QString& EventName();
    CardEventComboOptionChanged() = default;
    explicit CardEventComboOptionChanged(CVXVariantMapTree info) : comboOptionInfo(std::move(info)) {}

    CVXVariantMapTree comboOptionInfo;
};

// Asks the main frame to open a drill-down page of a type (-1: none, ignored) with jump info.
class UIFRAME_EXPORT UIEventOpenDrillDownPageMainFrame
    : public TVUIEventType<UIEventOpenDrillDownPageMainFrame, 24>
{
public:
    static const QString& EventName();

    int nPageType = -1;
    CVXVariantMapTree jumpInfo;
};

class UIFRAME_EXPORT CardEventOptionIndexChanged : public TVUIEventType<CardEventOptionIndexChanged, 36>
{
public:
    static const QString& EventName();
    CardEventOptionIndexChanged() = default;
    explicit CardEventOptionIndexChanged(CVXVariantMapTree info) : optionIndexInfo(std::move(info)) {}

    CVXVariantMapTree optionIndexInfo;
};

// Switch a stacked page to an inner jump page of a type (-1: none, ignored) with jump info.
class UIFRAME_EXPORT CardEventInnerPageSwitch : public TVUIEventType<CardEventInnerPageSwitch, 40>
{
public:
    static const QString& EventName();

    int nInnerJumpPageType = -1;
    CVXVariantMapTree jumpInfo;
};

class UIFRAME_EXPORT CardEventInnerPageBack : public TVUIEventType<CardEventInnerPageBack, 46>
{
public:
    static const QString& EventName();
};

class UIFRAME_EXPORT CardEventClicked : public TVUIEventType<CardEventClicked, 50>
{
public:
    static const QString& EventName();
};

class UIFRAME_EXPORT CardEventDoubleClicked : public TVUIEventType<CardEventDoubleClicked, 55>
{
public:
    static const QString& EventName();
};

// The card's search button: open the security search, prefilled with the text.
class UIFRAME_EXPORT CardEventSearchClicked : public TVUIEventType<CardEventSearchClicked, 61>
{
public:
    static const QString& EventName();

    QString strSearchText;
};

class UIFRAME_EXPORT CardEventUnderlyingTypeChanged : public TVUIEventType<CardEventUnderlyingTypeChanged, 98>
{
public:
    static const QString& EventName();

    int nUnderlyingType = 0;
};

class UIFRAME_EXPORT CardEventPostionsOpenPlaceOrderInner
    : public TVUIEventType<CardEventPostionsOpenPlaceOrderInner, 112>
{
public:
    static const QString& EventName();

    VXPlaceOrderRequest request;
    QPointer<QWidget> pSender; // the box that re-raised the request
    QString strGroupID;        // its linkage group, empty when ungrouped
};

class UIFRAME_EXPORT CardEventOpenTradeOrdersInner : public TVUIEventType<CardEventOpenTradeOrdersInner, 120>
{
public:
    static const QString& EventName();

    VXTradeOrdersRequest request;
    QPointer<QWidget> pSender; // the box that re-raised the request
    QString strGroupID;        // its linkage group, empty when ungrouped
};

class UIFRAME_EXPORT CardEventPostionsOpenPlaceOrderComboOptionInner
    : public TVUIEventType<CardEventPostionsOpenPlaceOrderComboOptionInner, 128>
{
public:
    static const QString& EventName();

    VXComboOptionOrderRequest request;
    QPointer<QWidget> pSender; // the box that re-raised the request
    QString strGroupID;        // its linkage group, empty when ungrouped
};

class UIFRAME_EXPORT CardEventPlaceOrderComboOptionOpenOptionChainInner
    : public TVUIEventType<CardEventPlaceOrderComboOptionOpenOptionChainInner, 136>
{
public:
    static const QString& EventName();

    VXOptionChainRequest request;
    QPointer<QWidget> pSender; // the box that re-raised the request
    QString strGroupID;        // its linkage group, empty when ungrouped
};

class UIFRAME_EXPORT CardEventCommonJumpInner : public TVUIEventType<CardEventCommonJumpInner, 143>
{
public:
    static const QString& EventName();

    VXCommonJumpRequest request;
    QPointer<QWidget> pSender; // the box that re-raised the request
    QString strGroupID;        // its linkage group, empty when ungrouped
};

class UIFRAME_EXPORT CardEventPostionsOpenPlaceOrder
    : public TVUIEventType<CardEventPostionsOpenPlaceOrder, 158>
{
public:
    static const QString& EventName();

    VXPlaceOrderRequest request;
};

class UIFRAME_EXPORT CardEventOpenTradeOrders : public TVUIEventType<CardEventOpenTradeOrders, 165>
{
public:
    static const QString& EventName();

    VXTradeOrdersRequest request;
};

class UIFRAME_EXPORT CardEventPostionsOpenPlaceOrderComboOption
    : public TVUIEventType<CardEventPostionsOpenPlaceOrderComboOption, 172>
{
public:
    static const QString& EventName();

    VXComboOptionOrderRequest request;
};

class UIFRAME_EXPORT CardEventCommonJump : public TVUIEventType<CardEventCommonJump, 179>
{
public:
    static const QString& EventName();

    VXCommonJumpRequest request;
};

class UIFRAME_EXPORT CardEventPlaceOrderComboOptionOpenOptionChain
    : public TVUIEventType<CardEventPlaceOrderComboOptionOpenOptionChain, 191>
{
public:
    static const QString& EventName();

    VXOptionChainRequest request;
};

// The tab shown in an expanded region changed.
class UIFRAME_EXPORT CardEventExpandedRegionTabChangedEvent
    : public TVUIEventType<CardEventExpandedRegionTabChangedEvent, 204>
{
public:
    static const QString& EventName();

    int nTabIndex = -1;
    QString strCardType; // the card type of the new tab's card, empty for other pages
};
